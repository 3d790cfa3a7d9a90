#pragma once

#include "app/content_view.h"
#include "app/operations_model.h"
#include "app/presentation_mode.h"
#include "app/single_main_window_coordinator.h"
#include "app/take_playback.h"
#include "app/take_waveform.h"
#include "app/workspace.h"
#include "ui/theme.h"

#include <QMainWindow>
#include <QSplitter>
#include <QStackedWidget>

namespace dravik {

class FloatingViews;
class FolderBrowser;
class MainMenu;
class ManualWindow;
class MixerView;
class OperationsWindow;
class StatusLine;
class TakeEditor;
class TakeTable;
class TransportBar;
class WaveformView;

/// The one main window: browser at the left, take table above, waveform or mixer and the editor of the loaded take
/// below, the transport under them, and the menus, the toolbar and the status line around them. It shows the
/// controller's state and sends it what the user wants.
class MainWindow : public QMainWindow, public MainWindowHandle {
    Q_OBJECT
  public:
    /// All of it outlives the window.
    struct Services {
        ContentView& content;
        UserDefaults& settings;
        Commands& commands;
        Dialogs& dialogs;
        Workspace& workspace;
        FileOps& files;
        ProtectedTermination& termination;
        SingleMainWindowCoordinator& windows;
        const Theme& theme;
        TakePlayback& playback;
        TakeWaveform& waveform;
        OperationsModel& operations;
    };
    explicit MainWindow(const Services& services);
    ~MainWindow() override;

    // MainWindowHandle
    [[nodiscard]] bool isVisible() const override { return QMainWindow::isVisible(); }
    void present() override;
    [[nodiscard]] std::string description() const override;

    [[nodiscard]] TakeTable& takeTable() noexcept { return *table_; }
    [[nodiscard]] TakeEditor& takeEditor() noexcept { return *editor_; }
    [[nodiscard]] FloatingViews& floatingViews() noexcept { return *floating_; }
    [[nodiscard]] OperationsWindow& operationsWindow() noexcept { return *operations_; }
    /// Made when it is first asked for.
    [[nodiscard]] ManualWindow& manualWindow();
    void setPresentation(PresentationMode mode);
    [[nodiscard]] StatusLine& statusLine() noexcept { return *status_; }

  signals:
    void preferencesRequested();
    void shortcutsRequested();
    void checkForUpdatesRequested();
    void whatsNewRequested();
    void contactSupportRequested();
    void webSiteRequested();
    void aboutRequested();
    void licencesRequested();

  protected:
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    void makeMenu();
    void connectStatusLine();
    void connectOperations();
    void quit();
    void arrange();
    void restoreLayout();
    void rememberLayout();
    void setEditorVisible(bool visible);
    void refreshTitle();
    void refreshCounts();

    Services services_;
    FolderBrowser* browser_ = nullptr;
    TakeTable* table_ = nullptr;
    TakeEditor* editor_ = nullptr;
    WaveformView* waveform_ = nullptr;
    MixerView* mixer_ = nullptr;
    QStackedWidget* presentation_ = nullptr;  ///< waveform and mixer, one at a time
    TransportBar* transport_ = nullptr;
    FloatingViews* floating_ = nullptr;
    OperationsWindow* operations_ = nullptr;
    ManualWindow* manual_ = nullptr;
    QSplitter* across_ = nullptr;
    QSplitter* down_ = nullptr;

    MainMenu* menu_ = nullptr;
    QList<int> heightsWithPanes_;  ///< of table, presentation and editor, when the table took all of it
    PresentationMode dernierModeNonTable_ = PresentationMode::waveforms;  ///< to come back to

    StatusLine* status_ = nullptr;
    bool quitAsked_ = false;
};

}  // namespace dravik
