#pragma once

#include "app/background.h"
#include "app/content_view.h"
#include "app/dialogs.h"
#include "app/workspace.h"
#include "base/file_ops.h"
#include "base/progress.h"

#include <QElapsedTimer>
#include <QObject>
#include <filesystem>
#include <memory>
#include <set>
#include <vector>

namespace dravik {

/// What a user does to volumes and whole folders: made in the background, refused where it would take unsaved edits
/// with it, and followed by the folder that is open. No widget. Main thread only.
class FolderCommands : public QObject {
    Q_OBJECT
  public:
    /// All of it outlives the commands; the workspace and the file operations also what the commands leave behind
    /// (LooseBackground).
    struct Services {
        ContentView& content;
        Workspace& workspace;
        Dialogs& dialogs;
        FileOps& files;
    };
    explicit FolderCommands(const Services& services);
    ~FolderCommands() override;

    // --- Volumes ---------------------------------------------------------------------------------------------------
    /// Asks the system for its volumes, unless it has not yet answered the last time.
    void askVolumes();
    [[nodiscard]] const std::vector<Volume>& volumes() const noexcept { return volumes_; }
    /// Is it the root of a volume that can be ejected?
    [[nodiscard]] bool isEjectable(const std::filesystem::path& root) const;
    void eject(const std::filesystem::path& root);

    // --- Folders ---------------------------------------------------------------------------------------------------
    // Volumes and the home folder take new folders and can be opened and shown; the rest is not for them, and no work.
    /// Opens it through the gate, as soon as its volume has answered. The folder that is open already is no work; of
    /// several the last one is opened.
    void open(const std::filesystem::path& folder);
    void createIn(const std::filesystem::path& parent);
    void rename(const std::filesystem::path& folder, const QString& name);
    void moveToTrash(const std::filesystem::path& folder);
    void reveal(const std::filesystem::path& folder);
    /// One at a time.
    void duplicate(const std::filesystem::path& folder);
    void cancelCopy();
    [[nodiscard]] bool isCopying() const noexcept { return copying_ != nullptr; }

  signals:
    void volumesChanged();
    /// Views let go of the volume.
    void aboutToEject(const std::filesystem::path& root);
    /// There are other folders in it now.
    void contentsChanged(const std::filesystem::path& folder);
    /// What was done has led here.
    void arrived(const std::filesystem::path& folder);
    /// The folder is new, and waits for its name.
    void created(const std::filesystem::path& folder);
    void copyingChanged();
    /// From 0 to 1; `remaining` is empty while nobody can tell.
    void copyProgressed(double fraction, const QString& name, const QString& remaining);

  private:
    /// A volume or the home folder, or no folder at all: neither renamed nor moved nor copied.
    [[nodiscard]] bool isPlace(const std::filesystem::path& folder) const;
    /// Why nothing may be done to the folder now; empty when it may.
    [[nodiscard]] QString refusal(const std::filesystem::path& folder) const;
    [[nodiscard]] bool isRefused(const std::filesystem::path& folder, const QString& title);
    /// Does the table show the folder, something in it, or takes of it?
    [[nodiscard]] bool isShown(const std::filesystem::path& folder) const;
    void follow(const std::filesystem::path& from, const std::filesystem::path& to);
    void onCopied(const std::filesystem::path& folder, const std::filesystem::path& copy, bool cancelled,
                  const QString& error);
    void showProgress(const Progress& progress);

    Services services_;
    std::vector<Volume> volumes_;
    bool volumesAsked_ = false;
    std::set<std::filesystem::path> ejecting_;

    std::shared_ptr<CancellationToken> copying_;  ///< of the duplicate that is being made; null when none is
    std::filesystem::path copied_;                ///< what it is made of
    QElapsedTimer copyTime_;

    LooseBackground asking_;  ///< what volumes may leave without an answer
    Background writing_;      ///< what must not be left half done
    Background copies_;       ///< last: waits for what uses the others; long work, so that names do not wait behind it
};

}  // namespace dravik
