#include "app/text.h"
#include "base/paths.h"
#include "platform/desktop/system_desktop.h"

namespace dravik {
namespace {

/// For systems that we know nothing of but that they may have one of the usual openers.
class PortableDesktop final : public SystemDesktop {
  public:
    QString open(const QString& what) override {
        return startOpener({QStringLiteral("xdg-open"), QStringLiteral("open")}, what);
    }
    QString reveal(const std::filesystem::path& file) override { return open(toQt(folderOf(file))); }
    std::optional<QString> eject(const Volume&) override { return std::nullopt; }
};

}  // namespace

std::unique_ptr<SystemDesktop> makeSystemDesktop() { return std::make_unique<PortableDesktop>(); }

}  // namespace dravik
