#include "editing/rename_transaction.h"

#include "base/file_handle.h"
#include "base/paths.h"
#include "editing/rename_journal.h"

#include <algorithm>
#include <set>

#include <fmt/format.h>

namespace dravik {
namespace {

struct Move {
    std::filesystem::path from, to;
};

/// Undoes moves from the last to the first, and knows for each file that could not go back where it is now.
class Undo {
  public:
    explicit Undo(FileOps& ops) : ops_(ops) {}

    void operator()(const std::vector<Move>& moves) {
        for (auto move = moves.rbegin(); move != moves.rend(); ++move) {
            if (normalisedPath(move->from) == normalisedPath(move->to)) continue;
            // A file that could not take its last step back cannot take the one before.
            if (notReached_.contains(move->to)) continue;
            const std::string former = fileNameText(move->from);
            if (pathExists(move->from)) {
                fail(*move,
                     fmt::format("Could not restore {}: original path already exists. Current file remains at {}.",
                                 former, pathText(move->to)));
                continue;
            }
            try {
                ops_.renameNoReplace(move->to, move->from);
            } catch (const std::exception& error) {
                fail(*move,
                     fmt::format("Could not restore {} from {}: {}", former, fileNameText(move->to), userText(error)));
            }
        }
    }
    [[nodiscard]] const std::vector<std::string>& failures() const noexcept { return failures_; }

  private:
    void fail(const Move& move, std::string sentence) {
        notReached_.insert(move.from);
        failures_.push_back(std::move(sentence));
    }

    FileOps& ops_;
    std::set<std::filesystem::path> notReached_;
    std::vector<std::string> failures_;
};

/// An error names the file as the user knows it, whichever of the two the system names.
void moveKnownAs(const std::filesystem::path& name, FileOps& ops, const std::filesystem::path& from,
                 const std::filesystem::path& to) {
    try {
        ops.renameNoReplace(from, to);
    } catch (const std::filesystem::filesystem_error& error) {
        throw std::filesystem::filesystem_error("cannot rename", name, error.code());
    }
}

void enterIfPossible(RenameJournal& journal, JournalPhase phase) noexcept {
    try {
        journal.enter(phase);
    } catch (const std::exception&) {
        return;  // the files go back all the same
    }
}

/// Holds every file that will move, so that no save of another process replaces it under its old name meanwhile.
std::vector<FileHandle> lockedSources(FileOps& ops, const std::vector<MainSaveRenamePlanEntry>& plan) {
    std::vector<FileHandle> handles;
    for (const MainSaveRenamePlanEntry& entry : plan) {
        if (!entry.moves()) continue;
        FileHandle handle = FileHandle::tryOpenForReading(entry.source);
        if (handle.isOpen() && ops.tryLock(handle) == FileOps::Lock::heldByAnother) {
            throw MainSaveRenameError::sourceInUse(fileNameText(entry.source));
        }
        handles.push_back(std::move(handle));
    }
    return handles;
}

}  // namespace

std::map<std::filesystem::path, std::filesystem::path> runRenames(FileOps& ops,
                                                                  const std::vector<MainSaveRenamePlanEntry>& plan) {
    std::map<std::filesystem::path, std::filesystem::path> mapping;
    for (const MainSaveRenamePlanEntry& entry : plan) {
        mapping[entry.source] = entry.moves() ? entry.destination : entry.source;
    }
    if (std::none_of(plan.begin(), plan.end(), [](const auto& entry) { return entry.moves(); })) return mapping;

    const std::vector<FileHandle> locks = lockedSources(ops, plan);
    RenameJournal journal(ops, plan);
    std::vector<Move> taken;
    std::vector<Move> placed;
    taken.reserve(plan.size());
    placed.reserve(plan.size());
    try {
        for (const MainSaveRenamePlanEntry& entry : plan) {
            if (!entry.moves()) continue;
            moveKnownAs(entry.source, ops, entry.source, entry.temp);
            taken.push_back({entry.source, entry.temp});
        }
        journal.enter(JournalPhase::puttingInPlace);
        for (const MainSaveRenamePlanEntry& entry : plan) {
            if (!entry.moves()) continue;
            moveKnownAs(entry.destination, ops, entry.temp, entry.destination);
            placed.push_back({entry.temp, entry.destination});
        }
        journal.syncFolders();
    } catch (const std::exception& error) {
        const std::string original = userText(error);
        // Until everything is hidden again a killed process leaves a rename to be finished, from then on one to be
        // rolled back: never half of each.
        Undo undo(ops);
        undo(placed);
        enterIfPossible(journal, JournalPhase::puttingBack);
        undo(taken);
        if (!undo.failures().empty()) {
            // The journal stays: the next opening of the folder tries again.
            throw MainSaveRenameError::rollbackFailed(original, undo.failures());
        }
        journal.retire();
        throw;
    }
    journal.retire();
    return mapping;
}

}  // namespace dravik
