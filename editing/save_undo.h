#pragma once

#include "base/file_ops.h"
#include "base/progress.h"
#include "editing/save_transaction.h"
#include "model/wave/chunk_walk.h"

#include <filesystem>
#include <map>
#include <optional>
#include <vector>

namespace dravik {

/// What a save is about to replace, kept so that it can be put back: the chunks that the writers touch, byte for byte,
/// and the names. The audio and all other chunks are never kept; they stay in the file.
struct SaveSnapshot {
    struct ChunkRecord {
        FourCC id;
        std::uint64_t size = 0;
        std::optional<Bytes> payload;  ///< of the chunks that a save may touch; absent for all others
    };
    struct File {
        std::filesystem::path before, after;  ///< the name before the save and behind it
        bool written = false;
        std::vector<ChunkRecord> chunks;  ///< as they were; empty when only the name was to change
        FileStamp found;                  ///< the state in which the save found it
        FileStamp saved;                  ///< the state in which the save left it
    };
    std::vector<File> files;
    [[nodiscard]] std::size_t bytes() const noexcept;  ///< of memory that it holds
};

/// Before a save: reads what it will replace. Files that cannot be read are left out; the save will say why. Blocks.
[[nodiscard]] SaveSnapshot takeSnapshot(FileOps& ops, const std::vector<SaveItem>& items);
/// After it: keeps the files that were changed, under their new names, with the state they are in now.
void noteSaved(FileOps& ops, SaveSnapshot& snapshot, const SaveReport& report);

/// Puts the files back: first what was in them, then their names. Throws, with nothing changed, an Error when a file
/// has been changed since the save or is gone, MainSaveRenameError when an old name is taken, Cancelled when stopped
/// before the first change. What goes wrong later stands in the report, whose `moved` leads from the new names to the
/// old ones. Blocks; not for the main thread.
[[nodiscard]] SaveReport undoSave(FileOps& ops, const SaveSnapshot& snapshot, const TaskContext& task);

/// The state of files, by their names.
using FileStates = std::map<std::filesystem::path, FileStamp>;
/// Of the files of an undone save, under the names that they have back. Blocks.
[[nodiscard]] FileStates statesAfterUndo(FileOps& ops, const SaveSnapshot& undone);
/// A later save of the same files was undone: they are again what this one left, in a new state of their own.
void restamp(SaveSnapshot& older, const SaveSnapshot& undone, const FileStates& states);

}  // namespace dravik
