#pragma once

#include "operations/export_configuration.h"
#include "operations/export_services.h"
#include "operations/operation_context.h"

#include <filesystem>
#include <string>

namespace dravik::OperationsAudio {

/// Makes one MP3 file of a group in `folder`, at a constant bit rate, and decodes all of it before it gets its name.
/// What lies outside the range of the samples that the encoder takes is refused, not clipped. Throws
/// OperationAudioError or MP3EncoderError with the line for the user, std::filesystem::filesystem_error, or Cancelled;
/// then nothing is left behind. Gives the line for the user.
[[nodiscard]] std::string exportMP3(const OperationAudioMP3ExportConfiguration& configuration,
                                    const std::filesystem::path& folder, const ExportServices& services,
                                    const OperationContext& context);

/// Checks everything of it that can be checked without writing; about how large it becomes.
[[nodiscard]] FileToMake planMP3Export(const OperationAudioMP3ExportConfiguration& configuration,
                                       const std::filesystem::path& folder, const ExportServices& services);

}  // namespace dravik::OperationsAudio
