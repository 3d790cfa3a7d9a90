#pragma once

#include "base/bytes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace dravik {

/// The bytes of a `cue ` chunk and of the `labl` sub-chunks of a LIST of type `adtl` (RIFF, Multimedia Programming
/// Interface 1.0). Knows no file. Pure functions, any thread.

/// One point as the chunks hold it.
struct CuePoint {
    std::uint32_t number = 0;  ///< dwName
    std::int64_t frame = 0;    ///< sample frames from the start of the audio; clamped to 32 bits when written
    std::optional<std::string> label;
    friend bool operator==(const CuePoint&, const CuePoint&) = default;
};

/// Most points that are read from one chunk: a day's worth of markers is far below it, a damaged count far above.
inline constexpr std::size_t maxCuePoints = 65536;

/// Payload of the `cue ` chunk for the points, in their order.
[[nodiscard]] Bytes cueChunkPayload(const std::vector<CuePoint>& points);
/// Payload of the `LIST` chunk ("adtl" first) with the labels; empty when no point has a non-empty label. A zero byte
/// ends a label, as it does for readers.
[[nodiscard]] Bytes labelListPayload(const std::vector<CuePoint>& points);
/// Is this payload of a LIST chunk (or `list`, as some recorders write it) of type adtl?
[[nodiscard]] bool isLabelList(ByteSpan listPayload) noexcept;

/// The points in ascending frame order (then by number), with their labels, out of the payloads found in a file. The
/// frame is a point's sample offset, whatever chunk it names. Reads as many whole points as there are. A label is that
/// of the same number (of several, the first), ends at its zero byte, and is absent when empty; text that is not UTF-8
/// is taken as ISO Latin-1.
[[nodiscard]] std::vector<CuePoint> readCuePoints(ByteSpan cuePayload, const std::vector<ByteSpan>& labelLists);

}  // namespace dravik
