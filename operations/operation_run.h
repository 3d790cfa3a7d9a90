#pragma once

#include "operations/destination_names.h"
#include "operations/operation_audio_result.h"
#include "operations/operation_plan.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace dravik {

/// The share of one group, or file, in a run.
struct OperationItem {
    std::string sourceName;
    std::uint64_t bytes = 0;  ///< about how much it writes: its part of the progress
    /// Does the work and gives the line for the user. Whatever it throws is that line instead.
    std::function<std::string(const OperationContext&)> work;
};

/// What came of a run.
struct RunOutcome {
    std::vector<OperationAudioResult> results;  ///< in the order of the items, one for each that was begun
    bool cancelled = false;                     ///< the items behind the last result were not begun
    std::size_t refused = 0;                    ///< failures before anything of the item was begun
};

namespace OperationsAudio {

/// One item after the other; one that fails does not stop the next. After each the names of its files are on the
/// medium. A cancel takes back the file in progress and keeps those that were completed: the item it met has a result
/// only when there are any. `task.report` gets the progress of the whole run. Never throws what an item throws.
[[nodiscard]] RunOutcome runOperation(FileOps& ops, const std::vector<OperationItem>& items, const TaskContext& task);

/// Plans one track operation on one group; throws what the operation throws.
using GroupPlanner = std::function<OperationPlan(const GroupeFichiers&, DestinationNames&)>;

/// What an operation would do with one group: a plan, whose heads are left out, or why it cannot.
struct PlannedGroup {
    OperationPlan plan;
    std::string error;  ///< empty when it can
};
/// Plans every group as a run would, names included, and finds what a run would refuse; nothing is written. Throws
/// Cancelled only.
[[nodiscard]] std::vector<PlannedGroup> planGroups(FileOps& ops, const std::vector<GroupeFichiers>& groupes,
                                                   const GroupPlanner& planner, const TaskContext& task);

/// Runs a track operation over the groups. Room for all outputs is looked for before the first is begun: throws
/// std::filesystem::filesystem_error when there is not enough, or Cancelled before the first group is begun.
[[nodiscard]] RunOutcome runTrackOperation(FileOps& ops, const std::vector<GroupeFichiers>& groupes,
                                           const GroupPlanner& planner, const TaskContext& task);

}  // namespace OperationsAudio
}  // namespace dravik
