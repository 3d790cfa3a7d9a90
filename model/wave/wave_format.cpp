#include "model/wave/wave_format.h"

namespace dravik {

std::optional<WaveFormat> parseWaveFormat(ByteSpan fmtPayload) noexcept {
    constexpr std::size_t subFormatOffset = 24;
    if (fmtPayload.size() < minimumFmtBytes) return std::nullopt;
    const std::byte* at = fmtPayload.data();
    WaveFormat format;
    format.tag = readLE<std::uint16_t>(at);
    format.encoding = format.tag;
    format.channels = readLE<std::uint16_t>(at + 2);
    format.sampleRate = readLE<std::uint32_t>(at + 4);
    format.blockAlign = readLE<std::uint16_t>(at + 12);
    format.bits = readLE<std::uint16_t>(at + 14);
    if (format.tag == WaveFormat::extensible && fmtPayload.size() >= subFormatOffset + 2) {
        format.encoding = readLE<std::uint16_t>(at + subFormatOffset);
    }
    return format;
}

}  // namespace dravik
