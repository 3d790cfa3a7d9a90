#pragma once

#include "operations/export_configuration.h"
#include "operations/export_services.h"
#include "operations/operation_audio_result.h"

#include <filesystem>

namespace dravik::OperationsAudio {

/// Makes one MP3 file of a group in `folder`, at a constant bit rate, and decodes all of it before it gets its name.
/// What lies outside the range of the samples that the encoder takes is refused, not clipped. Throws
/// OperationAudioError or MP3EncoderError with the line for the user, std::filesystem::filesystem_error, or Cancelled;
/// then nothing is left behind. `folders` receives the folder, to be synced when the run ends.
[[nodiscard]] OperationAudioResult exportMP3(const OperationAudioMP3ExportConfiguration& configuration,
                                             const std::filesystem::path& folder, const ExportServices& services,
                                             FolderSyncs& folders, const TaskContext& task);

/// Everything of it that can be checked without writing; the path that it would have.
[[nodiscard]] std::filesystem::path planMP3Export(const OperationAudioMP3ExportConfiguration& configuration,
                                                  const std::filesystem::path& folder, const ExportServices& services);

}  // namespace dravik::OperationsAudio
