#include "app/content_view.h"
#include "app/text.h"
#include "base/paths.h"
#include "base/text.h"
#include "editing/save_transaction.h"

#include <algorithm>
#include <chrono>

namespace dravik {
namespace {

constexpr auto successMessageTime = std::chrono::nanoseconds(2'000'000'000);
constexpr auto progressInterval = std::chrono::milliseconds(50);
/// How far back a save can be undone, and the memory that may be held for it.
constexpr std::size_t maxUndoableSaves = 20;
constexpr std::size_t maxUndoBytes = std::size_t{256} * 1024 * 1024;
/// How many takes a message names before it only counts them.
constexpr std::size_t namedTakes = 10;

/// The extensions of the row's files that no writer takes, as they are shown.
void addUnwritable(const GroupeFichiers& groupe, std::set<QString>& extensions) {
    for (const InfoFichier& fichier : groupe.fichiers) {
        if (isEditable(fichier.url)) continue;
        std::string extension = fichier.url.extension().native();
        if (!extension.empty()) extension.erase(0, 1);
        const QString shown = toQt(extension).trimmed().toUpper();
        extensions.insert(shown.isEmpty() ? QStringLiteral("this file") : shown);
    }
}

}  // namespace

/// What came of a save, brought back to the main thread.
struct ContentView::SaveEnd {
    std::optional<SaveReport> report;  ///< absent when nothing was written
    QString error;                     ///< empty when all went well
    bool rollbackFailed = false;
    bool cancelled = false;
    std::set<std::filesystem::path> refused;  ///< files and folders for which nothing at all was written
    SaveSnapshot snapshot;                    ///< what the save has replaced
};

void ContentView::checkFormats(std::function<void(bool)> goOn) {
    std::set<QString> extensions;
    std::set<int> unwritable;
    for (const int row : rows_.editedRows()) {
        const GroupeFichiers& groupe = rows_.groupesTableau().at(static_cast<std::size_t>(row)).groupe;
        if (isEditable(groupe)) continue;
        addUnwritable(groupe, extensions);
        unwritable.insert(row);
    }
    const QStringList shown(extensions.begin(), extensions.end());
    Alert alert;
    alert.title = QStringLiteral("Format Not Supported for Editing");
    alert.text =
        shown.size() == 1
            ? QStringLiteral("Dravik can open %1 files, but changes cannot be saved to this format.").arg(shown.front())
            : QStringLiteral("Changes cannot be saved to these file formats: %1.")
                  .arg(shown.join(QStringLiteral(", ")));
    alert.text += QStringLiteral("\n\nWould you like to discard your changes?");
    offerDiscard(std::move(alert), std::move(unwritable), std::move(goOn));
}

void ContentView::checkMissing(std::function<void(bool)> goOn) {
    std::set<int> missing = rows_.missingRows();
    std::erase_if(missing, [this](int row) { return !rows_.isEdited(row); });  // its edits were undone
    std::vector<std::string> names;
    for (const int row : missing)
        names.push_back(rows_.groupesOriginauxTableau().at(static_cast<std::size_t>(row)).nom);
    std::sort(names.begin(), names.end(),
              [](const std::string& a, const std::string& b) { return compareNatural(a, b) < 0; });
    QStringList shown;
    for (std::size_t at = 0; at < std::min(names.size(), namedTakes); ++at)
        shown << toQt(names[at]);
    if (names.size() > namedTakes) shown << QStringLiteral("and %1 more").arg(names.size() - namedTakes);
    Alert alert;
    alert.title = QStringLiteral("Takes Are Gone");
    alert.text = QStringLiteral(
                     "Changes of takes that are not in the folder any more cannot be saved: %1.\n\nWould you like to "
                     "discard these changes?")
                     .arg(shown.join(QStringLiteral(", ")));
    offerDiscard(std::move(alert), std::move(missing), std::move(goOn));
}

void ContentView::offerDiscard(Alert alert, std::set<int> rows, std::function<void(bool)> goOn) {
    if (rows.empty()) {
        goOn(true);
        return;
    }
    alert.buttons = {QStringLiteral("Discard"), QStringLiteral("Cancel")};
    alert.destructive = true;
    // By key: while the question is open the folder may be read again, and rows have other numbers.
    std::vector<std::string> keys;
    for (const int row : rows)
        keys.push_back(TakeRows::keyOf(rows_.groupesOriginauxTableau().at(static_cast<std::size_t>(row))));
    services_.dialogs.ask(alert, [this, keys = std::move(keys), goOn = std::move(goOn)](AlertAnswer answer) {
        if (answer.button != 0) {
            goOn(false);
            return;
        }
        std::set<int> found;
        for (const std::string& key : keys) {
            if (const int row = rows_.indexOf(key); row >= 0) found.insert(row);
        }
        rows_.discard(found);
        goOn(true);
    });
}

void ContentView::saveAll(std::function<void(bool)> saved) {
    if (!saved) saved = [](bool) {};
    emit commitRequested();
    if (sauvegardeEnCours()) {
        saved(false);
        return;
    }
    if (!hasUnsavedChanges()) {
        saved(true);
        return;
    }
    const auto save = [this, saved](bool goOn) {
        if (sauvegardeEnCours()) {
            saved(false);  // begun by another answer while this was asked
        } else if (goOn && hasUnsavedChanges()) {
            startSave(rows_.editedRows(), saved);
        } else {
            saved(goOn);
        }
    };
    checkMissing([this, save](bool goOn) { goOn ? checkFormats(save) : save(false); });
}

void ContentView::startSave(std::set<int> planned, std::function<void(bool)> saved) {
    std::vector<SaveItem> items;
    for (const int row : planned) {
        const auto at = static_cast<std::size_t>(row);
        std::vector<SaveItem> own = planSave(rows_.groupesTableau().at(at), rows_.groupesOriginauxTableau().at(at));
        std::move(own.begin(), own.end(), std::back_inserter(items));
    }
    rows_.endCollapsing();
    const auto write = [&files = services_.files, items = std::move(items)](SaveEnd& end, const TaskContext& task) {
        SaveSnapshot snapshot = takeSnapshot(files, items);
        end.report = runSave(files, items, task);
        noteSaved(files, snapshot, *end.report);
        end.snapshot = std::move(snapshot);
    };
    runInBackground(write, [this, planned = std::move(planned), saved = std::move(saved)](SaveEnd end) {
        endSave(std::move(end), planned, saved);
    });
}

void ContentView::runInBackground(std::function<void(SaveEnd&, const TaskContext&)> write,
                                  std::function<void(SaveEnd)> ended) {
    saving_ = std::make_shared<CancellationToken>();
    listing_.setQuiet(true);
    rows_.setLocked(true);
    emit sauvegardeEnCoursChanged();
    emit pendingChanged();

    const QPointer<QObject> self(this);
    // The thread may outlive this object, but not what this object was given.
    auto work = [this, &background = services_.background, self, token = saving_,
                 write = std::move(write)]() -> SaveEnd {
        SaveEnd end;
        auto told = std::make_shared<std::chrono::steady_clock::time_point>();
        const auto report = [this, &background, self, told](const Progress& progress) {
            const auto now = std::chrono::steady_clock::now();
            if (now - *told < progressInterval) return;
            *told = now;
            background.post(self, [this, done = progress.doneBytes, all = progress.allBytes,
                                   name = toQt(progress.currentName)] { emit saveProgressed(done, all, name); });
        };
        try {
            write(end, {token.get(), report});
            end.cancelled = end.report->cancelled;
            if (!end.cancelled) end.report->throwIfFailed();
        } catch (const Cancelled&) {
            end.cancelled = true;
        } catch (const SaveRefused& error) {
            end.error = toQt(error.what());
            for (const SaveProblem& problem : error.problems())
                end.refused.insert(problem.path);
        } catch (const MainSaveRenameError& error) {
            end.error = toQt(error.what());
            end.rollbackFailed = error.reason() == MainSaveRenameError::Reason::rollbackFailed;
        } catch (const std::exception& error) {
            end.error = toQt(userText(error));
        }
        return end;
    };
    services_.background.run(this, std::move(work), [this, ended = std::move(ended)](SaveEnd end) {
        saving_.reset();
        listing_.setQuiet(false);
        rows_.setLocked(false);
        if (end.report) followMoves(*end.report);
        // Before what waited for the save, which may open another folder.
        const bool missed = std::exchange(missedReading_, false);
        if (end.report || missed) readAgain(FolderListing::Reuse::unchanged);
        ended(std::move(end));
        emit sauvegardeEnCoursChanged();
        emit pendingChanged();
        takeNextAction();
    });
}

void ContentView::followMoves(const SaveReport& report) {
    if (report.moved.empty()) return;
    const auto follow = [&](std::vector<std::filesystem::path>& paths) {
        for (std::filesystem::path& path : paths) {
            const auto moved = report.moved.find(path);
            if (moved != report.moved.end()) path = moved->second;
        }
    };
    follow(selected_);
    follow(fichiersDossier_);
    rows_.filesMoved(report.moved);
    emit filesMoved(report.moved);
}

void ContentView::endSave(SaveEnd end, const std::set<int>& planned, const std::function<void(bool)>& saved) {
    const bool success = end.error.isEmpty() && !end.cancelled;
    const std::size_t written = end.report ? end.report->written() : 0;
    if (success) {
        // What is edited before the file is read again is edited on what was written.
        if (const int row = selectedRow(); planned.contains(row)) {
            const auto& cues = rows_.groupesTableau().at(static_cast<std::size_t>(row)).cues;
            if (cues) {
                cuesOriginaux_ = *cues;
                loadID_ = Uuid::random();  // what is just being read may be what was there before
            }
        }
        rows_.accept(planned);
        tellSuccess(written);
    } else if (end.cancelled) {
        emit notice(QStringLiteral("Saving was cancelled. %1 saved; the other changes are still pending.")
                        .arg(counted(written, QStringLiteral("file"))));
    } else if (end.rollbackFailed) {
        showError(QStringLiteral("Critical Rename Recovery Needed"), end.error);
    } else {
        tellFailure(end, planned);
    }
    remember(std::move(end.snapshot));
    saved(success);
}

void ContentView::tellFailure(const SaveEnd& end, const std::set<int>& planned) {
    const QString title = QStringLiteral("Save Failed");
    // By key: the folder is read again while the question is open.
    std::vector<std::string> others;
    for (const int row : planned) {
        const GroupeFichiers& groupe = rows_.groupesOriginauxTableau().at(static_cast<std::size_t>(row));
        const bool refused =
            std::any_of(groupe.fichiers.begin(), groupe.fichiers.end(), [&](const InfoFichier& fichier) {
                return end.refused.contains(fichier.url) || end.refused.contains(folderOf(fichier.url));
            });
        if (!refused) others.push_back(TakeRows::keyOf(groupe));
    }
    if (end.refused.empty() || others.empty()) {
        showError(title, end.error);
        return;
    }
    Alert alert;
    alert.title = title;
    alert.text = end.error;
    alert.buttons = {QStringLiteral("OK"), QStringLiteral("Save the Others")};
    alert.cancelButton = 0;
    services_.dialogs.ask(alert, [this, others = std::move(others)](AlertAnswer answer) {
        if (answer.button != 1 || sauvegardeEnCours()) return;
        std::set<int> rows;
        for (const std::string& key : others) {
            const int row = rows_.indexOf(key);
            if (rows_.isEdited(row) && rows_.canEdit(row)) rows.insert(row);
        }
        if (!rows.empty()) startSave(std::move(rows), [](bool) {});
    });
}

void ContentView::remember(SaveSnapshot snapshot) {
    if (snapshot.files.empty()) return;
    saves_.push_back(std::move(snapshot));
    std::size_t bytes = 0;
    for (const SaveSnapshot& one : saves_)
        bytes += one.bytes();
    while (saves_.size() > maxUndoableSaves || (saves_.size() > 1 && bytes > maxUndoBytes)) {
        bytes -= saves_.front().bytes();
        saves_.erase(saves_.begin());
    }
}

void ContentView::undoLastSave() {
    Alert alert;
    alert.title = QStringLiteral("Undo the Last Save?");
    alert.text = QStringLiteral("The metadata, cues and names of %1 will be put back as they were before it.")
                     .arg(counted(saves_.back().files.size(), QStringLiteral("file")));
    alert.buttons = {QStringLiteral("Undo Save"), QStringLiteral("Cancel")};
    services_.dialogs.ask(alert, [this](AlertAnswer answer) {
        if (answer.button != 0 || saves_.empty() || hasUnsavedChanges() || sauvegardeEnCours()) return;
        auto snapshot = std::make_shared<const SaveSnapshot>(saves_.back());
        auto states = std::make_shared<FileStates>();
        const auto write = [&files = services_.files, snapshot, states](SaveEnd& end, const TaskContext& task) {
            end.report = undoSave(files, *snapshot, task);
            *states = statesAfterUndo(files, *snapshot);
        };
        runInBackground(write, [this, snapshot, states](SaveEnd end) {
            if (end.cancelled) {
                emit notice(QStringLiteral("Undoing the save was cancelled."));
                // Stopped between two files: what is left of it cannot be told from other changes any more.
                if (end.report) saves_.pop_back();
            } else if (!end.error.isEmpty()) {
                showError(end.rollbackFailed ? QStringLiteral("Critical Rename Recovery Needed")
                                             : QStringLiteral("The Save Was Not Undone"),
                          end.error);
                saves_.pop_back();
            } else {
                saves_.pop_back();
                for (SaveSnapshot& older : saves_)
                    restamp(older, *snapshot, *states);
                // The cues that are shown may be those that are no more.
                enChargement_ = !selected_.empty();
                emit enChargementChanged();
                readCues();
                emit notice(QStringLiteral("The save was undone."));
            }
        });
    });
}

void ContentView::tellSuccess(std::size_t written) {
    messageSucces_ =
        written < 2 ? QStringLiteral("Saved") : QStringLiteral("Saved %1 files").arg(static_cast<qulonglong>(written));
    emit messageSuccesSauvegardeChanged();
    services_.clock.after(std::chrono::duration_cast<std::chrono::milliseconds>(successMessageTime), this,
                          [this, number = ++messageNumber_] {
                              if (number != messageNumber_) return;  // a later save has its own two seconds
                              messageSucces_.clear();
                              emit messageSuccesSauvegardeChanged();
                          });
}

void ContentView::cancelSave() {
    if (saving_) saving_->cancel();
}

void ContentView::discardAll() {
    if (!hasUnsavedChanges() || sauvegardeEnCours()) return;
    Alert alert;
    alert.title = QStringLiteral("Discard All Unsaved Changes?");
    alert.text =
        QStringLiteral("Dravik will revert all pending metadata, track name and cue changes. This cannot be undone.");
    alert.buttons = {QStringLiteral("Discard"), QStringLiteral("Cancel")};
    alert.destructive = true;
    services_.dialogs.ask(alert, [this](AlertAnswer answer) {
        if (answer.button == 0) rows_.discardAll();
    });
}

}  // namespace dravik
