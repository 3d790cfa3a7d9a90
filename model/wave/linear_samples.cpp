#include "model/wave/linear_samples.h"

#include <algorithm>
#include <bit>

namespace dravik {
namespace {

std::optional<SampleEncoding> encodingOf(const WaveFormat& format) noexcept {
    const unsigned bytes = format.blockAlign / format.channels;
    if (bytes * format.channels != format.blockAlign) return std::nullopt;
    if (format.encoding == WaveFormat::ieeeFloat) {
        if (bytes == 4) return SampleEncoding::float32;
        if (bytes == 8) return SampleEncoding::float64;
        return std::nullopt;
    }
    switch (bytes) {
        case 1:
            return SampleEncoding::unsigned8;
        case 2:
            return SampleEncoding::signed16;
        case 3:
            return SampleEncoding::signed24;
        case 4:
            return SampleEncoding::signed32;
        default:
            return std::nullopt;
    }
}

std::uint32_t byteAt(const std::byte* at, int index) noexcept { return std::to_integer<std::uint32_t>(at[index]); }

float finite(float sample) noexcept {
    constexpr std::uint32_t exponent = 0x7F800000U;
    return (std::bit_cast<std::uint32_t>(sample) & exponent) == exponent ? 0.0F : sample;
}

struct Unsigned8 {
    static constexpr std::size_t bytes = 1;
    static float read(const std::byte* at) noexcept {
        return static_cast<float>(std::to_integer<int>(*at) - 128) * 0x1p-7F;
    }
};
struct Signed16 {
    static constexpr std::size_t bytes = 2;
    static float read(const std::byte* at) noexcept {
        return static_cast<float>(static_cast<std::int16_t>(byteAt(at, 0) | byteAt(at, 1) << 8U)) * 0x1p-15F;
    }
};
struct Signed24 {
    static constexpr std::size_t bytes = 3;
    static float read(const std::byte* at) noexcept {
        // At the upper end of 32 bits the sign is where it belongs, and the float is exact.
        const std::uint32_t bits = byteAt(at, 0) << 8U | byteAt(at, 1) << 16U | byteAt(at, 2) << 24U;
        return static_cast<float>(static_cast<std::int32_t>(bits)) * 0x1p-31F;
    }
};
struct Signed32 {
    static constexpr std::size_t bytes = 4;
    static float read(const std::byte* at) noexcept {
        return static_cast<float>(static_cast<std::int32_t>(readLE<std::uint32_t>(at))) * 0x1p-31F;
    }
};
struct Float32 {
    static constexpr std::size_t bytes = 4;
    static float read(const std::byte* at) noexcept { return std::bit_cast<float>(readLE<std::uint32_t>(at)); }
};
struct Float64 {
    static constexpr std::size_t bytes = 8;
    static float read(const std::byte* at) noexcept {
        return static_cast<float>(std::bit_cast<double>(readLE<std::uint64_t>(at)));
    }
};
/// What is no finite number, or too large for a float and so infinite, becomes silence.
template <typename Sample>
struct Finite {
    static constexpr std::size_t bytes = Sample::bytes;
    static float read(const std::byte* at) noexcept { return finite(Sample::read(at)); }
};

template <typename Sample>
void convert(ByteSpan bytes, std::size_t frameBytes, std::span<float* const> planes) noexcept {
    const std::size_t frames = bytes.size() / frameBytes;
    // In pieces that stay in the nearest cache while each channel is picked out of them.
    const std::size_t piece = std::max<std::size_t>(16, 16 * 1024 / frameBytes);
    for (std::size_t from = 0; from < frames; from += piece) {
        const std::size_t count = std::min(piece, frames - from);
        for (std::size_t c = 0; c < planes.size(); ++c) {
            const std::byte* __restrict at = bytes.data() + from * frameBytes + c * Sample::bytes;
            float* __restrict out = planes[c] + from;
            for (std::size_t i = 0; i < count; ++i)
                out[i] = Sample::read(at + i * frameBytes);
        }
    }
}

template <typename Sample>
void pick(ByteSpan bytes, std::size_t frameBytes, std::size_t channel, float* __restrict out) noexcept {
    const std::size_t frames = bytes.size() / frameBytes;
    const std::byte* __restrict at = bytes.data() + channel * Sample::bytes;
    for (std::size_t i = 0; i < frames; ++i)
        out[i] = Sample::read(at + i * frameBytes);
}

}  // namespace

std::optional<LinearAudio> linearAudioIn(const ByteSource& source, const ChunkTable& table) {
    const Chunk* fmt = table.first("fmt ");
    const Chunk* data = table.first("data");
    if (table.type != FourCC("WAVE") || fmt == nullptr || data == nullptr) return std::nullopt;
    const std::optional<WaveFormat> format =
        parseWaveFormat(source.read(fmt->payload(), std::min<std::uint64_t>(fmt->size, maximumFmtBytes)));
    if (!format || !format->isLinear()) return std::nullopt;
    return LinearAudio{*format, data->payload(), static_cast<std::int64_t>(data->size / format->blockAlign)};
}

std::optional<LinearLayout> linearLayoutIn(const ByteSource& source, const ChunkTable& table) {
    const std::optional<LinearAudio> audio = linearAudioIn(source, table);
    if (!audio) return std::nullopt;
    const WaveFormat& format = audio->format;
    const std::optional<SampleEncoding> encoding = encodingOf(format);
    if (!encoding) return std::nullopt;
    return LinearLayout{*encoding,     format.channels,   static_cast<double>(format.sampleRate),
                        audio->offset, format.blockAlign, audio->frames};
}

void samplesToPlanes(ByteSpan bytes, const LinearLayout& layout, std::span<float* const> planes) noexcept {
    switch (layout.encoding) {
        case SampleEncoding::unsigned8:
            return convert<Unsigned8>(bytes, layout.frameBytes, planes);
        case SampleEncoding::signed16:
            return convert<Signed16>(bytes, layout.frameBytes, planes);
        case SampleEncoding::signed24:
            return convert<Signed24>(bytes, layout.frameBytes, planes);
        case SampleEncoding::signed32:
            return convert<Signed32>(bytes, layout.frameBytes, planes);
        case SampleEncoding::float32:
            return convert<Finite<Float32>>(bytes, layout.frameBytes, planes);
        case SampleEncoding::float64:
            return convert<Finite<Float64>>(bytes, layout.frameBytes, planes);
    }
}

void channelSamples(ByteSpan bytes, const LinearLayout& layout, int channel, float* out) noexcept {
    const auto at = static_cast<std::size_t>(channel);
    switch (layout.encoding) {
        case SampleEncoding::unsigned8:
            return pick<Unsigned8>(bytes, layout.frameBytes, at, out);
        case SampleEncoding::signed16:
            return pick<Signed16>(bytes, layout.frameBytes, at, out);
        case SampleEncoding::signed24:
            return pick<Signed24>(bytes, layout.frameBytes, at, out);
        case SampleEncoding::signed32:
            return pick<Signed32>(bytes, layout.frameBytes, at, out);
        case SampleEncoding::float32:
            return pick<Float32>(bytes, layout.frameBytes, at, out);
        case SampleEncoding::float64:
            return pick<Float64>(bytes, layout.frameBytes, at, out);
    }
}

}  // namespace dravik
