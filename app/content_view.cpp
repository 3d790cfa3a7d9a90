#include "app/content_view.h"

#include "app/operations_tab.h"
#include "app/table_edits.h"
#include "app/text.h"
#include "base/paths.h"
#include "model/folder_scan.h"

#include <algorithm>
#include <set>

#include <spdlog/spdlog.h>

namespace dravik {
namespace {

std::size_t fileCount(const ActionEnAttente& action) {
    if (const auto* dropped = std::get_if<OuvrirDepotFichiers>(&action)) return dropped->fichiers.size();
    return 0;
}

QStringList listedNameFilters() {
    QStringList filters;
    for (const std::string_view extension : listedExtensions())
        filters << QLatin1Char('*') + toQt(extension);
    return filters;
}

/// A disk that has not said by then whether something is there may never say it.
constexpr std::chrono::milliseconds answerTime{2000};

}  // namespace

ContentView::ContentView(const Services& services)
    : services_(services),
      listing_(services.background, services.files, services.codecs),
      saves_({rows_, services.dialogs, services.clock, services.background, services.files}),
      cues_(rows_, services.settings, services.dialogs),
      fields_(rows_, [this] { return selectedRow(); }) {
    connect(&listing_, &FolderListing::rowsRead, this, &ContentView::onRowsRead);
    connect(&listing_, &FolderListing::folderChanged, this, [this] { readAgain(FolderListing::Reuse::unchanged); });
    connect(&listing_, &FolderListing::recovered, this, [this](const Recovery& recovery) {
        QStringList lines;
        for (const std::string& line : recovery.done)
            lines << toQt(line);
        for (const std::string& line : recovery.failures)
            lines << toQt(line);
        showError(
            services_.dialogs,
            recovery.failures.empty() ? tr("Interrupted Work Was Put Right") : tr("Critical Rename Recovery Needed"),
            lines.join(QLatin1Char('\n')));
    });
    connect(&listing_, &FolderListing::unreachable, this, [this] {
        if (reading_ == TakeRows::Reading::again) {
            // A card that was pulled may come back: its rows and their edits stay.
            emit notice(tr("%1 cannot be reached. What is shown is what was read before.").arg(folderLabel()));
        } else {
            showError(services_.dialogs, tr("Folder Not Found"),
                      tr("%1 is not there, or cannot be read.").arg(folderLabel()));
        }
    });
    connectSaves();
    connect(&cues_, &TakeCues::changed, this, &ContentView::cueMarkersChanged);
    connect(&cues_, &TakeCues::readingChanged, this, &ContentView::enChargementChanged);
    connect(&cues_, &TakeCues::notice, this, &ContentView::notice);
    connect(&rows_, &TakeRows::rowsChanged, this, &ContentView::onRowsChanged);
    connect(&rows_, &TakeRows::pendingChanged, this, [this] {
        // A take whose files are gone goes with its edits.
        if (!selected_.empty() && selectedRow() < 0) clearSelection();
        emit pendingChanged();
    });

    connect(&fields_, &TakeFields::notice, this, &ContentView::notice);
    connect(&services_.commands, &Commands::dravikSaveChanges, this, [this] { saveAll(); });
    connect(&services_.commands, &Commands::dravikLoadFile, this, &ContentView::loadFile);
    connect(&services_.commands, &Commands::dravikLoadFolder, this, &ContentView::loadFolder);
    connect(&services_.commands, &Commands::demanderQuitterAvecProtection, this,
            [this] { gererActionProtegee(QuitterApp{}); });
}

void ContentView::start() {
    services_.router.registerConsumer(externalOpenConsumerID_, [this](const ExternalFileOpenRouter::Urls& urls) {
        spdlog::info("ContentView consumer invoked with {} URL(s)", urls.size());
        std::set<std::filesystem::path> folders;
        for (const std::filesystem::path& url : urls)
            folders.insert(folderOf(url));
        spdlog::info("ContentView calling existing .ouvrirDepotFichiers workflow with {} file(s)", urls.size());
        gererActionProtegee(
            OuvrirDepotFichiers{urls, folders.size() == 1 ? std::optional(*folders.begin()) : std::nullopt});
    });
}

void ContentView::connectSaves() {
    connect(&saves_, &SaveFlow::notice, this, &ContentView::notice);
    connect(&saves_, &SaveFlow::progressed, this, &ContentView::saveProgressed);
    connect(&saves_, &SaveFlow::messageChanged, this, &ContentView::messageSuccesSauvegardeChanged);
    connect(&saves_, &SaveFlow::filesMoved, this, &ContentView::followMoves);
    connect(&saves_, &SaveFlow::rowsWritten, this, [this](const std::set<int>& rows) {
        // What is edited before the file is read again is edited on what was written.
        if (rows.contains(selectedRow())) cues_.onWritten();
    });
    connect(&saves_, &SaveFlow::saveUndone, &cues_, &TakeCues::onReplaced);
    connect(&saves_, &SaveFlow::ended, this, [this](bool touched) {
        const bool missed = std::exchange(missedReading_, false);
        if (touched || missed) readAgain(FolderListing::Reuse::unchanged);
    });
    connect(&saves_, &SaveFlow::runningChanged, this, [this] {
        listing_.setQuiet(saves_.isRunning() || operationsEnCours_);
        emit sauvegardeEnCoursChanged();
        emit pendingChanged();
        takeNextAction();
    });
}

ContentView::~ContentView() { services_.router.clear(externalOpenConsumerID_); }

void ContentView::followMoves(const FileMoves& moved) {
    const auto follow = [&](std::vector<std::filesystem::path>& paths) {
        for (std::filesystem::path& path : paths) {
            if (const auto found = moved.find(path); found != moved.end()) path = found->second;
        }
    };
    follow(selected_);
    follow(fichiersDossier_);
    if (!selected_.empty()) cues_.follow(selected_.front());
    rows_.filesMoved(moved);
    emit filesMoved(moved);
}

// --- The gate ------------------------------------------------------------------------------------------------------

void ContentView::gererActionProtegee(const ActionEnAttente& action) {
    if (std::holds_alternative<OuvrirDepotFichiers>(action)) {
        spdlog::info("gererActionProtegee(.ouvrirDepotFichiers) called with {} URL(s)", fileCount(action));
    }
    emit commitRequested();
    const bool quits = std::holds_alternative<QuitterApp>(action);
    const auto refuse = [this, quits] {
        actionEnAttente_.reset();
        emit selectionChanged();  // the table shows the loaded take again
        if (quits) services_.termination.replyToApplicationShouldTerminate(false);
        takeNextAction();
    };
    if ((actionEnAttente_ || sauvegardeEnCours()) && std::holds_alternative<OuvrirDepotFichiers>(action)) {
        // Whoever handed these over was told that they arrived.
        nextAction_ = action;
        return;
    }
    if (actionEnAttente_) {
        // One question at a time: the answer to it decides what happens to the edits.
        if (quits) services_.termination.replyToApplicationShouldTerminate(false);
        return;
    }
    if (quits && operationsEnCours_) {
        services_.termination.replyToApplicationShouldTerminate(false);
        askToStopOperation();
        return;
    }
    if (sauvegardeEnCours()) {
        // What a save writes is neither pending nor on disk.
        emit notice(tr("Wait until saving is done, or cancel it."));
        refuse();
        return;
    }
    if (!hasUnsavedChanges()) {
        perform(action);
        return;
    }
    actionEnAttente_ = action;
    Alert alert;
    alert.title = tr("Unsaved modifications");
    alert.text = quits ? tr("Do you want to save your changes before quitting?")
                       : tr("Do you want to save your changes before continuing?");
    alert.buttons = {tr("Save"), tr("Discard changes"), tr("Cancel")};
    services_.dialogs.ask(alert, [this, refuse](AlertAnswer answer) {
        const auto go = [this] {
            const ActionEnAttente waiting = *std::exchange(actionEnAttente_, std::nullopt);
            perform(waiting);
            takeNextAction();
        };
        if (sauvegardeEnCours() && answer.button != 2) {
            // Begun while this was asked: neither answer can be followed before it has ended.
            gererActionProtegee(*std::exchange(actionEnAttente_, std::nullopt));
        } else if (answer.button == 0) {
            saveAll([go, refuse](bool saved) { saved ? go() : refuse(); });
        } else if (answer.button == 1) {
            rows_.discardAll();
            go();
        } else {
            refuse();
        }
    });
}

void ContentView::askToStopOperation() {
    Alert alert;
    alert.title = tr("New files are being made");
    alert.text = tr("Do you want to stop and quit? Files that are complete stay; the one in progress is taken back.");
    alert.buttons = {tr("Keep Working"), tr("Stop and Quit")};
    alert.cancelButton = 0;
    services_.dialogs.ask(alert, [this](AlertAnswer answer) {
        if (answer.button == 0) return;
        if (!operationsEnCours_) {
            services_.termination.applicationShouldTerminate();  // it ended while this was asked
            return;
        }
        quitsAfterOperation_ = true;
        emit operationStopRequested();
    });
}

void ContentView::setOperationsEnCours(bool running) {
    if (running == operationsEnCours_) return;
    operationsEnCours_ = running;
    if (running) operationIsOfListing_ = true;
    listing_.setQuiet(saves_.isRunning() || running);
    emit pendingChanged();
    if (!running && std::exchange(quitsAfterOperation_, false)) services_.termination.applicationShouldTerminate();
}

void ContentView::filesMade(const std::vector<std::filesystem::path>& made) {
    // Made of what was shown before: what is being opened is not to be disturbed.
    if (!operationIsOfListing_) return;
    if (dossier_) {
        toSelect_.clear();
        std::error_code none;
        for (const std::filesystem::path& file : made) {
            const std::filesystem::path folder = folderOf(file);
            // By another name it may be the same one; it has just been written to, and answers.
            if (folder == *dossier_ || std::filesystem::equivalent(folder, *dossier_, none))
                toSelect_.push_back(*dossier_ / file.filename());
        }
    } else {
        // Files that were opened one by one stand in a list, to which those belong that are made of them.
        fichiersDossier_.insert(fichiersDossier_.end(), made.begin(), made.end());
        toSelect_ = made;
    }
    readAgain(FolderListing::Reuse::unchanged);
}

void ContentView::filesRenamed(const FileMoves& moved) {
    followMoves(moved);
    saves_.forgetUndoOf(moved);
    emit pendingChanged();
    if (operationIsOfListing_) readAgain(FolderListing::Reuse::unchanged);
}

void ContentView::perform(const ActionEnAttente& action) {
    if (const auto* file = std::get_if<OuvrirFichier>(&action)) {
        const std::filesystem::path folder = folderOf(file->fichier);
        lookAt(action, {folder}, [this, folder, fichier = file->fichier](const std::vector<bool>& areFolders) {
            openFolder(folder, areFolders.front(), {fichier});
        });
    } else if (const auto* group = std::get_if<OuvrirGroupe>(&action)) {
        spdlog::info("executing .ouvrirGroupe; chargerGroupe will be called with {} URL(s)", group->fichiers.size());
        chargerGroupe(group->fichiers);
    } else if (const auto* folder = std::get_if<OuvrirDossier>(&action)) {
        lookAt(action, {folder->dossier}, [this, dossier = folder->dossier](const std::vector<bool>& areFolders) {
            openFolder(dossier, areFolders.front(), {});
        });
    } else if (const auto* dropped = std::get_if<OuvrirDepotFichiers>(&action)) {
        spdlog::info("executing .ouvrirDepotFichiers; chargerGroupe will be called with {} URL(s)",
                     dropped->fichiers.size());
        std::vector<std::filesystem::path> paths = dropped->fichiers;
        if (dropped->dossier) paths.push_back(*dropped->dossier);
        lookAt(action, std::move(paths),
               [this, dropped = *dropped](const std::vector<bool>& areFolders) { openDropped(dropped, areFolders); });
    } else {
        services_.termination.replyToApplicationShouldTerminate(true);
    }
}

void ContentView::lookAt(const ActionEnAttente& action, std::vector<std::filesystem::path> paths,
                         std::function<void(const std::vector<bool>& areFolders)> then) {
    lookID_ = Uuid::random();
    if (!paths.empty()) {
        services_.clock.after(answerTime, this, [this, look = *lookID_, name = toQt(paths.front().filename())] {
            if (lookID_ == look) emit notice(tr("“%1” does not answer.").arg(name));
        });
    }
    looking_.run(
        this,
        [paths = std::move(paths)] {
            std::vector<bool> areFolders;
            for (const std::filesystem::path& path : paths) {
                std::error_code none;
                areFolders.push_back(std::filesystem::is_directory(path, none));
            }
            return areFolders;
        },
        [this, action, look = *lookID_, then = std::move(then)](const std::vector<bool>& areFolders) {
            if (lookID_ != look) return;
            lookID_.reset();
            if (hasUnsavedChanges() || sauvegardeEnCours()) {
                gererActionProtegee(action);  // it took its time, in which something was edited
            } else {
                then(areFolders);
            }
        });
}

void ContentView::openDropped(const OuvrirDepotFichiers& dropped, const std::vector<bool>& areFolders) {
    const auto first = std::find(areFolders.begin(), areFolders.end(), true) - areFolders.begin();
    const auto folder = dropped.fichiers.begin() + std::min(first, std::ssize(dropped.fichiers));
    if (folder != dropped.fichiers.end()) {
        openFolder(*folder, true, {});
        if (dropped.fichiers.size() > 1) {
            emit notice(tr("%1 is open; one folder is shown at a time.").arg(toQt(folder->filename())));
        }
    } else if (dropped.dossier) {
        openFolder(*dropped.dossier, areFolders.back(), dropped.fichiers);
    } else {
        openFiles(dropped.fichiers);
    }
}

void ContentView::takeNextAction() {
    if (!nextAction_ || actionEnAttente_ || sauvegardeEnCours()) return;
    // Not from within what has just ended.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (const auto next = std::exchange(nextAction_, std::nullopt)) gererActionProtegee(*next);
        },
        Qt::QueuedConnection);
}

