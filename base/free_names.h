#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace dravik {

/// Names for new files that stand together, none of which is taken in the folder, letter case ignored: base + suffix
/// for each suffix, or where one of them is taken, base + "-1" + suffix for all of them, then "-2", and so on. Nothing
/// is created: that a name is still free when its file is put in place is SafeFile's promise.
[[nodiscard]] std::vector<std::filesystem::path> freeNames(const std::filesystem::path& folder, std::string_view base,
                                                           const std::vector<std::string>& suffixes);

}  // namespace dravik
