#include "app/operations_model.h"

#include "app/rename_patterns.h"
#include "app/report_defaults.h"
#include "app/text.h"
#include "base/paths.h"

#include <QPointer>
#include <algorithm>
#include <chrono>
#include <utility>

namespace dravik {
namespace {

constexpr auto rowsSettle = std::chrono::milliseconds(60);
constexpr auto typingSettle = std::chrono::milliseconds(120);
constexpr int mostPlans = 4;

/// What the form begins with.
RenamePattern firstPattern(const UserDefaults& settings) {
    RenamePattern pattern = rememberedRenamePattern(settings);
    return pattern.empty() ? parsePattern("{scene}_{take}_{trackName}") : pattern;
}

/// The names of a take's tracks, by which takes of one recorder's setup are told from others.
std::vector<std::string> trackNames(const GroupeFichiers& groupe) {
    std::vector<std::string> names;
    for (const Piste& piste : tracksOfGroup(groupe))
        names.push_back(piste.nom);
    return names;
}

}  // namespace

OperationsModel::OperationsModel(const Services& services)
    : services_(services),
      run_(services.background),
      items_(services.content.rows()),
      preserveTrackNumbers_(services.settings.value(settings::preserveTrackNumbers)),
      exportState_(rememberedExportState(services.settings)),
      reportForm_(reportDefaults(services.settings)) {
    tab_ = operationsTab(services_.settings.value(settings::operationsTab));
    items_.setTab(tab_);
    items_.setAppliquerTous(OperationsTab::export_, exportState_.appliquerTous);
    rename_.pattern = firstPattern(services_.settings);
    if (services_.settings.value(settings::renameCopies)) rename_.mode = OperationAudioBatchRenameMode::copyAndRename;
    if (services_.settings.value(settings::renameLeavesSeparators))
        rename_.emptyTokens = OperationsAudio::EmptyTokens::leaveSeparators;

    ContentView& content = services_.content;
    rowsDelay_.setSingleShot(true);
    rowsDelay_.setInterval(rowsSettle);
    connect(&rowsDelay_, &QTimer::timeout, this, &OperationsModel::onRowsChanged);
    const auto rowsChange = [this] {
        rowsDelay_.start();
        emit previewChanged();  // what is shown is not of these rows
    };
    connect(&content.rows(), &TakeRows::rowsReset, this, [this] {
        listItems();  // at once: what it names is gone
        rowsDelay_.start();
        emit previewChanged();
    });
    connect(&content.rows(), &TakeRows::rowsAppended, this, rowsChange);
    connect(&content.rows(), &TakeRows::rowsChanged, this, rowsChange);
    connect(&content, &ContentView::filesMoved, this, &OperationsModel::follow);
    connect(&content, &ContentView::folderChanged, this, [this] {
        // Another card may have other recordings under the same names; and what is typed is of one day.
        choices_.clear();
        items_.forgetUnchecked();
        rename_.keepBothFor.clear();
        reportTape_.clear();
        // Whoever asks the volume of the folder before may never come back.
        if (*plansOut_ > 0) {
            planner_ = std::make_unique<LooseBackground>();
            plansOut_ = std::make_shared<int>(0);
        }
        emit choicesChanged();
    });
    checks_.setSingleShot(true);
    connect(&checks_, &QTimer::timeout, this, &OperationsModel::itemsChanged);
    delay_.setSingleShot(true);
    delay_.setInterval(typingSettle);
    connect(&delay_, &QTimer::timeout, this, &OperationsModel::plan);

    connect(&run_, &OperationsRun::ended, this, &OperationsModel::onEnded);
    connect(&content, &ContentView::operationStopRequested, &run_, &OperationsRun::cancel);

    Commands& commands = services_.commands;
    for (const OperationsTab tab : allOperationsTabs)
        connect(&commands, commandOf(tab), this, [this, tab] { demander(tab); });
    connect(&commands, &Commands::dravikShowOperations, this, [this] { demander(std::nullopt); });
    connect(&commands, &Commands::dravikOperationsNextTab, this, [this] { demander(dravik::nextTab(tab_)); });
    connect(&commands, &Commands::dravikOperationsPreviousTab, this, [this] { demander(dravik::previousTab(tab_)); });
}

OperationsModel::~OperationsModel() { stopPlanning(); }

// --- The window ----------------------------------------------------------------------------------------------------

void OperationsModel::setAfficherOperations(bool shown) {
    if (shown == afficherOperations_) return;
    afficherOperations_ = shown;
    if (shown) {
        listItems();
        replan();
    } else {
        stopPlanning();
    }
    emit shownChanged();
}

void OperationsModel::demander(std::optional<OperationsTab> tab) {
    operationsTabDemandee_ = tab;
    ++operationsTabDemandeID_;
    if (tab) static_cast<void>(setTab(*tab));
    emit presentRequested();
}

bool OperationsModel::setTab(OperationsTab tab) {
    if (tab == tab_) return true;
    if (run_.isRunning() || confirmed_) {
        emit notice(finishCurrentFirst());
        return false;
    }
    run_.dismiss();
    tab_ = tab;
    services_.settings.set(settings::operationsTab, rawValue(tab));
    items_.setTab(tab);
    preview_ = {};
    emit tabChanged();
    emit previewChanged();
    listItems();
    replan();
    return true;
}

// --- What it is about ----------------------------------------------------------------------------------------------

void OperationsModel::setChecked(int item, bool checked) {
    if (item < 0 || item >= std::ssize(items_.all())) return;
    items_.setChecked(item, checked);
    // Thousands may be checked one by one; the list shows each already.
    checks_.start();
    replan();
}

void OperationsModel::setAllChecked(bool checked) {
    items_.setAllChecked(checked);
    emit itemsChanged();
    replan();
}

void OperationsModel::setSelectedRows(const std::vector<int>& rows) {
    if (items_.setSelectedRows(rows) && afficherOperations_ && !appliquerTous()) rowsDelay_.start();
}

void OperationsModel::setAppliquerTous(bool all) {
    if (!canChooseAll() || all == appliquerTous()) return;
    items_.setAppliquerTous(*tab_, all);
    if (tab_ == OperationsTab::export_) rememberExportState(services_.settings, exportState());
    listItems();
    emit choicesChanged();
    replan();
}

void OperationsModel::setCurrentItem(int item) {
    if (item == items_.current() || item >= std::ssize(items_.all())) return;
    items_.setCurrent(item);
    emit currentItemChanged();
}

std::vector<Piste> OperationsModel::currentTracks() const {
    const GroupeFichiers* groupe = items_.currentTake();
    return groupe == nullptr ? std::vector<Piste>() : tracksOfGroup(*groupe);
}

std::vector<std::filesystem::path> OperationsModel::currentFiles() const {
    std::vector<std::filesystem::path> files;
    if (const GroupeFichiers* groupe = items_.currentTake(); groupe != nullptr) {
        for (const InfoFichier& fichier : groupe->fichiers)
            files.push_back(fichier.url);
    }
    return files;
}

std::vector<UnreadableTrack> OperationsModel::currentUnreadable() const {
    const GroupeFichiers* groupe = items_.currentTake();
    return groupe != nullptr ? groupe->unreadableTracks : std::vector<UnreadableTrack>();
}

void OperationsModel::listItems() {
    // They name rows, which have just become others.
    if (afficherOperations_) {
        items_.list(services_.content.selectedRow());
    } else {
        items_.clear();
    }
    emit itemsChanged();
    emit currentItemChanged();
}

void OperationsModel::onRowsChanged() {
    menuState_.set(OperationMenuAvailability::of(services_.content.rows().groupesOriginauxTableau()));
    listItems();
    replan();
}

void OperationsModel::follow(const FileMoves& moved) {
    items_.follow(moved);
    if (confirmed_) {
        for (std::string& key : confirmed_->keys) {
            if (const auto found = moved.find(key); found != moved.end()) key = found->second.native();
        }
    }
    std::map<std::string, TrackChoices> come;  // after all that go: files may have exchanged their names
    for (const auto& [before, now] : moved) {
        if (auto node = choices_.extract(before.native()); !node.empty()) {
            node.key() = now.native();
            come.insert(std::move(node));
        }
    }
    choices_.merge(come);
}

// --- What was chosen -----------------------------------------------------------------------------------------------

TrackChoices OperationsModel::choicesOf(const GroupeFichiers& groupe) const {
    const auto found = choices_.find(TakeRows::keyOf(groupe));
    const TrackChoices standard = TrackChoices::standard(groupe);
    // What was read anew may have other tracks.
    return found == choices_.end() || found->second.ordre.size() != standard.ordre.size() ? standard : found->second;
}

TrackChoices OperationsModel::currentChoices() const {
    const GroupeFichiers* groupe = items_.currentTake();
    return groupe == nullptr ? TrackChoices() : choicesOf(*groupe);
}

void OperationsModel::setCurrentChoices(const TrackChoices& choices) {
    const GroupeFichiers* groupe = items_.currentTake();
    if (groupe == nullptr || choices == choicesOf(*groupe)) return;
    choices_[TakeRows::keyOf(*groupe)] = choices;
    onChoices();
}

std::vector<const GroupeFichiers*> OperationsModel::similar() const {
    const GroupeFichiers* shown = items_.currentTake();
    if (shown == nullptr) return {};
    const std::vector<std::string> names = trackNames(*shown);
    std::vector<const GroupeFichiers*> found;
    for (const OperationChoiceItem& item : items_.all()) {
        const GroupeFichiers* groupe = items_.takeOf(item);
        if (item.checked && groupe != nullptr && groupe != shown && trackNames(*groupe) == names)
            found.push_back(groupe);
    }
    return found;
}

int OperationsModel::similarCount() const { return static_cast<int>(similar().size()); }

void OperationsModel::copyChoicesToSimilar() {
    TrackChoices shown = currentChoices();
    // Which files cannot be read is a matter of each take: leaving one out is decided where it is seen.
    shown.exclus.erase(shown.exclus.lower_bound(static_cast<int>(currentFiles().size())), shown.exclus.end());
    for (const GroupeFichiers* groupe : similar())
        choices_[TakeRows::keyOf(*groupe)] = shown;
    onChoices();
}

void OperationsModel::setPreserveTrackNumbers(bool preserve) {
    if (preserve == preserveTrackNumbers_) return;
    preserveTrackNumbers_ = preserve;
    services_.settings.set(settings::preserveTrackNumbers, preserve);
    onChoices();
}

void OperationsModel::setExportState(const ExportAudioSessionState& state) {
    // Which takes take part is chosen in the list, and the form may not have heard of it yet.
    if (state == exportState()) return;
    exportState_ = state;
    rememberExportState(services_.settings, exportState());
    onChoices();
}

ExportAudioSessionState OperationsModel::exportState() const {
    ExportAudioSessionState state = exportState_;
    state.appliquerTous = items_.appliquerTous(OperationsTab::export_);
    state.sourcesDesactivees = items_.unchecked(OperationsTab::export_);
    return state;
}

void OperationsModel::setRenamePattern(const RenamePattern& pattern) {
    rename_.pattern = pattern;
    rememberRenamePattern(services_.settings, pattern);
    rename_.keepBothFor.clear();
    onChoices();
}

void OperationsModel::setRenameMode(OperationAudioBatchRenameMode mode) {
    if (mode == rename_.mode) return;
    rename_.mode = mode;
    services_.settings.set(settings::renameCopies, mode == OperationAudioBatchRenameMode::copyAndRename);
    emit destinationChanged();
    onChoices();
}

void OperationsModel::setLeavesSeparators(bool leaves) {
    rename_.emptyTokens =
        leaves ? OperationsAudio::EmptyTokens::leaveSeparators : OperationsAudio::EmptyTokens::takeSeparatorsAlong;
    services_.settings.set(settings::renameLeavesSeparators, leaves);
    onChoices();
}

void OperationsModel::setKeepBoth(bool keepBoth) {
    rename_.keepBoth = keepBoth;
    if (!keepBoth) rename_.keepBothFor.clear();
    onChoices();
}

void OperationsModel::keepBothFor(int previewRow) {
    if (previewRow < 0 || previewRow >= std::ssize(preview_.rows)) return;
    rename_.keepBothFor.insert(preview_.rows[static_cast<std::size_t>(previewRow)].file);
    onChoices();
}

void OperationsModel::setReportForm(const ReportForm& form) {
    if (form == reportForm_) return;
    reportForm_ = form;
    onChoices();
}

void OperationsModel::setReportTape(const QString& tape) {
    reportTape_ = tape;
    onChoices();
}

void OperationsModel::onChoices() {
    emit choicesChanged();
    replan();
}

bool OperationsModel::needsDestination() const noexcept {
    return tab_ == OperationsTab::report ||
           (tab_ == OperationsTab::rename && rename_.mode == OperationAudioBatchRenameMode::copyAndRename);
}

void OperationsModel::chooseDestination() {
    if (!tab_) return;
    OpenPanel panel;
    panel.title = tr("Choose a destination folder");
    panel.prompt = tr("Choose");
    panel.folders = true;
    panel.start = destination().value_or(services_.content.dossierSelectionne().value_or(std::filesystem::path()));
    services_.dialogs.choose(panel, [this, tab = *tab_](const std::optional<std::filesystem::path>& folder) {
        if (!folder) return;
        items_.setDestination(tab, *folder);
        emit destinationChanged();
        replan();
    });
}

void OperationsModel::setDestination(const std::optional<std::filesystem::path>& folder) {
    if (!tab_ || folder == destination()) return;
    items_.setDestination(*tab_, folder);
    emit destinationChanged();
    replan();
}

// --- What would come of it -----------------------------------------------------------------------------------------

OperationRequest OperationsModel::request() const {
    OperationRequest request;
    request.tab = tab_.value_or(OperationsTab::merge);
    request.destination = destination();
    request.preserveTrackNumbers = preserveTrackNumbers_;
    request.exportState = exportState_;
    request.rename = rename_;
    request.rename.destination = request.destination.value_or(std::filesystem::path());
    fill(request, items_.checkedKeys());
    return request;
}

void OperationsModel::fill(OperationRequest& request, const std::vector<std::string>& keys) const {
    const TakeRows& rows = services_.content.rows();
    for (const std::string& key : keys) {
        const int row = rows.indexOfFile(key);
        if (row < 0) continue;
        const GroupeFichiers& groupe = rows.groupesTableau()[static_cast<std::size_t>(row)].groupe;
        if (request.tab == OperationsTab::rename) {
            request.fichiers.push_back(fileAsSaved(row, key));
        } else if (request.tab == OperationsTab::report) {
            const std::vector<InfoFichier> files = filesAsShown(groupe);
            request.fichiers.insert(request.fichiers.end(), files.begin(), files.end());
        } else {
            request.groupes.push_back(groupe);
            request.choices.emplace(TakeRows::keyOf(groupe), choicesOf(groupe));
        }
    }
    if (request.tab != OperationsTab::report) return;
    request.report = parametersOf(reportForm_, request.fichiers);
    if (!reportTape_.isEmpty()) request.report.tape = reportTape_.toStdString();
    request.report = completed(std::move(request.report), request.fichiers);
}

InfoFichier OperationsModel::fileAsSaved(int row, const std::string& key) const {
    const TakeRows& rows = services_.content.rows();
    const RowState& state = rows.groupesTableau()[static_cast<std::size_t>(row)];
    const std::vector<InfoFichier> files = filesAsShown(state.groupe);
    const auto isIt = [&](const InfoFichier& file) { return file.url.native() == key; };
    InfoFichier file = *std::find_if(files.begin(), files.end(), isIt);
    if (!rows.isEdited(row)) return file;
    for (const SaveItem& item : planSave(state, rows.groupesOriginauxTableau()[static_cast<std::size_t>(row)])) {
        if (!item.newName || !isIt(item.fichier)) continue;
        file.nom = *item.newName;
        file.url.replace_filename(*item.newName + file.url.extension().native());
        break;
    }
    return file;
}

void OperationsModel::stopPlanning() {
    delay_.stop();
    if (planning_) planning_->cancel();
    planning_.reset();
}

void OperationsModel::replan() {
    if (!afficherOperations_ || !tab_ || run_.isRunning()) return;
    stopPlanning();
    delay_.start();
    emit previewChanged();
}

void OperationsModel::plan() {
    // A volume that does not answer keeps the threads that ask it: not one more for every choice.
    if (*plansOut_ >= mostPlans) {
        planDue_ = true;
        emit previewChanged();
        return;
    }
    planDue_ = false;
    const auto token = std::make_shared<CancellationToken>();
    planning_ = token;
    ++*plansOut_;
    planner_->run(
        this,
        [request = request(), services = services_.operations, token]() -> OperationPreview {
            if (request.groupes.empty() && request.fichiers.empty()) return {};
            try {
                return previewOf(request, services, {token.get(), {}});
            } catch (const Cancelled&) {
                return {};
            } catch (const std::exception& error) {
                OperationPreview preview;
                preview.problems = toQt(userText(error));
                return preview;
            }
        },
        [this, token, plansOut = plansOut_](OperationPreview preview) {
            --*plansOut;
            if (planning_ == token) {
                planning_.reset();
                preview_ = std::move(preview);
                emit previewChanged();
            }
            if (planDue_) plan();
        });
}

bool OperationsModel::isPlanning() const noexcept {
    return planning_ != nullptr || planDue_ || delay_.isActive() || rowsDelay_.isActive();
}

bool OperationsModel::canRun() const noexcept {
    return !run_.overlay() && !confirmed_ && !isPlanning() && preview_.canRun;
}

// --- The run -------------------------------------------------------------------------------------------------------

void OperationsModel::run() {
    if (run_.isRunning() || confirmed_) {
        emit notice(finishCurrentFirst());
        return;
    }
    if (!canRun()) return;
    ContentView& content = services_.content;
    if (content.sauvegardeEnCours()) {
        emit notice(tr("Wait until saving is done, or cancel it."));
        return;
    }
    content.commitEditing();
    if (!content.hasUnsavedChanges()) {
        begin(request());
        return;
    }
    Alert alert;
    alert.title = tr("Unsaved modifications");
    alert.text = tr("New files are made from what is on disk. Do you want to save your changes first?");
    alert.buttons = {tr("Save and Continue"), tr("Cancel")};
    // What is done is what was asked for now, whatever is chosen until the save has ended; the takes are looked up
    // then, as they are on disk.
    confirmed_ = Confirmed{request(), items_.checkedKeys()};
    emit previewChanged();
    services_.dialogs.ask(alert, [this](AlertAnswer answer) {
        const auto drop = [this] {
            confirmed_.reset();
            emit previewChanged();
        };
        if (answer.button != 0) {
            drop();
            return;
        }
        services_.content.saveAll([this, drop](bool saved) {
            if (!saved || !confirmed_) {
                drop();
                return;
            }
            Confirmed asked = std::move(*confirmed_);
            confirmed_.reset();
            asked.request.fichiers.clear();
            asked.request.groupes.clear();
            asked.request.choices.clear();
            fill(asked.request, asked.keys);
            begin(std::move(asked.request));
        });
    });
}

void OperationsModel::begin(OperationRequest request) {
    if (run_.overlay()) return;
    stopPlanning();
    const OperationsTab tab = request.tab;
    const auto count = static_cast<int>(std::max(request.groupes.size(), request.fichiers.size()));
    const QString folder = services_.content.folderLabel();
    services_.content.setOperationsEnCours(true);
    // A name that is typed meanwhile would be one for a file that is called otherwise by then.
    locksRows_ = tab == OperationsTab::rename && request.rename.mode == OperationAudioBatchRenameMode::renameInPlace;
    if (locksRows_) services_.content.rows().setLocked(true);
    run_.start(tab, count, folder.section(QLatin1Char('/'), -1),
               [request = std::move(request), services = services_.operations](const TaskContext& task) {
                   return perform(request, services, task);
               });
}

void OperationsModel::onEnded(const std::vector<std::filesystem::path>& made, const FileMoves& moved) {
    ContentView& content = services_.content;
    if (std::exchange(locksRows_, false)) content.rows().setLocked(false);
    content.setOperationsEnCours(false);
    if (!moved.empty()) {
        content.filesRenamed(moved);
    } else if (tab_ == OperationsTab::report) {  // which cannot change during a run
        if (!made.empty()) reveal(made.front());
    } else {
        content.filesMade(made);
    }
    replan();
}

void OperationsModel::reveal(const std::filesystem::path& file) {
    revealing_.run(
        this, [&workspace = services_.workspace, file] { return workspace.reveal(file); },
        [this](const QString& problem) {
            if (!problem.isEmpty()) emit notice(problem);
        });
}

}  // namespace dravik
