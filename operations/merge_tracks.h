#pragma once

#include "operations/destination_names.h"
#include "operations/operation_plan.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace dravik::OperationsAudio {

/// What the files of a mono set, but for the excluded ones, would be as one poly file "_merge": tracks 1 to N in the
/// order of the set, everything else as in its first file. A set with a file that cannot be read is refused unless
/// that file is excluded. Throws OperationAudioError, std::filesystem::filesystem_error.
[[nodiscard]] OperationPlan planMerge(FileOps& ops, const GroupeFichiers& groupe,
                                      const std::vector<std::filesystem::path>& exclus,
                                      const std::optional<std::filesystem::path>& dossier, DestinationNames& names);

}  // namespace dravik::OperationsAudio
