#include "editing/rename_transaction.h"

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

/// Undoes the moves from the last to the first; says for each file that could not go back where it is now.
std::vector<std::string> undo(FileOps& ops, const std::vector<Move>& moves) {
    std::vector<std::string> failures;
    std::set<std::filesystem::path> notReached;  // where a file would have to be for its earlier move to be undone
    for (auto move = moves.rbegin(); move != moves.rend(); ++move) {
        if (normalisedPath(move->from) == normalisedPath(move->to)) continue;
        if (notReached.contains(move->to)) continue;
        const std::string former = fileNameText(move->from);
        if (pathExists(move->from)) {
            notReached.insert(move->from);
            failures.push_back(
                fmt::format("Could not restore {}: original path already exists. Current file remains at {}.", former,
                            pathText(move->to)));
            continue;
        }
        try {
            ops.renameNoReplace(move->to, move->from);
        } catch (const std::exception& error) {
            notReached.insert(move->from);
            failures.push_back(fmt::format("Could not restore {} from {}: {}", former, fileNameText(move->to),
                                           userText(error)));
        }
    }
    return failures;
}

}  // namespace

std::map<std::filesystem::path, std::filesystem::path> executerPlan(FileOps& ops,
                                                                    const std::vector<MainSaveRenamePlanEntry>& plan) {
    std::map<std::filesystem::path, std::filesystem::path> mapping;
    for (const MainSaveRenamePlanEntry& entry : plan) {
        mapping[entry.source] = entry.moves() ? entry.destination : entry.source;
    }
    if (std::none_of(plan.begin(), plan.end(), [](const auto& entry) { return entry.moves(); })) return mapping;

    RenameJournal journal(ops, plan);
    std::vector<Move> done;
    done.reserve(plan.size() * 2);
    const auto move = [&](const std::filesystem::path& from, const std::filesystem::path& to) {
        ops.renameNoReplace(from, to);
        done.push_back({from, to});
    };
    try {
        for (const MainSaveRenamePlanEntry& entry : plan) {
            if (entry.moves()) move(entry.source, entry.temp);
        }
        journal.enter(JournalPhase::puttingInPlace);
        for (const MainSaveRenamePlanEntry& entry : plan) {
            if (entry.moves()) move(entry.temp, entry.destination);
        }
        journal.syncFolders();
    } catch (const std::exception& error) {
        const std::string original = userText(error);
        if (const std::vector<std::string> failures = undo(ops, done); !failures.empty()) {
            // The journal stays: the next opening of the folder tries again.
            throw MainSaveRenameError::rollbackFailed(original, failures);
        }
        journal.retire();
        throw;
    }
    journal.retire();
    return mapping;
}

}  // namespace dravik
