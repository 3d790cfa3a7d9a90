#include "editing/save_transaction.h"

#include "base/file_error.h"
#include "base/paths.h"
#include "editing/cue_writer.h"
#include "editing/metadata_writer.h"
#include "editing/rename_transaction.h"

#include <algorithm>

#include <fmt/format.h>

namespace dravik {
namespace {

/// Metadata is a few kilobytes; what a new file may need beyond the old one's size.
constexpr std::uint64_t growthAllowance = 1024U * 1024U;

/// The largest file to be written in each folder: only one is ever written at a time.
std::map<std::filesystem::path, const InfoFichier*> largestOfFolders(const std::vector<SaveItem>& items) {
    std::map<std::filesystem::path, const InfoFichier*> largest;
    for (const SaveItem& item : items) {
        if (!item.valeurs && !item.cues) continue;
        const InfoFichier*& entry = largest[folderOf(item.fichier.url)];
        if (entry == nullptr || item.fichier.taille > entry->taille) entry = &item.fichier;
    }
    return largest;
}

/// Adds up the progress of the single writes into one of the whole save.
class SaveProgress {
  public:
    SaveProgress(const std::vector<SaveItem>& items, const TaskContext& task) : task_(task) {
        for (const SaveItem& item : items)
            all_ += bytesOf(item);
    }
    [[nodiscard]] TaskContext forOneWrite() const {
        TaskContext one;
        one.token = task_.token;
        one.report = [this](const Progress& progress) {
            if (task_.report) task_.report({std::min(before_ + progress.doneBytes, all_), all_, progress.currentName});
        };
        return one;
    }
    void oneWriteDone(const SaveItem& item) { before_ += item.fichier.taille; }
    /// Written or not, there is nothing more to come of it.
    void itemDone(const SaveItem& item) { before_ = itemsBefore_ += bytesOf(item); }

