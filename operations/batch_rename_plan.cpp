#include "operations/batch_rename_plan.h"

#include "base/paths.h"
#include "base/text.h"
#include "operations/operation_audio_error.h"

#include <algorithm>
#include <map>

#include <fmt/format.h>

namespace dravik {
namespace OperationsAudio {
namespace {

using Kind = RenameConflictCause::Kind;

std::filesystem::path destinationOf(const InfoFichier& fichier, std::string_view name, bool copies,
                                    const std::filesystem::path& destination) {
    // By parent_path: a file named without a folder stays so.
    return (copies ? destination : fichier.url.parent_path()) / name;
}

/// What stands at the destinations, apart from the files that a run takes away from there.
class Obstacles {
  public:
    Obstacles(FolderNames& onDisk, bool copies) : onDisk_(onDisk), copies_(copies) {}

    void addSource(const std::filesystem::path& source) { sources_[normalisedPath(source)].push_back(source); }

    /// Does something stand there that stays?
    [[nodiscard]] bool stands(const std::filesystem::path& destination) {
        if (!onDisk_.holds(destination)) return false;
        if (copies_) return true;
        const auto found = sources_.find(normalisedPath(destination));
        if (found == sources_.end()) return true;
        // Where the volume tells cases apart, the name may be that of a file beside the source.
        return std::none_of(found->second.begin(), found->second.end(),
                            [&](const std::filesystem::path& source) {
                                std::error_code none;
                                return fileNameText(source) == fileNameText(destination) ||
                                       std::filesystem::equivalent(source, destination, none);
                            }) &&
               pathExists(destination);
    }
    /// May a new number be given to this name? Not to one that stands there now, whatever becomes of it.
    [[nodiscard]] bool isFree(const std::filesystem::path& destination) { return !onDisk_.holds(destination); }

  private:
    FolderNames& onDisk_;
    bool copies_;
    std::map<std::string, std::vector<std::filesystem::path>> sources_;
};

/// A name for the eye may not hold what is a separator of folders on any system.
bool isAcceptable(std::string_view name) noexcept {
    return isPossibleName(name) && name.find('\\') == std::string_view::npos;
}

/// "S_12.wav" for "S" and ".wav"?
bool isNumbered(std::string_view name, std::string_view base, std::string_view extension) noexcept {
    if (name.size() < base.size() + 2 + extension.size() || !name.starts_with(base) || !name.ends_with(extension)) {
        return false;
    }
    const std::string_view tail = name.substr(base.size(), name.size() - base.size() - extension.size());
    return tail.front() == '_' && tail[1] != '0' && std::all_of(tail.begin() + 1, tail.end(), isAsciiDigit);
}

class Previewer {
  public:
    Previewer(const std::vector<InfoFichier>& fichiers, const BatchRenameChoice& choice, FolderNames& onDisk)
        : fichiers_(fichiers),
          choice_(choice),
          copies_(choice.mode == OperationAudioBatchRenameMode::copyAndRename),
          obstacles_(onDisk, copies_) {
        for (const InfoFichier& fichier : fichiers)
            obstacles_.addSource(fichier.url);
    }

    RenamePreview run() {
        for (const InfoFichier& fichier : fichiers_) {
            RenamePreviewRow& row = preview_.rows.emplace_back();
            row.newName = assembledName(choice_.pattern, fichier, choice_.emptyTokens);
            // Names that nobody may change come first: numbers are given around them.
            if (!keepsBoth(fichier) && isAcceptable(row.newName)) ++wanted_[keyOf(fichier, row.newName)];
        }
        // Then those that files have already.
        for (std::size_t at = 0; at < fichiers_.size(); ++at) {
            const std::string& name = preview_.rows[at].newName;
            if (!keepsBoth(fichiers_[at]) || !hasName(fichiers_[at], name) || !isAcceptable(name)) continue;
            if (wanted_.try_emplace(keyOf(fichiers_[at], name), 1).second) keepers_.insert(at);
        }
        for (std::size_t at = 0; at < fichiers_.size(); ++at)
            settle(fichiers_[at], preview_.rows[at], keepers_.contains(at));
        return std::move(preview_);
    }

