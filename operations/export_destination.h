#pragma once

#include "base/file_ops.h"
#include "model/groupe_fichiers.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dravik::OperationsAudio {

/// Where the export of a group goes: `name` in `folder`. Throws OperationAudioError when that is one of its sources, or
/// when a source does not exist; std::filesystem::filesystem_error when something else stands there already, or no file
/// of that name can be made there.
[[nodiscard]] std::filesystem::path exportDestination(FileOps& ops, const GroupeFichiers& groupe,
                                                      const std::filesystem::path& folder, const std::string& name);

/// Where the exports of a run go, one a group and in their order: under names that nothing has yet. Beside its take a
/// new file is told apart by "_export"; in another folder it has the take's name. `folder` absent: that of each take.
/// `name`, with or without the extension, is taken instead. Nothing is opened.
[[nodiscard]] std::vector<std::filesystem::path> exportDestinations(const std::vector<GroupeFichiers>& groupes,
                                                                    std::string_view extension,
                                                                    const std::optional<std::filesystem::path>& folder,
                                                                    const std::optional<std::string>& name = {});

}  // namespace dravik::OperationsAudio
