#include "app/text.h"
#include "base/paths.h"
#include "platform/desktop/system_desktop.h"

#include <QStorageInfo>
#include <QUrl>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>

namespace dravik {
namespace {

/// A file manager that does not answer is not worth waiting for.
constexpr int revealMilliseconds = 3000;

class LinuxDesktop final : public SystemDesktop {
  public:
    QString open(const QString& what) override { return startOpener({QStringLiteral("xdg-open")}, what); }

    QString reveal(const std::filesystem::path& file) override {
        const QDBusConnection bus = QDBusConnection::sessionBus();
        if (bus.isConnected()) {
            QDBusMessage call = QDBusMessage::createMethodCall(
                QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
                QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
            call << QStringList{QUrl::fromLocalFile(toQt(file)).toString(QUrl::FullyEncoded)} << QString();
            if (bus.call(call, QDBus::Block, revealMilliseconds).type() != QDBusMessage::ErrorMessage) return {};
        }
        return open(toQt(folderOf(file)));
    }

    std::optional<QString> eject(const Volume& volume) override {
        std::optional<QString> complaint;
        const QString device = QString::fromLocal8Bit(QStorageInfo(toQt(volume.root)).device());
        if (device.startsWith(QLatin1String("/dev/"))) {
            const auto udisks = [&](const QString& verb) {
                return complaintOf(QStringLiteral("udisksctl"),
                                   {verb, QStringLiteral("-b"), device, QStringLiteral("--no-user-interaction")},
                                   ejectTime);
            };
            complaint = udisks(QStringLiteral("unmount"));
            // Unmounted is safe to pull; that a drive cannot be powered off, or has other volumes, is no fault.
            if (complaint && complaint->isEmpty()) static_cast<void>(udisks(QStringLiteral("power-off")));
        }
        if (complaint) return complaint;
        return complaintOf(QStringLiteral("gio"), {QStringLiteral("mount"), QStringLiteral("-u"), toQt(volume.root)},
                           ejectTime);
    }
};

}  // namespace

std::unique_ptr<SystemDesktop> makeSystemDesktop() { return std::make_unique<LinuxDesktop>(); }

}  // namespace dravik
