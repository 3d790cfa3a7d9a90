#include "base/folder_recovery.h"

#include "base/byte_source.h"
#include "base/paths.h"
#include "base/rename_journal.h"
#include "base/temp_name.h"

#include <algorithm>
#include <set>
#include <string>

#include <fmt/format.h>
#include <sys/stat.h>

namespace dravik {
namespace {

/// A journal of ten thousand long names is far below it.
constexpr std::uint64_t maxJournalBytes = 64U * 1024U * 1024U;

class FolderRecovery {
  public:
    FolderRecovery(FileOps& ops, std::filesystem::path folder) : ops_(ops), folder_(std::move(folder)) {}

    Recovery run() {
        std::vector<std::filesystem::path> temporaries;
        std::vector<Journal> journals;
        std::error_code error;
        for (std::filesystem::directory_iterator it(folder_, error), end; !error && it != end; it.increment(error)) {
            const std::string name = fileNameText(it->path());
            std::error_code unknown;
            if (!name.starts_with('.') || !it->is_regular_file(unknown) || it->is_symlink(unknown)) continue;
            if (isRenameName(name)) hidden_.insert(name);
            if (isTemporaryName(name)) temporaries.push_back(it->path());
            if (const auto journal = parseJournalName(name)) journals.push_back({it->path(), *journal});
        }
        for (const Journal& journal : journals) {
            guarded(journal.file, [&] { recoverJournal(journal.file, journal.name); });
        }
        for (const std::string& name : hidden_) {
            if (unreadJournals_ > 0 || spokenFor_.contains(name) || !pathExists(folder_ / name)) continue;
            result_.failures.push_back(fmt::format(
                "A recording is hidden under the name {}: its rename was interrupted and {}.", pathText(folder_ / name),
                name.starts_with(batchRenamePrefix) ? "only the end of that name tells its old one"
                                                    : "nothing tells its old name"));
        }
        std::size_t removed = 0;
        for (const std::filesystem::path& temporary : temporaries) {
            guarded(temporary, [&] { removed += removeAbandoned(temporary) ? 1U : 0U; });
        }
        if (removed > 0) {
            result_.done.push_back(
                fmt::format("Removed {} unfinished temporary {} in {}; the recordings are untouched.", removed,
                            removed == 1 ? "file" : "files", pathText(folder_)));
        }
        return std::move(result_);
    }

  private:
    struct Journal {
        std::filesystem::path file;
        JournalName name;
    };

    template <typename Work>
    void guarded(const std::filesystem::path& file, Work work) {
        try {
            work();
        } catch (const std::exception& error) {
            result_.failures.push_back(fmt::format("Could not clean up {}: {}", pathText(file), userText(error)));
        }
    }

    bool removeAbandoned(const std::filesystem::path& file) {
        const FileHandle handle = FileHandle::tryOpenForReading(file);
        // Between the listing and now a living process may have locked it, finished it or removed it. Where locks do
        // not exist nobody can tell, and a file that holds nothing of worth is left.
        if (!handle.isOpen() || ops_.tryLock(handle) != FileOps::Lock::taken || !ops_.isSameFile(handle, file))
            return false;
        ops_.remove(file);
        return true;
    }

    /// Two names of one file: a rename by way of a link, on file systems that know no other, was cut in the middle.
    [[nodiscard]] bool areOneFile(const std::string& a, const std::string& b) const {
        struct stat first {};
        struct stat second {};
        return ::lstat((folder_ / a).c_str(), &first) == 0 && ::lstat((folder_ / b).c_str(), &second) == 0 &&
               first.st_dev == second.st_dev && first.st_ino == second.st_ino;
    }

    /// Moves unless the name is taken. True when the file is at `to` afterwards.
    bool move(const std::string& from, const std::string& to) {
        if (areOneFile(from, to)) {
            ops_.remove(folder_ / from);
            return true;
        }
        if (pathExists(folder_ / to)) return false;
        ops_.renameNoReplace(folder_ / from, folder_ / to);
        return true;
    }

