#include "base/two_phase_rename.h"

#include "base/file_handle.h"
#include "base/paths.h"
#include "base/rename_journal.h"

#include <algorithm>
#include <set>
#include <utility>

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
    [[nodiscard]] bool failed() const noexcept { return !failures_.empty(); }
    /// The failures by the old names of the files, whichever of their two moves could not be undone.
    [[nodiscard]] std::vector<TwoPhaseRenameError::Stray> strays(const std::vector<RenameMove>& moves) const {
        std::vector<TwoPhaseRenameError::Stray> result;
        for (const auto& [from, sentence] : failures_) {
            const auto move = std::find_if(moves.begin(), moves.end(), [&, at = &from](const RenameMove& one) {
                return one.source == *at || one.temp == *at;
            });
            result.push_back({move == moves.end() ? from : move->source, sentence});
        }
        return result;
    }

  private:
    void fail(const Move& move, std::string sentence) {
        notReached_.insert(move.from);
        failures_.emplace_back(move.from, std::move(sentence));
    }

    FileOps& ops_;
    std::set<std::filesystem::path> notReached_;
    std::vector<std::pair<std::filesystem::path, std::string>> failures_;
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

/// Locks that are held at a time: a process may have 1,024 files open, and runs of more files are common.
constexpr std::size_t mostLocksHeld = 512;

/// Asks for every file that will move whether another process saves it, and holds as many as it may, so that no save
/// begins meanwhile. (One that does finds its file gone when it is about to replace it, and gives up.)
std::vector<FileHandle> lockedSources(FileOps& ops, const std::vector<RenameMove>& moves) {
    std::vector<FileHandle> handles;
    for (const RenameMove& move : moves) {
        FileHandle handle = FileHandle::tryOpenForReading(move.source);
        if (handle.isOpen() && ops.tryLock(handle) == FileOps::Lock::heldByAnother) {
            throw TwoPhaseRenameError::sourceInUse(move.source);
        }
        if (handles.size() < mostLocksHeld) handles.push_back(std::move(handle));
    }
    return handles;
}

/// Tells each move before it is made, and whether to go on.
class Advance {
  public:
    Advance(const TaskContext& task, std::size_t moves) : task_(task), all_(moves) {}
    void next(const std::filesystem::path& file) {
        task_.checkCancelled();
        const std::string name = fileNameText(file);
        task_.advance({done_++, all_, name});
    }

  private:
    const TaskContext& task_;
    std::uint64_t done_ = 0, all_;
};

}  // namespace

TwoPhaseRenameError TwoPhaseRenameError::sourceInUse(const std::filesystem::path& source) {
    return {
        Reason::sourceInUse, fmt::format("{} is being saved by another program.", fileNameText(source)), source, {}};
}
TwoPhaseRenameError TwoPhaseRenameError::journalNotWritten(const std::filesystem::path& folder, std::string_view why) {
    return {Reason::journalNotWritten,
            fmt::format("Files in {} cannot be renamed: {}.", pathText(folder), why),
            folder,
            {}};
}
TwoPhaseRenameError TwoPhaseRenameError::rollbackFailed(std::string original, std::vector<Stray> strays) {
    return {Reason::rollbackFailed, std::move(original), {}, std::move(strays)};
}

void runTwoPhaseRename(FileOps& ops, const std::vector<RenameMove>& moves, const TaskContext& task) {
    if (moves.empty()) return;
    task.checkCancelled();
    const std::vector<FileHandle> locks = lockedSources(ops, moves);
    RenameJournal journal(ops, moves);
    std::vector<Move> taken;
    std::vector<Move> placed;
    taken.reserve(moves.size());
    placed.reserve(moves.size());
    try {
        Advance advance(task, 2 * moves.size());
        for (const RenameMove& move : moves) {
            advance.next(move.source);
            moveKnownAs(move.source, ops, move.source, move.temp);
            taken.push_back({move.source, move.temp});
        }
        journal.enter(JournalPhase::puttingInPlace);
        for (const RenameMove& move : moves) {
            advance.next(move.destination);
            moveKnownAs(move.destination, ops, move.temp, move.destination);
            placed.push_back({move.temp, move.destination});
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
        // With files astray the journal stays: the next opening of the folder tries again.
        if (undo.failed()) throw TwoPhaseRenameError::rollbackFailed(original, undo.strays(moves));
        journal.retire();
        throw;
    }
    journal.retire();
}

}  // namespace dravik
