#include "app/folder_listing.h"

#include "app/report_throttle.h"
#include "app/text.h"
#include "base/paths.h"
#include "model/folder_scan.h"

#include <algorithm>
#include <ctime>
#include <functional>
#include <mutex>
#include <set>
#include <utility>

namespace dravik {
namespace {

/// The first rows after this many files: a screenful, within a moment even from a slow card.
constexpr std::size_t firstFiles = 96;
/// Cards keep times in steps of two seconds: what was written to later than that may be written to again without a
/// trace in its time.
constexpr std::int64_t coarsestTimeSeconds = 3;
/// A file with a younger time than this may be one that is being recorded or copied.
constexpr std::int64_t recentSeconds = 60;
/// More places than this no selection of files comes from; the system grants a user some thousand watches.
constexpr std::size_t maxWatched = 256;

}  // namespace

struct FolderListing::Task {
    std::filesystem::path folder;                 ///< empty: the files
    std::vector<std::filesystem::path> fichiers;  ///< when no folder is read
    bool regrouperFichiersMono = true;
    std::shared_ptr<const Known> known;  ///< what need not be probed anew
};

/// One reading, on another thread.
class FolderListing::Reader {
  public:
    Reader(FolderListing& listing, Task task, std::shared_ptr<CancellationToken> token)
        : listing_(&listing),
          self_(&listing),
          background_(listing.background_),
          files_(listing.files_),
          codecs_(listing.codecs_),
          task_(std::move(task)),
          token_(std::move(token)) {}

    void run() {
        if (!findFiles()) {
            tell([](FolderListing& listing) { emit listing.unreachable(); });
            return;
        }
        const auto& fichiers = task_.fichiers;
        const std::size_t all = fichiers.size();
        std::vector<InfoFichier> read;
        read.reserve(all);
        // Each batch is as large as everything before it: the rows are grouped anew each time, and so all in all
        // only twice.
        for (std::size_t batch = firstFiles; read.size() < all && !token_->isCancelled();
             batch = std::max(firstFiles, read.size())) {
            const auto begin = fichiers.begin() + static_cast<std::ptrdiff_t>(read.size());
            const auto end = begin + static_cast<std::ptrdiff_t>(std::min(batch, all - read.size()));
            try {
                readBatch(std::vector<std::filesystem::path>(begin, end), read);
            } catch (const Cancelled&) {
                return;
            }
            tellRows(read, read.size() == all);
        }
        if (all == 0) tellRows(read, true);
        if (token_->isCancelled()) return;
        auto known = std::make_shared<Known>();
        for (InfoFichier& info : read) {
            const auto probed = probed_.find(info.url.native());
            if (probed == probed_.end()) continue;
            probed->second.info = std::move(info);
            known->insert(probed_.extract(probed));
        }
        known->merge(folders_);
        tell([known = std::shared_ptr<const Known>(std::move(known))](FolderListing& listing) { listing.keep(known); });
    }

  private:
    /// Only the current reading may speak. The thread may outlive the listing, which cancels it then.
    void tell(std::function<void(FolderListing&)> call) {
        if (token_->isCancelled()) return;
        background_.post(self_, [listing = listing_, token = token_, call = std::move(call)] {
            if (listing->token_ == token) call(*listing);
        });
    }

    void tellRows(const std::vector<InfoFichier>& read, bool complete) {
        std::vector<GroupeFichiers> groupes = construireGroupes(read, task_.regrouperFichiersMono);
        // Of files that were opened one by one, and while others are still to be read, nothing can be said to lack.
        if (complete && !task_.folder.empty()) countFilesNotThere(groupes);
        auto rows = std::make_shared<ReadRows>(std::move(groupes));
        tell([rows, complete](FolderListing& listing) { emit listing.rowsRead(rows, complete); });
    }

    [[nodiscard]] static bool isReachable(const std::filesystem::path& folder) {
        std::error_code error;
        std::filesystem::directory_iterator(folder, error);
        return !error;
    }