    bool moveBack(const JournalEntry& entry) {
        if (!move(entry.temp, entry.source)) return false;
        result_.done.push_back(fmt::format("{} was put back after an interrupted rename.", entry.source));
        return true;
    }

    bool putInPlace(const JournalEntry& entry) {
        if (!move(entry.temp, entry.destination)) return moveBack(entry);
        result_.done.push_back(
            fmt::format("The interrupted rename of {} to {} was finished.", entry.source, entry.destination));
        return true;
    }

    void recoverJournal(std::filesystem::path journal, const JournalName& name) {
        ++unreadJournals_;
        if (!pathExists(journal)) return;
        const FileHandle handle = FileHandle::openForReading(journal);
        const FileOps::Lock lock = ops_.tryLock(handle);
        if (lock == FileOps::Lock::unsupported) {
            result_.failures.push_back(fmt::format(
                "The rename journal {} may be in use: this volume cannot tell. Files named {}… or {}… beside it "
                "wait for their names.",
                pathText(journal), renamePrefix, batchRenamePrefix));
            return;
        }
        if (lock == FileOps::Lock::heldByAnother || !ops_.isSameFile(handle, journal)) return;
        const FileSource source(handle);
        const Bytes text = source.read(0, std::min(source.size(), maxJournalBytes));
        const auto entries = parseJournal(asText(text));
        if (!entries) {
            result_.failures.push_back(
                fmt::format("The rename journal {} is damaged; files named {}… or {}… beside it wait for their names.",
                            pathText(journal), renamePrefix, batchRenamePrefix));
            return;
        }
        --unreadJournals_;
        for (const JournalEntry& entry : *entries)
            spokenFor_.insert(entry.temp);
        const auto isHidden = [&](const JournalEntry& entry) { return pathExists(folder_ / entry.temp); };
        const bool finish =
            name.phase == JournalPhase::puttingInPlace ||
            (name.phase == JournalPhase::takingAway && std::all_of(entries->begin(), entries->end(), isHidden));
        if (finish && name.phase == JournalPhase::takingAway) {
            // Said before it is done: should this process be killed, too, the next one must not take it for a rename to
            // be rolled back.
            const std::filesystem::path next = folder_ / journalName(name.token, JournalPhase::puttingInPlace);
            ops_.syncFolder(folder_);
            ops_.renameNoReplace(journal, next);
            ops_.syncFolder(folder_);
            journal = next;
        }
        bool complete = true;
        const auto recover = [&](const JournalEntry& entry) {
            if (!isHidden(entry)) return;
            std::string reason = "the name is taken";
            try {
                if (finish ? putInPlace(entry) : moveBack(entry)) return;
            } catch (const std::exception& error) {
                reason = systemText(error);  // the others are still to be helped
            }
            complete = false;
            result_.failures.push_back(
                fmt::format("{} could not be restored after an interrupted rename: {}. The file is at {}.",
                            entry.source, reason, pathText(folder_ / entry.temp)));
        };
        if (finish) {
            std::for_each(entries->begin(), entries->end(), recover);
        } else {
            std::for_each(entries->rbegin(), entries->rend(), recover);
        }
        ops_.syncFolder(folder_);
        if (complete) ops_.remove(journal);
    }

    FileOps& ops_;
    std::filesystem::path folder_;
    std::set<std::string> hidden_;     ///< recordings under a rename's hidden name
    std::set<std::string> spokenFor_;  ///< those that a journal names: its recovery says what becomes of them
    /// Journals that were left to the process that holds them, or cannot be read: any of the hidden files may be
    /// theirs.
    int unreadJournals_ = 0;
    Recovery result_;
};

}  // namespace

Recovery recoverFolder(FileOps& ops, const std::filesystem::path& dossier) {
    try {
        return FolderRecovery(ops, dossier).run();
    } catch (const std::exception& error) {
        return {{}, {fmt::format("{}: {}", pathText(dossier), userText(error))}};
    }
}

}  // namespace dravik
