#include "ui/main_window.h"

#include "app/take_columns.h"
#include "app/text.h"
#include "model/audio_metadata.h"
#include "ui/floating_views.h"
#include "ui/folder_browser.h"
#include "ui/list_looks.h"
#include "ui/main_menu.h"
#include "ui/manual_window.h"
#include "ui/mixer_view.h"
#include "ui/operations/operations_window.h"
#include "ui/status_line.h"
#include "ui/take_editor.h"
#include "ui/take_table.h"
#include "ui/transport_bar.h"
#include "ui/waveform_view.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusTipEvent>
#include <QVBoxLayout>
#include <cmath>
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
    makeMenu();
    restoreLayout();

    ContentView& content = services_.content;
    connect(&content, &ContentView::commitRequested, table_, &TakeTable::commitEditing);
    connect(&content, &ContentView::commitRequested, editor_, &TakeEditor::commitPending);
    connect(&content, &ContentView::pendingChanged, this, &MainWindow::refreshTitle);
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
    connect(editor_, &TakeEditor::stepReplayed, table_, &TakeTable::showLastChange);

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
    menu_->showEditor(editor);
    browser_->setVisible(services_.settings.value(settings::layoutNavigateurVisible));
    menu_->showBrowser(services_.settings.value(settings::layoutNavigateurVisible));
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
    const bool hadPanes = presentation_->isVisibleTo(this);
    if (mode != PresentationMode::table) dernierModeNonTable_ = mode;
    if (mode == PresentationMode::table && hadPanes) heightsWithPanes_ = down_->sizes();
    presentation_->setVisible(mode != PresentationMode::table);
    presentation_->setCurrentWidget(mode == PresentationMode::mixer ? static_cast<QWidget*>(mixer_) : waveform_);
    editor_->setVisible(mode != PresentationMode::table && menu_->isEditorShown());
    menu_->showMode(mode);
    services_.settings.set(settings::layoutVueActive, toText(mode));
    // By itself the splitter would give what comes back the least that it takes.
    if (mode != PresentationMode::table && !hadPanes && !heightsWithPanes_.isEmpty())
        down_->setSizes(heightsWithPanes_);
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
    menu_->showEditor(visible);
    // Asked for, it is shown: the table alone has no room for it.
    const PresentationMode mode = presentationMode(services_.settings.value(settings::layoutVueActive));
    setPresentation(visible && mode == PresentationMode::table ? dernierModeNonTable_ : mode);
}

// --- Menus and status line -----------------------------------------------------------------------------------------

void MainWindow::makeMenu() {
    menu_ = new MainMenu({services_.content, services_.settings, services_.commands, services_.theme,
                          services_.playback, services_.operations.menuState(), *table_},
                         *this);
    connect(menu_, &MainMenu::editorShown, this, &MainWindow::setEditorVisible);
    connect(menu_, &MainMenu::browserShown, this, [this](bool shown) {
        browser_->setVisible(shown);
        services_.settings.set(settings::layoutNavigateurVisible, shown);
    });
    connect(menu_, &MainMenu::browserRequested, browser_, &FolderBrowser::focusTree);
    connect(menu_, &MainMenu::tableRequested, table_, &TakeTable::focusTable);
    connect(menu_, &MainMenu::editorRequested, this, [this] {
        if (!editor_->isVisibleTo(this)) setEditorVisible(true);
        editor_->focusFirstField();
    });
    connect(menu_, &MainMenu::reloadRequested, browser_, &FolderBrowser::refresh);
    connect(menu_, &MainMenu::quitRequested, this, &MainWindow::quit);
    connect(menu_, &MainMenu::preferencesRequested, this, &MainWindow::preferencesRequested);
    connect(menu_, &MainMenu::manualRequested, this, [this] { manualWindow().present(); });
    connect(menu_, &MainMenu::shortcutsRequested, this, &MainWindow::shortcutsRequested);
    connect(menu_, &MainMenu::checkForUpdatesRequested, this, &MainWindow::checkForUpdatesRequested);
    connect(menu_, &MainMenu::whatsNewRequested, this, &MainWindow::whatsNewRequested);
    connect(menu_, &MainMenu::contactSupportRequested, this, &MainWindow::contactSupportRequested);
    connect(menu_, &MainMenu::webSiteRequested, this, &MainWindow::webSiteRequested);
    connect(menu_, &MainMenu::aboutRequested, this, &MainWindow::aboutRequested);
    connect(menu_, &MainMenu::licencesRequested, this, &MainWindow::licencesRequested);
}

