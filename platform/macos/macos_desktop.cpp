#include "app/text.h"
#include "platform/desktop/system_desktop.h"

#include <QProcess>

namespace dravik {
namespace {

class MacosDesktop final : public SystemDesktop {
  public:
    QString open(const QString& what) override { return startOpener({QStringLiteral("open")}, what); }

    QString reveal(const std::filesystem::path& file) override {
        if (QProcess::startDetached(QStringLiteral("open"), {QStringLiteral("-R"), toQt(file)})) return {};
        return QStringLiteral("“%1” could not be shown: the program “open” is not there.").arg(toQt(file));
    }

    std::optional<QString> eject(const Volume& volume) override {
        return complaintOf(QStringLiteral("diskutil"), {QStringLiteral("eject"), toQt(volume.root)}, ejectTime);
    }
};

}  // namespace

std::unique_ptr<SystemDesktop> makeSystemDesktop() { return std::make_unique<MacosDesktop>(); }

}  // namespace dravik
