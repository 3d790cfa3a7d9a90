#pragma once

#include "base/bytes.h"

#include <cstdint>
#include <optional>

namespace dravik {

/// The `fmt ` chunk (WAVEFORMATEX and WAVEFORMATEXTENSIBLE).
struct WaveFormat {
    std::uint16_t tag = 0;       ///< as found: 1 PCM, 3 IEEE float, 0xFFFE extensible
    std::uint16_t encoding = 0;  ///< the tag, or the sub-format's for extensible
    std::uint16_t channels = 0;
    std::uint32_t sampleRate = 0;  ///< Hz
    std::uint16_t blockAlign = 0;  ///< bytes of one frame (all channels)
    std::uint16_t bits = 0;        ///< per sample of one channel, as declared

    static constexpr std::uint16_t pcm = 1;
    static constexpr std::uint16_t ieeeFloat = 3;
    static constexpr std::uint16_t extensible = 0xFFFE;

    /// Integer or float samples that lie in the file frame by frame.
    [[nodiscard]] bool isLinear() const noexcept {
        return (encoding == pcm || encoding == ieeeFloat) && channels > 0 && blockAlign > 0;
    }
};

/// Least payload of a readable `fmt ` chunk.
inline constexpr std::size_t minimumFmtBytes = 16;
/// A payload above this is none: the longest that is known has 40 bytes and a few parameters.
inline constexpr std::size_t maximumFmtBytes = 64U * 1024U;

/// Absent for payloads below 16 bytes.
[[nodiscard]] std::optional<WaveFormat> parseWaveFormat(ByteSpan fmtPayload) noexcept;

}  // namespace dravik
