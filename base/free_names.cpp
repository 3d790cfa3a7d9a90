#include "base/free_names.h"

#include "base/paths.h"
#include "base/text.h"

#include <algorithm>
#include <set>

#include <fmt/format.h>

namespace dravik {

std::vector<std::filesystem::path> freeNames(const std::filesystem::path& folder, std::string_view base,
                                             const std::vector<std::string>& suffixes) {
    std::set<std::string> taken;
    std::error_code error;
    const std::filesystem::path listed = folder.empty() ? "." : folder;
    // A folder that cannot be listed says nothing; the names are looked at one by one anyway.
    for (std::filesystem::directory_iterator entry(listed, error), end; !error && entry != end; entry.increment(error))
        taken.insert(foldedCase(fileNameText(entry->path())));
    for (int number = 0;; ++number) {
        std::vector<std::filesystem::path> names;
        for (const std::string& suffix : suffixes) {
            names.push_back(folder / (number == 0 ? fmt::format("{}{}", base, suffix)
                                                  : fmt::format("{}-{}{}", base, number, suffix)));
        }
        const bool isTaken = std::any_of(names.begin(), names.end(), [&](const std::filesystem::path& name) {
            return taken.contains(foldedCase(fileNameText(name))) || pathExists(name);
        });
        if (!isTaken) return names;
    }
}

}  // namespace dravik
