#pragma once

#include "operations/export_configuration.h"
#include "operations/export_services.h"
#include "operations/operation_context.h"

#include <filesystem>
#include <string>

namespace dravik::OperationsAudio {

/// Makes one M4A file of a group in `folder`, exactly as long as its source, with a title and a comment, and decodes it
/// before it gets its name. Throws OperationAudioError with the line for the user, std::filesystem::filesystem_error,
/// or Cancelled; then nothing is left behind. Gives the line for the user.
[[nodiscard]] std::string exportAAC(const OperationAudioAACExportConfiguration& configuration,
                                    const std::filesystem::path& folder, const ExportServices& services,
                                    const OperationContext& context);

/// Checks everything of it that can be checked without writing; about how large it becomes.
[[nodiscard]] FileToMake planAACExport(const OperationAudioAACExportConfiguration& configuration,
                                       const std::filesystem::path& folder, const ExportServices& services);

}  // namespace dravik::OperationsAudio
