#pragma once

#include "app/background.h"
#include "app/folder_watch.h"
#include "app/take_rows.h"
#include "base/file_ops.h"
#include "base/folder_recovery.h"
#include "base/progress.h"
#include "model/audio_file_reader.h"
#include "model/groupe_fichiers.h"

#include <QObject>
#include <QTimer>
#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace dravik {

/// Reads a folder (or a list of files) into takes in the background: the first rows as soon as there are any, then more
/// and more of them. Watches the folders afterwards, and the files that may still grow. A reading that is no longer the
/// current one is dropped. Main thread.
class FolderListing : public QObject {
    Q_OBJECT
  public:
    struct Pace {
        /// A copy onto the folder makes a storm of notices; it is read again when that is over.
        std::chrono::milliseconds settle{400};
        /// Nobody tells of a file that grows, so that its length is asked for this often…
        std::chrono::milliseconds look{2000};
        /// …until it has kept it for so long: a slow network share gets a recording in bursts.
        std::chrono::milliseconds rest{30'000};
    };
    /// What has been read comes back by way of `background`. The file operations and the codecs outlive also a reading
    /// that is left behind because its volume does not answer (LooseBackground).
    FolderListing(Background& background, FileOps& files, const AudioFileReader& codecs, Pace pace);
    FolderListing(Background& background, FileOps& files, const AudioFileReader& codecs)
        : FolderListing(background, files, codecs, Pace()) {}
    ~FolderListing() override;

    /// `unchanged` takes the files that are as the reading before has found them from there, and probes only the
    /// others.
    enum class Reuse { nothing, unchanged };
    /// Starts to read; what killed runs left in the folder is put right first.
    void readFolder(const std::filesystem::path& folder, bool regrouperFichiersMono, Reuse reuse);
    /// Files that are gone are left out; when it is their folder that cannot be reached, nothing is read.
    void readFiles(std::vector<std::filesystem::path> fichiers, bool regrouperFichiersMono, Reuse reuse);
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
    /// A folder was changed by somebody else and has been quiet for a moment, or a file in it has grown.
    void folderChanged();

  private:
    struct KnownFile {
        FileStamp stamp;
        InfoFichier info;
        bool wasAtRest = false;  ///< the stamp tells every later write from the state that was probed
        bool isRecent = false;   ///< written to a moment before it was probed
    };
    /// The last complete reading, by path; its folders are in it, too.
    using Known = std::unordered_map<std::string, KnownFile>;
    struct Task;
    class Reader;

    void start(Task task, Reuse reuse);
    void tellOfChange();
    void keep(std::shared_ptr<const Known> known);
    void look();

    Background& background_;
    FileOps& files_;
    const AudioFileReader& codecs_;
    const Pace pace_;
    FolderWatch watch_;
    QTimer settled_;
    bool quiet_ = false;
    std::shared_ptr<CancellationToken> token_;  ///< of the current reading; null when none runs

    std::shared_ptr<const Known> known_;
    using Time = std::chrono::steady_clock::time_point;
    std::unordered_map<std::string, Time> growing_;  ///< files that may still grow, and until when they are looked at
    QTimer lookTimer_;
    bool looking_ = false;
    LooseBackground reading_;
};

}  // namespace dravik
