#include "model/wave/cue_bytes.h"

#include "base/text.h"
#include "model/wave/chunk_bytes.h"

#include <algorithm>
#include <array>
#include <limits>
#include <map>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace dravik {
namespace {

constexpr std::size_t countBytes = 4;
constexpr std::size_t pointBytes = 24;
constexpr std::size_t sampleOffsetInPoint = 20;
constexpr std::size_t listTypeBytes = 4;
constexpr std::size_t subChunkHeaderBytes = 8;
constexpr std::size_t cueNumberBytes = 4;
constexpr FourCC labelId("labl");

/// What a label says: a zero byte ends it.
std::string_view labelText(ByteSpan bytes) noexcept { return asText(bytes).substr(0, asText(bytes).find('\0')); }

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

/// Do the entries of this kind begin with the number of their point, as far as we know?
bool namesItsPoint(const CueEntry& entry) noexcept {
    return entry.content.size() >= cueNumberBytes && (entry.id == labelId || entry.id == FourCC("note") ||
                                                      entry.id == FourCC("ltxt") || entry.id == FourCC("file"));
}

/// Appends the points of one chunk, as far as the limit goes; false when there are more.
bool collectPoints(ByteSpan payload, std::vector<CuePoint>& points) {
    if (payload.size() < countBytes) return true;
    const std::size_t claimed = readLE<std::uint32_t>(payload.data());
    const std::size_t there = std::min(claimed, (payload.size() - countBytes) / pointBytes);
    const std::size_t count = std::min(there, maxCuePoints - points.size());
    for (std::size_t i = 0; i < count; ++i) {
        const std::byte* at = payload.data() + countBytes + i * pointBytes;
        CuePoint& point = points.emplace_back();
        point.number = readLE<std::uint32_t>(at);
        point.frame = readLE<std::uint32_t>(at + sampleOffsetInPoint);
    }
    return count == there;
}

/// Deals the entries of the lists out to the points.
class EntryDealer {
  public:
    explicit EntryDealer(CueContent& content) : content_(content) {
        for (std::size_t i = 0; i < content.points.size(); ++i)
            pointsOf_[content.points[i].number].push_back(i);
    }

    /// The entries of one list. Those of damaged size end with their list.
    void deal(ByteSpan list) {
        std::size_t at = listTypeBytes;
        while (at < list.size() && list.size() - at >= subChunkHeaderBytes) {
            if (++entries_ > maxListEntries) {
                content_.complete = false;
                return;
            }
            const std::size_t begin = at + subChunkHeaderBytes;
            const std::size_t claimed = readLE<std::uint32_t>(list.data() + at + 4);
            const std::size_t size = std::min(claimed, list.size() - begin);
            dealOne(FourCC::at(list.data() + at), list.subspan(begin, size));
            at = begin + size;
            // Odd sub-chunks are padded, but some programs forget it.
            if (size % 2 != 0 && (startsSubChunk(list, at + 1) || !startsSubChunk(list, at))) ++at;
        }
    }

  private:
    void dealOne(FourCC id, ByteSpan content) {
        const auto sharing =
            content.size() < cueNumberBytes ? pointsOf_.end() : pointsOf_.find(readLE<std::uint32_t>(content.data()));
        if (sharing == pointsOf_.end()) {
            content_.loose.push_back({id, {content.begin(), content.end()}});
            return;
        }
        const ByteSpan rest = content.subspan(cueNumberBytes);
        const std::size_t place = dealt_[{sharing->first, id.letters}]++;
        const std::vector<std::size_t>& points = sharing->second;
        CuePoint& point = content_.points[points[std::min(place, points.size() - 1)]];
        const std::string_view label = id == labelId ? labelText(rest) : std::string_view{};
        if (!label.empty() && !point.label) {
            point.label = isValidUtf8(label) ? std::string(label) : latin1ToUtf8(label);
        } else if (id != labelId || !label.empty()) {
            point.entries.push_back({id, {rest.begin(), rest.end()}});
        }
    }

    CueContent& content_;
    std::unordered_map<std::uint32_t, std::vector<std::size_t>> pointsOf_;  ///< places in the list, by number
    std::map<std::pair<std::uint32_t, std::array<char, 4>>, std::size_t> dealt_;
    std::size_t entries_ = 0;
};

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

Bytes labelListPayload(const std::vector<CuePoint>& points, const std::vector<CueEntry>& loose) {
    Bytes out = toBytes("adtl");
    Bytes content;
    for (const CuePoint& point : points) {
        const std::string_view label = storedLabel(point);
        if (label.empty()) continue;
        content.clear();
        appendLE(content, point.number);
        append(content, label);
        content.push_back(std::byte{0});
        appendChunk(out, labelId, content);
    }
    for (const CuePoint& point : points) {
        const bool hasLabel = !storedLabel(point).empty();
        for (const CueEntry& entry : point.entries) {
            // A label that was taken away must not come back as the one behind it.
            if (entry.id == labelId && !hasLabel) continue;
            content.clear();
            appendLE(content, point.number);
            append(content, ByteSpan(entry.content));
            appendChunk(out, entry.id, content);
        }
    }
    for (const CueEntry& entry : loose) {
        content = entry.content;
        if (namesItsPoint(entry)) writeLE(content.data(), std::uint32_t{0});
        appendChunk(out, entry.id, content);
    }
    if (out.size() == listTypeBytes) out.clear();
    return out;
}

bool isLabelList(ByteSpan listPayload) noexcept {
    return listPayload.size() >= listTypeBytes && asText(listPayload.first(listTypeBytes)) == "adtl";
}

CueContent readCues(const std::vector<ByteSpan>& cuePayloads, const std::vector<ByteSpan>& labelLists) {
    CueContent content;
    for (const ByteSpan payload : cuePayloads) {
        if (!collectPoints(payload, content.points)) content.complete = false;
    }
    EntryDealer dealer(content);
    for (const ByteSpan list : labelLists) {
        if (isLabelList(list)) dealer.deal(list);
    }
    std::sort(content.points.begin(), content.points.end(), [](const CuePoint& a, const CuePoint& b) {
        return std::tie(a.frame, a.number, a.label) < std::tie(b.frame, b.number, b.label);
    });
    return content;
}

}  // namespace dravik
