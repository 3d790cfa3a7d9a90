#include "editing/save_rename_plan.h"

#include "base/folder_names.h"
#include "base/paths.h"
#include "base/temp_name.h"
#include "base/text.h"
#include "model/mono_name.h"

#include <algorithm>
#include <set>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace dravik {
namespace {

/// Names that are reserved or taken for hidden files in one entry before the plan is given up.
constexpr int temporaryNameAttempts = 1000;
/// What every file system of recorders and computers takes, less room for a track suffix and an extension.
constexpr std::size_t maxBaseNameBytes = 220;

bool holdsOnlyNameBytes(std::string_view nom) noexcept {
    return !nom.empty() && nom.front() != '.' &&
           nom.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

}  // namespace

bool MainSaveRenamePlanEntry::moves() const { return normalisedPath(source) != normalisedPath(destination); }

MainSaveRenameError MainSaveRenameError::duplicateDestination(std::string_view name) {
    return {Reason::duplicateDestination,
            fmt::format("Rename would create duplicate files named {}. No files were changed.", name)};
}
MainSaveRenameError MainSaveRenameError::destinationExists(const std::filesystem::path& path) {
    return {Reason::destinationExists,
            fmt::format("A file already exists at {}. No files were changed.", pathText(path))};
}
MainSaveRenameError MainSaveRenameError::sourceMissing(const std::filesystem::path& path) {
    return {Reason::sourceMissing, fmt::format("Source file is missing: {}. No files were changed.", pathText(path))};
}
MainSaveRenameError MainSaveRenameError::temporaryNameUnavailable(std::string_view name) {
    return {Reason::temporaryNameUnavailable,
            fmt::format("Unable to create a safe temporary rename name for {}. No files were changed.", name)};
}
MainSaveRenameError MainSaveRenameError::rollbackFailed(std::string_view original,
                                                        const std::vector<std::string>& failures) {
    return {Reason::rollbackFailed,
            fmt::format("Rename failed and Dravik could not fully restore every file.\n\nOriginal error: {}\n\n"
                        "Recovery details:\n{}",
                        original, fmt::join(failures, "\n"))};
}
MainSaveRenameError MainSaveRenameError::metadataAfterRenameFailed(std::string_view message) {
    return {Reason::metadataAfterRenameFailed,
            fmt::format("Files were renamed, but metadata could not be saved on every file.\n\n{}", message)};
}

MainSaveRenameError MainSaveRenameError::impossibleName(std::string_view name) {
    return {Reason::impossibleName, fmt::format("A file cannot be named \"{}\". No files were changed.", name)};
}
MainSaveRenameError MainSaveRenameError::sourceInUse(std::string_view sentence) {
    return {Reason::sourceInUse, fmt::format("{} No files were changed.", sentence)};
}

MainSaveRenameError MainSaveRenameError::takeWouldBreak(std::string_view take) {
    return {Reason::takeWouldBreak,
            fmt::format("Under the new names the files of {} would no longer be one take with the same track numbers. "
                        "No files were changed.",
                        take)};
}
MainSaveRenameError MainSaveRenameError::takesWouldMerge(std::string_view take) {
    return {
        Reason::takesWouldMerge,
        fmt::format("Under the new names files would become a part of another take, {}. No files were changed.", take)};
}
MainSaveRenameError MainSaveRenameError::journalNotWritten(std::string_view sentence) {
    return {Reason::journalNotWritten, fmt::format("{} No files were changed.", sentence)};
}

bool isValidName(std::string_view nom) noexcept {
    // Nobody types a line end into a name; one that comes with a paste would be in every list from then on.
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; };
    return holdsOnlyNameBytes(nom) && !trimmed(nom).empty() && std::none_of(nom.begin(), nom.end(), isControl) &&
           nom.size() <= maxBaseNameBytes;
}

std::string newBaseName(const GroupeFichiers& groupe, std::size_t position, std::string_view newName) {
    std::string nom(newName);
    if (!groupe.isMonoSet()) return nom;
    const InfoFichier& fichier = groupe.fichiers.at(position);
    const std::string& ancien = fichier.nom;
    if (const auto found = trackSuffix(ancien, fichier.familleUID.has_value())) return nom.append(found->nom.suffixe);
    if (const auto found = familyTrackNumber(ancien)) return nom.append(found->suffixe);
    if (position >= 1) return nom + fmt::format("_{:02d}", position);
    const std::string_view commun = withoutTrailingSeparators(groupe.nom);
    if (equalsIgnoringAsciiCase(std::string_view(ancien).substr(0, commun.size()), commun)) {
        nom.append(ancien.substr(commun.size()));
    }
    return nom;
}

std::optional<std::string> newUnreadableName(const GroupeFichiers& groupe, const UnreadableTrack& track,
                                             std::string_view newName) {
    if (!groupe.isMonoSet()) return std::nullopt;
    const std::string ancien = baseNameText(track.url);
    const auto found = trackSuffix(ancien, true);
    if (!found || baseNameKey(found->nom.base) != baseNameKey(groupe.nom)) return std::nullopt;
    return std::string(newName).append(found->nom.suffixe);
}

bool isSameName(std::string_view a, std::string_view b) { return foldedCase(a) == foldedCase(b); }

std::vector<RenameRequest> renommerGroupe(const GroupeFichiers& groupe, std::string_view newName) {
    std::vector<RenameRequest> requests;
    for (std::size_t position = 0; position < groupe.fichiers.size(); ++position) {
        requests.push_back({groupe.fichiers[position], newBaseName(groupe, position, newName)});
    }
    return requests;
}

std::vector<MainSaveRenamePlanEntry> planRenames(const std::vector<RenameRequest>& requests) {
    std::vector<MainSaveRenamePlanEntry> plan;
    std::set<std::string> destinations;
    std::set<std::string> sources;
    for (const RenameRequest& request : requests) {
        MainSaveRenamePlanEntry entry;
        entry.source = request.fichier.url;
        const std::string name = request.newName + entry.source.extension().native();
        if (!holdsOnlyNameBytes(name) || name.size() > maxFileNameBytes) {
            throw MainSaveRenameError::impossibleName(name);
        }
        entry.destination = folderOf(entry.source) / name;
        entry.fichier = request.fichier;
        if (!destinations.insert(normalisedPath(entry.destination)).second) {
            throw MainSaveRenameError::duplicateDestination(fileNameText(entry.destination));
        }
        sources.insert(normalisedPath(entry.source));
        plan.push_back(std::move(entry));
    }

    FolderNames folders;
    for (const MainSaveRenamePlanEntry& entry : plan) {
        if (!pathExists(entry.source)) throw MainSaveRenameError::sourceMissing(entry.source);
        if (folders.holds(entry.destination) && !sources.contains(normalisedPath(entry.destination))) {
            throw MainSaveRenameError::destinationExists(entry.destination);
        }
    }

    std::set<std::string> reserved;
    for (MainSaveRenamePlanEntry& entry : plan) {
        for (int attempt = 0; entry.temp.empty(); ++attempt) {
            if (attempt == temporaryNameAttempts) {
                throw MainSaveRenameError::temporaryNameUnavailable(fileNameText(entry.source));
            }
            const std::filesystem::path candidate =
                folderOf(entry.source) / freshRenameName(entry.source.extension().native());
            if (folders.holds(candidate) || !reserved.insert(normalisedPath(candidate)).second) continue;
            entry.temp = candidate;
        }
    }
    return plan;
}

}  // namespace dravik
