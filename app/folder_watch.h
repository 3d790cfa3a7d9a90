#pragma once

#include <QObject>
#include <QThread>
#include <filesystem>
#include <memory>
#include <set>

namespace dravik {

class FolderWatcher;

/// Tells when a name comes into a folder or goes from it, and when the folder itself goes and comes back. Asking for a
/// watch looks at the disk, which on a mount without an answer takes for ever, so a thread of its own asks. Main
/// thread.
class FolderWatch : public QObject {
    Q_OBJECT
  public:
    explicit FolderWatch(QObject* parent = nullptr);
    ~FolderWatch() override;

    /// Watches these from now on, and no others.
    void setFolders(const std::set<std::filesystem::path>& folders);
    [[nodiscard]] const std::set<std::filesystem::path>& folders() const noexcept { return folders_; }

  signals:
    void changed(const std::filesystem::path& folder);

  private:
    std::set<std::filesystem::path> folders_;
    std::unique_ptr<QThread> thread_;
    FolderWatcher* watcher_;  ///< lives on the thread, and goes with it
};

}  // namespace dravik
