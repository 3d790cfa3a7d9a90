#pragma once

#include "cli/services.h"
#include "model/groupe_fichiers.h"

#include <filesystem>
#include <string>
#include <vector>

namespace dravik {

/// What every command that opens a folder does alike.

/// Puts right what a killed run left in the folder and says so on standard error. True when nothing is left to do.
bool recoverAndTell(const std::filesystem::path& folder, Services& services);

/// Why the path cannot be used, as a sentence; empty when it leads to a folder, or to a regular file where that is
/// asked for.
[[nodiscard]] std::string folderProblem(const std::filesystem::path& path);
[[nodiscard]] std::string fileProblem(const std::filesystem::path& path);

/// Probes the files, with a progress bar, and groups them. Throws Cancelled.
[[nodiscard]] std::vector<GroupeFichiers> readTakes(const std::vector<std::filesystem::path>& files, bool group,
                                                    Services& services);

/// The audio files of a folder under the name by which the user called it: "" stands for the current folder, whose
/// files have no folder before their names.
[[nodiscard]] std::vector<std::filesystem::path> filesIn(const std::filesystem::path& folder);

}  // namespace dravik
