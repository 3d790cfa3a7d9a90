#pragma once

#include "app/background.h"
#include "app/take_rows.h"
#include "base/file_ops.h"
#include "base/progress.h"
#include "editing/recovery.h"
#include "model/audio_file_reader.h"
#include "model/groupe_fichiers.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>
#include <filesystem>
#include <memory>
#include <vector>

namespace dravik {

/// Reads a folder (or a list of files) into takes in the background: the first rows as soon as there are any, then more
/// and more of them. Watches the folder afterwards. A reading that is no longer the current one is dropped. Main
/// thread.
class FolderListing : public QObject {
    Q_OBJECT
  public:
    FolderListing(Background& background, FileOps& files, const AudioFileReader& codecs);
    ~FolderListing() override;

    /// Starts to read; what killed runs left in the folder is put right first.
    void readFolder(const std::filesystem::path& folder, bool regrouperFichiersMono);
    void readFiles(std::vector<std::filesystem::path> fichiers, bool regrouperFichiersMono);
    /// Stops reading. The rows so far stay.
    void cancel();
    [[nodiscard]] bool isReading() const noexcept { return token_ != nullptr; }
    /// While something of our own writes into the folder, its changes are not reported.
    void setQuiet(bool quiet);

  signals:
    /// All rows so far, in their order, for the receiver to take away. `complete` on the last one.
    void rowsRead(const std::shared_ptr<ReadRows>& rows, bool complete);
    /// Files probed, of all; the name of one of them.
    void progressed(int done, int all, const QString& name);
    /// At the end of every reading, also of a cancelled one.
    void finished(bool cancelled);
    /// The folder is not there, or cannot be read: no rows come.
    void unreachable();
    void recovered(const Recovery& recovery);
    /// The folder was changed by somebody else, and has been quiet for a moment.
    void folderChanged();

  private:
    void start(std::filesystem::path folder, std::vector<std::filesystem::path> fichiers, bool regrouperFichiersMono);
    void watch(const std::filesystem::path& folder);

    Background& background_;
    FileOps& files_;
    const AudioFileReader& codecs_;
    QFileSystemWatcher watcher_;
    QTimer settled_;
    bool quiet_ = false;
    std::shared_ptr<CancellationToken> token_;  ///< of the current reading; null when none runs
};

}  // namespace dravik