// --- Opening -------------------------------------------------------------------------------------------------------

void ContentView::loadFile() {
    OpenPanel panel;
    panel.title = tr("Load File");
    panel.prompt = tr("Load");
    panel.start = dossier_.value_or(std::filesystem::path());
    panel.nameFilters = listedNameFilters();
    services_.dialogs.choose(panel, [this](const std::optional<std::filesystem::path>& url) {
        if (url) gererActionProtegee(OuvrirFichier{*url});
    });
}

void ContentView::loadFolder() {
    OpenPanel panel;
    panel.title = tr("Load Folder");
    panel.prompt = tr("Load");
    panel.folders = true;
    panel.start = dossier_.value_or(std::filesystem::path());
    services_.dialogs.choose(panel, [this](const std::optional<std::filesystem::path>& url) {
        if (url) gererActionProtegee(OuvrirDossier{*url});
    });
}

void ContentView::openFolder(const std::filesystem::path& folder, bool isThere,
                             std::vector<std::filesystem::path> select) {
    if (!isThere) {
        showError(services_.dialogs, tr("Folder Not Found"),
                  tr("%1 is not there, or cannot be read.").arg(toQt(folder)));
        return;
    }
    // The one form in which listed files are named, so that files named from outside are found among them.
    std::error_code error;
    const std::filesystem::path whole = std::filesystem::absolute(folder, error).lexically_normal();
    dossier_ = error ? folder : whole.has_filename() ? whole : whole.parent_path();
    fichiersDossier_.clear();
    toSelect_.clear();
    operationIsOfListing_ = false;
    for (const std::filesystem::path& file : select)
        toSelect_.push_back(*dossier_ / file.filename());
    clearSelection();
    loadNone();
    services_.settings.set(settings::lastFolder, toQt(*dossier_));
    emit folderChanged();
    opening_ = true;
    reading_ = TakeRows::Reading::partial;
    startReading(FolderListing::Reuse::nothing);
}

