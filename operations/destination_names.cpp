#include "operations/destination_names.h"

#include "base/paths.h"

#include <algorithm>

#include <fmt/format.h>

namespace dravik::OperationsAudio {
namespace {

std::set<std::string> namesIn(const std::filesystem::path& folder) {
    std::set<std::string> names;
    std::error_code error;
    // A folder that cannot be listed says nothing; the names are looked at one by one anyway.
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
        names.insert(normalisedPath(entry->path()));
    return names;
}

}  // namespace

bool DestinationNames::isTaken(const std::set<std::string>& inFolder, const std::filesystem::path& path) const {
    const std::string name = normalisedPath(path);
    return planned_.contains(name) || inFolder.contains(name) || pathExists(path);
}

std::vector<std::filesystem::path> DestinationNames::plan(const std::filesystem::path& folder, std::string_view base,
                                                          const std::vector<std::string>& suffixes) {
    const auto [entry, isNew] = folders_.try_emplace(normalisedPath(folder));
    if (isNew) entry->second = namesIn(folder.empty() ? "." : folder);
    for (int number = 0;; ++number) {
        std::vector<std::filesystem::path> candidates;
        for (const std::string& suffix : suffixes) {
            candidates.push_back(folder / (number == 0 ? fmt::format("{}{}", base, suffix)
                                                       : fmt::format("{}-{}{}", base, number, suffix)));
        }
        const bool taken = std::any_of(candidates.begin(), candidates.end(),
                                       [&](const std::filesystem::path& path) { return isTaken(entry->second, path); });
        if (taken) continue;
        for (const std::filesystem::path& candidate : candidates)
            planned_.insert(normalisedPath(candidate));
        return candidates;
    }
}

}  // namespace dravik::OperationsAudio
