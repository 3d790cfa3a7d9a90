#include "model/wave/ixml_track_list.h"

#include "base/text.h"
#include "model/wave/ixml_document.h"
#include "model/wave/ixml_editor.h"
#include "model/wave/ixml_tags.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <vector>

#include <fmt/format.h>

namespace dravik {
namespace {

/// Put `text` in the place of the bytes from `begin` to `end`.
struct Replacement {
    std::size_t begin = 0, end = 0;
    std::string text;
};

std::string applied(std::string_view document, std::vector<Replacement> replacements) {
    std::sort(replacements.begin(), replacements.end(),
              [](const Replacement& a, const Replacement& b) { return a.begin < b.begin; });
    std::string out;
    out.reserve(document.size() + 1024);
    std::size_t at = 0;
    for (const Replacement& replacement : replacements) {
        out.append(document.substr(at, replacement.begin - at)).append(replacement.text);
        at = replacement.end;
    }
    return out.append(document.substr(at));
}

/// Recorders' documents and ours agree on this one escape. A "<" stays: readers that search for "</NAME>" show it.
std::string escapedName(std::string_view name) { return replacedAll(name, "&", "&amp;"); }

std::string newTrack(int number, std::string_view name) {
    return fmt::format(
        "<TRACK>\n<CHANNEL_INDEX>{0}</CHANNEL_INDEX>\n<INTERLEAVE_INDEX>{0}</INTERLEAVE_INDEX>\n<NAME>{1}</NAME>\n</"
        "TRACK>",
        number, escapedName(name));
}

/// The tracks of a list, with the keys that readers give them in the whole document.
std::vector<IxmlTrack> tracksWithin(std::string_view document, const IxmlElement& list) {
    std::vector<IxmlTrack> tracks = IxmlDocument(document).tracks();
    std::erase_if(tracks,
                  [&](const IxmlTrack& track) { return track.begin < list.valueBegin || track.end > list.valueEnd; });
    return tracks;
}

/// The track of a mono file, as readers show it: the lowest key among those with a name, else the lowest key; of
/// several with one key the last.
std::size_t soleTrack(const std::vector<IxmlTrack>& tracks) {
    std::size_t best = 0;
    for (std::size_t i = 1; i < tracks.size(); ++i) {
        const bool unnamed = !tracks[i].name;
        const bool bestUnnamed = !tracks[best].name;
        if (unnamed < bestUnnamed || (unnamed == bestUnnamed && tracks[i].key <= tracks[best].key)) best = i;
    }
    return best;
}

/// The edit that gives a track its name.
Replacement named(std::string_view document, const IxmlTrack& track, std::string_view name) {
    const std::size_t closing = track.end - closingTagBytes("TRACK");
    const std::size_t inner = document.find('>', track.begin) + 1;
    if (const auto element = plageTag(document.substr(inner, closing - inner), "NAME")) {
        return {inner + element->valueBegin, inner + element->valueEnd, escapedName(name)};
    }
    return {closing, closing, fmt::format("<NAME>{}</NAME>\n", escapedName(name))};
}

/// Matches of "<TRACK\b[^>]*>".
std::size_t countOpeningTags(std::string_view text) noexcept {
    std::size_t count = 0;
    for (std::size_t at = findOpeningTag(text, "TRACK"); at != noTag; at = findOpeningTag(text, "TRACK", at)) {
        at = text.find('>', at);
        if (at == noTag) break;
        ++count;
    }
    return count;
}

void updateTrackCount(std::string& document) {
    const std::optional<IxmlElement> list = plageTag(document, "TRACK_LIST");
    if (!list) return;
    const std::string_view inner =
        std::string_view(document).substr(list->valueBegin, list->valueEnd - list->valueBegin);
    const std::string count = fmt::format("{}", countOpeningTags(inner));
    if (const auto element = plageTag(inner, "TRACK_COUNT")) {
        document.replace(list->valueBegin + element->valueBegin, element->valueEnd - element->valueBegin, count);
    } else {
        document.insert(list->valueBegin, fmt::format("\n<TRACK_COUNT>{}</TRACK_COUNT>", count));
    }
}

}  // namespace

void writeTrackNames(std::string& document, const std::map<int, std::string>& names,
                     const std::optional<std::string>& soleName) {
    const auto firstNumber = names.lower_bound(1);
    if (firstNumber == names.end() && !soleName) return;

    // Which element each name goes into: of several with one key the last, which is the one that readers show.
    const std::optional<IxmlElement> list = plageTag(document, "TRACK_LIST");
    const std::vector<IxmlTrack> tracks = list ? tracksWithin(document, *list) : std::vector<IxmlTrack>{};
    std::map<int, std::size_t> trackOfKey;
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        if (names.count(tracks[i].key) != 0) trackOfKey[tracks[i].key] = i;
    }

    std::map<std::size_t, std::string_view> nameOfTrack;
    std::map<int, std::string_view> created;
    for (auto entry = firstNumber; entry != names.end(); ++entry) {
        const auto existing = trackOfKey.find(entry->first);
        if (existing != trackOfKey.end()) {
            nameOfTrack[existing->second] = entry->second;
        } else {
            created[entry->first] = entry->second;
        }
    }
    if (soleName) {
        if (!tracks.empty()) {
            nameOfTrack[soleTrack(tracks)] = *soleName;
        } else {
            created[1] = *soleName;
        }
    }

    std::vector<Replacement> replacements;
    for (const auto& [index, name] : nameOfTrack)
        replacements.push_back(named(document, tracks[index], name));
    std::string createdTracks;
    for (const auto& [number, name] : created)
        createdTracks += newTrack(number, name);
    if (list && !createdTracks.empty()) replacements.push_back({list->valueEnd, list->valueEnd, createdTracks});
    document = applied(document, std::move(replacements));
    if (!list) document = insererTag(document, "TRACK_LIST", fmt::format("\n{}", createdTracks));
    updateTrackCount(document);
}

}  // namespace dravik