    /// False when a folder is not there, or cannot be read.
    bool findFiles() {
        if (!task_.folder.empty()) {
            if (!isReachable(task_.folder)) return false;
            // What the end of the process cuts off here is put right the next time.
            const Recovery recovery = recoverFolder(files_, task_.folder);
            if (!recovery.empty()) tell([recovery](FolderListing& listing) { emit listing.recovered(recovery); });
            noteFolder(task_.folder);
            task_.fichiers = listerFichiers(task_.folder);
            return true;
        }
        std::set<std::filesystem::path> reached;
        std::vector<std::filesystem::path> there;
        for (std::filesystem::path& fichier : task_.fichiers) {
            if (token_->isCancelled()) return true;
            noteFolder(folderOf(fichier));
            if (files_.stampAt(fichier)) {
                there.push_back(std::move(fichier));
                continue;
            }
            const std::filesystem::path folder = folderOf(fichier);
            if (!reached.contains(folder) && !isReachable(folder)) return false;
            reached.insert(folder);
        }
        task_.fichiers = std::move(there);
        return true;
    }

    void readBatch(const std::vector<std::filesystem::path>& batch, std::vector<InfoFichier>& read) {
        const std::size_t before = read.size();
        read.resize(before + batch.size());
        std::vector<std::filesystem::path> others;
        std::vector<std::size_t> places;
        for (std::size_t at = 0; at < batch.size(); ++at) {
            if (const KnownFile* known = note(batch[at])) {
                read[before + at] = known->info;
            } else {
                others.push_back(batch[at]);
                places.push_back(before + at);
            }
        }
        const std::size_t kept = before + batch.size() - others.size();
        const auto report = [this, kept](const Progress& progress) {
            const std::scoped_lock guard(lock_);
            if (!throttle_.isDue()) return;
            const int done = static_cast<int>(kept + progress.doneBytes);
            const int all = static_cast<int>(task_.fichiers.size());
            tell([done, all, name = toQt(progress.currentName)](FolderListing& listing) {
                emit listing.progressed(done, all, name);
            });
        };
        std::vector<InfoFichier> found = probeFiles(others, codecs_, {token_.get(), report});
        for (std::size_t at = 0; at < found.size(); ++at)
            read[places[at]] = std::move(found[at]);
    }

    /// The watch may begin later than the reading: what came in between shows in the folder's time.
    void noteFolder(const std::filesystem::path& folder) {
        if (folders_.contains(folder.native())) return;
        if (const std::optional<FileStamp> stamp = files_.stampAt(folder)) folders_[folder.native()].stamp = *stamp;
    }

    /// Remembers the state that the file is in before it is probed. What was known of it, when that still holds.
    const KnownFile* note(const std::filesystem::path& fichier) {
        const std::optional<FileStamp> stamp = files_.stampAt(fichier);
        if (!stamp) return nullptr;
        KnownFile& probed = probed_[fichier.native()];
        probed.stamp = *stamp;
        const std::int64_t age = static_cast<std::int64_t>(std::time(nullptr)) - stamp->modifiedSeconds;
        probed.wasAtRest = age > coarsestTimeSeconds;
        probed.isRecent = age < recentSeconds;
        if (!task_.known) return nullptr;
        const auto known = task_.known->find(fichier.native());
        if (known == task_.known->end() || !known->second.wasAtRest || known->second.stamp != *stamp) return nullptr;
        return &known->second;
    }

