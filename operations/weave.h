#pragma once

#include <cstddef>
#include <span>

namespace dravik::OperationsAudio {

/// The one core that moves samples between channels: picks, reorders, takes apart and interleaves. Samples are bytes of
/// any length; 2, 3, 4 and 8 are fast.

/// Writes `frames` frames of one sample of each strand, in the order of the strands, to `out`. A strand is where the
/// first sample of a channel lies; the samples of every strand lie `stride` bytes apart: the frame size where channels
/// are picked out of interleaved audio, the sample size where files of one channel are put together. Reads and writes
/// not a byte beyond. Any thread; allocates nothing.
void weave(std::span<const std::byte* const> strands, std::size_t stride, std::size_t sampleBytes, std::size_t frames,
           std::byte* out) noexcept;

}  // namespace dravik::OperationsAudio
