#pragma once

#include "model/groupe_fichiers.h"

#include <optional>
#include <string>
#include <vector>

namespace dravik {

/// Takes for people: one line a take. Pure functions.

[[nodiscard]] std::string takeTable(const std::vector<GroupeFichiers>& groupes, std::optional<int> width, bool colour);

/// "24 takes, 63 files, 1:52, 48.2 MB, recorded 2024-05-14, project The Long Tide"
[[nodiscard]] std::string takeSummary(const std::vector<GroupeFichiers>& groupes);

}  // namespace dravik
