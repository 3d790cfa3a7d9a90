#include "cli/take_selection.h"

#include "cli/opened_folder.h"

#include <algorithm>
#include <map>
#include <set>

namespace dravik {
namespace {

/// One way of writing a path. Letter case stays: two names that differ in it may be two files.
std::filesystem::path identity(const std::filesystem::path& path) {
    std::error_code none;
    std::filesystem::path whole = std::filesystem::absolute(path, none).lexically_normal();
    return whole.has_filename() ? whole : whole.parent_path();
}

class Selector {
  public:
    Selector(bool group, bool recover, Services& services) : group_(group), recover_(recover), services_(services) {}

    void add(const std::filesystem::path& path) {
        std::error_code none;
        const bool isFolder = std::filesystem::is_directory(path, none);
        if (recover_) recover(isFolder ? path : path.parent_path());
        if (std::string problem = isFolder ? folderProblem(path) : fileProblem(path); !problem.empty()) {
            selection_.problems.push_back({path, std::move(problem)});
        } else if (isFolder) {
            for (const GroupeFichiers& groupe : takesOf(path))
                take(groupe);
        } else if (!takeSetOf(path)) {
            for (const GroupeFichiers& groupe : readTakes({path}, false, services_))
                take(groupe);
        }
    }
    [[nodiscard]] TakeSelection result() && { return std::move(selection_); }

  private:
    void recover(const std::filesystem::path& folder) {
        const std::filesystem::path place = folder.empty() ? "." : folder;
        std::error_code none;
        if (!std::filesystem::is_directory(place, none) || !recoveredFolders_.insert(identity(place)).second) return;
        if (!recoverAndTell(place, services_)) selection_.recovered = false;
    }

    const std::vector<GroupeFichiers>& takesOf(const std::filesystem::path& folder) {
        const auto [entry, isNew] = folders_.try_emplace(identity(folder.empty() ? "." : folder));
        if (isNew) entry->second = readTakes(filesIn(folder), group_, services_);
        return entry->second;
    }

    bool takeSetOf(const std::filesystem::path& file) {
        if (!group_) return false;
        for (const GroupeFichiers& groupe : takesOf(file.parent_path())) {
            const bool holds =
                std::any_of(groupe.fichiers.begin(), groupe.fichiers.end(),
                            [&](const InfoFichier& fichier) { return fichier.url.filename() == file.filename(); });
            if (!holds) continue;
            take(groupe);
            return true;
        }
        return false;
    }

    void take(const GroupeFichiers& groupe) {
        if (taken_.insert(identity(groupe.fichiers.front().url)).second) selection_.groupes.push_back(groupe);
    }

    bool group_;
    bool recover_;
    Services& services_;
    std::map<std::filesystem::path, std::vector<GroupeFichiers>> folders_;
    std::set<std::filesystem::path> recoveredFolders_;
    std::set<std::filesystem::path> taken_;
    TakeSelection selection_;
};

}  // namespace

TakeSelection selectTakes(const std::vector<std::filesystem::path>& paths, bool group, bool recover,
                          Services& services) {
    Selector selector(group, recover, services);
    for (const std::filesystem::path& path : paths)
        selector.add(path);
    return std::move(selector).result();
}

}  // namespace dravik
