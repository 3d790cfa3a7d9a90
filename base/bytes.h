#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <vector>

namespace dravik {

/// Raw file bytes. `Bytes` owns, `ByteSpan` looks.
using Bytes = std::vector<std::byte>;
using ByteSpan = std::span<const std::byte>;

/// The same bytes seen as text, and the other way; nothing is copied or checked.
[[nodiscard]] inline std::string_view asText(ByteSpan bytes) noexcept {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}
[[nodiscard]] inline ByteSpan asBytes(std::string_view text) noexcept {
    return {reinterpret_cast<const std::byte*>(text.data()), text.size()};
}
[[nodiscard]] inline Bytes toBytes(std::string_view text) {
    const ByteSpan view = asBytes(text);
    return {view.begin(), view.end()};
}

/// Little-endian integers, as RIFF stores them. The caller has checked that sizeof(Integer) bytes are there.
template <typename Integer>
[[nodiscard]] Integer readLE(const std::byte* at) noexcept {
    Integer value = 0;
    for (std::size_t i = sizeof(Integer); i-- > 0;) {
        value = static_cast<Integer>(static_cast<std::uint64_t>(value) << 8U | std::to_integer<std::uint64_t>(at[i]));
    }
    return value;
}
template <typename Integer>
void writeLE(std::byte* at, Integer value) noexcept {
    auto rest = static_cast<std::uint64_t>(value);
    for (std::size_t i = 0; i < sizeof(Integer); ++i) {
        at[i] = static_cast<std::byte>(rest & 0xFFU);
        rest >>= 8U;
    }
}
template <typename Integer>
void appendLE(Bytes& out, Integer value) {
    out.resize(out.size() + sizeof(Integer));
    writeLE(out.data() + out.size() - sizeof(Integer), value);
}
inline void append(Bytes& out, ByteSpan more) {
    const std::size_t at = out.size();
    out.resize(at + more.size());
    if (!more.empty()) std::memcpy(out.data() + at, more.data(), more.size());
}
inline void append(Bytes& out, std::string_view more) { append(out, asBytes(more)); }

}  // namespace dravik