  private:
    [[nodiscard]] bool keepsBoth(const InfoFichier& fichier) const {
        return choice_.keepBoth || choice_.keepBothFor.contains(fichier.url);
    }
    [[nodiscard]] std::filesystem::path pathOf(const InfoFichier& fichier, std::string_view name) const {
        return destinationOf(fichier, name, copies_, choice_.destination);
    }
    [[nodiscard]] std::string keyOf(const InfoFichier& fichier, std::string_view name) const {
        return normalisedPath(pathOf(fichier, name));
    }
    [[nodiscard]] bool stands(const InfoFichier& fichier, std::string_view name) {
        return !(copies_ && choice_.destination.empty()) && obstacles_.stands(pathOf(fichier, name));
    }

    [[nodiscard]] bool hasName(const InfoFichier& fichier, std::string_view name) const {
        return !copies_ && fileNameText(fichier.url) == name;
    }

    void settle(const InfoFichier& fichier, RenamePreviewRow& row, bool keepsItsName) {
        if (!keepsItsName && isAcceptable(row.newName) && keepsBoth(fichier)) {
            const bool collides = wanted_.contains(keyOf(fichier, row.newName)) || stands(fichier, row.newName);
            if (collides) row.newName = numbered(fichier, row.newName);
            ++wanted_[keyOf(fichier, row.newName)];
        }
        row.unchanged = hasName(fichier, row.newName);
        row.destination = pathOf(fichier, row.newName);
        if (!isAcceptable(row.newName)) {
            row.conflict = {Kind::invalidName, row.newName};
        } else if (wanted_[keyOf(fichier, row.newName)] > 1) {
            row.conflict = {Kind::duplicateFilename, row.newName};
        } else if (stands(fichier, row.newName)) {
            row.conflict = {Kind::existingFile, row.newName};
        }
    }

    std::string numbered(const InfoFichier& fichier, const std::string& name) {
        const std::filesystem::path whole(name);
        const std::string base = baseNameText(whole);
        const std::string extension = whole.extension().native();
        const std::string own = fileNameText(fichier.url);
        if (!copies_ && isNumbered(own, base, extension) && !wanted_.contains(keyOf(fichier, own))) return own;
        // Ends at a number that no folder holds, since there are only so many files.
        for (std::size_t& number = next_[keyOf(fichier, name)];;) {
            std::string candidate = fmt::format("{}_{}{}", base, ++number, extension);
            const std::filesystem::path path = pathOf(fichier, candidate);
            const bool unknown = copies_ && choice_.destination.empty();
            if (!wanted_.contains(normalisedPath(path)) && (unknown || obstacles_.isFree(path))) {
                return candidate;
            }
        }
    }

