#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace dravik::test {

/// The unit as often as it fits into `bytes`: documents that are hostile by their length.
[[nodiscard]] inline std::string repeated(std::string_view unit, std::size_t bytes) {
    std::string out;
    out.reserve(bytes);
    while (out.size() + unit.size() <= bytes)
        out += unit;
    return out;
}

}  // namespace dravik::test
