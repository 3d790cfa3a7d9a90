#include "app/folder_watch.h"

#include "app/text.h"
#include "base/abandoned_work.h"

#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QTimer>
#include <algorithm>
#include <chrono>

namespace dravik {
namespace {

/// A card that is put back is seen after this, and a folder that is moved away: the system watches the thing and not
/// its name, and says nothing of it.
constexpr std::chrono::seconds lookEvery{2};

}  // namespace

/// The part that asks the system, on a thread that may hang.
class FolderWatcher : public QObject {
    Q_OBJECT
  public:
    /// The first call is made on the thread, so that all of it is made there.
    void setFolders(const QSet<QString>& wanted) {
        if (watcher_ == nullptr) {
            watcher_ = new QFileSystemWatcher(this);
            connect(watcher_, &QFileSystemWatcher::directoryChanged, this, &FolderWatcher::onChanged);
            again_ = new QTimer(this);
            again_->setInterval(lookEvery);
            connect(again_, &QTimer::timeout, this, &FolderWatcher::look);
        }
        const QStringList now = watcher_->directories();
        const QSet<QString> watched(now.begin(), now.end());
        if (const QSet<QString> gone = watched - wanted; !gone.isEmpty()) watcher_->removePaths(gone.values());
        missing_.intersect(wanted);
        for (const QString& folder : wanted - watched - missing_)
            add(folder);
        wanted.isEmpty() ? again_->stop() : again_->start();
    }

  signals:
    void changed(const QString& folder);

  private:
    bool add(const QString& folder) {
        if (!QFileInfo(folder).isDir()) {
            missing_.insert(folder);
            return false;
        }
        // One that is there and cannot be watched is not asked for again.
        watcher_->addPath(folder);
        missing_.remove(folder);
        return true;
    }
    void onChanged(const QString& folder) {
        // Of one that was removed the system tells no more.
        if (!watcher_->directories().contains(folder)) missing_.insert(folder);
        emit changed(folder);
    }
    void look() {
        const QStringList watched = watcher_->directories();
        const QSet<QString> missing = missing_;
        for (const QString& folder : watched) {
            if (QFileInfo(folder).isDir()) continue;
            watcher_->removePath(folder);
            missing_.insert(folder);
            emit changed(folder);
        }
        for (const QString& folder : missing) {
            if (add(folder)) emit changed(folder);
        }
    }

    QFileSystemWatcher* watcher_ = nullptr;
    QTimer* again_ = nullptr;
    QSet<QString> missing_;
};

FolderWatch::FolderWatch(QObject* parent)
    : QObject(parent), thread_(std::make_unique<QThread>()), watcher_(new FolderWatcher) {
    watcher_->moveToThread(thread_.get());
    connect(thread_.get(), &QThread::finished, watcher_, &QObject::deleteLater);
    connect(watcher_, &FolderWatcher::changed, this, [this](const QString& name) {
        const std::filesystem::path folder = toPath(name);
        if (folders_.contains(folder)) emit changed(folder);  // else it is from before another wish
    });
    thread_->start();
}

FolderWatch::~FolderWatch() {
    thread_->quit();
    const auto ended = [thread = std::shared_ptr<QThread>(std::move(thread_))](std::chrono::milliseconds most) {
        return thread->wait(QDeadlineTimer(most));
    };
    if (!ended(abandonPatience)) abandonWork(ended);
}

void FolderWatch::setFolders(const std::set<std::filesystem::path>& folders) {
    if (folders == folders_) return;
    folders_ = folders;
    QSet<QString> wanted;
    for (const std::filesystem::path& folder : folders)
        wanted.insert(toQt(folder));
    QMetaObject::invokeMethod(
        watcher_, [watcher = watcher_, wanted] { watcher->setFolders(wanted); }, Qt::QueuedConnection);
}

}  // namespace dravik

#include "folder_watch.moc"
