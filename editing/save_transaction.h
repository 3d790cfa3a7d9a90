#pragma once

#include "base/file_ops.h"
#include "base/progress.h"
#include "editing/save_check.h"
#include "editing/save_item.h"
#include "editing/save_rename_plan.h"
#include "editing/save_values.h"

#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace dravik {

/// What became of one file.
struct SaveResult {
    std::filesystem::path path;     ///< before the save
    std::filesystem::path newPath;  ///< after it
    bool renamed = false;
    bool written = false;  ///< metadata or markers
    std::string error;     ///< empty when all went well
};

/// What became of a save that got past its checks and renames.
struct SaveReport {
    std::vector<SaveResult> results;                               ///< in the order of the items
    std::map<std::filesystem::path, std::filesystem::path> moved;  ///< old path -> new path of renamed files
    bool cancelled = false;

    [[nodiscard]] std::size_t written() const noexcept;
    [[nodiscard]] bool failed() const noexcept;
    /// Throws what the user must be shown: MainSaveRenameError::metadataAfterRenameFailed when files were renamed, else
    /// an Error with the messages of the files that failed. Returns when none did.
    void throwIfFailed() const;
};

/// The items for a take: what differs between the edited and the original fields, and the new name. Files for which
/// nothing is to be done get an empty item. A forced save writes every file. `decided` as for valuesForFile.
[[nodiscard]] std::vector<SaveItem> planSave(const GroupeFichiers& groupe, const EditedFields& edited,
                                             const EditedFields& originals, const std::optional<std::string>& newName,
                                             const std::set<MetadataField>& decided = {});

/// Refuses, before the first byte, a save for whose largest file a folder has no room: throws
/// std::filesystem::filesystem_error ("No space left on device"). A save asks it by itself. May write a trial file.
void checkRoom(FileOps& ops, const std::vector<SaveItem>& items);
/// The same for a rehearsal, which writes nothing: the folders whose volumes report too little room. Whether a save is
/// refused there depends on whether the volume can share blocks.
[[nodiscard]] std::vector<std::filesystem::path> foldersShortOfRoom(FileOps& ops, const std::vector<SaveItem>& items);

/// Checks everything before the first change (checkSave, checkRoom). Renames first (all or nothing), then writes each
/// file's metadata and markers at its new place. A file that fails does not stop the others. The folders are on the
/// medium when it returns.
///
/// Throws SaveRefused, MainSaveRenameError or std::filesystem::filesystem_error when nothing was written (a check
/// failed, there is no room, the renames were undone), Cancelled when it was stopped before the first change. Blocks;
/// one save at a time; not for the main thread. Progress runs over the bytes of all files to be written.
[[nodiscard]] SaveReport runSave(FileOps& ops, const std::vector<SaveItem>& items, const TaskContext& task);

}  // namespace dravik
