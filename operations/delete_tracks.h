#pragma once

#include "operations/destination_names.h"
#include "operations/operation_plan.h"

#include <filesystem>
#include <optional>
#include <set>

namespace dravik::OperationsAudio {

/// What a poly file without some of its channels (from 0) would be: one "_del" file with the others in their order. The
/// tracks that remain keep their numbers, as the recorder counted them. Throws OperationAudioError,
/// std::filesystem::filesystem_error.
[[nodiscard]] OperationPlan planDeleteTracks(FileOps& ops, const GroupeFichiers& groupe, const std::set<int>& canaux,
                                             const std::optional<std::filesystem::path>& dossier,
                                             DestinationNames& names);

}  // namespace dravik::OperationsAudio
