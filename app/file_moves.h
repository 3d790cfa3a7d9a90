#pragma once

#include <filesystem>
#include <map>

namespace dravik {

/// New names of files, by the old ones.
using FileMoves = std::map<std::filesystem::path, std::filesystem::path>;

}  // namespace dravik
