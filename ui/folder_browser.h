#pragma once

#include "app/content_view.h"
#include "app/folder_commands.h"
#include "app/folder_watch.h"
#include "app/workspace.h"
#include "ui/folder_tree_model.h"
#include "ui/theme.h"

#include <QAction>
#include <QLabel>
#include <QProgressBar>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>
#include <QWidget>
#include <filesystem>
#include <optional>
#include <set>

namespace dravik {

class FolderTree;

/// Volumes and folders as a tree, read lazily and watched. What is done to them is the commands' to do
/// (FolderCommands); the browser draws, follows, and sends intents.
class FolderBrowser : public QWidget {
    Q_OBJECT
  public:
    /// All of it outlives the browser, as FolderCommands asks for.
    FolderBrowser(ContentView& content, Workspace& workspace, Dialogs& dialogs, FileOps& files, const Theme& theme,
                  QWidget* parent = nullptr);

    /// Unfolds down to the folder and marks it.
    void reveal(const std::filesystem::path& folder);
    void focusTree();
    /// Reads everything again that is shown: volumes, folders, and the takes of the folder that is open.
    void refresh();

    [[nodiscard]] QTreeView& tree() noexcept;
    [[nodiscard]] FolderCommands& commands() noexcept { return commands_; }

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    enum class Then { mark, rename };

    void makeActions();
    void makeProgress();
    void connectCommands();
    void applyTheme();
    void showRoots();
    void updateWatched();
    void onFolderChanged(const std::filesystem::path& folder);
    void revealThen(const std::filesystem::path& folder, Then then);
    void continueReveal();
    [[nodiscard]] QModelIndex startOfReveal(const std::filesystem::path& target) const;
    void showMenu(const QPoint& where);
    void updateActions();
    void showProgress(double fraction, const QString& name, const QString& remaining);
    [[nodiscard]] std::filesystem::path currentPath() const;

    ContentView& content_;
    const Theme& theme_;
    FolderCommands commands_;

    // Widgets are children of this one.
    FolderTreeModel* model_;
    FolderTree* tree_;
    QLabel* title_ = nullptr;
    QToolButton* newButton_ = nullptr;
    QToolButton* refreshButton_ = nullptr;
    QWidget* progress_ = nullptr;
    QLabel* progressText_ = nullptr;
    QProgressBar* progressBar_ = nullptr;
    QAction *open_ = nullptr, *newFolder_ = nullptr, *duplicate_ = nullptr, *rename_ = nullptr, *trash_ = nullptr,
            *reveal_ = nullptr, *eject_ = nullptr, *refresh_ = nullptr;

    bool volumesKnown_ = false;
    QTimer volumesTimer_;

    FolderWatch watch_;
    std::set<std::filesystem::path> changed_;
    QTimer settled_;

    std::optional<std::filesystem::path> revealing_;
    Then revealThen_ = Then::mark;
};

}  // namespace dravik
