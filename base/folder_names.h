#pragma once

#include <filesystem>
#include <map>
#include <set>
#include <string>

namespace dravik {

/// Which names stand in folders, compared as paths are compared everywhere (normalisedPath): letter case does not
/// count, also on volumes that tell it apart. Each folder is listed once, when it is first asked for, so that a plan
/// for a long day costs one listing; what changes afterwards is not seen. A folder that cannot be listed holds nothing.
/// Not for several threads.
class FolderNames {
  public:
    /// Does anything in its folder have this name? Links and folders count.
    [[nodiscard]] bool holds(const std::filesystem::path& file);

  private:
    std::map<std::string, std::set<std::string>> names_;
};

}  // namespace dravik
