#pragma once

#include "cli/services.h"
#include "model/groupe_fichiers.h"

#include <filesystem>
#include <string>
#include <vector>

namespace dravik {

/// A path that leads to nothing, and why.
struct PathProblem {
    std::filesystem::path path;
    std::string sentence;
};

/// The takes that the paths of a command stand for.
struct TakeSelection {
    std::vector<GroupeFichiers> groupes;  ///< in the order of the paths, each take once
    std::vector<PathProblem> problems;
    bool recovered = true;  ///< false when something a killed run left could not be put right
};

/// A folder stands for all its takes; a file for the take that it belongs to, or for itself when `group` is false. With
/// `recover`, what killed runs left in the folders concerned is put right first, since it may hold the very file that
/// is asked for; without, nothing is written anywhere. Throws Cancelled.
[[nodiscard]] TakeSelection selectTakes(const std::vector<std::filesystem::path>& paths, bool group, bool recover,
                                        Services& services);

}  // namespace dravik
