#include "operations/weave.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace dravik::OperationsAudio {
namespace {

/// Most strands that are woven at once: more pointers than that have no registers.
constexpr std::size_t mostAtOnce = 8;

/// One sample of a known length: a single move for the compiler.
template <std::size_t bytes>
void copySample(std::byte* to, const std::byte* from) noexcept {
    std::memcpy(to, from, bytes);
}

/// Three bytes as four, in two moves instead of four: the byte too many is read from the strand's next frame and is
/// written over by the next sample. Not for the last frame, behind which neither is there.
template <std::size_t bytes>
void copySampleLoosely(std::byte* to, const std::byte* from) noexcept {
    std::memcpy(to, from, bytes == 3 ? 4 : bytes);
}

/// `count` strands into their places of frames of `frameBytes`.
template <std::size_t bytes, std::size_t count>
void weaveSome(const std::byte* const* strands, std::size_t stride, std::size_t frames, std::size_t frameBytes,
               std::byte* out) noexcept {
    std::array<const std::byte*, count> from{};
    for (std::size_t k = 0; k < count; ++k)
        from[k] = strands[k];
    // The last sample of a group is followed by what another group wrote, or by the next frame's first sample.
    const bool wholeFrame = frameBytes == bytes * count;
    const std::size_t loose = frames == 0 ? 0 : frames - 1;
    std::size_t offset = 0;
    if (wholeFrame) {
        for (std::size_t frame = 0; frame < loose; ++frame) {
            for (std::size_t k = 0; k < count; ++k)
                copySampleLoosely<bytes>(out + k * bytes, from[k] + offset);
            offset += stride;
            out += bytes * count;
        }
    } else {
        for (std::size_t frame = 0; frame < loose; ++frame) {
            for (std::size_t k = 0; k + 1 < count; ++k)
                copySampleLoosely<bytes>(out + k * bytes, from[k] + offset);
            copySample<bytes>(out + (count - 1) * bytes, from[count - 1] + offset);
            offset += stride;
            out += frameBytes;
        }
    }
    if (frames == 0) return;
    for (std::size_t k = 0; k < count; ++k)
        copySample<bytes>(out + k * bytes, from[k] + offset);
}

template <std::size_t bytes>
void weaveAll(std::span<const std::byte* const> strands, std::size_t stride, std::size_t frames,
              std::byte* out) noexcept {
    const std::size_t frameBytes = strands.size() * bytes;
    while (!strands.empty()) {
        std::size_t count = std::min(strands.size(), mostAtOnce);
        switch (count) {
            case 8:
                weaveSome<bytes, 8>(strands.data(), stride, frames, frameBytes, out);
                break;
            case 7:
            case 6:
                count = 6;
                weaveSome<bytes, 6>(strands.data(), stride, frames, frameBytes, out);
                break;
            case 5:
            case 4:
                count = 4;
                weaveSome<bytes, 4>(strands.data(), stride, frames, frameBytes, out);
                break;
            case 3:
            case 2:
                count = 2;
                weaveSome<bytes, 2>(strands.data(), stride, frames, frameBytes, out);
                break;
            default:
                weaveSome<bytes, 1>(strands.data(), stride, frames, frameBytes, out);
                break;
        }
        strands = strands.subspan(count);
        out += count * bytes;
    }
}

}  // namespace

void weave(std::span<const std::byte* const> strands, std::size_t stride, std::size_t sampleBytes, std::size_t frames,
           std::byte* out) noexcept {
    switch (sampleBytes) {
        case 1:
            return weaveAll<1>(strands, stride, frames, out);
        case 2:
            return weaveAll<2>(strands, stride, frames, out);
        case 3:
            return weaveAll<3>(strands, stride, frames, out);
        case 4:
            return weaveAll<4>(strands, stride, frames, out);
        case 8:
            return weaveAll<8>(strands, stride, frames, out);
        default:
            for (std::size_t frame = 0; frame < frames; ++frame) {
                for (const std::byte* strand : strands) {
                    std::memcpy(out, strand + frame * stride, sampleBytes);
                    out += sampleBytes;
                }
            }
    }
}

}  // namespace dravik::OperationsAudio
