#include "app/folder_contents.h"

#include "app/text.h"
#include "base/text.h"
#include "model/folder_scan.h"

#include <algorithm>
#include <system_error>

namespace dravik {
namespace fs = std::filesystem;
namespace {

bool isHidden(const fs::directory_entry& entry) { return entry.path().filename().native().starts_with('.'); }

template <typename Visit>
void forEach(const fs::path& folder, Visit visit) {
    std::error_code stop;
    for (fs::directory_iterator it(folder, stop), end; !stop && it != end; it.increment(stop)) {
        visit(*it);
    }
}

bool isFolder(const fs::directory_entry& entry) {
    std::error_code none;
    return entry.is_directory(none);
}

}  // namespace

std::vector<SubFolder> subFoldersOf(const fs::path& folder, const std::set<fs::path>& shownAnyway) {
    std::vector<SubFolder> folders;
    forEach(folder, [&](const fs::directory_entry& entry) {
        if (isHidden(entry) && !shownAnyway.contains(entry.path())) return;
        if (isFolder(entry)) folders.push_back({entry.path(), toQt(entry.path().filename())});
    });
    std::sort(folders.begin(), folders.end(), [](const SubFolder& a, const SubFolder& b) {
        return compareNatural(a.path.filename().native(), b.path.filename().native()) < 0;
    });
    return folders;
}

FolderSummary summaryOf(const fs::path& folder) {
    FolderSummary summary;
    forEach(folder, [&](const fs::directory_entry& entry) {
        if (isHidden(entry)) return;
        // By the name first: most entries are recordings, and the kind of each would have to be asked for.
        if (isListed(entry.path()) && !isFolder(entry)) {
            ++summary.audioFiles;
        } else if (!summary.hasFolders && isFolder(entry)) {
            summary.hasFolders = true;
        }
    });
    return summary;
}

}  // namespace dravik
