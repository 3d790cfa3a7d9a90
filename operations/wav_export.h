#pragma once

#include "operations/export_configuration.h"
#include "operations/export_services.h"
#include "operations/operation_audio_result.h"

#include <cstdint>
#include <filesystem>

namespace dravik::OperationsAudio {

/// What a WAV export comes to, known before anything is created.
struct WavExportPlan {
    std::filesystem::path destination;
    std::uint64_t frames = 0;
    std::uint64_t bytes = 0;  ///< of the whole file
};

/// Checks everything that can be checked without writing: sources, format, size, room. Throws as exportWAV does.
[[nodiscard]] WavExportPlan planWAVExport(const OperationAudioExportConfiguration& configuration,
                                          const std::filesystem::path& folder, const ExportServices& services);

/// Makes one new WAV file in `folder` out of a group: routed, converted, requantised, its metadata adapted, read again
/// before it gets its name. Where nothing of the audio changes, its bytes are copied. Throws OperationAudioError with
/// the line for the user, std::filesystem::filesystem_error, or Cancelled; then nothing is left behind. No source is
/// touched, nothing that exists is written over. `folders` receives the folder, to be synced when the run ends.
[[nodiscard]] OperationAudioResult exportWAV(const OperationAudioExportConfiguration& configuration,
                                             const std::filesystem::path& folder, const ExportServices& services,
                                             FolderSyncs& folders, const TaskContext& task);

}  // namespace dravik::OperationsAudio
