#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace dravik {

/// Compared from the major number down.
struct OperatingSystemVersion {
    std::int64_t major = 0;
    std::int64_t minor = 0;
    std::int64_t patch = 0;

    friend auto operator<=>(const OperatingSystemVersion&, const OperatingSystemVersion&) = default;
};

/// "14", "14.2" or "14.2.1"; what is missing counts as 0. Absent for anything else.
[[nodiscard]] std::optional<OperatingSystemVersion> parseOperatingSystemVersion(std::string_view text) noexcept;
/// "14.2.1", always three numbers.
[[nodiscard]] std::string formatOperatingSystemVersion(const OperatingSystemVersion& version);

}  // namespace dravik
