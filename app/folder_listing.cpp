#include "app/folder_listing.h"

#include "app/text.h"
#include "base/paths.h"
#include "model/folder_scan.h"

#include <algorithm>
#include <chrono>
#include <mutex>

namespace dravik {
namespace {

/// The first rows after this many files: a screenful, within a moment even from a slow card.
constexpr std::size_t firstFiles = 96;
/// A copy onto the folder makes a storm of notices; it is read again when that is over.
constexpr int settleMilliseconds = 400;
constexpr auto progressInterval = std::chrono::milliseconds(50);

}  // namespace

FolderListing::FolderListing(Background& background, FileOps& files, const AudioFileReader& codecs)
    : background_(background), files_(files), codecs_(codecs) {
    settled_.setSingleShot(true);
    settled_.setInterval(settleMilliseconds);
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, [this] {
        if (!quiet_) settled_.start();
    });
    connect(&settled_, &QTimer::timeout, this, [this] {
        if (isReading()) {
            settled_.start();
        } else if (!quiet_) {
            emit folderChanged();
        }
    });
}

FolderListing::~FolderListing() { cancel(); }

void FolderListing::cancel() {
    if (!token_) return;
    token_->cancel();
    token_.reset();
    emit finished(true);
}

void FolderListing::setQuiet(bool quiet) {
    quiet_ = quiet;
    if (quiet) settled_.stop();
}

void FolderListing::watch(const std::filesystem::path& folder) {
    if (!watcher_.directories().isEmpty()) watcher_.removePaths(watcher_.directories());
    settled_.stop();
    if (!folder.empty()) watcher_.addPath(toQt(folder));
}

void FolderListing::readFolder(const std::filesystem::path& folder, bool regrouperFichiersMono) {
    watch(folder);
    start(folder, {}, regrouperFichiersMono);
}

void FolderListing::readFiles(std::vector<std::filesystem::path> fichiers, bool regrouperFichiersMono) {
    watch({});
    start({}, std::move(fichiers), regrouperFichiersMono);
}

void FolderListing::start(std::filesystem::path folder, std::vector<std::filesystem::path> fichiers,
                          bool regrouperFichiersMono) {
    if (token_) token_->cancel();
    token_ = std::make_shared<CancellationToken>();
    const auto token = token_;
    const QPointer<QObject> self(this);
    // Only the current reading may speak.
    // The thread may outlive this object, but not what this object was given.
    const auto tell = [this, &background = background_, self, token](std::function<void()> call) {
        background.post(self, [this, token, call = std::move(call)] {
            if (token_ == token) call();
        });
    };

    auto work = [this, tell, token, &files = files_, &codecs = codecs_, folder = std::move(folder),
                 fichiers = std::move(fichiers), regrouperFichiersMono]() mutable {
        if (!folder.empty()) {
            std::error_code error;
            std::filesystem::directory_iterator(folder, error);
            if (error) {
                tell([this] { emit unreachable(); });
                return;
            }
            const Recovery recovery = recoverFolder(files, folder);
            if (!recovery.empty()) tell([this, recovery] { emit recovered(recovery); });
            fichiers = listerFichiers(folder);
        }
        const std::size_t all = fichiers.size();
        std::vector<InfoFichier> probed;
        std::mutex lock;
        std::chrono::steady_clock::time_point told{};
        // Each batch is as large as everything before it: the rows are grouped anew each time, and so all in all
        // only twice.
        for (std::size_t batch = firstFiles; probed.size() < all && !token->isCancelled();
             batch = std::max(firstFiles, probed.size())) {
            const std::size_t before = probed.size();
            const auto begin = fichiers.begin() + static_cast<std::ptrdiff_t>(before);
            const std::vector<std::filesystem::path> next(
                begin, begin + static_cast<std::ptrdiff_t>(std::min(batch, all - before)));
            try {
                std::vector<InfoFichier> found =
                    probeFiles(next, codecs, {token.get(), [&](const Progress& progress) {
                                                  const auto now = std::chrono::steady_clock::now();
                                                  const std::scoped_lock guard(lock);
                                                  if (now - told < progressInterval) return;
                                                  told = now;
                                                  const int done = static_cast<int>(before + progress.doneBytes);
                                                  tell([this, done, all, name = toQt(progress.currentName)] {
                                                      emit progressed(done, static_cast<int>(all), name);
                                                  });
                                              }});
                std::move(found.begin(), found.end(), std::back_inserter(probed));
            } catch (const Cancelled&) {
                return;
            }
            const bool complete = probed.size() == all;
            auto rows = std::make_shared<ReadRows>(construireGroupes(probed, regrouperFichiersMono));
            tell([this, rows, complete] { emit rowsRead(rows, complete); });
        }
        if (all == 0) tell([this] { emit rowsRead(std::make_shared<ReadRows>(std::vector<GroupeFichiers>()), true); });
    };
    background_.run(
        this,
        [work = std::move(work)]() mutable {
            work();
            return true;
        },
        [this, token](bool) {
            if (token_ != token) return;
            token_.reset();
            emit finished(false);
        });
}

}  // namespace dravik