void ContentView::openFiles(std::vector<std::filesystem::path> files) {
    std::erase_if(files, [](const std::filesystem::path& file) { return !isListed(file); });
    if (files.empty()) {
        showError(services_.dialogs, tr("Nothing to Open"), tr("None of these is an audio file that Dravik can open."));
        return;
    }
    dossier_.reset();
    fichiersDossier_ = std::move(files);
    toSelect_ = fichiersDossier_;
    operationIsOfListing_ = false;
    clearSelection();
    loadNone();
    emit folderChanged();
    reading_ = TakeRows::Reading::partial;
    startReading(FolderListing::Reuse::nothing);
}

void ContentView::loadNone() {
    selectedFolders_.clear();
    ReadRows rows;
    rows_.load(rows);
    services_.background.letGo(std::move(rows));
}

void ContentView::startReading(FolderListing::Reuse reuse) {
    if (dossier_) {
        listing_.readFolder(*dossier_, regrouperFichiersMono(), reuse);
    } else if (!fichiersDossier_.empty()) {
        listing_.readFiles(fichiersDossier_, regrouperFichiersMono(), reuse);
    }
}

void ContentView::readAgain(FolderListing::Reuse reuse) {
    if (sauvegardeEnCours()) return;  // it reads the folder again by itself
    reading_ = TakeRows::Reading::again;
    startReading(reuse);
}

