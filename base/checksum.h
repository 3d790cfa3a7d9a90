#pragma once

#include <cstdint>
#include <string_view>

namespace dravik {

/// CRC-32 (IEEE 802.3, reflected) of the bytes. Finds damage, not forgery.
[[nodiscard]] std::uint32_t crc32(std::string_view bytes) noexcept;

}  // namespace dravik
