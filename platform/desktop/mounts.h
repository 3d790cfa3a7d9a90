#pragma once

#include "app/workspace.h"

#include <QByteArray>
#include <optional>

namespace dravik {

/// Where a device is mounted, as the system lists it.
struct Mount {
    std::filesystem::path root;
    QByteArray fileSystem;  ///< "ext4", "exfat", …
    QByteArray device;      ///< "/dev/sdb1"; for pseudo file systems anything
};

/// Is it a place that a user keeps files in: no pseudo file system, none of the system's own partitions, no image that
/// a package is mounted from? The root of the file system always is one.
[[nodiscard]] bool isUserVolume(const Mount& mount);
/// Was it mounted by the desktop, or by hand where media are mounted?
[[nodiscard]] bool isEjectable(const Mount& mount);
/// The volume's own name where it has one, else that of the folder.
[[nodiscard]] QString volumeName(const Mount& mount, const QString& label);

}  // namespace dravik
