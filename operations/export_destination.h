#pragma once

#include "model/groupe_fichiers.h"

#include <filesystem>
#include <string>

namespace dravik::OperationsAudio {

/// Where the export of a group goes: `name` in `folder`. Throws OperationAudioError when that is one of its sources, or
/// when a source does not exist; std::filesystem::filesystem_error when something else stands there already.
[[nodiscard]] std::filesystem::path exportDestination(const GroupeFichiers& groupe, const std::filesystem::path& folder,
                                                      const std::string& name);

}  // namespace dravik::OperationsAudio
