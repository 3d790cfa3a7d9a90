#include "app/save_flow.h"

#include "app/report_throttle.h"
#include "app/text.h"
#include "base/paths.h"
#include "base/text.h"
#include "editing/save_transaction.h"

#include <algorithm>
#include <chrono>

namespace dravik {
namespace {

constexpr auto successMessageTime = std::chrono::nanoseconds(2'000'000'000);
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
        extensions.insert(shown.isEmpty() ? QCoreApplication::translate("dravik::SaveFlow", "this file") : shown);
    }
}

}  // namespace

/// What came of a save, brought back to the main thread.
struct SaveFlow::End {
    std::optional<SaveReport> report;  ///< absent when nothing was written
    QString error;                     ///< empty when all went well
    bool rollbackFailed = false;
    bool cancelled = false;
    std::set<std::filesystem::path> refused;  ///< files and folders for which nothing at all was written
    SaveSnapshot snapshot;                    ///< what the save has replaced
};

SaveFlow::~SaveFlow() { cancel(); }

void SaveFlow::checkFormats(std::function<void(bool)> goOn) {
    std::set<QString> extensions;
    std::set<int> unwritable;
    for (const int row : services_.rows.editedRows()) {
        const GroupeFichiers& groupe = services_.rows.groupesTableau().at(static_cast<std::size_t>(row)).groupe;
        if (isEditable(groupe)) continue;
        addUnwritable(groupe, extensions);
        unwritable.insert(row);
    }
    const QStringList shown(extensions.begin(), extensions.end());
    Alert alert;
    alert.title = tr("Format Not Supported for Editing");
    alert.text = shown.size() == 1
                     ? tr("Dravik can open %1 files, but changes cannot be saved to this format.").arg(shown.front())
                     : tr("Changes cannot be saved to these file formats: %1.").arg(shown.join(QStringLiteral(", ")));
    alert.text += QStringLiteral("\n\n") + tr("Would you like to discard your changes?");
    offerDiscard(std::move(alert), std::move(unwritable), std::move(goOn));
}

void SaveFlow::checkMissing(std::function<void(bool)> goOn) {
    std::set<int> missing = services_.rows.missingRows();
    std::erase_if(missing, [this](int row) { return !services_.rows.isEdited(row); });  // its edits were undone
    std::vector<std::string> names;
    for (const int row : missing)
        names.push_back(services_.rows.groupesOriginauxTableau().at(static_cast<std::size_t>(row)).nom);
    std::sort(names.begin(), names.end(),
              [](const std::string& a, const std::string& b) { return compareNatural(a, b) < 0; });
    QStringList shown;
    for (std::size_t at = 0; at < std::min(names.size(), namedTakes); ++at)
        shown << toQt(names[at]);
    if (names.size() > namedTakes) shown << tr("and %n more", nullptr, pluralOf(names.size() - namedTakes));
    Alert alert;
    alert.title = tr("Takes Are Gone");
    alert.text = tr("Changes of takes that are not in the folder any more cannot be saved: %1.\n\nWould you like to "
                    "discard these changes?")
                     .arg(shown.join(QStringLiteral(", ")));
    offerDiscard(std::move(alert), std::move(missing), std::move(goOn));
}

void SaveFlow::offerDiscard(Alert alert, std::set<int> rows, std::function<void(bool)> goOn) {
    if (rows.empty()) {
        goOn(true);
        return;
    }
    alert.buttons = {tr("Discard"), tr("Cancel")};
    alert.destructive = true;
    // By key: while the question is open the folder may be read again, and rows have other numbers.
    std::vector<std::string> keys;
    for (const int row : rows)
        keys.push_back(TakeRows::keyOf(services_.rows.groupesOriginauxTableau().at(static_cast<std::size_t>(row))));
    services_.dialogs.ask(alert, [this, keys = std::move(keys), goOn = std::move(goOn)](AlertAnswer answer) {
        if (answer.button != 0) {
            goOn(false);
            return;
        }
        std::set<int> found;
        for (const std::string& key : keys) {
            if (const int row = services_.rows.indexOf(key); row >= 0) found.insert(row);
        }
        services_.rows.discard(found);
        goOn(true);
    });
}

