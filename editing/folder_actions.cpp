#include "editing/folder_actions.h"

#include "base/file_copy.h"
#include "base/paths.h"
#include "base/safe_file.h"
#include "base/temp_name.h"
#include "base/text.h"
#include "editing/save_rename_plan.h"

#include <cstdint>
#include <system_error>
#include <vector>

#include <fmt/format.h>

namespace dravik {
namespace fs = std::filesystem;
namespace {

/// ".dravik-copy-" token: a folder that is being filled.
constexpr std::string_view copyPrefix = ".dravik-copy-";
/// Nobody has that many copies; without an end a folder that refuses every name would be asked for ever.
constexpr int namesTried = 1000;

std::string numbered(std::string_view base, std::string_view suffix, int number) {
    const std::string tail = number == 1 ? std::string(suffix) : fmt::format("{} {}", suffix, number);
    return std::string(truncatedUtf8(base, maxFileNameBytes - tail.size())) + tail;
}

void removeTree(const fs::path& folder) noexcept {
    std::error_code ignored;
    // A copied folder that may not be written in keeps its files; it is ours, so it may be opened again.
    fs::permissions(folder, fs::perms::owner_all, fs::perm_options::add, ignored);
    for (fs::recursive_directory_iterator it(folder, ignored), end; !ignored && it != end; it.increment(ignored)) {
        std::error_code own;
        if (it->is_directory(own) && !it->is_symlink(own)) {
            fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, own);
        }
    }
    fs::remove_all(folder, ignored);
}

/// The hidden folder in which a copy grows, locked while this process lives. The destructor removes it.
class UnfinishedCopy {
  public:
    UnfinishedCopy(FileOps& ops, const fs::path& parent) : ops_(ops) {
        for (int attempt = 1;; ++attempt) {
            path_ = parent / (std::string(copyPrefix) + freshToken());
            if (fs::create_directory(path_)) {
                handle_ = FileHandle::openForReading(path_);
                // Another process may have taken it for abandoned in the moment before the lock.
                if (ops_.tryLock(handle_) != FileOps::Lock::heldByAnother && ops_.isSameFile(handle_, path_)) return;
            }
            if (attempt == namesTried) throw FolderActionError::noFreeName(fileNameText(parent));
        }
    }
    UnfinishedCopy(const UnfinishedCopy&) = delete;
    UnfinishedCopy& operator=(const UnfinishedCopy&) = delete;
    ~UnfinishedCopy() {
        if (!inPlace_) removeTree(path_);
    }

    [[nodiscard]] const fs::path& path() const noexcept { return path_; }

    /// Renames it to the first free one of the names of a copy.
    [[nodiscard]] fs::path putInPlace(const fs::path& original) {
        for (int number = 1; number <= namesTried; ++number) {
            const fs::path target = folderOf(original) / numbered(original.filename().native(), " copy", number);
            try {
                ops_.renameNoReplace(path_, target);
            } catch (const fs::filesystem_error& error) {
                if (error.code() != std::errc::file_exists && error.code() != std::errc::directory_not_empty) throw;
                continue;
            }
            inPlace_ = true;
            return target;
        }
        throw FolderActionError::noFreeName(fileNameText(original));
    }

  private:
    FileOps& ops_;
    fs::path path_;
    FileHandle handle_;
    bool inPlace_ = false;
};

struct Item {
    enum class Kind { folder, file, link };
    Kind kind;
    fs::path place;  ///< from the folder that is copied
    std::uint64_t bytes = 0;
};

/// All that is in the folder, each folder before what it holds.
std::vector<Item> contentsOf(const fs::path& folder, const TaskContext& task) {
    std::vector<Item> items;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        task.checkCancelled();
        const fs::path place = entry.path().lexically_relative(folder);
        if (entry.is_symlink()) {
            items.push_back({Item::Kind::link, place});
        } else if (entry.is_directory()) {
            items.push_back({Item::Kind::folder, place});
        } else if (entry.is_regular_file()) {
            // A file that a running save is still writing has no name of its own yet.
            if (!isTemporaryName(entry.path().filename().native())) {
                items.push_back({Item::Kind::file, place, entry.file_size()});
            }
        } else {
            throw FolderActionError::notCopyable(fileNameText(entry.path()));
        }
    }
    return items;
}

void copyFolderAttributes(FileOps& ops, const fs::path& from, const fs::path& to) {
    ops.copyAttributes(FileHandle::openForReading(from), FileHandle::openForReading(to), to);
}

}  // namespace

FolderActionError FolderActionError::invalidName(std::string_view name) {
    return {Reason::invalidName, fmt::format("“{}” cannot be the name of a folder. Nothing was changed.", name)};
}
FolderActionError FolderActionError::exists(std::string_view name) {
    return {Reason::exists, fmt::format("There is something called “{}” already. Nothing was changed.", name)};
}
FolderActionError FolderActionError::changedMeanwhile(std::string_view name) {
    return {Reason::changedMeanwhile,
            fmt::format("“{}” was changed while it was being copied. The copy was removed.", name)};
}
FolderActionError FolderActionError::notCopyable(std::string_view name) {
    return {Reason::notCopyable, fmt::format("“{}” is neither a file nor a folder and cannot be copied.", name)};
}
FolderActionError FolderActionError::noFreeName(std::string_view name) {
    return {Reason::noFreeName, fmt::format("No free name was found for a new folder at “{}”.", name)};
}

