#include "ui/main_window.h"

#include "app/text.h"
#include "model/audio_metadata.h"
#include "ui/floating_views.h"
#include "ui/folder_browser.h"
#include "ui/metrics.h"
#include "ui/mixer_view.h"
#include "ui/operations/operations_window.h"
#include "ui/status_line.h"
#include "ui/take_editor.h"
#include "ui/take_table.h"
#include "ui/transport_actions.h"
#include "ui/transport_bar.h"
#include "ui/waveform_view.h"

#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusTipEvent>
#include <QToolBar>
#include <QVBoxLayout>
#include <cmath>
#include <tuple>
#include <utility>

namespace dravik {
namespace {

constexpr const char* geometryKey = "DravikMainWindow.geometry";
constexpr QSize firstSize(1280, 800);
/// Below that the panes are too narrow to be of use.
constexpr QSize leastSize(760, 480);
/// What the editor is given when the window is too low for the table that is remembered.
constexpr int editorHeight = 250;
constexpr int leastTableHeight = 150;
constexpr int leastPresentationHeight = 124;
/// What a strip of the mixer needs to be worked with.
constexpr int mixerHeight = 284;

/// "1:02:07" or "2:07".
QString clockText(double seconds) {
    const qint64 all = std::llround(seconds);
    const QString tail = QStringLiteral("%1:%2")
                             .arg(all / 60 % 60, all >= 3600 ? 2 : 1, 10, QLatin1Char('0'))
                             .arg(all % 60, 2, 10, QLatin1Char('0'));
    return all >= 3600 ? QStringLiteral("%1:%2").arg(all / 3600).arg(tail) : tail;
}

}  // namespace

MainWindow::MainWindow(const Services& services) : services_(services) {
    setObjectName(QString::fromLatin1(SingleMainWindowCoordinator::mainWindowIdentifier));
    setAcceptDrops(true);
    setWindowIcon(QIcon(QStringLiteral(":/icons/dravik.svg")));
    browser_ = new FolderBrowser(services_.content, services_.workspace, services_.dialogs, services_.files,
                                 services_.theme, this);
    table_ = new TakeTable(services_.content, services_.settings, services_.theme, this);
    editor_ = new TakeEditor(services_.content, services_.theme, this);
    waveform_ = new WaveformView(services_.content, services_.playback, services_.waveform, services_.settings,
                                 services_.theme, this);
    mixer_ = new MixerView(services_.content, services_.playback, services_.settings, services_.theme,
                           MixerView::Scale::asSet, this);
    transport_ =
        new TransportBar(services_.playback, services_.settings, services_.theme, TransportBar::Form::bar, this);
    // The floating windows are children of this one, and go with it.
    floating_ = new FloatingViews(services_.content, services_.playback, services_.settings, services_.theme,
                                  services_.commands, this);
    operations_ = new OperationsWindow(
        {services_.operations, services_.settings, services_.dialogs, services_.commands, services_.theme}, this);
    arrange();
    makeActions();
    makeMenus();
    makeToolbar();
    restoreLayout();

    ContentView& content = services_.content;
    connect(&content, &ContentView::commitRequested, table_, &TakeTable::commitEditing);
    connect(&content, &ContentView::commitRequested, editor_, &TakeEditor::commitPending);
    connect(&content, &ContentView::pendingChanged, this, &MainWindow::refreshActions);
    connect(&content, &ContentView::pendingChanged, this, &MainWindow::refreshTitle);
    connect(&content, &ContentView::selectionChanged, this, &MainWindow::refreshActions);
    connect(&content, &ContentView::folderChanged, this, [this] {
        status_->tell({});  // what was told is of the folder before
        refreshTitle();
        if (const auto& folder = services_.content.dossierSelectionne()) browser_->reveal(*folder);
    });
    connectStatusLine();
    connectOperations();
    TakeRows& rows = content.rows();
    connect(&rows, &TakeRows::rowsReset, this, &MainWindow::refreshCounts);
    connect(&rows, &TakeRows::rowsAppended, this, &MainWindow::refreshCounts);
    connect(table_, &TakeTable::selectionChanged, this, &MainWindow::refreshCounts);
    connect(table_, &TakeTable::selectionChanged, this, [this] {
        const std::vector<int> selected = table_->selectedRows();
        services_.content.setLignesSelectionnees(selected);
        services_.operations.setSelectedRows(selected);
        refreshTitle();
    });
    connect(table_, &TakeTable::selectionChanged, this, &MainWindow::refreshActions);
    connect(editor_, &TakeEditor::stepReplayed, table_, &TakeTable::showLastChange);
    connect(&services_.theme, &Theme::changed, this, &MainWindow::refreshIcons);

    Commands& commands = services_.commands;
    connect(&commands, &Commands::dravikShowTable, this, [this] {
        // Once more leads back to what was there before the table had the window to itself.
        setPresentation(presentation_->isVisibleTo(this) ? PresentationMode::table : dernierModeNonTable_);
    });
    connect(&commands, &Commands::dravikShowWaveforms, this, [this] { setPresentation(PresentationMode::waveforms); });
    connect(&commands, &Commands::dravikShowMixerView, this, [this] { setPresentation(PresentationMode::mixer); });
    connect(waveform_, &WaveformView::otherTakeAsked, table_, &TakeTable::goToOtherTake);
    connect(&services_.playback, &TakePlayback::stateChanged, this, [this] {
        if (const QString& error = services_.playback.error(); !error.isEmpty()) status_->tell(error);
    });

    refreshIcons();
    refreshActions();
    refreshTitle();
    refreshCounts();
    services_.windows.setMainWindow(this);
}

MainWindow::~MainWindow() {
    rememberLayout();
    services_.windows.setMainWindow(nullptr);
}

void MainWindow::present() {
    if (isMinimized()) showNormal();
    show();
    raise();
    activateWindow();
}

std::string MainWindow::description() const {
    return QStringLiteral("%1 visible=%2 minimised=%3")
        .arg(objectName())
        .arg(isVisible())
        .arg(isMinimized())
        .toStdString();
}

// --- Layout --------------------------------------------------------------------------------------------------------

void MainWindow::arrange() {
    down_ = new QSplitter(Qt::Vertical, this);
    down_->setObjectName(QStringLiteral("down"));
    down_->addWidget(table_);
    presentation_ = new QStackedWidget(this);
    presentation_->addWidget(waveform_);
    presentation_->addWidget(mixer_);
    presentation_->setMinimumHeight(leastPresentationHeight);
    down_->addWidget(presentation_);
    down_->addWidget(editor_);
    for (const auto& [at, stretch] : {std::pair(0, 1), std::pair(1, 1), std::pair(2, 0)})
        down_->setStretchFactor(at, stretch);
    down_->setChildrenCollapsible(false);
    auto* right = new QWidget(this);
    auto* column = new QVBoxLayout(right);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addWidget(down_, 1);
    column->addWidget(transport_);
    across_ = new QSplitter(Qt::Horizontal, this);
    across_->setObjectName(QStringLiteral("across"));
    across_->addWidget(browser_);
    across_->addWidget(right);
    across_->setStretchFactor(0, 0);
    across_->setStretchFactor(1, 1);
    across_->setChildrenCollapsible(false);
    across_->setHandleWidth(1);
    setCentralWidget(across_);
}

void MainWindow::restoreLayout() {
    setMinimumSize(leastSize);
    resize(firstSize);
    restoreGeometry(services_.settings.stored(QString::fromLatin1(geometryKey)).toByteArray());
    const int browserWidth = services_.settings.value(settings::layoutLargeurNavigateur);
    const int tableHeight = services_.settings.value(settings::layoutHauteurZoneTableau);
    across_->setSizes({browserWidth, std::max(200, width() - browserWidth)});
    // Less than is remembered where the window is too low for both.
    const int room = height() - menuBar()->sizeHint().height() - 60;
    const int presentation =
        std::max(leastPresentationHeight, services_.settings.value(settings::layoutHeightPresentation));
    const bool editor = services_.settings.value(settings::layoutEditorVisible);
    const int below = presentation + (editor ? editorHeight : 0);
    const int table = std::clamp(tableHeight, leastTableHeight, std::max(leastTableHeight, room - below));
    down_->setSizes({table, presentation, std::max(editorHeight, room - table - presentation)});
    showEditor_->setChecked(editor);
    browser_->setVisible(services_.settings.value(settings::layoutNavigateurVisible));
    showBrowser_->setChecked(services_.settings.value(settings::layoutNavigateurVisible));
    setPresentation(presentationMode(services_.settings.value(settings::layoutVueActive)));
}

void MainWindow::rememberLayout() {
    services_.settings.store(QString::fromLatin1(geometryKey), saveGeometry());
    // What is hidden has no size to remember.
    if (browser_->isVisibleTo(this)) {
        services_.settings.set(settings::layoutLargeurNavigateur, across_->sizes().value(0));
    }
    if (presentation_->isVisibleTo(this)) {
        services_.settings.set(settings::layoutHauteurZoneTableau, down_->sizes().value(0));
        services_.settings.set(settings::layoutHeightPresentation, down_->sizes().value(1));
    }
    services_.settings.set(settings::layoutNavigateurVisible, browser_->isVisibleTo(this));
}

void MainWindow::setPresentation(PresentationMode mode) {
    if (mode != PresentationMode::table) dernierModeNonTable_ = mode;
    presentation_->setVisible(mode != PresentationMode::table);
    presentation_->setCurrentWidget(mode == PresentationMode::mixer ? static_cast<QWidget*>(mixer_) : waveform_);
    editor_->setVisible(mode != PresentationMode::table && showEditor_->isChecked());
    modes_.at(mode)->setChecked(true);
    services_.settings.set(settings::layoutVueActive, toText(mode));
    QList<int> heights = down_->sizes();
    if (mode == PresentationMode::mixer && heights.at(1) < mixerHeight) {
        // First what the editor has beyond its need, then the table's.
        for (const auto& [giver, least] : {std::pair(2, editorHeight), std::pair(0, leastTableHeight)}) {
            const int taken = std::clamp(mixerHeight - heights.at(1), 0, std::max(0, heights.at(giver) - least));
            heights[giver] -= taken;
            heights[1] += taken;
        }
        down_->setSizes(heights);
    }
}

void MainWindow::setEditorVisible(bool visible) {
    services_.settings.set(settings::layoutEditorVisible, visible);
    showEditor_->setChecked(visible);
    // Asked for, it is shown: the table alone has no room for it.
    const PresentationMode mode = presentationMode(services_.settings.value(settings::layoutVueActive));
    setPresentation(visible && mode == PresentationMode::table ? dernierModeNonTable_ : mode);
}

// --- Actions -------------------------------------------------------------------------------------------------------

QAction* MainWindow::action(KeyId key, const QString& icon, const QString& help, std::function<void()> run) {
    QAction* made = action(shortcut(key).name, icon, help, std::move(run));
    made->setShortcut(keyOf(key));
    made->setToolTip(QStringLiteral("%1 (%2)").arg(made->toolTip(), keyText(key)));
    return made;
}

QAction* MainWindow::action(const QString& text, const QString& icon, const QString& help, std::function<void()> run) {
    auto* made = new QAction(text, this);
    made->setToolTip(help.isEmpty() ? text : help);
    made->setStatusTip(help);
    if (!icon.isEmpty()) icons_.emplace_back(made, icon);
    if (run) connect(made, &QAction::triggered, this, [run = std::move(run)] { run(); });
    return made;
}

void MainWindow::makeActions() {
    saveAll_ = action(QStringLiteral("Save All"), QStringLiteral("save"), QStringLiteral("Save all pending changes"),
                      [this] { emit services_.commands.dravikSaveChanges(); });
    discard_ = action(QStringLiteral("Discard"), QStringLiteral("discard"),
                      QStringLiteral("Discard all unsaved changes"), [this] { services_.content.discardAll(); });
    undo_ = action(KeyId::undo, QStringLiteral("undo"), {}, [this] {
        services_.content.undo();
        table_->showLastChange();
    });
    redo_ = action(KeyId::redo, QStringLiteral("redo"), {}, [this] {
        services_.content.redo();
        table_->showLastChange();
    });
    group_ = action(QStringLiteral("Group Mono Files"), {},
                    QStringLiteral("Show the mono files of one take as one row"), [this] {
                        services_.content.setRegrouperFichiersMono(group_->isChecked());
                        refreshActions();  // it may have been refused
                    });
    group_->setCheckable(true);
    loadFolder_ = action(KeyId::loadFolder, QStringLiteral("folder"), QStringLiteral("Open a folder of recordings"),
                         [this] { emit services_.commands.dravikLoadFolder(); });
    reload_ = action(KeyId::reload, {}, QStringLiteral("Read the folder again; unsaved changes stay"),
                     [this] { browser_->refresh(); });
    showBrowser_ = action(KeyId::showBrowser, QStringLiteral("browser"),
                          QStringLiteral("Show or hide the folder browser"), [this] {
                              browser_->setVisible(showBrowser_->isChecked());
                              services_.settings.set(settings::layoutNavigateurVisible, showBrowser_->isChecked());
                          });
    showBrowser_->setCheckable(true);
    showEditor_ = action(KeyId::showEditor, {}, QStringLiteral("Show or hide the fields of the selected take"),
                         [this] { setEditorVisible(showEditor_->isChecked()); });
    showEditor_->setCheckable(true);
    auto* modes = new QActionGroup(this);
    const auto mode = [&](PresentationMode which, KeyId key, const char* icon, const char* help,
                          void (Commands::*shown)()) {
        QAction* made = action(key, QString::fromLatin1(icon), QString::fromLatin1(help),
                               [&commands = services_.commands, shown] { emit(commands.*shown)(); });
        made->setCheckable(true);
        modes_[which] = modes->addAction(made);
    };
    mode(PresentationMode::table, KeyId::showTable, "", "The table alone", &Commands::dravikShowTable);
    mode(PresentationMode::waveforms, KeyId::showWaveforms, "waveform", "The waveform of the selected take below",
         &Commands::dravikShowWaveforms);
    mode(PresentationMode::mixer, KeyId::showMixer, "mixer", "The monitoring mixer below",
         &Commands::dravikShowMixerView);
}

void MainWindow::makeMenus() {
    const auto take = [this](const auto& what, const QString& help, void (TakeTable::*run)()) {
        QAction* made = action(what, {}, help, {});
        connect(made, &QAction::triggered, table_, run);
        actionsOnTakes_.push_back(made);
        return made;
    };
    QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
    file->addAction(loadFolder_);
    file->addAction(action(KeyId::loadFile, QStringLiteral("file"), QStringLiteral("Open a recording and its folder"),
                           [this] { emit services_.commands.dravikLoadFile(); }));
    file->addAction(reload_);
    file->addSeparator();
    file->addAction(action(KeyId::save, QStringLiteral("save"), QStringLiteral("Save all pending changes"),
                           [this] { emit services_.commands.dravikSaveChanges(); }));
    file->addAction(discard_);
    file->addSeparator();
    file->addAction(action(KeyId::preferences, {}, {}, [this] { emit preferencesRequested(); }));
    file->addSeparator();
    QAction* quit = action(KeyId::quit, {}, {}, [this] { this->quit(); });
    quit->setMenuRole(QAction::QuitRole);
    file->addAction(quit);

    QMenu* edit = menuBar()->addMenu(QStringLiteral("&Edit"));
    edit->addAction(undo_);
    edit->addAction(redo_);
    edit->addSeparator();
    // The table has these keys while it has the keyboard; text fields keep their own.
    edit->addAction(take(QStringLiteral("Copy Column"), QStringLiteral("Copy the current column of the selection"),
                         &TakeTable::copy));
    edit->addAction(take(QStringLiteral("Paste Column"),
                         QStringLiteral("Paste lines downwards from the first selected row"), &TakeTable::paste));
    edit->addSeparator();
    edit->addAction(action(KeyId::find, QStringLiteral("search"), QStringLiteral("Filter the takes"),
                           [this] { table_->focusFilter(); }));

    QMenu* takes = menuBar()->addMenu(QStringLiteral("&Take"));
    takes->addAction(take(QStringLiteral("Edit Cell"),
                          QStringLiteral("Edit the current cell of the table (%1)").arg(keyText(KeyId::editCell)),
                          &TakeTable::editCurrentCell));
    takes->addAction(take(KeyId::toggleCircled, QStringLiteral("Circle the selected takes, or take the circle away"),
                          &TakeTable::toggleCircled));
    takes->addSeparator();
    takes->addAction(take(KeyId::fillDown, QStringLiteral("The value of the first selected row for all selected rows"),
                          &TakeTable::fillDown));
    takes->addAction(take(KeyId::incrementTakes, QStringLiteral("Each selected row gets the take after its own"),
                          &TakeTable::incrementTakes));
    takes->addAction(take(QStringLiteral("Number Takes"), QStringLiteral("Count up from the first selected row's take"),
                          &TakeTable::numberTakes));
    takes->addSeparator();
    takes->addAction(group_);

    makeOperationsMenu();
    makeViewMenus();

    QMenu* help = menuBar()->addMenu(QStringLiteral("&Help"));
    help->addAction(action(KeyId::showShortcuts, {}, {}, [this] { emit shortcutsRequested(); }));
    help->addAction(action(QStringLiteral("Third-Party Licenses…"), {}, {}, [this] { emit licencesRequested(); }));
    help->addSeparator();
    QAction* about = action(QStringLiteral("About Dravik"), {}, {}, [this] { emit aboutRequested(); });
    about->setMenuRole(QAction::AboutRole);
    help->addAction(about);
}

void MainWindow::makeOperationsMenu() {
    Commands& commands = services_.commands;
    QMenu* menu = menuBar()->addMenu(QStringLiteral("&Operations"));
    showOperations_ = action(KeyId::showOperations, QStringLiteral("operations"),
                             QStringLiteral("Make new files of the takes, rename them, or report them"),
                             [&commands] { emit commands.dravikShowOperations(); });
    menu->addAction(showOperations_);
    menu->addSeparator();
    const std::tuple<OperationsTab, std::optional<KeyId>, const char*, const char*, void (Commands::*)()> tabs[] = {
        {OperationsTab::merge,
         {},
         "merge",
         "Make one poly file of the mono files of a take",
         &Commands::dravikMergeAudio},
        {OperationsTab::split,
         {},
         "split",
         "Make mono files of the tracks of a poly file",
         &Commands::dravikSplitAudio},
        {OperationsTab::deleteTracks,
         {},
         "delete_tracks",
         "Make a poly file without some of its tracks",
         &Commands::dravikRemoveTracks},
        {OperationsTab::reorderTracks,
         {},
         "reorder",
         "Make a file with its tracks in another order",
         &Commands::dravikReorderTracks},
        {OperationsTab::rename, KeyId::batchRename, "rename", "Give files names made of their metadata",
         &Commands::dravikBatchRename},
        {OperationsTab::export_, KeyId::exportAudio, "export", "Make WAV, MP3 or AAC files of the takes",
         &Commands::dravikExportAudio},
        {OperationsTab::report, KeyId::exportReport, "report", "Make the sound report of the day",
         &Commands::dravikExportReport}};
    for (const auto& [tab, key, icon, help, command] : tabs) {
        const auto run = [&commands, command = command] { emit(commands.*command)(); };
        const QString drawing = QString::fromLatin1(icon);
        const QString hint = QString::fromLatin1(help);
        QAction* made = key ? action(*key, drawing, hint, run) : action(textsOf(tab).title, drawing, hint, run);
        operationActions_[tab] = made;
        menu->addAction(made);
    }
    menu->addSeparator();
    menu->addAction(action(KeyId::nextOperationsTab, {}, {}, [&commands] { emit commands.dravikOperationsNextTab(); }));
    menu->addAction(
        action(KeyId::previousOperationsTab, {}, {}, [&commands] { emit commands.dravikOperationsPreviousTab(); }));
}

void MainWindow::makeViewMenus() {
    QMenu* view = menuBar()->addMenu(QStringLiteral("&View"));
    for (const auto& [mode, shown] : modes_)
        view->addAction(shown);
    view->addSeparator();
    view->addAction(showEditor_);
    view->addAction(showBrowser_);
    view->addSeparator();
    view->addAction(action(KeyId::goToBrowser, {}, {}, [this] {
        if (!showBrowser_->isChecked()) showBrowser_->trigger();
        browser_->focusTree();
    }));
    view->addAction(action(KeyId::goToTable, {}, {}, [this] { table_->focusTable(); }));
    view->addAction(action(KeyId::goToEditor, {}, {}, [this] {
        if (!editor_->isVisibleTo(this)) setEditorVisible(true);
        editor_->focusFirstField();
    }));

    QMenu* playback = menuBar()->addMenu(QStringLiteral("&Playback"));
    auto* actions = new TransportActions(services_.content, services_.playback, services_.settings, this);
    actions->fill(*playback);

    QMenu* windows = menuBar()->addMenu(QStringLiteral("&Window"));
    const std::tuple<KeyId, const char*, void (Commands::*)()> floating[] = {
        {KeyId::mixerWindow, "mixer", &Commands::dravikShowFloatingMixer},
        {KeyId::metersWindow, "meters", &Commands::dravikShowFloatingMeters},
        {KeyId::floatingTransport, "transport", &Commands::dravikShowLargeTransport}};
    for (const auto& [key, icon, shown] : floating) {
        windows->addAction(action(key, QString::fromLatin1(icon), {},
                                  [&commands = services_.commands, shown = shown] { emit(commands.*shown)(); }));
    }
}

void MainWindow::makeToolbar() {
    QToolBar* bar = addToolBar(QStringLiteral("Toolbar"));
    bar->setObjectName(QStringLiteral("toolbar"));
    bar->setMovable(false);
    bar->setContextMenuPolicy(Qt::PreventContextMenu);
    bar->setIconSize(QSize(metrics::toolIconSide, metrics::toolIconSide));
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->addAction(showBrowser_);
    bar->addAction(loadFolder_);
    bar->addSeparator();
    bar->addAction(undo_);
    bar->addAction(redo_);
    bar->addSeparator();
    for (const PresentationMode mode : {PresentationMode::waveforms, PresentationMode::mixer})
        bar->addAction(modes_.at(mode));
    bar->addSeparator();
    bar->addAction(showOperations_);
    auto* space = new QWidget(bar);
    space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    bar->addWidget(space);
    bar->addAction(discard_);
    bar->addAction(saveAll_);
    for (QAction* iconOnly : {showBrowser_, undo_, redo_}) {
        qobject_cast<QToolButton*>(bar->widgetForAction(iconOnly))->setToolButtonStyle(Qt::ToolButtonIconOnly);
    }
}

void MainWindow::connectStatusLine() {
    status_ = new StatusLine(this);
    setStatusBar(status_);
    ContentView& content = services_.content;
    connect(status_, &StatusLine::cancelRequested, this, [this] {
        if (services_.content.sauvegardeEnCours()) {
            services_.content.cancelSave();
        } else if (services_.content.operationsEnCours()) {
            services_.operations.running().cancel();
        } else {
            services_.content.listing().cancel();
        }
    });
    connect(&content, &ContentView::sauvegardeEnCoursChanged, this, [this] {
        refreshActions();
        if (!services_.content.sauvegardeEnCours()) {
            status_->endWork();
            return;
        }
        status_->beginWork();
        status_->showWork(QStringLiteral("Saving..."), 0, 0, true);
    });
    connect(&content, &ContentView::saveProgressed, this,
            [this](std::uint64_t done, std::uint64_t all, const QString& name) {
                // One may be on its way when the save has ended.
                if (!services_.content.sauvegardeEnCours()) return;
                status_->showWork(QStringLiteral("Saving... %1").arg(name), done, all, true);
            });
    connect(&content, &ContentView::messageSuccesSauvegardeChanged, this,
            [this] { status_->setSuccess(services_.content.messageSuccesSauvegarde()); });
    connect(&content, &ContentView::notice, status_, &StatusLine::tell);
    FolderListing& listing = content.listing();
    connect(&listing, &FolderListing::progressed, this, [this](int done, int all, const QString& name) {
        if (services_.content.sauvegardeEnCours()) return;
        status_->showWork(QStringLiteral("Reading %1").arg(name), static_cast<std::uint64_t>(std::max(0, done)),
                          static_cast<std::uint64_t>(std::max(0, all)), false);
    });
    connect(&listing, &FolderListing::finished, this, [this](bool cancelled) {
        if (services_.content.sauvegardeEnCours()) return;
        status_->endWork();
        if (cancelled && !services_.content.rows().groupesTableau().empty()) {
            status_->tell(QStringLiteral("Reading was stopped: not all takes are shown. Reload reads them."));
        }
    });
}

void MainWindow::connectOperations() {
    OperationMenuState& state = services_.operations.menuState();
    const auto enable = [this, &state] {
        for (const auto& [tab, made] : operationActions_)
            made->setEnabled(state.availability().can(tab));
    };
    connect(&state, &OperationMenuState::changed, this, enable);
    enable();
    // A run goes on when its window was closed: its progress is here then.
    OperationsRun& running = services_.operations.running();
    connect(&running, &OperationsRun::runningChanged, this, [this, &running] {
        if (running.isRunning()) {
            status_->beginWork();
        } else {
            status_->endWork();
        }
    });
    connect(&services_.operations, &OperationsModel::shownChanged, this, [this, &running] {
        if (running.isRunning() && services_.operations.afficherOperations()) status_->endWork();
    });
    connect(&running, &OperationsRun::overlayChanged, this, [this, &running] {
        if (!running.overlay() || services_.operations.afficherOperations()) return;
        if (const auto* working = std::get_if<OperationWorking>(&*running.overlay())) {
            status_->showWork(QStringLiteral("%1 %2").arg(working->message, working->fileName),
                              static_cast<std::uint64_t>(working->fraction.value_or(0) * 1000), 1000, true);
        } else if (const auto* ended = std::get_if<OperationCompletionInfo>(&*running.overlay())) {
            status_->tell(ended->title());
        }
    });
}

// --- Showing the state ---------------------------------------------------------------------------------------------

void MainWindow::refreshIcons() {
    for (const auto& [made, name] : icons_)
        made->setIcon(services_.theme.icon(name));
}

void MainWindow::refreshActions() {
    const ContentView& content = services_.content;
    const std::size_t pending = content.rows().editedRows().size();
    const bool saving = content.sauvegardeEnCours();
    saveAll_->setEnabled(pending > 0 && !saving);
    saveAll_->setText(pending > 0 ? QStringLiteral("Save All (%1)").arg(static_cast<qulonglong>(pending))
                                  : QStringLiteral("Save All"));
    discard_->setEnabled(pending > 0 && !saving);
    undo_->setEnabled(content.canUndo());
    undo_->setText(content.canUndo() ? QStringLiteral("Undo %1").arg(content.undoName()) : QStringLiteral("Undo"));
    redo_->setEnabled(content.canRedo());
    redo_->setText(content.canRedo() ? QStringLiteral("Redo %1").arg(content.redoName()) : QStringLiteral("Redo"));
    undo_->setToolTip(QStringLiteral("%1 (%2)").arg(undo_->text(), keyText(KeyId::undo)));
    redo_->setToolTip(QStringLiteral("%1 (%2)").arg(redo_->text(), keyText(KeyId::redo)));
    group_->setChecked(content.regrouperFichiersMono());
    const bool any = !content.rows().groupesTableau().empty();
    for (QAction* one : actionsOnTakes_)
        one->setEnabled(any && !saving);
}

void MainWindow::refreshTitle() {
    const QString folder = services_.content.folderLabel();
    setWindowTitle(folder.isEmpty() ? QStringLiteral("Dravik") : QStringLiteral("%1[*] – Dravik").arg(folder));
    setWindowModified(services_.content.hasUnsavedChanges());
}

void MainWindow::refreshCounts() {
    const auto& rows = services_.content.rows().groupesTableau();
    std::size_t files = 0;
    std::uint64_t bytes = 0;
    double seconds = 0;
    const auto add = [&](const RowState& row) {
        files += row.groupe.fichiers.size();
        for (const InfoFichier& fichier : row.groupe.fichiers)
            bytes += fichier.taille;
        seconds += row.groupe.fichiers.front().dureeSecondes;
    };
    const std::vector<int> selected = table_->selectedRows();
    const bool part = selected.size() > 1;
    if (part) {
        for (const int row : selected)
            add(rows.at(static_cast<std::size_t>(row)));
    } else {
        for (const RowState& row : rows)
            add(row);
    }
    if (rows.empty()) {
        status_->setCounts({});
        return;
    }
    status_->setCounts(QStringLiteral("%1%2 · %3 · %4 · %5")
                           .arg(part ? QStringLiteral("Selected: ") : QString(),
                                counted(part ? selected.size() : rows.size(), QStringLiteral("take")),
                                counted(files, QStringLiteral("file")), clockText(seconds), toQt(sizeText(bytes))));
}

// --- From outside --------------------------------------------------------------------------------------------------

void MainWindow::closeEvent(QCloseEvent* event) {
    // The answer comes from the gate, later.
    event->ignore();
    rememberLayout();
    quit();
}

void MainWindow::quit() {
    editor_->commitPending();
    const QString invalid = editor_->invalidTimecode();
    if (invalid.isEmpty()) {
        services_.termination.applicationShouldTerminate();
        return;
    }
    // A line at the bottom of a window that closes is read by nobody.
    if (std::exchange(quitAsked_, true)) return;
    Alert alert;
    alert.title = QStringLiteral("Invalid Timecode");
    alert.text = QStringLiteral(
                     "The start timecode that you typed is not one: %1. It was not taken over.\n\nWould you "
                     "like to quit without it?")
                     .arg(invalid);
    alert.buttons = {QStringLiteral("Quit"), QStringLiteral("Cancel")};
    alert.destructive = true;
    services_.dialogs.ask(alert, [this](AlertAnswer answer) {
        quitAsked_ = false;
        if (answer.button == 0) {
            services_.termination.applicationShouldTerminate();
        } else {
            editor_->focusTimecode();
        }
    });
}

bool MainWindow::event(QEvent* event) {
    // What a control does is told beside the counts, not in their place.
    if (event->type() == QEvent::StatusTip) {
        status_->setHint(static_cast<QStatusTipEvent*>(event)->tip());
        return true;
    }
    return QMainWindow::event(event);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (!event->mimeData()->hasUrls()) return;
    for (const QUrl& url : event->mimeData()->urls()) {
        if (url.isLocalFile()) event->acceptProposedAction();
    }
}

void MainWindow::dropEvent(QDropEvent* event) {
    std::vector<std::filesystem::path> files;
    std::optional<std::filesystem::path> folder;
    bool oneFolder = true;
    for (const QUrl& url : event->mimeData()->urls()) {
        if (!url.isLocalFile()) continue;
        files.push_back(toPath(url.toLocalFile()));
        const std::filesystem::path parent = files.back().parent_path();
        oneFolder = oneFolder && (!folder || *folder == parent);
        folder = parent;
    }
    if (files.empty()) return;
    event->acceptProposedAction();
    services_.content.gererActionProtegee(OuvrirDepotFichiers{std::move(files), oneFolder ? folder : std::nullopt});
}

}  // namespace dravik
