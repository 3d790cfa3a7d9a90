#pragma once

#include "operations/destination_names.h"
#include "operations/operation_plan.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace dravik::OperationsAudio {

/// Output channel k takes source channel mapping[k], both from 0.
using ChannelMapping = std::vector<int>;

/// What putting a take's tracks into another order would make: of a poly file one "_order" file, of a mono set one
/// "_order_01" file a track. Tracks are numbered anew in their new order unless `preserveTrackNumbers`, with which each
/// keeps its own number. A mapping that changes nothing gives a plan without outputs. Throws OperationAudioError,
/// std::filesystem::filesystem_error.
[[nodiscard]] OperationPlan planReorder(FileOps& ops, const GroupeFichiers& groupe, const ChannelMapping& mapping,
                                        const std::optional<std::filesystem::path>& dossier, bool preserveTrackNumbers,
                                        DestinationNames& names);

/// The files that reordering a mono set would make; none when the mapping or the take does not qualify. Reads no
/// recording.
[[nodiscard]] std::vector<std::filesystem::path> reorderPreview(const GroupeFichiers& groupe,
                                                                const ChannelMapping& mapping,
                                                                const std::optional<std::filesystem::path>& dossier);

}  // namespace dravik::OperationsAudio
