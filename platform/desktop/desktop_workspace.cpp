#include "platform/desktop_workspace.h"

#include "app/text.h"
#include "base/paths.h"
#include "platform/desktop/mounts.h"
#include "platform/desktop/system_desktop.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStorageInfo>

namespace dravik {
namespace {

QString notThere(const std::filesystem::path& file) {
    return QStringLiteral("“%1” is not there any more.").arg(toQt(file));
}

class DesktopWorkspace final : public Workspace {
  public:
    QString open(const QString& url) override { return system_->open(url); }

    QString reveal(const std::filesystem::path& file) override {
        return pathExists(file) ? system_->reveal(file) : notThere(file);
    }

    QString moveToTrash(const std::filesystem::path& file) override {
        if (!pathExists(file)) return notThere(file);
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
        const std::optional<QString> complaint = system_->eject(volume);
        if (!complaint) {
            return QStringLiteral("“%1” cannot be ejected from here: no program for it is installed.").arg(volume.name);
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

  private:
    const std::unique_ptr<SystemDesktop> system_ = makeSystemDesktop();
};

}  // namespace

std::unique_ptr<Workspace> makeDesktopWorkspace() { return std::make_unique<DesktopWorkspace>(); }

}  // namespace dravik
