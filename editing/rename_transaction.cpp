#include "editing/rename_transaction.h"

#include "base/two_phase_rename.h"

namespace dravik {
namespace {

MainSaveRenameError asSaveError(const TwoPhaseRenameError& error) {
    switch (error.reason()) {
        case TwoPhaseRenameError::Reason::sourceInUse:
            return MainSaveRenameError::sourceInUse(error.what());
        case TwoPhaseRenameError::Reason::journalNotWritten:
            return MainSaveRenameError::journalNotWritten(error.what());
        case TwoPhaseRenameError::Reason::rollbackFailed:
            break;
    }
    std::vector<std::string> failures;
    for (const TwoPhaseRenameError::Stray& stray : error.strays())
        failures.push_back(stray.sentence);
    return MainSaveRenameError::rollbackFailed(error.what(), failures);
}

}  // namespace

std::map<std::filesystem::path, std::filesystem::path> runRenames(FileOps& ops,
                                                                  const std::vector<MainSaveRenamePlanEntry>& plan) {
    std::map<std::filesystem::path, std::filesystem::path> mapping;
    std::vector<RenameMove> moves;
    for (const MainSaveRenamePlanEntry& entry : plan) {
        mapping[entry.source] = entry.moves() ? entry.destination : entry.source;
        if (entry.moves()) moves.push_back({entry.source, entry.temp, entry.destination});
    }
    try {
        runTwoPhaseRename(ops, moves, {});
    } catch (const TwoPhaseRenameError& error) {
        throw asSaveError(error);
    }
    return mapping;
}

}  // namespace dravik
