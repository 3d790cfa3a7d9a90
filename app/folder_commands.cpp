#include "app/folder_commands.h"

#include "app/text.h"
#include "app/time_left.h"
#include "base/paths.h"
#include "editing/folder_actions.h"

#include <QDir>
#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

namespace dravik {
namespace {

using namespace std::chrono_literals;

constexpr auto progressEvery = 100ms;
/// Whoever reads from a volume and has been told to stop has ended after that: else it would be busy, and not go.
constexpr auto letGoTime = 150ms;

/// A result of work on another thread: a path, or why there is none.
struct Outcome {
    std::filesystem::path path;
    QString error;
    bool cancelled = false;
};

template <typename Work>
Outcome outcomeOf(Work work) {
    Outcome outcome;
    try {
        outcome.path = work();
    } catch (const Cancelled&) {
        outcome.cancelled = true;
    } catch (const std::exception& error) {
        outcome.error = toQt(userText(error));
    }
    return outcome;
}

QString shownName(const std::filesystem::path& folder) {
    return folder.has_filename() ? toQt(folder.filename()) : toQt(folder);
}

}  // namespace

FolderCommands::FolderCommands(const Services& services) : services_(services) {}

FolderCommands::~FolderCommands() { cancelCopy(); }

// --- What stands against it, and what follows from it --------------------------------------------------------------

bool FolderCommands::isPlace(const std::filesystem::path& folder) const {
    return !folder.has_filename() || folder == toPath(QDir::homePath()) ||
           std::any_of(volumes_.begin(), volumes_.end(), [&](const Volume& one) { return one.root == folder; });
}

QString FolderCommands::refusal(const std::filesystem::path& folder) const {
    const QString name = shownName(folder);
    if (services_.content.operationsEnCours()) {
        return tr("New files are being made. “%1” can be changed when that is done.").arg(name);
    }
    const TakeRows& rows = services_.content.rows();
    for (const int row : rows.editedRows()) {
        for (const InfoFichier& fichier : rows.groupesTableau().at(static_cast<std::size_t>(row)).groupe.fichiers) {
            if (!isWithin(fichier.url, folder)) continue;
            return services_.content.sauvegardeEnCours()
                       ? tr("“%1” is being saved into. It can be changed when that is done.").arg(name)
                       : tr("“%1” holds takes with unsaved changes. Save or discard them first.").arg(name);
        }
    }
    if (!rows.editedRows().empty() && isShown(folder)) {
        // What is shown would have to be opened anew, elsewhere, and the edits of the other takes would not survive it.
        return tr("Takes of “%1” are shown beside others with unsaved changes. Save or discard them first.").arg(name);
    }
    if (isCopying() && (isWithin(copied_, folder) || isWithin(folder, copied_))) {
        return tr("“%1” is being copied. “%2” can be changed when that is done, or cancelled.")
            .arg(shownName(copied_), name);
    }
    return {};
}

bool FolderCommands::isRefused(const std::filesystem::path& folder, const QString& title) {
    const QString why = refusal(folder);
    if (!why.isEmpty()) showError(services_.dialogs, title, why);
    return !why.isEmpty();
}

bool FolderCommands::isShown(const std::filesystem::path& folder) const {
    if (const auto& open = services_.content.dossierSelectionne()) return isWithin(*open, folder);
    const auto& groupes = services_.content.rows().groupesOriginauxTableau();
    return std::any_of(groupes.begin(), groupes.end(), [&](const GroupeFichiers& groupe) {
        return std::any_of(groupe.fichiers.begin(), groupe.fichiers.end(),
                           [&](const InfoFichier& fichier) { return isWithin(fichier.url, folder); });
    });
}

void FolderCommands::follow(const std::filesystem::path& from, const std::filesystem::path& to) {
    ContentView& content = services_.content;
    if (!isShown(from)) return;
    if (const auto& open = content.dossierSelectionne()) {
        content.gererActionProtegee(OuvrirDossier{movedAlong(*open, from, to)});
        return;
    }
    OuvrirDepotFichiers moved;
    for (const GroupeFichiers& groupe : content.rows().groupesOriginauxTableau()) {
        for (const InfoFichier& fichier : groupe.fichiers) {
            moved.fichiers.push_back(isWithin(fichier.url, from) ? movedAlong(fichier.url, from, to) : fichier.url);
        }
    }
    content.gererActionProtegee(moved);
}

// --- Volumes -------------------------------------------------------------------------------------------------------

void FolderCommands::askVolumes() {
    if (std::exchange(volumesAsked_, true)) return;
    asking_.run(
        this, [&workspace = services_.workspace] { return workspace.volumes(); },
        [this](std::vector<Volume> volumes) {
            volumesAsked_ = false;
            volumes_ = std::move(volumes);
            emit volumesChanged();
        });
}

bool FolderCommands::isEjectable(const std::filesystem::path& root) const {
    return std::any_of(volumes_.begin(), volumes_.end(),
                       [&](const Volume& one) { return one.root == root && one.ejectable; });
}

void FolderCommands::eject(const std::filesystem::path& root) {
    const auto volume =
        std::find_if(volumes_.begin(), volumes_.end(), [&](const Volume& one) { return one.root == root; });
    if (volume == volumes_.end() || !volume->ejectable || ejecting_.contains(root)) return;
    if (isRefused(root, tr("Eject Refused"))) return;
    // A volume that is being read is busy, and would not go.
    FolderListing& listing = services_.content.listing();
    const bool wasReading = isShown(root) && listing.isReading();
    if (wasReading) listing.cancel();
    ejecting_.insert(root);
    emit aboutToEject(root);
    services_.content.letGoOf(root);
    asking_.run(
        this,
        [&workspace = services_.workspace, volume = *volume] {
            std::this_thread::sleep_for(letGoTime);
            return workspace.eject(volume);
        },
        [this, root, wasReading](const QString& error) {
            ejecting_.erase(root);
            if (!error.isEmpty()) {
                showError(services_.dialogs, tr("Eject Failed"), error);
                services_.content.takeUpAgain();
            }
            // Goes on reading, or says that what is shown is of a volume that is gone.
            if (isShown(root) && (error.isEmpty() || wasReading)) services_.content.reload();
            askVolumes();
        });
}

// --- Folders -------------------------------------------------------------------------------------------------------

void FolderCommands::open(const std::filesystem::path& folder) {
    if (folder.empty()) return;
    // Back to the open folder while another one has not answered yet: that one is not wanted any more.
    if (services_.content.dossierSelectionne() == folder && !services_.content.isOpening()) return;
    services_.content.gererActionProtegee(OuvrirDossier{folder});
}

void FolderCommands::reveal(const std::filesystem::path& folder) {
    if (folder.empty()) return;
    asking_.run(
        this, [&workspace = services_.workspace, folder] { return workspace.reveal(folder); },
        [this](const QString& error) {
            if (!error.isEmpty()) showError(services_.dialogs, tr("Show in File Manager"), error);
        });
}

void FolderCommands::createIn(const std::filesystem::path& parent) {
    if (parent.empty()) return;
    writing_.run(
        this, [&files = services_.files, parent] { return outcomeOf([&] { return createFolder(files, parent); }); },
        [this, parent](const Outcome& outcome) {
            if (!outcome.error.isEmpty()) {
                showError(services_.dialogs, tr("New Folder Failed"), outcome.error);
                return;
            }
            emit contentsChanged(parent);
            emit created(outcome.path);
        });
}

void FolderCommands::rename(const std::filesystem::path& folder, const QString& name) {
    if (isPlace(folder)) return;
    if (isRefused(folder, tr("Rename Refused"))) return;
    writing_.run(
        this,
        [&files = services_.files, folder, name = name.toStdString()] {
            return outcomeOf([&] { return renameFolder(files, folder, name); });
        },
        [this, folder](const Outcome& outcome) {
            if (!outcome.error.isEmpty()) {
                showError(services_.dialogs, tr("Rename Failed"), outcome.error);
                return;
            }
            emit contentsChanged(folderOf(folder));
            emit arrived(outcome.path);
            follow(folder, outcome.path);
        });
}

void FolderCommands::moveToTrash(const std::filesystem::path& folder) {
    if (isPlace(folder)) return;
    const QString refused = tr("Move to Trash Refused");
    if (isRefused(folder, refused)) return;
    Alert alert;
    alert.title = tr("Move “%1” to the Trash?").arg(shownName(folder));
    alert.text = tr("The folder %1 goes there with everything in it.").arg(toQt(folder));
    alert.buttons = {tr("Move to Trash"), tr("Cancel")};
    alert.destructive = true;
    const auto move = [this, folder] {
        writing_.run(
            this, [&workspace = services_.workspace, folder] { return workspace.moveToTrash(folder); },
            [this, folder](const QString& error) {
                emit contentsChanged(folderOf(folder));
                if (!error.isEmpty()) {
                    showError(services_.dialogs, tr("Move to Trash Failed"), error);
                    return;
                }
                emit arrived(folderOf(folder));
                if (isShown(folder)) services_.content.reload();
            });
    };
    // The answer may come when the window is gone.
    const auto answered = [self = QPointer<FolderCommands>(this), folder, refused, move](AlertAnswer answer) {
        // Another look: the question may have been open for long.
        if (self && answer.button == 0 && !self->isRefused(folder, refused)) move();
    };
    services_.dialogs.ask(alert, answered);
}

// --- Copies --------------------------------------------------------------------------------------------------------

void FolderCommands::cancelCopy() {
    if (copying_) copying_->cancel();
}

void FolderCommands::duplicate(const std::filesystem::path& folder) {
    if (isCopying() || isPlace(folder)) return;
    // Unsaved edits are no hindrance: what is on disk is copied.
    if (services_.content.sauvegardeEnCours() && isRefused(folder, tr("Duplicate Refused"))) {
        return;
    }
    copying_ = std::make_shared<CancellationToken>();
    copied_ = folder;
    copyTime_.start();
    emit copyingChanged();
    emit copyProgressed(0, tr("Copying “%1”…").arg(shownName(folder)), {});
    auto work = [this, &files = services_.files, self = QPointer<QObject>(this), token = copying_, folder] {
        std::chrono::steady_clock::time_point told;
        const auto report = [&](const Progress& progress) {
            const auto now = std::chrono::steady_clock::now();
            if (now - told < progressEvery) return;
            told = now;
            copies_.post(self, [this, done = progress.doneBytes, all = progress.allBytes,
                                name = std::string(progress.currentName)] {
                showProgress({done, all, name});
            });
        };
        return outcomeOf([&] { return duplicateFolder(files, folder, {token.get(), report}); });
    };
    copies_.run(this, std::move(work), [this, folder](const Outcome& outcome) {
        onCopied(folder, outcome.path, outcome.cancelled, outcome.error);
    });
}

void FolderCommands::onCopied(const std::filesystem::path& folder, const std::filesystem::path& copy, bool cancelled,
                              const QString& error) {
    copying_.reset();
    copied_.clear();
    emit copyingChanged();
    if (cancelled) {
        services_.content.tell(tr("Copying was cancelled; nothing is left of the copy."));
    } else if (!error.isEmpty()) {
        showError(services_.dialogs, tr("Duplicate Failed"), error);
    } else {
        emit contentsChanged(folderOf(folder));
        emit arrived(copy);
    }
}

void FolderCommands::showProgress(const Progress& progress) {
    if (!copying_ || progress.allBytes == 0) return;
    const double fraction = static_cast<double>(progress.doneBytes) / static_cast<double>(progress.allBytes);
    emit copyProgressed(fraction, toQt(progress.currentName), timeLeft(copyTime_.elapsed(), fraction));
}

}  // namespace dravik
