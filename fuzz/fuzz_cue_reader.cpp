// The cue reader: the first two bytes say how many of the rest are the cue payload; what follows is a label list.
#include "base/text.h"
#include "fuzz/require.h"
#include "model/wave/cue_bytes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

using namespace dravik;

namespace {

CueContent written(const CueContent& content) {
    const Bytes cues = cueChunkPayload(content.points);
    const Bytes list = labelListPayload(content.points, content.loose);
    return readCues({cues}, {list});
}

std::size_t entriesOf(const CueContent& content) {
    std::size_t count = content.loose.size();
    for (const CuePoint& point : content.points)
        count += point.entries.size();
    return count;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    const ByteSpan rest(reinterpret_cast<const std::byte*>(data) + 2, size - 2);
    const std::size_t cueBytes = std::min<std::size_t>(rest.size(), data[0] | static_cast<std::size_t>(data[1]) << 8U);
    const ByteSpan list = rest.subspan(cueBytes);
    CueContent content = readCues({rest.first(cueBytes)}, {list});

    std::vector<CuePoint>& points = content.points;
    require(points.size() <= cueBytes / 24);
    require(content.complete || list.size() / 8 > maxListEntries);
    std::size_t labelBytes = 0;
    std::size_t entryBytes = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        require(i == 0 || points[i - 1].frame <= points[i].frame);
        require(!points[i].label || (!points[i].label->empty() && isValidUtf8(*points[i].label)));
        if (points[i].label) labelBytes += points[i].label->size();
        for (const CueEntry& entry : points[i].entries)
            entryBytes += entry.content.size();
    }
    for (const CueEntry& entry : content.loose)
        entryBytes += entry.content.size();
    require(labelBytes <= 2 * list.size());
    require(entryBytes <= list.size() && entriesOf(content) <= list.size() / 8);

    // What was read is written and read back as it is, once the numbers are unique.
    for (std::size_t i = 0; i < points.size(); ++i)
        points[i].number = static_cast<std::uint32_t>(i) + 1;
    const CueContent again = written(content);
    if (content.loose.empty()) {
        require(again == content);
        return 0;
    }
    // Of the entries without a point, those of an unknown kind may seem to name one of the new numbers; none is lost.
    require(again.points.size() == points.size() && entriesOf(again) == entriesOf(content));
    for (std::size_t i = 0; i < points.size(); ++i) {
        require(again.points[i].frame == points[i].frame && again.points[i].label == points[i].label);
        require(std::equal(
            points[i].entries.begin(), points[i].entries.end(), again.points[i].entries.begin(),
            again.points[i].entries.begin() +
                static_cast<std::ptrdiff_t>(std::min(points[i].entries.size(), again.points[i].entries.size()))));
    }
    require(written(again) == again);
    return 0;
}
