#include "model/wave/ixml_track_list.h"

#include "base/text.h"
#include "model/wave/ixml_document.h"
#include "model/wave/ixml_editor.h"
#include "model/wave/ixml_tags.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace dravik {
namespace {

/// Put `text` in the place of the bytes from `begin` to `end`.
struct Replacement {
    std::size_t begin = 0, end = 0;
    std::string text = {};
    std::size_t order = 0;  ///< among those in one place
};

std::string applied(std::string_view document, std::vector<Replacement> replacements) {
    // What is put in the same place stays in the order in which it was asked for.
    for (std::size_t i = 0; i < replacements.size(); ++i)
        replacements[i].order = i;
    std::sort(replacements.begin(), replacements.end(), [](const Replacement& a, const Replacement& b) {
        return std::pair(a.begin, a.order) < std::pair(b.begin, b.order);
    });
    std::string out;
    out.reserve(document.size() + 1024);
    std::size_t at = 0;
    for (const Replacement& replacement : replacements) {
        if (replacement.begin < at) continue;  // an index inside of a name: only one of the two can be written
        out.append(document.substr(at, replacement.begin - at)).append(replacement.text);
        at = replacement.end;
    }
    return out.append(document.substr(at));
}

/// Recorders' documents and ours agree on this one escape. A "<" stays: readers that search for "</NAME>" show it.
std::string escapedName(std::string_view name) { return replacedAll(name, "&", "&amp;"); }

/// What one track gets.
struct TrackValues {
    std::optional<std::string_view> name;
    std::optional<int> number;
};

std::string newTrack(int position, const TrackValues& values) {
    const std::string name = values.name ? fmt::format("<NAME>{}</NAME>\n", escapedName(*values.name)) : std::string();
    return fmt::format(
        "<TRACK>\n<CHANNEL_INDEX>{}</CHANNEL_INDEX>\n<INTERLEAVE_INDEX>{}</INTERLEAVE_INDEX>\n{}</TRACK>",
        values.number.value_or(position), position, name);
}

/// The track of a mono file, as readers show it: the lowest key among those with a name, else the lowest key; of
/// several with one key the last.
std::size_t soleNamedTrack(const std::vector<IxmlTrack>& tracks) {
    std::size_t best = 0;
    for (std::size_t i = 1; i < tracks.size(); ++i) {
        const bool unnamed = !tracks[i].name;
        const bool bestUnnamed = !tracks[best].name;
        if (unnamed < bestUnnamed || (unnamed == bestUnnamed && tracks[i].key <= tracks[best].key)) best = i;
    }
    return best;
}

/// The track whose number readers show of a mono file: the lowest position that has one, of several the last; else the
/// track whose name they show.
std::size_t soleNumberedTrack(const std::vector<IxmlTrack>& tracks) {
    std::optional<std::size_t> best;
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        if (!tracks[i].interleave || !tracks[i].channel) continue;
        if (!best || *tracks[i].interleave <= *tracks[*best].interleave) best = i;
    }
    return best.value_or(soleNamedTrack(tracks));
}

/// Of the tracks with each of these keys the one that a number goes into: the last whose number readers show, else the
/// last that has the position, else the last.
std::map<int, std::size_t> numberedTracks(const std::vector<IxmlTrack>& tracks, const std::map<int, int>& numbers) {
    const auto rank = [](const IxmlTrack& track) { return !track.interleave ? 0 : !track.channel ? 1 : 2; };
    std::map<int, std::size_t> found;
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        if (!numbers.contains(tracks[i].key)) continue;
        const auto [entry, first] = found.emplace(tracks[i].key, i);
        if (!first && rank(tracks[i]) >= rank(tracks[entry->second])) entry->second = i;
    }
    return found;
}

