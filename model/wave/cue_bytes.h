#pragma once

#include "base/bytes.h"
#include "model/wave/chunk_walk.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace dravik {

/// The bytes of a `cue ` chunk and of a LIST of type `adtl` (RIFF, Multimedia Programming Interface 1.0): points, their
/// labels, and whatever else the list holds for them. Knows no file. Pure functions, any thread.

/// An entry of the list that is no point's label: a note, a labelled text, a label too many, or one we do not know.
/// Kept, not understood.
struct CueEntry {
    FourCC id;
    Bytes content;
    friend bool operator==(const CueEntry&, const CueEntry&) = default;
};

/// One point as the chunks hold it.
struct CuePoint {
    std::uint32_t number = 0;  ///< dwName
    std::int64_t frame = 0;    ///< sample frames from the start of the audio; clamped to 32 bits when written
    std::optional<std::string> label = {};
    std::vector<CueEntry> entries = {};  ///< in their order; the content without the number in front
    friend bool operator==(const CuePoint&, const CuePoint&) = default;
};

/// Most points that are read from one file: a day's worth of markers is far below it, a damaged count far above.
inline constexpr std::size_t maxCuePoints = 65536;
/// Most entries that are read from the lists of one file: a label, a note, a text and one more for each point.
inline constexpr std::size_t maxListEntries = 4 * maxCuePoints;

/// All that the chunks of a file say.
struct CueContent {
    std::vector<CuePoint> points;  ///< in ascending frame order, then by number
    std::vector<CueEntry> loose;   ///< entries that name no point; the content with the number, where it has one
    bool complete = true;          ///< false: there is more than the limits above let in
    friend bool operator==(const CueContent&, const CueContent&) = default;
};

/// Payload of the `cue ` chunk for the points, in their order.
[[nodiscard]] Bytes cueChunkPayload(const std::vector<CuePoint>& points);
/// Payload of the `LIST` chunk ("adtl" first): the non-empty labels, then the entries of the points under the points'
/// numbers, then the loose ones. Empty when there is none of them. A zero byte ends a label, as it does for readers.
/// Numbers begin at 1: a loose label, note or text gets 0, so that it does not come to belong to a point that is
/// numbered anew. Labels among the entries of a point without a label are not written: the next reader would show one.
[[nodiscard]] Bytes labelListPayload(const std::vector<CuePoint>& points, const std::vector<CueEntry>& loose = {});
/// Is this payload of a LIST chunk (or `list`, as some recorders write it) of type adtl?
[[nodiscard]] bool isLabelList(ByteSpan listPayload) noexcept;

/// Reads the payloads found in a file, each kind in file order. The frame is a point's sample offset, whatever chunk it
/// names. Reads as many whole points as there are. A label is the first of the same number that is not empty and ends
/// at its zero byte; further ones become entries. Text that is not UTF-8 is taken as ISO Latin-1. Where points share a
/// number, they share out its labels and its entries of each kind in order; what is left over goes to the last of them.
[[nodiscard]] CueContent readCues(const std::vector<ByteSpan>& cuePayloads, const std::vector<ByteSpan>& labelLists);

}  // namespace dravik
