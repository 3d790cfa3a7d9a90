#include "playback/pcm_buffer.h"

#include <algorithm>
#include <new>

namespace dravik {
namespace {

/// Channels begin on a cache line, and a vector of any width reads within one.
constexpr std::size_t alignmentFloats = 16;

std::size_t strideOf(std::int64_t frames) noexcept {
    return (static_cast<std::size_t>(std::max<std::int64_t>(0, frames)) + alignmentFloats - 1) / alignmentFloats *
           alignmentFloats;
}

}  // namespace

std::uint64_t PcmBuffer::bytesFor(int channels, std::int64_t frames) noexcept {
    return static_cast<std::uint64_t>(std::max(0, channels)) * strideOf(frames) * sizeof(float);
}

PcmBuffer::PcmBuffer(int channels, std::int64_t frames)
    : stride_(strideOf(frames)), channels_(channels), frames_(frames) {
    const std::uint64_t bytes = bytesFor(channels, frames);
    if (bytes == 0) return;
    samples_.reset(static_cast<float*>(std::aligned_alloc(alignmentFloats * sizeof(float), bytes)));
    if (!samples_) throw std::bad_alloc();
}

}  // namespace dravik
