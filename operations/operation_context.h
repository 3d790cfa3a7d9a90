#pragma once

#include "base/file_ops.h"
#include "base/progress.h"
#include "base/safe_file.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace dravik {

/// What an operation needs of its surroundings while it works on one group or file.
struct OperationContext {
    FileOps& ops;
    const TaskContext& task;
    FolderSyncs& folders;                           ///< receives the folders of the files that were put in place
    std::vector<std::filesystem::path>& completed;  ///< receives the files, each when it is in place
    bool& begun;  ///< set before the first file is created: what fails earlier was refused, and nothing was tried
};

/// A file that is to be made, for asking whether there is room for all of a run.
struct FileToMake {
    std::filesystem::path destination;
    std::uint64_t bytes = 0;
};

namespace OperationsAudio {

/// Refuses a file that cannot come into being where it is to be: a name that is longer than a folder takes, a folder
/// that this user cannot write to. Asks only; throws std::filesystem::filesystem_error.
void ensureCreatable(FileOps& ops, const std::filesystem::path& destination);

/// The folders whose volumes report too little room for what is to be made in them, each with the bytes needed.
[[nodiscard]] std::vector<FileToMake> foldersShortOfRoom(FileOps& ops, const std::vector<FileToMake>& files);
/// Says so of such a folder: "There is not enough room in “/day”: 3.4 GB are needed."
[[nodiscard]] std::string roomText(const FileToMake& folder);
/// Refuses a run for which a folder has no room: std::filesystem::filesystem_error, nothing is created.
void ensureRoomForAll(FileOps& ops, const std::vector<FileToMake>& files);

}  // namespace OperationsAudio
}  // namespace dravik