void SaveFlow::saveAll(std::function<void(bool)> saved) {
    if (isRunning()) {
        saved(false);
        return;
    }
    if (!services_.rows.hasEdits()) {
        saved(true);
        return;
    }
    const auto save = [this, saved](bool goOn) {
        if (isRunning()) {
            saved(false);  // begun by another answer while this was asked
        } else if (goOn && services_.rows.hasEdits()) {
            start(services_.rows.editedRows(), saved);
        } else {
            saved(goOn);
        }
    };
    checkMissing([this, save](bool goOn) { goOn ? checkFormats(save) : save(false); });
}

void SaveFlow::start(std::set<int> planned, std::function<void(bool)> saved) {
    std::vector<SaveItem> items;
    for (const int row : planned) {
        const auto at = static_cast<std::size_t>(row);
        std::vector<SaveItem> own =
            planSave(services_.rows.groupesTableau().at(at), services_.rows.groupesOriginauxTableau().at(at));
        std::move(own.begin(), own.end(), std::back_inserter(items));
    }
    services_.rows.endCollapsing();
    const auto write = [&files = services_.files, items = std::move(items)](End& end, const TaskContext& task) {
        SaveSnapshot snapshot = takeSnapshot(files, items);
        end.report = runSave(files, items, task);
        noteSaved(files, snapshot, *end.report);
        end.snapshot = std::move(snapshot);
    };
    runInBackground(write, [this, planned = std::move(planned), saved = std::move(saved)](End end) {
        finish(std::move(end), planned, saved);
    });
}

