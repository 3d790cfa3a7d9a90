#pragma once

#include "operations/export_configuration.h"
#include "operations/export_services.h"
#include "operations/operation_context.h"

#include <filesystem>
#include <string>

namespace dravik::OperationsAudio {

/// Checks everything that can be checked without writing: sources, format, size. Throws as exportWAV does.
[[nodiscard]] FileToMake planWAVExport(const OperationAudioExportConfiguration& configuration,
                                       const std::filesystem::path& folder, const ExportServices& services);

/// Makes one new WAV file in `folder` out of a group: routed, converted, requantised, its metadata adapted, read again
/// before it gets its name. Where nothing of the audio changes, its bytes are copied. Throws OperationAudioError with
/// the line for the user, std::filesystem::filesystem_error, or Cancelled; then nothing is left behind. No source is
/// touched, nothing that exists is written over. Gives the line for the user.
[[nodiscard]] std::string exportWAV(const OperationAudioExportConfiguration& configuration,
                                    const std::filesystem::path& folder, const ExportServices& services,
                                    const OperationContext& context);

}  // namespace dravik::OperationsAudio
