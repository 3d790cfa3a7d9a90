#pragma once

#include "operations/export_configuration.h"
#include "operations/export_services.h"
#include "operations/operation_audio_result.h"

#include <filesystem>

namespace dravik::OperationsAudio {

/// Makes one M4A file of a group in `folder`, exactly as long as its source, with a title and a comment, and decodes it
/// before it gets its name. Throws OperationAudioError with the line for the user, std::filesystem::filesystem_error,
/// or Cancelled; then nothing is left behind. `folders` receives the folder, to be synced when the run ends.
[[nodiscard]] OperationAudioResult exportAAC(const OperationAudioAACExportConfiguration& configuration,
                                             const std::filesystem::path& folder, const ExportServices& services,
                                             FolderSyncs& folders, const TaskContext& task);

/// Everything of it that can be checked without writing; the path that it would have.
[[nodiscard]] std::filesystem::path planAACExport(const OperationAudioAACExportConfiguration& configuration,
                                                  const std::filesystem::path& folder, const ExportServices& services);

}  // namespace dravik::OperationsAudio
