#include "operations/destination_names.h"

#include "base/paths.h"

#include <algorithm>

#include <fmt/format.h>

namespace dravik::OperationsAudio {
bool DestinationNames::isTaken(const std::filesystem::path& path) {
    // A folder that cannot be listed says nothing: the names are looked at one by one anyway.
    return planned_.contains(normalisedPath(path)) || folders_.holds(path) || pathExists(path);
}

std::vector<std::filesystem::path> DestinationNames::plan(const std::filesystem::path& folder, std::string_view base,
                                                          const std::vector<std::string>& suffixes) {
    for (int number = 0;; ++number) {
        std::vector<std::filesystem::path> candidates;
        for (const std::string& suffix : suffixes) {
            candidates.push_back(folder / (number == 0 ? fmt::format("{}{}", base, suffix)
                                                       : fmt::format("{}-{}{}", base, number, suffix)));
        }
        const bool taken = std::any_of(candidates.begin(), candidates.end(),
                                       [&](const std::filesystem::path& path) { return isTaken(path); });
        if (taken) continue;
        for (const std::filesystem::path& candidate : candidates)
            planned_.insert(normalisedPath(candidate));
        return candidates;
    }
}

}  // namespace dravik::OperationsAudio
