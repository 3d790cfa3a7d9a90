#pragma once

#include "base/bytes.h"
#include "operations/riff_chunk.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace dravik::OperationsAudio {

/// Where everything stands in a new RIFF/WAVE file: form header, `fmt `, the extra chunks in their order, `data`. An
/// odd payload is followed by a zero byte. Pure functions, any thread.

/// What the form's size field says: everything behind it. Not limited to 32 bits; sums of hostile sizes do not
/// overflow, since payloads are in memory and `dataSize` is below 2^63.
[[nodiscard]] std::uint64_t riffSizeOf(ByteSpan fmtPayload, std::span<const RIFFChunk> extra,
                                       std::uint64_t dataSize) noexcept;

/// Throws OperationAudioError "<displayName> is too large for standard RIFF/WAVE output." when a size does not fit its
/// 32 bits. Called before anything is created.
void checkOutputSize(ByteSpan fmtPayload, std::span<const RIFFChunk> extra, std::uint64_t dataSize,
                     std::string_view displayName);

/// Everything before the first byte of audio. The sizes must have been checked.
[[nodiscard]] Bytes waveHead(ByteSpan fmtPayload, std::span<const RIFFChunk> extra, std::uint64_t dataSize);

/// A `fmt ` body for another number of channels of the same samples: channels, frame size and byte rate are rewritten.
/// The speaker positions of an extensible body were those of the old channels; the new one assigns none. Throws
/// OperationAudioError when a frame would be larger than its 16 bits can say. `payload` has at least 16 bytes.
[[nodiscard]] Bytes fmtForChannels(ByteSpan payload, std::size_t channels, std::size_t bytesParSample,
                                   std::string_view displayName);

}  // namespace dravik::OperationsAudio
