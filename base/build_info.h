#pragma once

#include <string>
#include <string_view>

namespace dravik {

/// What the running program was built from. A library of its own, so that a commit compiles nothing else anew.
struct BuildInfo {
    std::string_view version;  ///< "0.1.0"
    std::string_view build;    ///< "1"; counts up from release to release
    std::string_view commit;   ///< "92e6588"; "92e6588+" with changes that are in no commit; "unknown"
};

[[nodiscard]] const BuildInfo& buildInfo() noexcept;

/// "0.1.0 (build 1, commit 92e6588)"
[[nodiscard]] std::string versionText();

}  // namespace dravik
