#include "base/folder_names.h"

#include "base/paths.h"

namespace dravik {

bool FolderNames::holds(const std::filesystem::path& file) {
    const std::filesystem::path folder = folderOf(file);
    const auto [entry, isNew] = names_.try_emplace(normalisedPath(folder));
    if (isNew) {
        std::error_code error;
        for (std::filesystem::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
            entry->second.insert(normalisedPath(it->path()));
        }
    }
    return entry->second.contains(normalisedPath(file));
}

}  // namespace dravik
