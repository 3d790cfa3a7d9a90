#pragma once

#include "base/error.h"
#include "base/file_ops.h"
#include "base/progress.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace dravik {

/// What a user does to whole folders. Nothing that exists is ever overwritten, and a copy has its name only when it is
/// complete and on the medium: the folder may hold the only recording of a day. Everything blocks; any thread; throws
/// FolderActionError, std::filesystem::filesystem_error, and Cancelled where a task is given.

class FolderActionError final : public Error {
  public:
    enum class Reason { invalidName, exists, changedMeanwhile, notCopyable, noFreeName };
    [[nodiscard]] Reason reason() const noexcept { return reason_; }

    static FolderActionError invalidName(std::string_view name);
    static FolderActionError exists(std::string_view name);
    static FolderActionError changedMeanwhile(std::string_view name);
    static FolderActionError notCopyable(std::string_view name);
    static FolderActionError noFreeName(std::string_view name);

  private:
    FolderActionError(Reason reason, std::string message) : Error(std::move(message)), reason_(reason) {}
    Reason reason_;
};

/// Is `path` this folder, or below it? Letter case does not count; nothing on disk is looked at.
[[nodiscard]] bool isWithin(const std::filesystem::path& path, const std::filesystem::path& folder);
/// Where `path`, which is within `from`, is once that folder has become `to`.
[[nodiscard]] std::filesystem::path movedAlong(const std::filesystem::path& path, const std::filesystem::path& from,
                                               const std::filesystem::path& to);

/// Makes an empty folder, "New Folder" or "New Folder 2" and so on, and gives its path.
[[nodiscard]] std::filesystem::path createFolder(FileOps& ops, const std::filesystem::path& parent);

/// Gives the folder another name in the same place; its new path. The same name is no work.
[[nodiscard]] std::filesystem::path renameFolder(FileOps& ops, const std::filesystem::path& folder,
                                                 const std::string& name);

/// Copies the folder with all that is in it to "<name> copy" (or "<name> copy 2" and so on) beside it, and gives the
/// copy's path. Files keep their times, permissions and attributes; links are copied as links. Until everything is on
/// the medium the copy has a hidden name; whatever fails, it is removed. A file that changes while it is copied, and a
/// thing that is neither file, folder nor link, stop it.
[[nodiscard]] std::filesystem::path duplicateFolder(FileOps& ops, const std::filesystem::path& folder,
                                                    const TaskContext& task);

/// Is this the hidden name of an unfinished copy?
[[nodiscard]] bool isUnfinishedCopyName(std::string_view name) noexcept;
/// Removes the unfinished copies that killed runs left in the folder. Those of running ones stay. Never throws.
void removeAbandonedCopies(FileOps& ops, const std::filesystem::path& parent) noexcept;

}  // namespace dravik
