#include "editing/rename_takes.h"

#include "base/paths.h"
#include "editing/save_rename_plan.h"
#include "model/folder_scan.h"
#include "model/mono_name.h"
#include "model/probe.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>

namespace dravik {
namespace {

/// Only linear WAV files make a take with what is renamed here; everything else counts as a file that cannot be read.
class NoCodecs final : public AudioFileReader {
  public:
    [[nodiscard]] std::optional<AudioFormat> format(const std::filesystem::path&) const noexcept override {
        return std::nullopt;
    }
};

/// One file of a folder: of the plan, or beside it.
struct Member {
    InfoFichier before, after;
    std::optional<Uuid> groupe;
    bool renamed = false;
};

/// What takes the files of a folder make, by the files' positions in their list.
class Grouping {
  public:
    explicit Grouping(const std::vector<InfoFichier>& fichiers) : groupes_(construireGroupes(fichiers, true)) {
        std::map<std::filesystem::path, std::size_t> takes;
        for (std::size_t take = 0; take < groupes_.size(); ++take) {
            for (const InfoFichier& fichier : groupes_[take].fichiers)
                takes[fichier.url] = take;
        }
        // A file that cannot be read is a group of its own, but belongs where it is missed.
        for (std::size_t take = 0; take < groupes_.size(); ++take) {
            for (const UnreadableTrack& track : groupes_[take].unreadableTracks)
                takes[track.url] = take;
        }
        for (const InfoFichier& fichier : fichiers)
            takeOf_.push_back(takes.at(fichier.url));
    }
    [[nodiscard]] bool together(std::size_t a, std::size_t b) const { return takeOf_[a] == takeOf_[b]; }
    [[nodiscard]] const std::string& nameOf(std::size_t file) const { return groupes_[takeOf_[file]].nom; }

  private:
    std::vector<GroupeFichiers> groupes_;
    std::vector<std::size_t> takeOf_;
};

/// The base names that a file's name can be read to have.
std::vector<std::string> baseKeys(std::string_view nom) {
    std::vector<std::string> keys;
    if (const auto found = numeroPisteMono(nom)) keys.push_back(baseNameKey(found->base));
    if (const auto found = familyTrackNumber(nom)) keys.push_back(baseNameKey(found->base));
    return keys;
}

/// Of a file that cannot be read the family is not known, as when it is looked for.
std::optional<int> trackNumber(const InfoFichier& fichier) {
    const auto suffix = trackSuffix(fichier.nom, fichier.familleUID.has_value() || fichier.channels == 0);
    return suffix ? std::optional(suffix->nom.numero) : std::nullopt;
}

/// Adds the files of the folder that are not in the plan and might make a take with one that is renamed.
void addNeighbours(const std::filesystem::path& folder, std::vector<Member>& members) {
    std::set<std::string> wanted;
    std::set<std::string> planned;
    for (const Member& member : members) {
        planned.insert(normalisedPath(member.before.url));
        if (!member.renamed) continue;
        for (std::string& key : baseKeys(member.after.nom))
            wanted.insert(std::move(key));
    }
    if (wanted.empty()) return;
    const NoCodecs none;
    for (const std::filesystem::path& file : listerFichiers(folder)) {
        const std::vector<std::string> keys = baseKeys(baseNameText(file));
        const bool fits = std::any_of(keys.begin(), keys.end(), [&](const auto& key) { return wanted.contains(key); });
        if (!fits || planned.contains(normalisedPath(file))) continue;
        const InfoFichier info = analyserFichier(file, none);
        members.push_back({info, info, std::nullopt, false});
    }
}

void checkFolder(const std::vector<Member>& members) {
    std::vector<InfoFichier> fichiersBefore, fichiersAfter;
    for (const Member& member : members) {
        fichiersBefore.push_back(member.before);
        fichiersAfter.push_back(member.after);
    }
    const Grouping before(fichiersBefore);
    const Grouping after(fichiersAfter);
    const auto ofOneTake = [&](std::size_t one, std::size_t other) {
        return members[one].groupe && members[one].groupe == members[other].groupe;
    };
    const auto forEachPair = [&](auto check) {
        for (std::size_t one = 0; one < members.size(); ++one) {
            for (std::size_t other = 0; members[one].renamed && other < members.size(); ++other) {
                if (one != other) check(one, other);
            }
        }
    };
    // First, since a file that joins another take may well leave its own.
    forEachPair([&](std::size_t one, std::size_t other) {
        if (after.together(one, other) && !before.together(one, other) && !ofOneTake(one, other)) {
            throw MainSaveRenameError::takesWouldMerge(before.nameOf(other));
        }
    });
    std::vector<bool> renumbered;
    for (const Member& member : members)
        renumbered.push_back(member.renamed && trackNumber(member.before) != trackNumber(member.after));
    forEachPair([&](std::size_t one, std::size_t other) {
        if (ofOneTake(one, other) && before.together(one, other) && (!after.together(one, other) || renumbered[one])) {
            throw MainSaveRenameError::takeWouldBreak(before.nameOf(one));
        }
    });
}

}  // namespace

void checkTakes(const std::vector<SaveItem>& items) {
    std::map<std::filesystem::path, std::vector<Member>> folders;
    std::set<std::filesystem::path> concerned;
    for (const SaveItem& item : items) {
        Member member{item.fichier, item.fichier, item.groupe, item.newName.has_value()};
        const std::filesystem::path folder = folderOf(item.fichier.url);
        member.before.nom = baseNameText(item.fichier.url);
        if (item.newName) {
            concerned.insert(folder);
            member.after.nom = *item.newName;
            member.after.url = folder / (*item.newName + item.fichier.url.extension().native());
        }
        folders[folder].push_back(std::move(member));
    }
    for (const std::filesystem::path& folder : concerned) {
        addNeighbours(folder, folders[folder]);
        checkFolder(folders[folder]);
    }
}

}  // namespace dravik