  private:
    static std::uint64_t bytesOf(const SaveItem& item) {
        return item.fichier.taille * ((item.valeurs ? 1U : 0U) + (item.cues ? 1U : 0U));
    }
    const TaskContext& task_;
    std::uint64_t all_ = 0;
    std::uint64_t itemsBefore_ = 0;
    std::uint64_t before_ = 0;
};

/// Why a file was not saved, and whether it changed all the same: its metadata is written before its markers.
std::string failureText(const std::filesystem::path& file, std::string_view reason, bool metadataWritten) {
    const std::string name = fileNameText(file);
    return metadataWritten ? fmt::format("The markers of {} were not saved: {}. Its metadata was.", name, reason)
                           : fmt::format("{} was not saved: {}. The file was not changed.", name, reason);
}

}  // namespace

std::size_t SaveReport::written() const noexcept {
    return static_cast<std::size_t>(
        std::count_if(results.begin(), results.end(), [](const SaveResult& result) { return result.written; }));
}

bool SaveReport::failed() const noexcept {
    return std::any_of(results.begin(), results.end(), [](const SaveResult& result) { return !result.error.empty(); });
}

void SaveReport::throwIfFailed() const {
    std::string messages;
    for (const SaveResult& result : results) {
        if (result.error.empty()) continue;
        messages += (messages.empty() ? "" : "\n") + result.error;
    }
    if (messages.empty()) return;
    const bool anyRenamed =
        std::any_of(results.begin(), results.end(), [](const SaveResult& result) { return result.renamed; });
    if (anyRenamed) throw MainSaveRenameError::metadataAfterRenameFailed(messages);
    throw Error(messages);
}

std::vector<SaveItem> planSave(const GroupeFichiers& groupe, const EditedFields& edited, const EditedFields& originals,
                               const std::optional<std::string>& newName, const std::set<MetadataField>& decided) {
    std::vector<SaveItem> items;
    for (std::size_t position = 0; position < groupe.fichiers.size(); ++position) {
        SaveItem item;
        item.fichier = groupe.fichiers[position];
        item.groupe = groupe.id;
        if (newName) {
            std::string nom = newBaseName(groupe, position, *newName);
            if (!isSameName(nom, item.fichier.nom)) item.newName = std::move(nom);
        }
        MetadataValues valeurs = valuesForFile(edited, originals, groupe, position, decided);
        if (hasEdit(valeurs) || groupe.forcerSauvegardeMetadata || item.fichier.forcerSauvegardeMetadata) {
            item.valeurs = std::move(valeurs);
        }
        items.push_back(std::move(item));
    }
    if (!newName) return items;
    for (const UnreadableTrack& track : groupe.unreadableTracks) {
        SaveItem item;
        item.fichier.url = track.url;
        item.fichier.nom = baseNameText(track.url);
        item.groupe = groupe.id;
        item.newName = newUnreadableName(groupe, track, *newName);
        if (item.newName && !isSameName(*item.newName, item.fichier.nom)) items.push_back(std::move(item));
    }
    return items;
}

void checkRoom(FileOps& ops, const std::vector<SaveItem>& items) {
    for (const auto& [folder, fichier] : largestOfFolders(items)) {
        try {
            ensureRoom(ops, fichier->url, fichier->taille + growthAllowance);
        } catch (const FileError&) {
            throw;
        } catch (const std::filesystem::filesystem_error& error) {
            // Nobody knows the trial file by its name.
            throw std::filesystem::filesystem_error("no new file", fichier->url, error.code());
        }
    }
}

std::vector<std::filesystem::path> foldersShortOfRoom(FileOps& ops, const std::vector<SaveItem>& items) {
    std::vector<std::filesystem::path> folders;
    for (const auto& [folder, fichier] : largestOfFolders(items)) {
        if (!reportsRoom(ops, fichier->url, fichier->taille + growthAllowance)) folders.push_back(folder);
    }
    return folders;
}

SaveReport runSave(FileOps& ops, const std::vector<SaveItem>& items, const TaskContext& task) {
    task.checkCancelled();
    const std::vector<MainSaveRenamePlanEntry> renames = checkSave(ops, items, task);
    checkRoom(ops, items);
    SaveReport report;
    report.moved = runRenames(ops, renames);

    SauvegardeMetadata metadata(ops);
    CueWriter cues(ops);
    FolderSyncs folders;
    SaveProgress progress(items, task);
    for (const SaveItem& item : items) {
        SaveResult result;
        result.path = item.fichier.url;
        const auto moved = report.moved.find(item.fichier.url);
        result.newPath = moved == report.moved.end() ? item.fichier.url : moved->second;
        result.renamed = result.newPath != result.path;
        try {
            if (report.cancelled && (item.valeurs || item.cues)) throw Cancelled();
            if (item.valeurs) {
                metadata.ecrire(result.newPath, *item.valeurs, progress.forOneWrite(), folders);
                result.written = true;
                progress.oneWriteDone(item);
            }
            if (item.cues) {
                cues.ecrireCues(result.newPath, *item.cues, progress.forOneWrite(), folders);
                result.written = true;
            }
        } catch (const Cancelled&) {
            report.cancelled = true;
            result.error = failureText(result.newPath, "cancelled", result.written);
        } catch (const Error& error) {
            result.error = error.what();
        } catch (const std::exception& error) {
            result.error = failureText(result.newPath, systemText(error), result.written);
        }
        progress.itemDone(item);
        report.results.push_back(std::move(result));
    }
    try {
        folders.syncAll(ops);
    } catch (const std::exception& error) {
        // The files are whole and in place; what cannot be promised is that they survive a power cut.
        for (SaveResult& result : report.results) {
            if (!result.written || !result.error.empty()) continue;
            result.error = fmt::format("{} was saved, but the volume did not confirm it: {}.",
                                       fileNameText(result.newPath), systemText(error));
        }
    }
    return report;
}

}  // namespace dravik
