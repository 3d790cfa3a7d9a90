#include "cli/take_selection.h"

#include "cli/opened_folder.h"
#include "model/folder_scan.h"

#include <map>
#include <set>
#include <string>
#include <unordered_map>

namespace dravik {
namespace {

/// One way of writing a path. Letter case stays: two names that differ in it may be two files.
std::filesystem::path identity(const std::filesystem::path& path) {
    std::error_code none;
    std::filesystem::path whole = std::filesystem::absolute(path, none).lexically_normal();
    return whole.has_filename() ? whole : whole.parent_path();
}

/// The takes of a folder, and by the name of a file which of them it belongs to: a command may name every file of a
/// long day.
struct FolderTakes {
    std::vector<GroupeFichiers> takes;
    std::unordered_map<std::string, std::size_t> takeOfFile;
};

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
            for (const GroupeFichiers& groupe : takesOf(path).takes)
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

    const FolderTakes& takesOf(const std::filesystem::path& folder) {
        const auto [entry, isNew] = folders_.try_emplace(identity(folder.empty() ? "." : folder));
        FolderTakes& found = entry->second;
        if (!isNew) return found;
        found.takes = readTakes(filesIn(folder), group_, services_);
        countFilesNotThere(found.takes);
        for (std::size_t i = 0; i < found.takes.size(); ++i) {
            for (const InfoFichier& fichier : found.takes[i].fichiers)
                found.takeOfFile.try_emplace(fichier.url.filename().native(), i);
        }
        return found;
    }

    bool takeSetOf(const std::filesystem::path& file) {
        if (!group_) return false;
        const FolderTakes& folder = takesOf(file.parent_path());
        const auto place = folder.takeOfFile.find(file.filename().native());
        if (place == folder.takeOfFile.end()) return false;
        take(folder.takes[place->second]);
        return true;
    }

    void take(const GroupeFichiers& groupe) {
        if (taken_.insert(identity(groupe.fichiers.front().url)).second) selection_.groupes.push_back(groupe);
    }

    bool group_;
    bool recover_;
    Services& services_;
    std::map<std::filesystem::path, FolderTakes> folders_;
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
