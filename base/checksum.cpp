#include "base/checksum.h"

#include <array>

namespace dravik {
namespace {

constexpr std::array<std::uint32_t, 256> table = [] {
    std::array<std::uint32_t, 256> entries{};
    for (std::uint32_t i = 0; i < 256; ++i) {
        std::uint32_t value = i;
        for (int bit = 0; bit < 8; ++bit)
            value = (value & 1U) != 0 ? 0xEDB88320U ^ (value >> 1U) : value >> 1U;
        entries[i] = value;
    }
    return entries;
}();

}  // namespace

std::uint32_t crc32(std::string_view bytes) noexcept {
    std::uint32_t value = 0xFFFFFFFFU;
    for (const char c : bytes)
        value = table[(value ^ static_cast<unsigned char>(c)) & 0xFFU] ^ (value >> 8U);
    return ~value;
}

}  // namespace dravik
