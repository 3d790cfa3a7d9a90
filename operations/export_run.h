#pragma once

#include "operations/aac_export.h"
#include "operations/mp3_export.h"
#include "operations/operation_run.h"
#include "operations/wav_export.h"

#include <filesystem>
#include <string>
#include <variant>
#include <vector>

namespace dravik {

using AnyExportConfiguration = std::variant<OperationAudioExportConfiguration, OperationAudioAACExportConfiguration,
                                            OperationAudioMP3ExportConfiguration>;

/// One file of a run of exports.
struct ExportJob {
    AnyExportConfiguration configuration;
    std::filesystem::path folder;  ///< of the new file

    [[nodiscard]] const GroupeFichiers& groupe() const noexcept;
    [[nodiscard]] const std::string& destinationName() const noexcept;
};

namespace OperationsAudio {

/// Checks a job without writing anything, and says what it would make; throws what its export would throw.
[[nodiscard]] FileToMake planExport(const ExportJob& job, const ExportServices& services);

/// Does the jobs. MP3 and M4A, whose encoders use one core each, are made several at a time; a WAV export uses all
/// cores by itself. As runOperation has it: results in the order of the jobs, a failure stops no other, a cancel takes
/// back what is in progress and keeps what is complete. Room for all is looked for before the first is begun: throws
/// std::filesystem::filesystem_error when there is not enough, and Cancelled before that. `task.report` is called by
/// one thread at a time.
[[nodiscard]] RunOutcome runExports(const std::vector<ExportJob>& jobs, const ExportServices& services,
                                    const TaskContext& task);

}  // namespace OperationsAudio
}  // namespace dravik