void SaveFlow::runInBackground(std::function<void(End&, const TaskContext&)> write, std::function<void(End)> then) {
    running_ = std::make_shared<CancellationToken>();
    services_.rows.setLocked(true);
    emit runningChanged();

    const QPointer<QObject> self(this);
    // The thread may outlive this object, but not what this object was given.
    auto work = [this, &background = services_.background, self, token = running_, write = std::move(write)]() -> End {
        End end;
        const auto throttle = std::make_shared<ReportThrottle>();
        const auto report = [this, &background, self, throttle](const Progress& progress) {
            if (!throttle->isDue()) return;
            background.post(self, [this, done = progress.doneBytes, all = progress.allBytes,
                                   name = toQt(progress.currentName)] { emit progressed(done, all, name); });
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
    services_.background.run(this, std::move(work), [this, then = std::move(then)](End end) {
        running_.reset();
        services_.rows.setLocked(false);
        if (end.report && !end.report->moved.empty()) emit filesMoved(end.report->moved);
        // Before what waited for the save, which may open another folder.
        emit ended(end.report.has_value());
        then(std::move(end));
        emit runningChanged();
    });
}

void SaveFlow::finish(End end, const std::set<int>& planned, const std::function<void(bool)>& saved) {
    const bool success = end.error.isEmpty() && !end.cancelled;
    const std::size_t written = end.report ? end.report->written() : 0;
    if (success) {
        emit rowsWritten(planned);
        services_.rows.accept(planned);
        tellSuccess(written);
    } else if (end.cancelled) {
        emit notice(tr("Saving was cancelled. %Ln file(s) saved; the other changes are still pending.", nullptr,
                       pluralOf(written)));
    } else if (end.rollbackFailed) {
        showError(services_.dialogs, tr("Critical Rename Recovery Needed"), end.error);
    } else {
        tellFailure(end, planned);
    }
    remember(std::move(end.snapshot));
    saved(success);
}

void SaveFlow::tellFailure(const End& end, const std::set<int>& planned) {
    const QString title = tr("Save Failed");
    // By key: the folder is read again while the question is open.
    std::vector<std::string> others;
    for (const int row : planned) {
        const GroupeFichiers& groupe = services_.rows.groupesOriginauxTableau().at(static_cast<std::size_t>(row));
        const bool refused =
            std::any_of(groupe.fichiers.begin(), groupe.fichiers.end(), [&](const InfoFichier& fichier) {
                return end.refused.contains(fichier.url) || end.refused.contains(folderOf(fichier.url));
            });
        if (!refused) others.push_back(TakeRows::keyOf(groupe));
    }
    if (end.refused.empty() || others.empty()) {
        showError(services_.dialogs, title, end.error);
        return;
    }
    Alert alert;
    alert.title = title;
    alert.text = end.error;
    alert.buttons = {tr("OK"), tr("Save the Others")};
    alert.cancelButton = 0;
    services_.dialogs.ask(alert, [this, others = std::move(others)](AlertAnswer answer) {
        if (answer.button != 1 || isRunning()) return;
        std::set<int> rows;
        for (const std::string& key : others) {
            const int row = services_.rows.indexOf(key);
            if (services_.rows.isEdited(row) && services_.rows.canEdit(row)) rows.insert(row);
        }
        if (!rows.empty()) start(std::move(rows), [](bool) {});
    });
}

void SaveFlow::remember(SaveSnapshot snapshot) {
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

void SaveFlow::forgetUndoOf(const FileMoves& moved) {
    std::erase_if(saves_, [&](const SaveSnapshot& save) {
        return std::any_of(save.files.begin(), save.files.end(),
                           [&](const SaveSnapshot::File& file) { return moved.contains(file.after); });
    });
}

QString SaveFlow::undoName() const {
    // Not under edits that were made since: they may be of what the save has changed.
    if (isRunning() || saves_.empty() || services_.rows.hasEdits()) return {};
    return tr("Save of %Ln File(s)", nullptr, pluralOf(saves_.back().files.size()));
}

void SaveFlow::undoLast() {
    if (undoName().isEmpty()) return;
    Alert alert;
    alert.title = tr("Undo the Last Save?");
    alert.text = tr("The metadata, cues and names of %Ln file(s) will be put back as they were before it.", nullptr,
                    pluralOf(saves_.back().files.size()));
    alert.buttons = {tr("Undo Save"), tr("Cancel")};
    services_.dialogs.ask(alert, [this](AlertAnswer answer) {
        if (answer.button != 0 || saves_.empty() || services_.rows.hasEdits() || isRunning()) return;
        auto snapshot = std::make_shared<const SaveSnapshot>(saves_.back());
        auto states = std::make_shared<FileStates>();
        const auto write = [&files = services_.files, snapshot, states](End& end, const TaskContext& task) {
            end.report = undoSave(files, *snapshot, task);
            *states = statesAfterUndo(files, *snapshot);
        };
        runInBackground(write, [this, snapshot, states](End end) { endUndo(end, *snapshot, *states); });
    });
}

void SaveFlow::endUndo(const End& end, const SaveSnapshot& undone, const FileStates& states) {
    if (end.cancelled) {
        emit notice(tr("Undoing the save was cancelled."));
        // Stopped between two files: what is left of it cannot be told from other changes any more.
        if (end.report) saves_.pop_back();
        return;
    }
    // One that changed nothing can be tried again once its reason is gone.
    if (end.error.isEmpty() || end.report) saves_.pop_back();
    if (!end.error.isEmpty()) {
        showError(services_.dialogs,
                  end.rollbackFailed ? tr("Critical Rename Recovery Needed") : tr("The Save Was Not Undone"),
                  end.error);
        return;
    }
    for (SaveSnapshot& older : saves_)
        restamp(older, undone, states);
    emit saveUndone();
    emit notice(tr("The save was undone."));
}

void SaveFlow::tellSuccess(std::size_t written) {
    messageSucces_ = written < 2 ? tr("Saved") : tr("Saved %n file(s)", nullptr, pluralOf(written));
    emit messageChanged();
    services_.clock.after(std::chrono::duration_cast<std::chrono::milliseconds>(successMessageTime), this,
                          [this, number = ++messageNumber_] {
                              if (number != messageNumber_) return;  // a later save has its own two seconds
                              messageSucces_.clear();
                              emit messageChanged();
                          });
}

void SaveFlow::cancel() {
    if (running_) running_->cancel();
}

}  // namespace dravik