    FolderListing* listing_;  ///< on the main thread only
    QPointer<QObject> self_;
    Background& background_;
    FileOps& files_;
    const AudioFileReader& codecs_;
    Task task_;
    std::shared_ptr<CancellationToken> token_;
    Known probed_;   ///< `info` is filled in at the end
    Known folders_;  ///< their stamps alone
    std::mutex lock_;
    ReportThrottle throttle_;  ///< under the lock
};

FolderListing::FolderListing(Background& background, FileOps& files, const AudioFileReader& codecs, Pace pace)
    : background_(background), files_(files), codecs_(codecs), pace_(pace) {
    settled_.setSingleShot(true);
    settled_.setInterval(pace_.settle);
    connect(&watch_, &FolderWatch::changed, this, [this] {
        if (!quiet_) settled_.start();
    });
    connect(&settled_, &QTimer::timeout, this, &FolderListing::tellOfChange);
    lookTimer_.setInterval(pace_.look);
    connect(&lookTimer_, &QTimer::timeout, this, &FolderListing::look);
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

void FolderListing::readFolder(const std::filesystem::path& folder, bool regrouperFichiersMono, Reuse reuse) {
    watch_.setFolders({folder});
    start({folder, {}, regrouperFichiersMono, {}}, reuse);
}

void FolderListing::readFiles(std::vector<std::filesystem::path> fichiers, bool regrouperFichiersMono, Reuse reuse) {
    std::set<std::filesystem::path> folders;
    for (const std::filesystem::path& fichier : fichiers) {
        if (folders.size() < maxWatched) folders.insert(folderOf(fichier));
    }
    watch_.setFolders(folders);
    start({{}, std::move(fichiers), regrouperFichiersMono, {}}, reuse);
}

void FolderListing::start(Task task, Reuse reuse) {
    settled_.stop();
    lookTimer_.stop();
    if (reuse == Reuse::unchanged) {
        task.known = known_;
    } else {
        known_.reset();
        growing_.clear();
    }
    if (token_) token_->cancel();
    token_ = std::make_shared<CancellationToken>();
    reading_.run(
        this,
        [reader = std::make_shared<Reader>(*this, std::move(task), token_)] {
            reader->run();
            return true;
        },
        [this, token = token_](bool) {
            if (token_ != token) return;
            token_.reset();
            emit finished(false);
        });
}

void FolderListing::tellOfChange() {
    if (isReading()) {
        settled_.start();
    } else if (!quiet_) {
        emit folderChanged();
    }
}

// --- Files that grow -----------------------------------------------------------------------------------------------

void FolderListing::keep(std::shared_ptr<const Known> known) {
    const Time now = std::chrono::steady_clock::now();
    for (const auto& [path, file] : *known) {
        const auto before = known_ ? known_->find(path) : known->end();
        const bool isFirst = !known_;
        const bool isOther = !isFirst && (before == known_->end() || before->second.stamp != file.stamp);
        if (isOther || (isFirst && file.isRecent)) {
            growing_[path] = now + pace_.rest;
        } else if (isFirst) {
            // One look at all of them: the clock of a share may be another than ours.
            growing_[path] = now + pace_.look;
        }
    }
    known_ = std::move(known);
    if (!growing_.empty()) lookTimer_.start();
}

void FolderListing::look() {
    if (quiet_ || looking_ || isReading() || !known_) return;
    using Look = std::vector<std::pair<std::string, FileStamp>>;
    Look files;
    for (const auto& [path, until] : growing_) {
        const auto known = known_->find(path);
        if (known != known_->end()) files.emplace_back(path, known->second.stamp);
    }
    // Each is looked at once behind its end, so that no moment of its time is missed.
    const Time now = std::chrono::steady_clock::now();
    std::erase_if(growing_, [&](const auto& file) { return file.second <= now; });
    if (growing_.empty()) lookTimer_.stop();
    if (files.empty()) return;
    looking_ = true;
    reading_.run(
        this,
        [&ops = files_, files = std::move(files)] {
            // One that is gone is told of by its folder's watch.
            return std::any_of(files.begin(), files.end(), [&](const auto& file) {
                const std::optional<FileStamp> stamp = ops.stampAt(file.first);
                return stamp && *stamp != file.second;
            });
        },
        [this, about = known_](bool hasChanged) {
            looking_ = false;
            if (hasChanged && known_ == about && !quiet_ && !settled_.isActive()) settled_.start();
        });
}

}  // namespace dravik
