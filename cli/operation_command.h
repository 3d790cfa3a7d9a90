#pragma once

#include "cli/track_commands.h"
#include "operations/run_preview.h"

#include <functional>
#include <string>
#include <vector>

namespace dravik {

/// How a command that makes new files out of takes goes: choose the takes, plan, show or do, tell.

/// What a command over tracks has of its own.
struct TrackCommand {
    std::string verb;          ///< for the progress bar: "Merging"
    std::string noneEligible;  ///< said when no take of the folders can be used, with the reason
    std::string why;
    /// Takes of a folder that are not are passed over, and named; a file that was named is tried.
    std::function<bool(const GroupeFichiers&)> isEligible;
    /// Throws UsageError; may be absent.
    std::function<void(const std::vector<GroupeFichiers>&)> checkSelection;
    OperationsAudio::GroupPlanner planner;
};

/// Any of them.
struct OperationCommand {
    std::string verb, noneEligible, why;
    std::function<bool(const GroupeFichiers&)> isEligible;
    std::function<void(const std::vector<GroupeFichiers>&)> checkSelection;
    std::function<RunPreview(const std::vector<GroupeFichiers>&, const TaskContext&)> preview;
    std::function<RunOutcome(const std::vector<GroupeFichiers>&, const TaskContext&)> run;
};
[[nodiscard]] ExitCode runOperationCommand(const OperationOptions& options, const OperationCommand& command,
                                           Services& services);
[[nodiscard]] ExitCode runTrackCommand(const OperationOptions& options, const TrackCommand& command,
                                       Services& services);

/// The takes that such a command works on.
struct OperationTakes {
    std::vector<GroupeFichiers> groupes;
    bool refused = false;             ///< a path or the destination cannot be used: it was told, nothing is to be done
    bool recovered = true;            ///< see TakeSelection
    std::vector<std::string> passed;  ///< names of those that cannot be used and were not asked for by name
};
[[nodiscard]] OperationTakes chooseTakes(const OperationOptions& options,
                                         const std::function<bool(const GroupeFichiers&)>& isEligible,
                                         Services& services);

/// How a document names a take: the path of its only file, or for a mono set its name in its folder.
[[nodiscard]] std::filesystem::path sourceOf(const GroupeFichiers& groupe);

/// What became of one take, for the JSON document of these commands.
struct OperationLine {
    std::filesystem::path source;
    std::vector<std::filesystem::path> outputs;
    bool ok = true;
    std::string message;
};
[[nodiscard]] std::string operationJson(const std::vector<OperationLine>& lines);

/// Tells the outcome of a run over these takes, on standard output and standard error, and what it means to the shell.
[[nodiscard]] ExitCode tellOutcome(const RunOutcome& outcome, const std::vector<GroupeFichiers>& groupes, bool json,
                                   Console& console);

}  // namespace dravik
