#include "cli/track_commands.h"

#include "base/paths.h"
#include "cli/display_text.h"
#include "cli/operation_command.h"
#include "operations/delete_tracks.h"
#include "operations/merge_tracks.h"
#include "operations/reorder_tracks.h"
#include "operations/split_tracks.h"
#include "operations/track_eligibility.h"

#include <algorithm>

#include <fmt/format.h>

namespace dravik {
namespace {

using namespace OperationsAudio;

std::set<int> channelsToSplit(const SplitOptions& options, const GroupeFichiers& groupe) {
    if (options.tracks) return *options.tracks;
    std::set<int> all;
    for (int canal = 0; canal < groupe.fichiers.front().channels; ++canal)
        all.insert(canal);
    return all;
}

}  // namespace

ExitCode runReorder(const ReorderOptions& options, Services& services) {
    return runTrackCommand(options,
                           {.verb = "Reordering",
                            .noneEligible = "No Compatible Files for Track Reorder",
                            .why = "Reorder Tracks requires poly WAV files or mono groups with multiple tracks.",
                            .isEligible = isReorderable,
                            .checkSelection = {},
                            .planner =
                                [&](const GroupeFichiers& groupe, DestinationNames& names) {
                                    return planReorder(services.files, groupe, options.order, options.dest,
                                                       options.preserveTrackNumbers, names);
                                }},
                           services);
}

ExitCode runDeleteTracks(const DeleteTracksOptions& options, Services& services) {
    return runTrackCommand(options,
                           {.verb = "Deleting",
                            .noneEligible = "No Compatible Files for Track Deletion",
                            .why = "Track deletion requires poly WAV files with multiple tracks.",
                            .isEligible = isPolyWave,
                            .checkSelection = {},
                            .planner =
                                [&](const GroupeFichiers& groupe, DestinationNames& names) {
                                    return planDeleteTracks(services.files, groupe, options.tracks, options.dest,
                                                            names);
                                }},
                           services);
}

ExitCode runSplit(const SplitOptions& options, Services& services) {
    return runTrackCommand(options,
                           {.verb = "Splitting",
                            .noneEligible = "No Poly WAV Files to Split",
                            .why = "Split requires poly WAV files with multiple tracks.",
                            .isEligible = isPolyWave,
                            .checkSelection = {},
                            .planner =
                                [&](const GroupeFichiers& groupe, DestinationNames& names) {
                                    return planSplit(services.files,
                                                     {groupe, channelsToSplit(options, groupe), options.stereo12},
                                                     options.dest, names);
                                }},
                           services);
}

ExitCode runMerge(const MergeOptions& options, Services& services) {
    const auto checkExcluded = [&](const std::vector<GroupeFichiers>& groupes) {
        for (const std::filesystem::path& excluded : options.excluded) {
            const std::string wanted = normalisedPath(excluded);
            const auto holdsIt = [&](const GroupeFichiers& groupe) {
                const auto isIt = [&](const auto& file) { return normalisedPath(file.url) == wanted; };
                return std::any_of(groupe.fichiers.begin(), groupe.fichiers.end(), isIt) ||
                       std::any_of(groupe.unreadableTracks.begin(), groupe.unreadableTracks.end(), isIt);
            };
            if (std::none_of(groupes.begin(), groupes.end(), holdsIt)) {
                throw UsageError(fmt::format("--exclude: {} is not a file of these takes.", shown(excluded)));
            }
        }
    };
    return runTrackCommand(options,
                           {.verb = "Merging",
                            .noneEligible = "No Files to Merge",
                            .why = "Merge requires compatible mono WAV files.",
                            .isEligible = isMergeable,
                            .checkSelection = checkExcluded,
                            .planner =
                                [&](const GroupeFichiers& groupe, DestinationNames& names) {
                                    return planMerge(services.files, groupe, options.excluded, options.dest, names);
                                }},
                           services);
}

}  // namespace dravik