ManualWindow& MainWindow::manualWindow() {
    if (manual_ == nullptr) {
        manual_ = new ManualWindow({services_.settings, services_.theme, services_.workspace, services_.dialogs}, this);
    }
    return *manual_;
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
        if (!services_.content.sauvegardeEnCours()) {
            status_->endWork();
            return;
        }
        status_->beginWork();
        status_->showWork(tr("Saving..."), 0, 0, true);
    });
    connect(&content, &ContentView::saveProgressed, this,
            [this](std::uint64_t done, std::uint64_t all, const QString& name) {
                // One may be on its way when the save has ended.
                if (!services_.content.sauvegardeEnCours()) return;
                status_->showWork(tr("Saving... %1").arg(name), done, all, true);
            });
    connect(&content, &ContentView::messageSuccesSauvegardeChanged, this,
            [this] { status_->setSuccess(services_.content.messageSuccesSauvegarde()); });
    connect(&content, &ContentView::notice, status_, &StatusLine::tell);
    FolderListing& listing = content.listing();
    connect(&listing, &FolderListing::progressed, this, [this](int done, int all, const QString& name) {
        if (services_.content.sauvegardeEnCours()) return;
        status_->showWork(tr("Reading %1").arg(name), static_cast<std::uint64_t>(std::max(0, done)),
                          static_cast<std::uint64_t>(std::max(0, all)), false);
    });
    connect(&listing, &FolderListing::finished, this, [this](bool cancelled) {
        if (services_.content.sauvegardeEnCours()) return;
        status_->endWork();
        if (cancelled && !services_.content.rows().groupesTableau().empty()) {
            status_->tell(tr("Reading was stopped: not all takes are shown. Reload reads them."));
        }
    });
}

void MainWindow::connectOperations() {
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

void MainWindow::refreshTitle() {
    const QString folder = services_.content.folderLabel();
    setWindowTitle(folder.isEmpty() ? tr("Dravik") : tr("%1[*] – Dravik").arg(folder));
    setWindowModified(services_.content.hasUnsavedChanges());
}

void MainWindow::refreshCounts() {
    const auto& rows = services_.content.rows().groupesTableau();
    std::size_t files = 0;
    std::size_t damaged = 0;
    std::uint64_t bytes = 0;
    double seconds = 0;
    const auto add = [&](const RowState& row) {
        if (isDamaged(row.groupe)) ++damaged;
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
    QString counts = QStringLiteral("%1 · %2 · %3 · %4")
                         .arg(counted(part ? selected.size() : rows.size(), Noun::take), counted(files, Noun::file),
                              clockText(seconds), inItsOwnDirection(toQt(sizeText(bytes)), layoutDirection()));
    // The row with the sign may be far down the list.
    if (damaged > 0) counts += QStringLiteral(" · ") + tr("%Ln take(s) with a warning", nullptr, pluralOf(damaged));
    status_->setCounts(part ? tr("Selected: %1").arg(counts) : counts);
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
    alert.title = tr("Invalid Timecode");
    alert.text = tr("The start timecode that you typed is not one: %1. It was not taken over.\n\nWould you "
                    "like to quit without it?")
                     .arg(invalid);
    alert.buttons = {tr("Quit"), tr("Cancel")};
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
