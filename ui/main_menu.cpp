#include "ui/main_menu.h"

#include "ui/metrics.h"
#include "ui/operations/operation_icons.h"
#include "ui/take_table.h"
#include "ui/transport_actions.h"

#include <QActionGroup>
#include <QMenuBar>
#include <QToolBar>
#include <QToolButton>
#include <optional>

namespace dravik {
namespace {

/// What the menu says of an operation, beside its name; its key where it has one.
struct OperationEntry {
    std::optional<KeyId> key;
    QString help;
};
OperationEntry entryOf(OperationsTab tab) {
    switch (tab) {
        case OperationsTab::merge:
            return {{}, MainMenu::tr("Make one poly file of the mono files of a take")};
        case OperationsTab::split:
            return {{}, MainMenu::tr("Make mono files of the tracks of a poly file")};
        case OperationsTab::deleteTracks:
            return {{}, MainMenu::tr("Make a poly file without some of its tracks")};
        case OperationsTab::reorderTracks:
            return {{}, MainMenu::tr("Make a file with its tracks in another order")};
        case OperationsTab::rename:
            return {KeyId::batchRename, MainMenu::tr("Give files names made of their metadata")};
        case OperationsTab::export_:
            return {KeyId::exportAudio, MainMenu::tr("Make WAV, MP3 or AAC files of the takes")};
        case OperationsTab::report:
            return {KeyId::exportReport, MainMenu::tr("Make the sound report of the day")};
    }
    return {};
}

}  // namespace

MainMenu::MainMenu(const Services& services, QMainWindow& window)
    : QObject(&window), services_(services), window_(window) {
    makeShared();
    makeFile();
    makeEdit();
    makeTake();
    makeOperations();
    makeView();
    makePlaybackAndWindow();
    makeHelp();
    makeToolbar();

    OperationMenuState& state = services_.operations;
    const auto enable = [this, &state] {
        for (const auto& [tab, made] : operations_)
            made->setEnabled(state.availability().can(tab));
    };
    connect(&state, &OperationMenuState::changed, this, enable);
    enable();
    connect(&services_.content, &ContentView::pendingChanged, this, &MainMenu::refresh);
    connect(&services_.content, &ContentView::selectionChanged, this, &MainMenu::refresh);
    connect(&services_.content, &ContentView::sauvegardeEnCoursChanged, this, &MainMenu::refresh);
    connect(&services_.table, &TakeTable::selectionChanged, this, &MainMenu::refresh);
    connect(&services_.theme, &Theme::changed, this, &MainMenu::refreshIcons);
    refreshIcons();
    refresh();
}

// --- One action ----------------------------------------------------------------------------------------------------

QAction* MainMenu::action(KeyId key, const QString& icon, const QString& help, std::function<void()> run) {
    QAction* made = action(shortcut(key).name(), icon, help, std::move(run));
    made->setShortcut(keyOf(key));
    made->setToolTip(QStringLiteral("%1 (%2)").arg(made->toolTip(), keyText(key)));
    return made;
}

QAction* MainMenu::action(const QString& text, const QString& icon, const QString& help, std::function<void()> run) {
    auto* made = new QAction(text, this);
    made->setToolTip(help.isEmpty() ? text : help);
    made->setStatusTip(help);
    if (!icon.isEmpty()) icons_.emplace_back(made, icon);
    if (run) connect(made, &QAction::triggered, this, [run = std::move(run)] { run(); });
    return made;
}

QAction* MainMenu::post(KeyId key, const char* icon, const QString& help, void (Commands::*command)()) {
    return action(key, QString::fromLatin1(icon), help,
                  [&commands = services_.commands, command] { emit(commands.*command)(); });
}

template <typename What>
QAction* MainMenu::onTakes(const What& what, const QString& help, void (TakeTable::*run)()) {
    QAction* made = action(what, {}, help, {});
    connect(made, &QAction::triggered, &services_.table, run);
    needTakes_.push_back(made);
    return made;
}

QMenu* MainMenu::menu(const QString& title) { return window_.menuBar()->addMenu(title); }

// --- The menus -----------------------------------------------------------------------------------------------------

void MainMenu::makeShared() {
    saveAll_ = action(tr("Save All"), QStringLiteral("save"), tr("Save all pending changes"),
                      [this] { emit services_.commands.dravikSaveChanges(); });
    discard_ = action(tr("Discard"), QStringLiteral("discard"), tr("Discard all unsaved changes"),
                      [this] { services_.content.discardAll(); });
    undo_ = action(KeyId::undo, QStringLiteral("undo"), {}, [this] {
        services_.content.undo();
        services_.table.showLastChange();
    });
    redo_ = action(KeyId::redo, QStringLiteral("redo"), {}, [this] {
        services_.content.redo();
        services_.table.showLastChange();
    });
    loadFolder_ = post(KeyId::loadFolder, "folder", tr("Open a folder of recordings"), &Commands::dravikLoadFolder);
    showBrowser_ = action(KeyId::showBrowser, QStringLiteral("browser"), tr("Show or hide the folder browser"),
                          [this] { emit browserShown(showBrowser_->isChecked()); });
    showBrowser_->setCheckable(true);
    auto* modes = new QActionGroup(this);
    const auto mode = [&](PresentationMode which, QAction* made) {
        made->setCheckable(true);
        modes_[which] = modes->addAction(made);
    };
    mode(PresentationMode::table, post(KeyId::showTable, "", tr("The table alone"), &Commands::dravikShowTable));
    mode(PresentationMode::waveforms,
         post(KeyId::showWaveforms, "waveform", tr("The waveform of the selected take below"),
              &Commands::dravikShowWaveforms));
    mode(PresentationMode::mixer,
         post(KeyId::showMixer, "mixer", tr("The monitoring mixer below"), &Commands::dravikShowMixerView));
}

void MainMenu::makeFile() {
    QMenu* file = menu(tr("&File"));
    file->addAction(loadFolder_);
    file->addAction(post(KeyId::loadFile, "file", tr("Open a recording and its folder"), &Commands::dravikLoadFile));
    file->addAction(action(KeyId::reload, {}, tr("Read the folder again; unsaved changes stay"),
                           [this] { emit reloadRequested(); }));
    file->addSeparator();
    file->addAction(post(KeyId::save, "save", tr("Save all pending changes"), &Commands::dravikSaveChanges));
    file->addAction(discard_);
    file->addSeparator();
    file->addAction(action(KeyId::preferences, {}, {}, [this] { emit preferencesRequested(); }));
    file->addSeparator();
    QAction* quit = action(KeyId::quit, {}, {}, [this] { emit quitRequested(); });
    quit->setMenuRole(QAction::QuitRole);
    file->addAction(quit);
}

void MainMenu::makeEdit() {
    QMenu* edit = menu(tr("&Edit"));
    edit->addAction(undo_);
    edit->addAction(redo_);
    edit->addSeparator();
    // The table has these keys while it has the keyboard; text fields keep their own.
    edit->addAction(onTakes(tr("Copy Column"), tr("Copy the current column of the selection"), &TakeTable::copy));
    edit->addAction(
        onTakes(tr("Paste Column"), tr("Paste lines downwards from the first selected row"), &TakeTable::paste));
    edit->addSeparator();
    edit->addAction(action(KeyId::find, QStringLiteral("search"), tr("Filter the takes"),
                           [this] { services_.table.focusFilter(); }));
}

void MainMenu::makeTake() {
    QMenu* take = menu(tr("&Take"));
    take->addAction(onTakes(tr("Edit Cell"),
                            tr("Edit the current cell of the table (%1)").arg(keyText(KeyId::editCell)),
                            &TakeTable::editCurrentCell));
    take->addAction(onTakes(KeyId::toggleCircled, tr("Circle the selected takes, or take the circle away"),
                            &TakeTable::toggleCircled));
    take->addSeparator();
    take->addAction(onTakes(KeyId::fillDown, tr("The value of the first selected row for all selected rows"),
                            &TakeTable::fillDown));
    take->addAction(onTakes(KeyId::incrementTakes, tr("Each selected row gets the take after its own"),
                            &TakeTable::incrementTakes));
    take->addAction(
        onTakes(tr("Number Takes"), tr("Count up from the first selected row's take"), &TakeTable::numberTakes));
    take->addSeparator();
    group_ = action(tr("Group Mono Files"), {}, tr("Show the mono files of one take as one row"), [this] {
        services_.content.setRegrouperFichiersMono(group_->isChecked());
        refresh();  // it may have been refused
    });
    group_->setCheckable(true);
    take->addAction(group_);
}

void MainMenu::makeOperations() {
    Commands& commands = services_.commands;
    QMenu* operations = menu(tr("&Operations"));
    showOperations_ =
        post(KeyId::showOperations, "operations", tr("Make new files of the takes, rename them, or report them"),
             &Commands::dravikShowOperations);
    operations->addAction(showOperations_);
    operations->addSeparator();
    for (const OperationsTab tab : allOperationsTabs) {
        const OperationEntry entry = entryOf(tab);
        const auto run = [&commands, command = commandOf(tab)] { emit(commands.*command)(); };
        const QString icon = QString::fromLatin1(iconNameOf(tab));
        operations_[tab] =
            entry.key ? action(*entry.key, icon, entry.help, run) : action(textsOf(tab).title, icon, entry.help, run);
        operations->addAction(operations_[tab]);
    }
    operations->addSeparator();
    operations->addAction(post(KeyId::nextOperationsTab, "", {}, &Commands::dravikOperationsNextTab));
    operations->addAction(post(KeyId::previousOperationsTab, "", {}, &Commands::dravikOperationsPreviousTab));
}

void MainMenu::makeView() {
    QMenu* view = menu(tr("&View"));
    for (const auto& [mode, shown] : modes_)
        view->addAction(shown);
    view->addSeparator();
    showEditor_ = action(KeyId::showEditor, {}, tr("Show or hide the fields of the selected take"),
                         [this] { emit editorShown(showEditor_->isChecked()); });
    showEditor_->setCheckable(true);
    view->addAction(showEditor_);
    view->addAction(showBrowser_);
    view->addSeparator();
    view->addAction(action(KeyId::goToBrowser, {}, {}, [this] {
        if (!showBrowser_->isChecked()) showBrowser_->trigger();
        emit browserRequested();
    }));
    view->addAction(action(KeyId::goToTable, {}, {}, [this] { emit tableRequested(); }));
    view->addAction(action(KeyId::goToEditor, {}, {}, [this] { emit editorRequested(); }));
}

void MainMenu::makePlaybackAndWindow() {
    auto* transport = new TransportActions(services_.content, services_.playback, services_.settings, this);
    transport->fill(*menu(tr("&Playback")));

    QMenu* windows = menu(tr("&Window"));
    windows->addAction(post(KeyId::mixerWindow, "mixer", {}, &Commands::dravikShowFloatingMixer));
    windows->addAction(post(KeyId::metersWindow, "meters", {}, &Commands::dravikShowFloatingMeters));
    windows->addAction(post(KeyId::floatingTransport, "transport", {}, &Commands::dravikShowLargeTransport));
}

void MainMenu::makeHelp() {
    QMenu* help = menu(tr("&Help"));
    help->addAction(action(KeyId::showManual, {}, {}, [this] { emit manualRequested(); }));
    help->addAction(action(KeyId::showShortcuts, {}, {}, [this] { emit shortcutsRequested(); }));
    help->addAction(action(tr("Third-Party Licenses…"), {}, {}, [this] { emit licencesRequested(); }));
    help->addSeparator();
    help->addAction(action(tr("Check for Updates…"), {}, tr("Ask whether there is a newer version"),
                           [this] { emit checkForUpdatesRequested(); }));
    help->addAction(
        action(tr("What's New"), {}, tr("What has changed in this version"), [this] { emit whatsNewRequested(); }));
    help->addSeparator();
    help->addAction(action(tr("Contact Support"), {}, tr("Write a mail"), [this] { emit contactSupportRequested(); }));
    help->addAction(action(tr("Dravik Web Site"), {}, tr("Open the web site"), [this] { emit webSiteRequested(); }));
    help->addSeparator();
    QAction* about = action(tr("About Dravik"), {}, {}, [this] { emit aboutRequested(); });
    about->setMenuRole(QAction::AboutRole);
    help->addAction(about);
}

void MainMenu::makeToolbar() {
    QToolBar* bar = window_.addToolBar(tr("Toolbar"));
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

// --- Showing the state ---------------------------------------------------------------------------------------------

void MainMenu::refreshIcons() {
    for (const auto& [made, name] : icons_)
        made->setIcon(services_.theme.icon(name));
}

void MainMenu::refresh() {
    const ContentView& content = services_.content;
    const std::size_t pending = content.rows().editedRows().size();
    const bool saving = content.sauvegardeEnCours();
    saveAll_->setEnabled(pending > 0 && !saving);
    saveAll_->setText(pending > 0 ? tr("Save All (%1)").arg(static_cast<qulonglong>(pending)) : tr("Save All"));
    discard_->setEnabled(pending > 0 && !saving);
    undo_->setEnabled(content.canUndo());
    undo_->setText(content.canUndo() ? tr("Undo %1").arg(content.undoName()) : tr("Undo"));
    redo_->setEnabled(content.canRedo());
    redo_->setText(content.canRedo() ? tr("Redo %1").arg(content.redoName()) : tr("Redo"));
    undo_->setToolTip(QStringLiteral("%1 (%2)").arg(undo_->text(), keyText(KeyId::undo)));
    redo_->setToolTip(QStringLiteral("%1 (%2)").arg(redo_->text(), keyText(KeyId::redo)));
    group_->setChecked(content.regrouperFichiersMono());
    const bool any = !content.rows().groupesTableau().empty();
    for (QAction* one : needTakes_)
        one->setEnabled(any && !saving);
}

}  // namespace dravik
