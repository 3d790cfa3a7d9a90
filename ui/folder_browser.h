#pragma once

#include "app/content_view.h"
#include "app/workspace.h"
#include "base/progress.h"
#include "ui/folder_tree_model.h"
#include "ui/theme.h"

#include <QAction>
#include <QElapsedTimer>
#include <QFileSystemWatcher>
#include <QLabel>
#include <QProgressBar>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>
#include <QWidget>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace dravik {

class FolderTree;

/// Volumes and folders, read lazily and watched. Opening a folder is an intent to the controller's gate. What is done
/// to folders runs in the background, and is refused where it would take unsaved edits with it.
class FolderBrowser : public QWidget {
    Q_OBJECT
  public:
    /// All of it outlives the browser. The workspace's slow calls are made on other threads.
    FolderBrowser(ContentView& content, Workspace& workspace, Dialogs& dialogs, FileOps& files, const Theme& theme,
                  QWidget* parent = nullptr);
    ~FolderBrowser() override;

    /// Unfolds down to the folder and marks it.
    void reveal(const std::filesystem::path& folder);
    void focusTree();

    [[nodiscard]] QTreeView& tree() noexcept;
    /// A folder is being duplicated.
    [[nodiscard]] bool isCopying() const noexcept { return copying_ != nullptr; }

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    friend class FolderTree;
    enum class Then { mark, rename };

    void makeActions();
    void makeProgress();
    void applyTheme();
    void askVolumes();
    void showVolumes(std::vector<Volume> volumes);
    void updateWatched();
    void onFolderChanged(const QString& path);
    void revealThen(const std::filesystem::path& folder, Then then);
    void continueReveal();
    void showMenu(const QPoint& where);
    void updateActions();

    void openCurrent();
    void openIndex(const QModelIndex& index);
    void newFolder();
    void renameTo(const QModelIndex& index, const QString& name);
    void duplicate();
    void trash();
    void eject(const QModelIndex& index);
    void refresh();
    void follow(const std::filesystem::path& from, const std::filesystem::path& to);
    void fail(const QString& title, const QString& text);
    /// Why nothing may be done to the folder now; empty when it may.
    [[nodiscard]] QString refusal(const std::filesystem::path& folder, const QString& doing) const;
    [[nodiscard]] std::filesystem::path currentPath() const;
    void showProgress(const Progress& progress);

    ContentView& content_;
    Workspace& workspace_;
    Dialogs& dialogs_;
    FileOps& files_;
    const Theme& theme_;

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

    std::vector<Volume> volumes_;
    bool volumesKnown_ = false, volumesAsked_ = false;
    QTimer volumesTimer_;

    QFileSystemWatcher watcher_;
    std::set<QString> changed_;
    QTimer settled_;

    std::optional<std::filesystem::path> revealing_;
    Then revealThen_ = Then::mark;

    std::shared_ptr<CancellationToken> copying_;  ///< of the duplicate that is being made; null when none is
    QElapsedTimer copyTime_;
    Background copies_;      ///< a thread for long work, so that reading names never waits behind it
    Background background_;  ///< last: waits for what uses the others
};

}  // namespace dravik
