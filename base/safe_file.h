#pragma once

#include "base/bytes.h"
#include "base/file_handle.h"
#include "base/file_ops.h"
#include "base/file_plan.h"
#include "base/progress.h"
#include "base/temp_name.h"

#include <cstdint>
#include <filesystem>
#include <set>

namespace dravik {

/// Says that a folder's names were changed and are not yet known to be on the medium. Collect it in a FolderSyncs.
struct [[nodiscard]] UnsyncedFolder {
    std::filesystem::path folder;
};

/// The folders to sync once a batch of files has been put in place: one sync for a folder instead of one for a file.
/// Each file is whole at any moment without it; only after `syncAll` may the user be told that the work is kept.
class FolderSyncs {
  public:
    void add(const UnsyncedFolder& unsynced) { folders_.insert(unsynced.folder); }
    /// Tries every folder, then throws the first std::filesystem::filesystem_error met.
    void syncAll(FileOps& ops);

  private:
    std::set<std::filesystem::path> folders_;
};

/// The only way in which Dravik makes a file: a hidden temporary file beside the target, created under a name that did
/// not exist and locked while in use; checked writes; sync; one atomic rename. Until `commit` nothing that exists is
/// touched, and the destructor only discards. A process killed in between leaves the target as it was, and a temporary
/// file that the next opening of the folder removes.
///
/// Not for several threads at once. Everything throws std::filesystem::filesystem_error unless said otherwise; it names
/// the target, which the user knows, and never the temporary file.
class SafeFile {
  public:
    /// Makes the temporary file in the folder of `target`. A target that is a symbolic link must be resolved before.
    SafeFile(FileOps& ops, std::filesystem::path target, TempKind kind);
    SafeFile(const SafeFile&) = delete;
    SafeFile& operator=(const SafeFile&) = delete;
    ~SafeFile();

    /// Writes the planned bytes from the start. Ranges of the source are copied by the kernel, and where the file
    /// system shares blocks, audio that keeps its offset is not copied at all. Reports and asks for cancellation at
    /// least every few megabytes; throws Cancelled. A source that ends before a planned range does is an error.
    /// A source that the new file will replace is let go of in the page cache as it is copied, while the disk is busy
    /// with the new bytes; otherwise the removal of a large file ends with a long moment in which nothing else is done.
    enum class Source { kept, replaced };
    void write(const FilePlan& plan, const FileHandle& source, const TaskContext& task,
               Source afterwards = Source::kept);

    /// Writes some bytes at their place: for a large file made in memory, which a plan would hold a second time.
    void writeAt(std::uint64_t offset, ByteSpan bytes);

    /// Mode, owner and extended attributes of the original.
    void copyAttributesFrom(const FileHandle& original);

    /// The finished temporary file, for a last check before it is put in place.
    [[nodiscard]] const FileHandle& file() const noexcept { return file_; }
    /// Its name, for a check by a library that opens files by name. Only to be read.
    [[nodiscard]] const std::filesystem::path& temporaryPath() const noexcept { return temporary_; }

    /// Waits until the bytes are on the medium, which may take seconds: a check that the target is still as it was
    /// belongs behind it.
    void sync();

    enum class Existing { replace, refuse };
    /// `expendable` leaves out the sync: for a cache, whose reader checks every byte and whose loss is no harm. Waiting
    /// for the medium would cost more than making it anew.
    enum class Durability { onMedium, expendable };
    /// Syncs what is not synced yet and renames onto the target. Called once, last.
    [[nodiscard]] UnsyncedFolder commit(Existing existing, Durability durability = Durability::onMedium);

  private:
    void discard() noexcept;

    FileOps& ops_;
    std::filesystem::path target_;
    std::filesystem::path temporary_;
    FileHandle file_;
    bool synced_ = false;
    bool inPlace_ = false;
};

/// Refuses, with "No space left on device", a new file of `bytes` beside `target` that the volume has no room for.
/// Where the volume can share blocks the copy takes next to none, and nothing is refused: that is found out by a trial
/// with a temporary file. Throws std::filesystem::filesystem_error; nothing is left behind.
void ensureRoom(FileOps& ops, const std::filesystem::path& target, std::uint64_t bytes);

/// The same question to be answered without writing: does the volume report the room? Where it does not, whether it can
/// share blocks, and so whether `ensureRoom` would refuse, is not known.
[[nodiscard]] bool reportsRoom(FileOps& ops, const std::filesystem::path& target, std::uint64_t bytes);

/// Where a write to `path` must land: the file behind any symbolic links.
[[nodiscard]] std::filesystem::path resolvedTarget(const std::filesystem::path& path);

}  // namespace dravik
