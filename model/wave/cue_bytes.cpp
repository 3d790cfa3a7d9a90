#include "model/wave/cue_bytes.h"

#include "base/text.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>
#include <tuple>
#include <unordered_map>

namespace dravik {
namespace {

constexpr std::size_t countBytes = 4;
constexpr std::size_t pointBytes = 24;
constexpr std::size_t sampleOffsetInPoint = 20;
constexpr std::size_t listTypeBytes = 4;
constexpr std::size_t subChunkHeaderBytes = 8;
constexpr std::size_t cueNumberBytes = 4;

/// The label as the format can hold it: a zero byte ends it.
std::string_view storedLabel(const CuePoint& point) noexcept {
    if (!point.label) return {};
    const std::string_view label = *point.label;
    return label.substr(0, label.find('\0'));
}

/// Does a known sub-chunk of an adtl list stand here?
bool startsSubChunk(ByteSpan payload, std::size_t at) noexcept {
    static constexpr std::array<std::string_view, 4> known = {"labl", "note", "ltxt", "file"};
    if (at > payload.size() || payload.size() - at < subChunkHeaderBytes) return false;
    return std::find(known.begin(), known.end(), asText(payload.subspan(at, 4))) != known.end();
}

/// The labels of one cue number in the order in which they stand. Numbers should be unique; where several points share
/// one, its labels are dealt out in order, so that all the labels read are never more than the bytes of their list.
struct LabelQueue {
    std::vector<std::string_view> texts;
    std::size_t next = 0;
};
using Labels = std::unordered_map<std::uint32_t, LabelQueue>;

/// Adds the labels of one list, as found. Sub-chunks of damaged size end with their list.
void collectLabels(ByteSpan list, Labels& labels) {
    std::size_t at = listTypeBytes;
    std::size_t count = 0;
    while (count < maxCuePoints && at < list.size() && list.size() - at >= subChunkHeaderBytes) {
        const std::size_t begin = at + subChunkHeaderBytes;
        const std::size_t claimed = readLE<std::uint32_t>(list.data() + at + 4);
        const std::size_t size = std::min(claimed, list.size() - begin);
        if (asText(list.subspan(at, 4)) == "labl" && size >= cueNumberBytes) {
            std::string_view text = asText(list.subspan(begin + cueNumberBytes, size - cueNumberBytes));
            text = text.substr(0, text.find('\0'));
            labels[readLE<std::uint32_t>(list.data() + begin)].texts.push_back(text);
            ++count;
        }
        at = begin + size;
        // Odd sub-chunks are padded, but some programs forget it.
        if (size % 2 != 0 && (startsSubChunk(list, at + 1) || !startsSubChunk(list, at))) ++at;
    }
}

/// The next label for that number, empty when there is none left.
std::string_view nextLabel(Labels& labels, std::uint32_t number) {
    const auto found = labels.find(number);
    if (found == labels.end() || found->second.next == found->second.texts.size()) return {};
    return found->second.texts[found->second.next++];
}

}  // namespace

Bytes cueChunkPayload(const std::vector<CuePoint>& points) {
    constexpr std::int64_t lastFrame = std::numeric_limits<std::uint32_t>::max();
    Bytes out;
    out.reserve(countBytes + points.size() * pointBytes);
    appendLE(out, static_cast<std::uint32_t>(points.size()));
    for (const CuePoint& point : points) {
        appendLE(out, point.number);
        appendLE(out, std::uint32_t{0});  // position in a play list, which we do not write
        append(out, "data");
        appendLE(out, std::uint32_t{0});  // chunk start
        appendLE(out, std::uint32_t{0});  // block start
        appendLE(out, static_cast<std::uint32_t>(std::clamp<std::int64_t>(point.frame, 0, lastFrame)));
    }
    return out;
}

Bytes labelListPayload(const std::vector<CuePoint>& points) {
    Bytes out;
    for (const CuePoint& point : points) {
        const std::string_view label = storedLabel(point);
        if (label.empty()) continue;
        if (out.empty()) append(out, "adtl");
        const std::size_t size = cueNumberBytes + label.size() + 1;
        append(out, "labl");
        appendLE(out, static_cast<std::uint32_t>(size));
        appendLE(out, point.number);
        append(out, label);
        out.push_back(std::byte{0});
        if (size % 2 != 0) out.push_back(std::byte{0});
    }
    return out;
}

bool isLabelList(ByteSpan listPayload) noexcept {
    return listPayload.size() >= listTypeBytes && asText(listPayload.first(listTypeBytes)) == "adtl";
}

std::vector<CuePoint> readCuePoints(ByteSpan cuePayload, const std::vector<ByteSpan>& labelLists) {
    if (cuePayload.size() < countBytes) return {};
    Labels labels;
    for (const ByteSpan list : labelLists) {
        if (isLabelList(list)) collectLabels(list, labels);
    }

    const std::size_t claimed = readLE<std::uint32_t>(cuePayload.data());
    const std::size_t count = std::min({claimed, (cuePayload.size() - countBytes) / pointBytes, maxCuePoints});
    std::vector<CuePoint> points(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::byte* at = cuePayload.data() + countBytes + i * pointBytes;
        CuePoint& point = points[i];
        point.number = readLE<std::uint32_t>(at);
        point.frame = readLE<std::uint32_t>(at + sampleOffsetInPoint);
        const std::string_view label = nextLabel(labels, point.number);
        if (!label.empty()) point.label = isValidUtf8(label) ? std::string(label) : latin1ToUtf8(label);
    }
    std::sort(points.begin(), points.end(), [](const CuePoint& a, const CuePoint& b) {
        return std::tie(a.frame, a.number, a.label) < std::tie(b.frame, b.number, b.label);
    });
    return points;
}

}  // namespace dravik