    const std::vector<InfoFichier>& fichiers_;
    const BatchRenameChoice& choice_;
    bool copies_;
    Obstacles obstacles_;
    RenamePreview preview_;
    std::set<std::size_t> keepers_;            ///< rows of "Keep Both" whose files have their new name already
    std::map<std::string, int> wanted_;        ///< how many files get a name
    std::map<std::string, std::size_t> next_;  ///< the last number given to a name
};

OperationAudioError refusal(std::string text) { return OperationAudioError::groupeIncompatible(std::move(text)); }

}  // namespace

RenamePreview previewBatchRename(const std::vector<InfoFichier>& fichiers, const BatchRenameChoice& choice,
                                 FolderNames& onDisk) {
    return Previewer(fichiers, choice, onDisk).run();
}

std::vector<OperationAudioBatchRenameItem> itemsOf(const std::vector<InfoFichier>& fichiers,
                                                   const RenamePreview& preview) {
    std::vector<OperationAudioBatchRenameItem> items;
    for (std::size_t at = 0; at < fichiers.size(); ++at)
        items.push_back({fichiers[at], preview.rows.at(at).newName});
    return items;
}

std::vector<PlanRenommageBatch> planBatchRename(const std::vector<OperationAudioBatchRenameItem>& items,
                                                OperationAudioBatchRenameMode mode,
                                                const std::filesystem::path& destination) {
    const bool copies = mode == OperationAudioBatchRenameMode::copyAndRename;
    if (items.empty()) throw refusal("Select at least one file to rename.");
    if (copies && destination.empty()) throw refusal(std::string(noDestinationFolder));
    std::vector<PlanRenommageBatch> plan;
    FolderNames onDisk;
    Obstacles obstacles(onDisk, copies);
    std::set<std::filesystem::path> sources;
    for (const OperationAudioBatchRenameItem& item : items) {
        if (!pathExists(item.fichier.url)) {
            throw refusal("Source file does not exist: " + pathText(item.fichier.url));
        }
        if (!copies && !sources.insert(item.fichier.url).second) {
            throw refusal("A file is to be renamed twice: " + fileNameText(item.fichier.url));
        }
        obstacles.addSource(item.fichier.url);
    }
    for (const OperationAudioBatchRenameItem& item : items) {
        if (!isPossibleName(item.destinationName)) {
            throw refusal("Invalid output name for " + fileNameText(item.fichier.url));
        }
        plan.push_back(
            {item.fichier, item.fichier.url, destinationOf(item.fichier, item.destinationName, copies, destination)});
    }
    std::set<std::string> destinations;
    for (const PlanRenommageBatch& entry : plan) {
        if (!destinations.insert(normalisedPath(entry.destinationURL)).second) {
            throw refusal("Duplicate output name: " + fileNameText(entry.destinationURL));
        }
    }
    for (const PlanRenommageBatch& entry : plan) {
        if (obstacles.stands(entry.destinationURL)) {
            throw refusal("A file already exists: " + fileNameText(entry.destinationURL));
        }
    }
    return plan;
}

}  // namespace OperationsAudio

std::string_view label(OperationAudioBatchRenameMode mode) noexcept {
    return mode == OperationAudioBatchRenameMode::renameInPlace ? "Rename in Place" : "Copy & Rename";
}

std::string RenameConflictCause::text() const {
    switch (kind) {
        case Kind::invalidName:
            return "Invalid filename: " + name;
        case Kind::duplicateFilename:
            return "Duplicate filename: " + name;
        case Kind::existingFile:
            break;
    }
    return "A file with this name already exists.";
}

bool RenamePreviewRow::isCollision() const noexcept {
    return conflict && conflict->kind != RenameConflictCause::Kind::invalidName;
}

std::string RenamePreviewRow::explanation() const {
    if (!conflict) return {};
    return newName.empty() ? conflict->text() + "the pattern gives nothing for this file" : conflict->text();
}

std::size_t RenamePreview::conflicts() const noexcept {
    return static_cast<std::size_t>(
        std::count_if(rows.begin(), rows.end(), [](const RenamePreviewRow& row) { return row.conflict.has_value(); }));
}
std::size_t RenamePreview::collisions() const noexcept {
    return static_cast<std::size_t>(
        std::count_if(rows.begin(), rows.end(), [](const RenamePreviewRow& row) { return row.isCollision(); }));
}
std::size_t RenamePreview::changes() const noexcept {
    return static_cast<std::size_t>(
        std::count_if(rows.begin(), rows.end(), [](const RenamePreviewRow& row) { return row.changes(); }));
}

std::string RenamePreview::conflictsText() const {
    return fmt::format("{} filename {}", conflicts(), conflicts() == 1 ? "conflict" : "conflicts");
}

std::string toBeRenamedText(std::size_t files) {
    return fmt::format("{} {} will be renamed", files, files == 1 ? "file" : "files");
}
std::string selectedText(std::size_t files) {
    return fmt::format("{} {} selected", files, files == 1 ? "file" : "files");
}
std::string renamedSuccessfully(std::size_t files) { return fmt::format("{} renamed successfully.", files); }

}  // namespace dravik
