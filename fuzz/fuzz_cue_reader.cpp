// The cue reader: the first two bytes say how many of the rest are the cue payload; what follows is a label list.
#include "base/text.h"
#include "fuzz/require.h"
#include "model/wave/cue_bytes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

using namespace dravik;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    const ByteSpan rest(reinterpret_cast<const std::byte*>(data) + 2, size - 2);
    const std::size_t cueBytes = std::min<std::size_t>(rest.size(), data[0] | static_cast<std::size_t>(data[1]) << 8U);
    const ByteSpan labels = rest.subspan(cueBytes);
    const std::vector<CuePoint> points = readCuePoints(rest.first(cueBytes), {labels});

    require(points.size() <= cueBytes / 24);
    std::size_t labelBytes = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        require(i == 0 || points[i - 1].frame <= points[i].frame);
        require(!points[i].label || (!points[i].label->empty() && isValidUtf8(*points[i].label)));
        if (points[i].label) labelBytes += points[i].label->size();
    }
    require(labelBytes <= 2 * labels.size());

    // What was read is written and read back as it is, once the numbers are unique.
    std::vector<CuePoint> numbered = points;
    for (std::size_t i = 0; i < numbered.size(); ++i)
        numbered[i].number = static_cast<std::uint32_t>(i) + 1;
    const Bytes list = labelListPayload(numbered);
    require(readCuePoints(cueChunkPayload(numbered), {list}) == numbered);
    return 0;
}
