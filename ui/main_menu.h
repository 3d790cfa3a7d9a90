#pragma once

#include "app/content_view.h"
#include "app/operations_model.h"
#include "app/presentation_mode.h"
#include "app/take_playback.h"
#include "ui/shortcuts.h"
#include "ui/theme.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QObject>
#include <functional>
#include <map>
#include <utility>
#include <vector>

namespace dravik {

class TakeTable;

/// The menus and the toolbar of the main window: every command there is, enabled while it makes sense. What concerns
/// the window's panes is asked of the window, by signals; all else goes to the controllers.
class MainMenu : public QObject {
    Q_OBJECT
  public:
    /// All of it outlives the menu.
    struct Services {
        ContentView& content;
        UserDefaults& settings;
        Commands& commands;
        const Theme& theme;
        TakePlayback& playback;
        OperationMenuState& operations;
        TakeTable& table;
    };
    /// Belongs to the window.
    MainMenu(const Services& services, QMainWindow& window);

    // What is checked; these tell nobody.
    void showMode(PresentationMode mode) { modes_.at(mode)->setChecked(true); }
    void showEditor(bool shown) { showEditor_->setChecked(shown); }
    void showBrowser(bool shown) { showBrowser_->setChecked(shown); }
    [[nodiscard]] bool isEditorShown() const { return showEditor_->isChecked(); }
    /// After a change of the takes, of the edits, or of the selection.
    void refresh();

  signals:
    /// The user wants the pane shown or hidden.
    void editorShown(bool shown);
    void browserShown(bool shown);
    /// The keyboard is to go there, which shows it.
    void browserRequested();
    void tableRequested();
    void editorRequested();

    void reloadRequested();
    void quitRequested();
    void preferencesRequested();
    void manualRequested();
    void shortcutsRequested();
    void checkForUpdatesRequested();
    void whatsNewRequested();
    void contactSupportRequested();
    void webSiteRequested();
    void aboutRequested();
    void licencesRequested();

  private:
    /// The help is shown beside the mouse and in the status line; an icon is the name of its drawing.
    QAction* action(KeyId key, const QString& icon, const QString& help, std::function<void()> run);
    QAction* action(const QString& text, const QString& icon, const QString& help, std::function<void()> run);
    QAction* post(KeyId key, const char* icon, const QString& help, void (Commands::*command)());
    /// Of the table; needs takes.
    template <typename What>
    QAction* onTakes(const What& what, const QString& help, void (TakeTable::*run)());
    [[nodiscard]] QMenu* menu(const QString& title);
    void makeShared();
    void makeFile();
    void makeEdit();
    void makeTake();
    void makeOperations();
    void makeView();
    void makePlaybackAndWindow();
    void makeHelp();
    void makeToolbar();
    void refreshIcons();

    Services services_;
    QMainWindow& window_;
    std::vector<std::pair<QAction*, QString>> icons_;  ///< with the name of its drawing
    std::vector<QAction*> needTakes_;
    // In a menu and in the toolbar, or changing with what is edited.
    QAction* saveAll_ = nullptr;
    QAction* discard_ = nullptr;
    QAction* undo_ = nullptr;
    QAction* redo_ = nullptr;
    QAction* group_ = nullptr;
    QAction* loadFolder_ = nullptr;
    QAction* showBrowser_ = nullptr;
    QAction* showEditor_ = nullptr;
    QAction* showOperations_ = nullptr;
    std::map<PresentationMode, QAction*> modes_;
    std::map<OperationsTab, QAction*> operations_;
};

}  // namespace dravik
