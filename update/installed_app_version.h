#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace dravik {

/// What the installed program says of itself, as texts.
struct Bundle {
    std::optional<std::string> shortVersion;  ///< "1.4.2"
    std::optional<std::string> build;         ///< digits
};

struct InstalledAppVersion {
    std::string version;
    std::int64_t build = 0;
};
/// The version is "Unknown" where the bundle has none. Throws UpdateCheckError for a build that is no number.
[[nodiscard]] InstalledAppVersion installedAppVersion(const Bundle& bundle);

}  // namespace dravik