void ContentView::onRowsRead(const std::shared_ptr<ReadRows>& rows, bool complete) {
    const bool again = reading_ == TakeRows::Reading::again;
    if (again && !complete) return;  // what was read before is shown until all of it is there anew
    if (sauvegardeEnCours()) {
        // What is being written keeps its rows; all of it is read again afterwards.
        missedReading_ = true;
        return;
    }
    const std::size_t missingBefore = rows_.missingRows().size();
    rows_.refresh(*rows, reading_ == TakeRows::Reading::partial && complete ? TakeRows::Reading::last : reading_);
    services_.background.letGo(std::move(*rows));
    if (complete) reading_ = TakeRows::Reading::last;
    if (const std::size_t missing = rows_.missingRows().size(); complete && missing > missingBefore) {
        emit notice(tr("%n take(s) with unsaved changes not in the folder any more. The changes are kept.", nullptr,
                       pluralOf(missing)));
    }
    selectAfterReading(complete);
}

void ContentView::selectAfterReading(bool complete) {
    if (!toSelect_.empty()) {
        const int row = rows_.indexOfFile(toSelect_.front());
        if (row >= 0 && (complete || row != selectedRow())) showTake(row);
        if (!complete && (row < 0 || toSelect_.size() > 1)) return;
        std::set<int> rows;
        for (const std::filesystem::path& file : std::exchange(toSelect_, {}))
            rows.insert(rows_.indexOfFile(file));
        rows.erase(-1);
        if (rows.size() > 1) emit rowsToSelect({rows.begin(), rows.end()});
        return;
    }
    if (selected_.empty()) {
        // A folder that was opened shows its first take, so that no view is empty without need.
        if (opening_ && !rows_.groupesTableau().empty()) showTake(0);
        opening_ = opening_ && rows_.groupesTableau().empty() && !complete;
        return;
    }
    opening_ = false;
    const int row = rows_.indexOfFile(selected_.front());
    if (row >= 0) {
        if (complete) showTake(row);
    } else if (complete) {
        clearSelection();
    }
}

