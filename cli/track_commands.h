#pragma once

#include "cli/exit_code.h"
#include "cli/services.h"

#include <filesystem>
#include <optional>
#include <set>
#include <vector>

namespace dravik {

/// What all commands that make new files out of takes are given.
struct OperationOptions {
    std::vector<std::filesystem::path> paths;
    std::optional<std::filesystem::path> dest;  ///< folder of the new files; absent: that of each take
    bool dryRun = false;
    bool json = false;
};

/// Tracks and channels are counted from 0 here, from 1 on the command line.
struct ReorderOptions : OperationOptions {
    std::vector<int> order;
    bool preserveTrackNumbers = false;
};
struct DeleteTracksOptions : OperationOptions {
    std::set<int> tracks;
};
struct SplitOptions : OperationOptions {
    std::optional<std::set<int>> tracks;  ///< absent: all of them
    bool stereo12 = false;
};
struct MergeOptions : OperationOptions {
    std::vector<std::filesystem::path> excluded;
};

/// Each throws UsageError and what cannot be told as the failure of a single take (no room, no more output).
[[nodiscard]] ExitCode runReorder(const ReorderOptions& options, Services& services);
[[nodiscard]] ExitCode runDeleteTracks(const DeleteTracksOptions& options, Services& services);
[[nodiscard]] ExitCode runSplit(const SplitOptions& options, Services& services);
[[nodiscard]] ExitCode runMerge(const MergeOptions& options, Services& services);

}  // namespace dravik