/// A child element of a track, in the place of its value or as a new one at the end. Blanks around the value stay.
Replacement child(std::string_view document, const IxmlTrack& track, std::string_view element, std::string value) {
    const std::size_t closing = track.end - closingTagBytes("TRACK");
    const std::size_t inner = document.find('>', track.begin) + 1;
    if (const auto found = plageTag(document.substr(inner, closing - inner), element)) {
        const std::size_t begin = inner + found->valueBegin;
        const std::size_t length = found->valueEnd - found->valueBegin;
        if (element == "NAME") return {begin, begin + length, std::move(value)};
        const std::string_view old = trimmed(document.substr(begin, length));
        if (old.empty()) return {begin, begin, std::move(value)};
        const auto at = static_cast<std::size_t>(old.data() - document.data());
        return {at, at + old.size(), std::move(value)};
    }
    return {closing, closing, fmt::format("<{0}>{1}</{0}>\n", element, value)};
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

void writeTracks(std::string& document, const TrackEdits& edits) {
    const auto firstName = edits.names.lower_bound(1);
    std::map<int, int> numbers = edits.numbers;
    std::erase_if(numbers, [](const auto& entry) { return entry.first < 1 || entry.second < 1; });
    const bool named = firstName != edits.names.end() || edits.soleName;
    const bool soleNumbered = edits.soleNumber && *edits.soleNumber >= 1;
    if (!named && numbers.empty() && !soleNumbered) return;

    // The tracks of the list, with the keys that readers give them in the whole document.
    const std::optional<IxmlElement> list = plageTag(document, "TRACK_LIST");
    std::vector<IxmlTrack> tracks = IxmlDocument(document).tracks();
    const std::map<int, int> numbersBefore = lireNumerosTracks(tracks);
    std::erase_if(tracks, [&](const IxmlTrack& track) {
        return !list || track.begin < list->valueBegin || track.end > list->valueEnd;
    });

    // Which element each name goes into: of several with one key the last, which is the one that readers show.
    std::map<int, std::size_t> trackOfKey;
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        if (edits.names.contains(tracks[i].key)) trackOfKey[tracks[i].key] = i;
    }
    std::map<std::size_t, TrackValues> existing;
    std::map<int, TrackValues> created;
    const auto at = [&](const std::map<int, std::size_t>& found, int key) -> TrackValues& {
        const auto track = found.find(key);
        return track != found.end() ? existing[track->second] : created[key];
    };
    for (auto entry = firstName; entry != edits.names.end(); ++entry)
        at(trackOfKey, entry->first).name = entry->second;
    const std::map<int, std::size_t> trackOfPosition = numberedTracks(tracks, numbers);
    for (const auto& [position, number] : numbers)
        at(trackOfPosition, position).number = number;
    if (edits.soleName) (tracks.empty() ? created[1] : existing[soleNamedTrack(tracks)]).name = *edits.soleName;
    if (soleNumbered) (tracks.empty() ? created[1] : existing[soleNumberedTrack(tracks)]).number = edits.soleNumber;

    std::vector<Replacement> replacements;
    for (const auto& [index, values] : existing) {
        const IxmlTrack& track = tracks[index];
        if (values.number) {
            replacements.push_back(child(document, track, "CHANNEL_INDEX", fmt::format("{}", *values.number)));
            if (!track.interleave) {
                // The one track of a file with one channel stands at position 1, whatever channel it was named by.
                const int position = soleNumbered && tracks.size() == 1 ? 1 : track.key;
                replacements.push_back(child(document, track, "INTERLEAVE_INDEX", fmt::format("{}", position)));
            }
        }
        if (values.name) replacements.push_back(child(document, track, "NAME", escapedName(*values.name)));
    }
    std::string createdTracks;
    for (auto& [position, values] : created) {
        // A track that stands outside of the list may have told the number so far.
        if (const auto before = numbersBefore.find(position); !values.number && before != numbersBefore.end()) {
            values.number = before->second;
        }
        createdTracks += newTrack(position, values);
    }
    if (list && !createdTracks.empty()) replacements.push_back({list->valueEnd, list->valueEnd, createdTracks});
    document = applied(document, std::move(replacements));
    if (!list) document = insererTag(document, "TRACK_LIST", fmt::format("\n{}", createdTracks));
    if (named || !createdTracks.empty()) updateTrackCount(document);
}

}  // namespace dravik