QString ContentView::folderLabel() const {
    if (dossier_) return toQt(*dossier_);
    std::set<std::filesystem::path> folders = selectedFolders_;
    if (folders.empty()) {
        for (const std::filesystem::path& file : fichiersDossier_)
            folders.insert(folderOf(file));
    }
    if (folders.empty()) return {};
    return folders.size() == 1 ? toQt(*folders.begin()) : tr("Multiple folders");
}

bool ContentView::regrouperFichiersMono() const { return services_.settings.value(settings::regrouperFichiersMono); }

void ContentView::setRegrouperFichiersMono(bool regrouper) {
    if (regrouper == regrouperFichiersMono()) return;
    if (hasUnsavedChanges() || sauvegardeEnCours()) {
        showError(services_.dialogs, tr("Group Mono Files"), tr("Save changes before changing mono grouping."));
        return;
    }
    services_.settings.set(settings::regrouperFichiersMono, regrouper);
    rows_.forgetSteps();  // of rows that are about to be others
    reload();
    if (regrouper || services_.settings.value(settings::masquerAvertissementDesactivationGroupesMono)) return;
    Alert alert;
    alert.title = tr("Mono Group Detection Disabled");
    alert.text = tr(
        "Dravik will now treat mono files individually.\n\nBe careful when editing metadata: files that belong to the "
        "same take may become inconsistent if only one mono file is modified.\n\nRe-enable Group Mono Files to edit "
        "detected mono sets together.");
    alert.buttons = {tr("OK")};
    alert.checkBox = tr("Don't show again");
    services_.dialogs.ask(alert, [this](AlertAnswer answer) {
        if (answer.checked) {
            services_.settings.set(settings::masquerAvertissementDesactivationGroupesMono, true);
        }
    });
}

// --- The loaded take -----------------------------------------------------------------------------------------------

