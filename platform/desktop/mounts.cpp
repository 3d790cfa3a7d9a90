#include "platform/desktop/mounts.h"

#include "app/text.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace dravik {
namespace {

using namespace std::string_view_literals;

bool isBelow(const std::filesystem::path& root, std::string_view folder) {
    const std::string& text = root.native();
    return text.size() > folder.size() && text.starts_with(folder) && text[folder.size()] == '/';
}

template <std::size_t N>
bool isBelowAny(const std::filesystem::path& root, const std::array<std::string_view, N>& folders) {
    return std::any_of(folders.begin(), folders.end(), [&](std::string_view one) { return isBelow(root, one); });
}

}  // namespace

bool isEjectable(const Mount& mount) {
    static constexpr std::array media{"/media"sv, "/run/media"sv, "/mnt"sv, "/Volumes"sv};
    return isBelowAny(mount.root, media);
}

bool isUserVolume(const Mount& mount) {
    if (mount.root == "/") return true;
    static constexpr std::array pseudo{"tmpfs"sv,  "devtmpfs"sv, "squashfs"sv, "overlay"sv,     "proc"sv,
                                       "sysfs"sv,  "cgroup"sv,   "cgroup2"sv,  "ramfs"sv,       "efivarfs"sv,
                                       "mqueue"sv, "devpts"sv,   "autofs"sv,   "fuse.portal"sv, "fuse.snapfuse"sv};
    const std::string_view kind(mount.fileSystem.constData(), static_cast<std::size_t>(mount.fileSystem.size()));
    if (std::find(pseudo.begin(), pseudo.end(), kind) != pseudo.end()) return false;
    if (isEjectable(mount)) return true;
    static constexpr std::array systems{"/boot"sv, "/efi"sv, "/snap"sv, "/var"sv, "/usr"sv,    "/etc"sv,    "/dev"sv,
                                        "/proc"sv, "/sys"sv, "/run"sv,  "/nix"sv, "/System"sv, "/private"sv};
    for (const std::string_view folder : systems) {
        if (mount.root == folder) return false;
    }
    // A file that is mounted onto a file, as containers do with their settings, is no volume either.
    return !isBelowAny(mount.root, systems);
}

QString volumeName(const Mount& mount, const QString& label) {
    if (!label.isEmpty()) return label;
    return mount.root == "/" ? QStringLiteral("Computer") : toQt(mount.root.filename());
}

}  // namespace dravik
