#include "operations/operation_run.h"

#include "base/paths.h"

#include <algorithm>

namespace dravik {
namespace OperationsAudio {
namespace {

/// The part of the whole that an item is.
ProgressSink partOf(const ProgressSink& whole, std::uint64_t before, std::uint64_t bytes, std::uint64_t all) {
    if (!whole) return {};
    return [&whole, before, bytes, all](const Progress& part) {
        const double share =
            part.allBytes == 0 ? 0.0 : static_cast<double>(part.doneBytes) / static_cast<double>(part.allBytes);
        const auto done = static_cast<std::uint64_t>(std::min(share, 1.0) * static_cast<double>(bytes));
        whole({before + done, all, part.currentName});
    };
}

}  // namespace

RunOutcome runOperation(FileOps& ops, const std::vector<OperationItem>& items, const TaskContext& task) {
    RunOutcome outcome;
    std::uint64_t all = 0;
    for (const OperationItem& item : items)
        all += item.bytes;
    std::uint64_t before = 0;
    for (const OperationItem& item : items) {
        if (task.token != nullptr && task.token->isCancelled()) {
            outcome.cancelled = true;
            break;
        }
        OperationAudioResult result;
        result.id = Uuid::random();
        result.sourceName = item.sourceName;
        FolderSyncs folders;
        bool begun = false;
        const TaskContext part{task.token, partOf(task.report, before, item.bytes, all)};
        try {
            result.message = item.work({ops, part, folders, result.destinationURLs, begun});
            result.success = true;
        } catch (const Cancelled& cancel) {
            result.message = cancel.what();
            outcome.cancelled = true;
        } catch (const std::exception& error) {
            result.message = userText(error);
            if (!begun) ++outcome.refused;
        }
        try {
            folders.syncAll(ops);
        } catch (const std::exception& error) {
            if (result.success) result.message = userText(error);
            result.success = false;
        }
        if (!result.destinationURLs.empty()) result.destinationURL = result.destinationURLs.front();
        before += item.bytes;
        if (!outcome.cancelled || !result.destinationURLs.empty()) outcome.results.push_back(std::move(result));
        if (outcome.cancelled) break;
    }
    return outcome;
}

std::vector<PlannedGroup> planGroups(FileOps& ops, const std::vector<GroupeFichiers>& groupes,
                                     const GroupPlanner& planner, const TaskContext& task) {
    std::vector<PlannedGroup> planned;
    DestinationNames names;
    for (const GroupeFichiers& groupe : groupes) {
        task.checkCancelled();
        PlannedGroup& one = planned.emplace_back();
        try {
            one.plan = planner(groupe, names);
            // A long day's heads would take more memory than its audio ever does.
            for (PlannedOutput& output : one.plan.outputs) {
                output.releaseHead();
                ensureCreatable(ops, output.destination);
            }
        } catch (const std::exception& error) {
            one.plan = {};
            one.error = userText(error);
        }
    }
    return planned;
}

RunOutcome runTrackOperation(FileOps& ops, const std::vector<GroupeFichiers>& groupes, const GroupPlanner& planner,
                             const TaskContext& task) {
    const std::vector<PlannedGroup> planned = planGroups(ops, groupes, planner, task);
    std::vector<FileToMake> files;
    for (const PlannedGroup& group : planned) {
        for (const PlannedOutput& output : group.plan.outputs)
            files.push_back({output.destination, output.size()});
    }
    ensureRoomForAll(ops, files);

    DestinationNames names;
    std::vector<OperationItem> items;
    for (std::size_t at = 0; at < groupes.size(); ++at) {
        items.push_back({groupes[at].nom, planned[at].plan.size(), [&, at](const OperationContext& context) {
                             return runPlan(planner(groupes[at], names), context);
                         }});
    }
    return runOperation(ops, items, task);
}

}  // namespace OperationsAudio
}  // namespace dravik
