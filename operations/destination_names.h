#pragma once

#include "base/folder_names.h"

#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace dravik::OperationsAudio {

/// The names of the files that a run makes: none that stands in its folder, none that another group of the run was
/// given. Letter case makes no difference. One for a run; a folder is listed once, when it is first asked for. Nothing
/// is created: that a name is still free when its file is put in place is SafeFile's promise.
class DestinationNames {
  public:
    /// One path a suffix ("_split_T01.wav"): base + suffix, or where one of them is taken, base + "-1" + suffix for all
    /// of them, then "-2", and so on. The suffixes must differ by more than letter case.
    [[nodiscard]] std::vector<std::filesystem::path> plan(const std::filesystem::path& folder, std::string_view base,
                                                          const std::vector<std::string>& suffixes);

  private:
    [[nodiscard]] bool isTaken(const std::filesystem::path& path);

    FolderNames folders_;
    std::set<std::string> planned_;  ///< normalised
};

}  // namespace dravik::OperationsAudio