bool isWithin(const fs::path& path, const fs::path& folder) {
    const std::string inner = normalisedPath(path);
    std::string outer = normalisedPath(folder);
    if (inner == outer) return true;
    if (!outer.ends_with('/')) outer += '/';
    return inner.starts_with(outer);
}

fs::path movedAlong(const fs::path& path, const fs::path& from, const fs::path& to) {
    // By components: the two may differ in letter case.
    auto part = path.begin();
    for (auto of = from.begin(); of != from.end() && part != path.end(); ++of) {
        if (!of->empty()) ++part;
    }
    fs::path result = to;
    for (; part != path.end(); ++part)
        result /= *part;
    return result;
}

fs::path createFolder(FileOps& ops, const fs::path& parent) {
    for (int number = 1; number <= namesTried; ++number) {
        const fs::path folder = parent / numbered("New Folder", "", number);
        if (pathExists(folder) || !fs::create_directory(folder)) continue;
        ops.syncFolder(parent);
        return folder;
    }
    throw FolderActionError::noFreeName(fileNameText(parent));
}

fs::path renameFolder(FileOps& ops, const fs::path& folder, const std::string& name) {
    if (name == folder.filename().native()) return folder;
    if (!isValidName(name)) throw FolderActionError::invalidName(name);
    const fs::path target = folderOf(folder) / name;
    std::error_code none;
    if (pathExists(target) && fs::equivalent(folder, target, none)) {
        // A volume that does not tell letter cases apart: the name that is in the way is the folder's own.
        ops.renameReplacing(folder, target);
    } else {
        try {
            ops.renameNoReplace(folder, target);
        } catch (const fs::filesystem_error& error) {
            if (error.code() == std::errc::file_exists || error.code() == std::errc::directory_not_empty) {
                throw FolderActionError::exists(name);
            }
            throw;
        }
    }
    ops.syncFolder(folderOf(target));
    return target;
}

fs::path duplicateFolder(FileOps& ops, const fs::path& folder, const TaskContext& task) {
    const fs::path parent = folderOf(folder);
    removeAbandonedCopies(ops, parent);
    const std::vector<Item> items = contentsOf(folder, task);
    std::uint64_t all = 0;
    for (const Item& item : items)
        all += item.bytes;
    UnfinishedCopy copy(ops, parent);
    ensureRoom(ops, copy.path() / "room", all);

    FolderSyncs syncs;
    std::uint64_t done = 0;
    for (const Item& item : items) {
        task.checkCancelled();
        const fs::path from = folder / item.place;
        const fs::path to = copy.path() / item.place;
        if (item.kind == Item::Kind::folder) {
            fs::create_directory(to);
        } else if (item.kind == Item::Kind::link) {
            fs::copy_symlink(from, to);
        } else {
            const std::string name = fileNameText(from);
            const ProgressSink report = [&](const Progress& progress) {
                if (task.report) task.report({done + progress.doneBytes, all, name});
            };
            try {
                syncs.add(copyFile(ops, from, to, item.bytes, {task.token, report}));
            } catch (const ChangedWhileCopied&) {
                throw FolderActionError::changedMeanwhile(name);
            }
            done += item.bytes;
        }
    }
    // What a folder allows is set once nothing has to be put into it any more.
    for (auto item = items.rbegin(); item != items.rend(); ++item) {
        if (item->kind != Item::Kind::folder) continue;
        ops.syncFolder(copy.path() / item->place);
        copyFolderAttributes(ops, folder / item->place, copy.path() / item->place);
    }
    syncs.syncAll(ops);
    ops.syncFolder(copy.path());
    copyFolderAttributes(ops, folder, copy.path());
    task.checkCancelled();
    fs::path target = copy.putInPlace(folder);
    ops.syncFolder(parent);
    return target;
}

bool isUnfinishedCopyName(std::string_view name) noexcept {
    return name.starts_with(copyPrefix) && isOurToken(name.substr(copyPrefix.size()));
}

void removeAbandonedCopies(FileOps& ops, const fs::path& parent) noexcept {
    std::vector<fs::path> found;
    std::error_code stop;
    for (fs::directory_iterator it(parent, stop), end; !stop && it != end; it.increment(stop)) {
        std::error_code none;
        if (isUnfinishedCopyName(it->path().filename().native()) && !it->is_symlink(none) && it->is_directory(none)) {
            found.push_back(it->path());
        }
    }
    for (const fs::path& folder : found) {
        const FileHandle handle = FileHandle::tryOpenForReading(folder);
        if (handle.isOpen() && ops.tryLock(handle) == FileOps::Lock::taken) removeTree(folder);
    }
}

}  // namespace dravik
