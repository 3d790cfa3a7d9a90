#pragma once

#include "app/content_view.h"
#include "app/presentation_mode.h"
#include "app/single_main_window_coordinator.h"
#include "app/workspace.h"
#include "ui/shortcuts.h"
#include "ui/theme.h"

#include <QAction>
#include <QMainWindow>
#include <QSplitter>

namespace dravik {

class FolderBrowser;
class StatusLine;
class TakeEditor;
class TakeTable;

/// The one main window: browser at the left, take table above, editor of the loaded take below, and the menus, the
/// toolbar and the status line around them. It shows the controller's state and sends it what the user wants.
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
    };
    explicit MainWindow(const Services& services);
    ~MainWindow() override;

    // MainWindowHandle
    [[nodiscard]] bool isVisible() const override { return QMainWindow::isVisible(); }
    void present() override;
    [[nodiscard]] std::string description() const override;

    [[nodiscard]] TakeTable& takeTable() noexcept { return *table_; }
    [[nodiscard]] TakeEditor& takeEditor() noexcept { return *editor_; }
    [[nodiscard]] FolderBrowser& folderBrowser() noexcept { return *browser_; }
    [[nodiscard]] StatusLine& statusLine() noexcept { return *status_; }

  signals:
    void preferencesRequested();
    void shortcutsRequested();
    void aboutRequested();
    void licencesRequested();

  protected:
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    QAction* action(KeyId key, const QString& icon, const QString& help, std::function<void()> run);
    QAction* action(const QString& text, const QString& icon, const QString& help, std::function<void()> run);
    void makeActions();
    void makeMenus();
    void makeToolbar();
    void connectStatusLine();
    void quit();
    void arrange();
    void restoreLayout();
    void rememberLayout();
    void setPresentation(PresentationMode mode);
    void refreshIcons();
    void refreshActions();
    void refreshTitle();
    void refreshCounts();

    Services services_;
    FolderBrowser* browser_ = nullptr;
    TakeTable* table_ = nullptr;
    TakeEditor* editor_ = nullptr;
    QSplitter* across_ = nullptr;
    QSplitter* down_ = nullptr;

    std::vector<std::pair<QAction*, QString>> icons_;  ///< with the name of its drawing
    QAction* saveAll_ = nullptr;
    QAction* discard_ = nullptr;
    QAction* undo_ = nullptr;
    QAction* redo_ = nullptr;
    QAction* group_ = nullptr;
    QAction* reload_ = nullptr;
    QAction* showBrowser_ = nullptr;
    QAction* tableOnly_ = nullptr;
    std::vector<QAction*> takeActions_;  ///< need a selected take

    StatusLine* status_ = nullptr;
    bool quitAsked_ = false;
};

}  // namespace dravik
