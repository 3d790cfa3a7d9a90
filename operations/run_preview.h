#pragma once

#include "operations/export_run.h"
#include "operations/operation_run.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace dravik {

/// What a run would make, take by take, as the run itself works it out: shown by the window and told by a dry run.
/// Values.

struct PreviewedFile {
    std::filesystem::path destination;
    std::uint64_t bytes = 0;
    bool isEstimate = false;          ///< its length shows when it is made
    std::vector<std::string> tracks;  ///< what its channels are called; empty where a route mixes them
};

struct PreviewedTake {
    std::vector<PreviewedFile> files;
    std::string message;  ///< why there are no files, where nothing is wrong
    std::string note;     ///< what the user must know of the files
    std::string error;    ///< why the take cannot be used; empty when it can

    [[nodiscard]] std::vector<std::filesystem::path> destinations() const;
};

struct RunPreview {
    std::vector<PreviewedTake> takes;      ///< in the order of what they are made of
    std::vector<FileToMake> foldersShort;  ///< folders without room for what they are to get: the run is refused

    [[nodiscard]] std::vector<FileToMake> files() const;
    [[nodiscard]] std::uint64_t bytes() const;
    [[nodiscard]] std::size_t failed() const;  ///< takes that cannot be used
};

namespace OperationsAudio {

/// Nothing is written. Each throws Cancelled only.
[[nodiscard]] RunPreview previewTracks(FileOps& ops, const std::vector<GroupeFichiers>& groupes,
                                       const GroupPlanner& planner, const TaskContext& task);
[[nodiscard]] RunPreview previewExports(const std::vector<ExportJob>& jobs, const ExportServices& services,
                                        const TaskContext& task);

}  // namespace OperationsAudio
}  // namespace dravik