int ContentView::selectedRow() const noexcept { return selected_.empty() ? -1 : rows_.indexOfFile(selected_.front()); }

std::optional<std::filesystem::path> ContentView::fichierSelectionne() const {
    return selected_.empty() ? std::nullopt : std::optional(selected_.front());
}

void ContentView::selectionnerLigne(int row) {
    toSelect_.clear();  // the user was faster
    if (row < 0 || row == selectedRow()) return;
    std::vector<std::filesystem::path> urls;
    for (const InfoFichier& fichier : rows_.groupesTableau().at(static_cast<std::size_t>(row)).groupe.fichiers)
        urls.push_back(fichier.url);
    if (services_.settings.value(settings::confirmBeforeSelectingAnotherTake)) {
        gererActionProtegee(OuvrirGroupe{std::move(urls)});
    } else {
        chargerGroupe(urls);
    }
}

void ContentView::setLignesSelectionnees(const std::vector<int>& rows) {
    selectedFolders_.clear();
    for (const int row : rows) {
        if (row >= std::ssize(rows_.groupesTableau())) continue;
        for (const InfoFichier& fichier : rows_.groupesTableau().at(static_cast<std::size_t>(row)).groupe.fichiers)
            selectedFolders_.insert(folderOf(fichier.url));
    }
}

void ContentView::chargerGroupe(const std::vector<std::filesystem::path>& urls) {
    if (urls.empty()) return;
    const int row = rows_.indexOfFile(urls.front());
    if (row >= 0) showTake(row);
}

void ContentView::clearSelection() {
    if (selected_.empty()) return;
    selected_.clear();
    metadata_.reset();
    pistes_.clear();
    fields_.show();
    emit takeChanged();
    cues_.unload();
    emit selectionChanged();
}

void ContentView::showTake(int row) {
    const GroupeFichiers& original = rows_.groupesOriginauxTableau().at(static_cast<std::size_t>(row));
    std::vector<std::filesystem::path> files;
    for (const InfoFichier& fichier : original.fichiers)
        files.push_back(fichier.url);
    selected_ = std::move(files);
    metadata_ = summary(original);
    pistes_ = tracksOfGroup(rows_.groupesTableau().at(static_cast<std::size_t>(row)).groupe);
    rows_.endCollapsing();
    fields_.show();
    emit takeChanged();
    cues_.load(selected_.front());
    emit selectionChanged();
}

void ContentView::onRowsChanged(const std::vector<int>& rows) {
    const int row = selectedRow();
    if (row < 0 || std::find(rows.begin(), rows.end(), row) == rows.end()) return;
    fields_.follow();
    pistes_ = tracksOfGroup(rows_.groupesTableau().at(static_cast<std::size_t>(row)).groupe);
    emit takeChanged();
    emit cueMarkersChanged();
}

QString ContentView::undoName() const {
    if (sauvegardeEnCours()) return {};
    return rows_.canUndo() ? rows_.undoName() : saves_.undoName();
}

QString ContentView::redoName() const { return sauvegardeEnCours() ? QString() : rows_.redoName(); }

void ContentView::undo() {
    if (sauvegardeEnCours()) return;
    if (rows_.canUndo()) {
        rows_.undo();
    } else if (operationsEnCours_) {
        emit notice(finishCurrentFirst());  // undoing a save writes files
    } else if (canUndo()) {
        saves_.undoLast();
    }
}

void ContentView::redo() {
    if (canRedo()) rows_.redo();
}

void ContentView::saveAll(std::function<void(bool)> saved) {
    if (!saved) saved = [](bool) {};
    if (operationsEnCours_) {
        emit notice(finishCurrentFirst());
        saved(false);
        return;
    }
    emit commitRequested();
    saves_.saveAll(std::move(saved));
}

void ContentView::discardAll() {
    if (!hasUnsavedChanges() || sauvegardeEnCours()) return;
    Alert alert;
    alert.title = tr("Discard All Unsaved Changes?");
    alert.text = tr("Dravik will revert all pending metadata, track name and cue changes. This cannot be undone.");
    alert.buttons = {tr("Discard"), tr("Cancel")};
    alert.destructive = true;
    services_.dialogs.ask(alert, [this](AlertAnswer answer) {
        if (answer.button == 0) rows_.discardAll();
    });
}

}  // namespace dravik
