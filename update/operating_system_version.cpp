#include "update/operating_system_version.h"

#include "base/text.h"

#include <array>

#include <fmt/format.h>

namespace dravik {

std::optional<OperatingSystemVersion> parseOperatingSystemVersion(std::string_view text) noexcept {
    std::array<std::int64_t, 3> numbers{};
    for (std::int64_t& number : numbers) {
        const std::size_t dot = text.find('.');
        const std::optional<std::int64_t> read = parseInteger(text.substr(0, dot));
        if (!read) return std::nullopt;
        number = *read;
        if (dot == std::string_view::npos) return OperatingSystemVersion{numbers[0], numbers[1], numbers[2]};
        text.remove_prefix(dot + 1);
    }
    return std::nullopt;  // a fourth one
}

std::string formatOperatingSystemVersion(const OperatingSystemVersion& version) {
    return fmt::format("{}.{}.{}", version.major, version.minor, version.patch);
}

}  // namespace dravik
