#include "base/checksum.h"

#include <array>
#include <bit>
#include <cstring>

namespace dravik {
namespace {

using Table = std::array<std::uint32_t, 256>;

/// tables[k] is what a byte does to the checksum when k more bytes follow it: eight bytes are taken at once, each
/// through its own table, instead of one after the other.
constexpr std::array<Table, 8> tables = [] {
    std::array<Table, 8> all{};
    for (std::uint32_t i = 0; i < 256; ++i) {
        std::uint32_t value = i;
        for (int bit = 0; bit < 8; ++bit)
            value = (value & 1U) != 0 ? 0xEDB88320U ^ (value >> 1U) : value >> 1U;
        all[0][i] = value;
    }
    for (std::size_t k = 1; k < all.size(); ++k) {
        for (std::size_t i = 0; i < 256; ++i)
            all[k][i] = all[0][all[k - 1][i] & 0xFFU] ^ (all[k - 1][i] >> 8U);
    }
    return all;
}();

}  // namespace

std::uint32_t crc32(std::string_view bytes) noexcept {
    std::uint32_t value = 0xFFFFFFFFU;
    std::size_t at = 0;
    if constexpr (std::endian::native == std::endian::little) {
        for (; bytes.size() - at >= 8; at += 8) {
            std::uint64_t word = 0;
            std::memcpy(&word, bytes.data() + at, sizeof word);
            word ^= value;
            value = 0;
            for (std::size_t k = 0; k < 8; ++k)
                value ^= tables[7 - k][(word >> (8 * k)) & 0xFFU];
        }
    }
    for (; at < bytes.size(); ++at)
        value = tables[0][(value ^ static_cast<unsigned char>(bytes[at])) & 0xFFU] ^ (value >> 8U);
    return ~value;
}

}  // namespace dravik
