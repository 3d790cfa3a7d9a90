#include "model/wave/ixml_document.h"

#include "base/text.h"
#include "model/wave/ixml_tags.h"

#include <algorithm>
#include <limits>

namespace dravik {
namespace {

enum class TagKind : std::uint32_t { opening = 0, closing = 1 };

/// The kind of a tag and the first three bytes of its name, case folded: tells most tags of a document apart without
/// looking for the name's end. What has the right key is then looked at in full.
constexpr std::size_t keyedBytes = 3;
std::uint32_t tagKey(TagKind kind, std::string_view name) noexcept {
    std::uint32_t key = 0;
    for (const char c : name.substr(0, keyedBytes))
        key = key << 8U | static_cast<unsigned char>(c) | 0x20U;
    return key << 1U | static_cast<std::uint32_t>(kind);
}

/// A look-up by key. Of a name too short to fill one only the kind is asked.
class TagFilter {
  public:
    TagFilter(TagKind kind, std::string_view name) noexcept
        : mask_(name.size() < keyedBytes ? 1U : ~0U), key_(tagKey(kind, name) & mask_) {}
    [[nodiscard]] bool lets(std::uint32_t key) const noexcept { return (key & mask_) == key_; }

  private:
    std::uint32_t mask_, key_;
};

/// A track or channel number: a decimal integer above 0.
std::optional<int> positiveNumber(std::optional<std::string_view> text) noexcept {
    const std::optional<std::int64_t> number = text ? parseInteger(*text) : std::nullopt;
    if (!number || *number <= 0 || *number > std::numeric_limits<int>::max()) return std::nullopt;
    return static_cast<int>(*number);
}

}  // namespace

IxmlDocument::IxmlDocument(std::string_view text) : text_(text) {
    if (text.size() > maxIxmlBytes) return;
    // Real documents have a tag every twenty bytes or so. Larger ones grow as they prove to be like that.
    constexpr std::size_t bytesPerTag = 16;
    constexpr std::size_t mostReserved = 4096;
    tags_.reserve(std::min(text.size() / bytesPerTag + 1, mostReserved));
    for (std::size_t at = text.find('<'); at != noTag; at = text.find('<', at + 1)) {
        const bool closing = at + 1 < text.size() && text[at + 1] == '/';
        const std::size_t begin = at + (closing ? 2 : 1);
        if (begin >= text.size() || !isNameByte(text[begin])) continue;
        tags_.push_back({static_cast<std::uint32_t>(at),
                         tagKey(closing ? TagKind::closing : TagKind::opening, text.substr(begin, keyedBytes))});
    }
}

std::size_t IxmlDocument::firstTagFrom(std::size_t offset) const noexcept {
    if (offset == 0) return 0;
    const auto tag = std::partition_point(tags_.begin(), tags_.end(), [&](const Tag& t) { return t.offset < offset; });
    return static_cast<std::size_t>(tag - tags_.begin());
}

std::optional<IxmlElement> IxmlDocument::findWithin(std::string_view name, std::size_t tag,
                                                    std::size_t until) const noexcept {
    if (name.empty()) return std::nullopt;
    const TagFilter opening(TagKind::opening, name);
    const auto within = [&] { return tag < tags_.size() && tags_[tag].offset < until; };
    while (within() && !(opening.lets(tags_[tag].key) && opensElement(text_, tags_[tag].offset, name)))
        ++tag;
    if (!within()) return std::nullopt;

    const std::size_t begin = tags_[tag].offset;
    const std::size_t tagEnd = text_.substr(0, until).find('>', begin + 1 + name.size());
    if (tagEnd == noTag) return std::nullopt;
    const TagFilter closing(TagKind::closing, name);
    for (++tag; within(); ++tag) {
        const std::size_t at = tags_[tag].offset;
        if (at <= tagEnd || !closing.lets(tags_[tag].key) || !closesElement(text_, at, name)) continue;
        const std::size_t end = at + closingTagBytes(name);
        if (end > until) return std::nullopt;
        return IxmlElement{begin, tagEnd + 1, at, end};
    }
    return std::nullopt;
}

std::optional<IxmlElement> IxmlDocument::find(std::string_view name, std::size_t from) const noexcept {
    return findWithin(name, firstTagFrom(from), text_.size());
}

std::optional<std::string_view> IxmlDocument::value(std::string_view name) const noexcept {
    const std::optional<IxmlElement> element = find(name);
    if (!element) return std::nullopt;
    return trimmed(text_.substr(element->valueBegin, element->valueEnd - element->valueBegin));
}

std::optional<std::string_view> IxmlDocument::literalValue(std::string_view name) const noexcept {
    if (name.empty()) return std::nullopt;
    const std::optional<IxmlElement> passedOver = name == "NOTE" ? find("SPEED") : std::nullopt;
    const auto isPassedOver = [&](std::size_t at) {
        return passedOver && at >= passedOver->begin && at < passedOver->end;
    };

    const TagFilter openingTags(TagKind::opening, name);
    const TagFilter closingTags(TagKind::closing, name);
    std::size_t valueBegin = noTag;
    for (const Tag& tag : tags_) {
        const bool closing = closingTags.lets(tag.key);
        if ((!closing && !openingTags.lets(tag.key)) || isPassedOver(tag.offset)) continue;
        const std::size_t nameBegin = tag.offset + (closing ? 2U : 1U);
        const std::size_t nameEnd = nameBegin + name.size();
        if (text_.substr(nameBegin, name.size()) != name || nameEnd >= text_.size() || text_[nameEnd] != '>') continue;
        if (closing) {
            if (valueBegin == noTag) return std::nullopt;
            return text_.substr(valueBegin, tag.offset - valueBegin);
        }
        if (valueBegin == noTag) valueBegin = nameEnd + 1;
    }
    return std::nullopt;
}

IxmlTrack IxmlDocument::trackIn(const IxmlElement& element, int ordinal) const {
    const std::size_t tag = firstTagFrom(element.valueBegin);
    const auto text = [&](std::string_view name) -> std::optional<std::string_view> {
        const std::optional<IxmlElement> child = findWithin(name, tag, element.valueEnd);
        if (!child) return std::nullopt;
        return trimmed(text_.substr(child->valueBegin, child->valueEnd - child->valueBegin));
    };
    IxmlTrack track;
    track.interleave = positiveNumber(text("INTERLEAVE_INDEX"));
    track.channel = positiveNumber(text("CHANNEL_INDEX"));
    track.key = track.interleave ? *track.interleave : track.channel.value_or(ordinal);
    for (const std::string_view name : {"NAME", "TRACK_NAME", "CHANNEL_NAME"}) {
        if (const auto value = text(name)) {
            track.name = *value;
            break;
        }
    }
    track.begin = element.begin;
    track.end = element.end;
    return track;
}

std::vector<IxmlTrack> IxmlDocument::tracks() const {
    std::vector<IxmlTrack> tracks;
    for (auto element = find("TRACK"); element; element = find("TRACK", element->end)) {
        tracks.push_back(trackIn(*element, static_cast<int>(tracks.size()) + 1));
    }
    return tracks;
}

std::optional<IxmlElement> plageTag(std::string_view document, std::string_view name) {
    const std::size_t begin = findOpeningTag(document, name);
    if (begin == noTag) return std::nullopt;
    const std::size_t tagEnd = document.find('>', begin + 1 + name.size());
    if (tagEnd == noTag) return std::nullopt;
    const std::size_t valueEnd = findClosingTag(document, name, tagEnd + 1);
    if (valueEnd == noTag) return std::nullopt;
    return IxmlElement{begin, tagEnd + 1, valueEnd, valueEnd + closingTagBytes(name)};
}

std::optional<std::string> valeurTag(std::string_view name, std::string_view document) {
    const std::optional<IxmlElement> element = plageTag(document, name);
    if (!element) return std::nullopt;
    return std::string(trimmed(document.substr(element->valueBegin, element->valueEnd - element->valueBegin)));
}

bool lireCircled(const IxmlDocument& document) {
    return circledFlag([&](std::string_view name) { return document.value(name); }).value_or(false);
}

bool lireWild(const IxmlDocument& document) {
    return wildFlag([&](std::string_view name) { return document.value(name); }).value_or(false);
}

std::map<int, std::string> lireNomsPistes(const IxmlDocument& document) { return lireNomsPistes(document.tracks()); }
std::map<int, int> lireNumerosTracks(const IxmlDocument& document) { return lireNumerosTracks(document.tracks()); }

std::map<int, std::string> lireNomsPistes(const std::vector<IxmlTrack>& tracks) {
    std::map<int, std::string> names;
    for (const IxmlTrack& track : tracks) {
        if (track.name) names.insert_or_assign(track.key, *track.name);
    }
    return names;
}

std::map<int, int> lireNumerosTracks(const std::vector<IxmlTrack>& tracks) {
    std::map<int, int> numbers;
    for (const IxmlTrack& track : tracks) {
        if (track.interleave && track.channel) numbers.insert_or_assign(*track.interleave, *track.channel);
    }
    return numbers;
}

namespace {

/// Two bytes a character: read as one each it would be taken for text with holes, and an edit would ruin it.
bool looksLikeUtf16(std::string_view payload) noexcept {
    using namespace std::string_view_literals;
    return payload.starts_with("\xFE\xFF") || payload.starts_with("\xFF\xFE") || payload.starts_with("<\0"sv) ||
           payload.starts_with("\0<"sv);
}

}  // namespace

std::optional<std::string> decodeIxml(std::string_view payload) {
    if (payload.empty() || payload.size() > maxIxmlBytes) return std::nullopt;
    if (looksLikeUtf16(payload)) return std::nullopt;
    return utf8OrLatin1(payload);
}

}  // namespace dravik
