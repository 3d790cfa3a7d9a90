#include "platform/desktop_workspace.h"

#include "app/text.h"
#include "base/paths.h"
#include "platform/desktop/mounts.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QStorageInfo>
#include <QUrl>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>

namespace dravik {
namespace {

/// Writing back what a recorder's card still has in the cache can take this long; beyond it the user is told.
constexpr int ejectMilliseconds = 120'000;
/// A file manager that does not answer is not worth waiting for.
constexpr int revealMilliseconds = 3000;

#ifdef __APPLE__
constexpr const char* opener = "open";
#else
constexpr const char* opener = "xdg-open";
#endif

QString startOpener(const QString& what) {
    if (QProcess::startDetached(QString::fromLatin1(opener), {what})) return {};
    return QStringLiteral("“%1” could not be opened: the program “%2” is not there.")
        .arg(what, QString::fromLatin1(opener));
}

/// Runs a program to its end. Absent when it is not installed; else what it complained about, empty when all went well.
std::optional<QString> complaintOf(const QString& program, const QStringList& arguments) {
    const QString found = QStandardPaths::findExecutable(program);
    if (found.isEmpty()) return std::nullopt;
    QProcess process;
    process.start(found, arguments);
    if (!process.waitForFinished(ejectMilliseconds)) {
        process.kill();
        process.waitForFinished(1000);
        return QStringLiteral("it is still busy.");
    }
    if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0) return QString();
    const QString said = QString::fromLocal8Bit(process.readAllStandardError()).trimmed();
    return said.isEmpty() ? QStringLiteral("the system refused.") : said;
}

class DesktopWorkspace final : public Workspace {
  public:
    QString open(const QString& url) override { return startOpener(url); }

    QString reveal(const std::filesystem::path& file) override {
        if (!pathExists(file)) return QStringLiteral("“%1” is not there any more.").arg(toQt(file));
#ifdef __APPLE__
        if (QProcess::startDetached(QStringLiteral("open"), {QStringLiteral("-R"), toQt(file)})) return {};
#endif
        const QString folder = toQt(folderOf(file));
        const QDBusConnection bus = QDBusConnection::sessionBus();
        if (!bus.isConnected()) return startOpener(folder);
        QDBusMessage call = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
            QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
        call << QStringList{QUrl::fromLocalFile(toQt(file)).toString(QUrl::FullyEncoded)} << QString();
        // Whether there is a file manager shows in the answer; the call must not wait for it.
        auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, revealMilliseconds), qApp);
        QObject::connect(watcher, &QDBusPendingCallWatcher::finished, qApp, [folder](QDBusPendingCallWatcher* done) {
            if (done->isError()) static_cast<void>(startOpener(folder));
            done->deleteLater();
        });
        return {};
    }

    QString moveToTrash(const std::filesystem::path& file) override {
        if (!pathExists(file)) return QStringLiteral("“%1” is not there any more.").arg(toQt(file));
        const auto failed = [&](const QString& why) {
            return QStringLiteral("“%1” could not be moved to the trash: %2").arg(toQt(file.filename()), why);
        };
        // Where these are not there and cannot be made, Qt takes the current folder for the trash.
        const QString trash =
            QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Trash");
        const bool isNew = !QFileInfo::exists(trash);
        if (!QDir().mkpath(trash + QStringLiteral("/files")) || !QDir().mkpath(trash + QStringLiteral("/info"))) {
            return failed(QStringLiteral("the folder “%1” for it cannot be made.").arg(trash));
        }
        constexpr auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
        if (isNew && !QFile::setPermissions(trash, ownerOnly)) {
            return failed(QStringLiteral("the folder “%1” for it cannot be protected.").arg(trash));
        }
        QFile thing(toQt(file));
        if (!thing.moveToTrash()) {
            return failed(thing.errorString().isEmpty() ? QStringLiteral("its volume has none.") : thing.errorString());
        }
        return {};
    }

    QString eject(const Volume& volume) override {
        const QStorageInfo storage(toQt(volume.root));
        const QString device = QString::fromLocal8Bit(storage.device());
        std::optional<QString> complaint;
#ifdef __APPLE__
        complaint = complaintOf(QStringLiteral("diskutil"), {QStringLiteral("eject"), toQt(volume.root)});
#else
        if (device.startsWith(QLatin1String("/dev/"))) {
            complaint = complaintOf(QStringLiteral("udisksctl"), {QStringLiteral("unmount"), QStringLiteral("-b"),
                                                                  device, QStringLiteral("--no-user-interaction")});
            if (complaint && complaint->isEmpty()) {
                // Unmounted is safe to pull; that a drive cannot be powered off, or has other volumes, is no fault.
                static_cast<void>(
                    complaintOf(QStringLiteral("udisksctl"), {QStringLiteral("power-off"), QStringLiteral("-b"), device,
                                                              QStringLiteral("--no-user-interaction")}));
            }
        }
        if (!complaint) {
            complaint =
                complaintOf(QStringLiteral("gio"), {QStringLiteral("mount"), QStringLiteral("-u"), toQt(volume.root)});
        }
#endif
        if (!complaint) {
            return QStringLiteral("“%1” cannot be ejected from here: neither udisksctl nor gio is installed.")
                .arg(volume.name);
        }
        if (complaint->isEmpty()) return {};
        return QStringLiteral("“%1” could not be ejected: %2").arg(volume.name, *complaint);
    }

    std::vector<Volume> volumes() override {
        std::vector<Volume> result;
        for (const QStorageInfo& storage : QStorageInfo::mountedVolumes()) {
            const Mount mount{toPath(storage.rootPath()), storage.fileSystemType(), storage.device()};
            if (!storage.isValid() || !storage.isReady() || !isUserVolume(mount)) continue;
            // Not all that is mounted is a folder: containers mount single files.
            if (!QFileInfo(storage.rootPath()).isDir()) continue;
            Volume volume;
            volume.root = mount.root;
            volume.name = volumeName(mount, mount.root == "/" ? QString() : storage.name());
            volume.freeBytes = static_cast<std::uint64_t>(std::max<qint64>(0, storage.bytesAvailable()));
            volume.allBytes = static_cast<std::uint64_t>(std::max<qint64>(0, storage.bytesTotal()));
            volume.ejectable = isEjectable(mount);
            result.push_back(std::move(volume));
        }
        return result;
    }
};

}  // namespace

std::unique_ptr<Workspace> makeDesktopWorkspace() { return std::make_unique<DesktopWorkspace>(); }

}  // namespace dravik
