#pragma once

#include <QString>
#include <filesystem>
#include <set>
#include <vector>

namespace dravik {

/// Folders as the folder browser shows them. Reads names only, never a file. Blocks, so not for the main thread; any
/// other thread; never throws: what cannot be read is empty.

struct SubFolder {
    std::filesystem::path path;
    QString name;
};
/// The folders in this one, links to folders included, in natural order of their names. Hidden ones are left out, but
/// for those that are `shownAnyway`.
[[nodiscard]] std::vector<SubFolder> subFoldersOf(const std::filesystem::path& folder,
                                                  const std::set<std::filesystem::path>& shownAnyway = {});

struct FolderSummary {
    int audioFiles = 0;
    bool hasFolders = false;
};
[[nodiscard]] FolderSummary summaryOf(const std::filesystem::path& folder);

}  // namespace dravik
