#include "model/wave/ixml_check.h"

#include "base/text.h"
#include "model/wave/ixml_document.h"

#include <array>
#include <utility>

namespace dravik {
namespace {

bool textIsClean(const IxmlDocument& before, const IxmlDocument& after, std::string_view name,
                 const std::optional<std::string>& edited) {
    const auto now = after.literalValue(name);
    if (!edited) {
        const auto then = before.literalValue(name);
        return !then || then == now;
    }
    // An element with attributes is not seen by the literal reading; an edit of it still has to arrive.
    return now ? *now == *edited : after.value(name) == std::optional(trimmed(*edited));
}

/// The one track that a number was given to where there was no position moves to position 1 with its name.
bool isOneTrackMoved(const std::vector<IxmlTrack>& before, const MetadataValues& values) {
    return values.soleTrackNumber && before.size() == 1 && !before.front().interleave;
}

bool namesAreClean(const std::vector<IxmlTrack>& before, const std::vector<IxmlTrack>& after,
                   const MetadataValues& values) {
    const auto stored = [](std::string_view name) { return replacedAll(trimmed(name), "&", "&amp;"); };
    std::map<int, std::string> expected = lireNomsPistes(before);
    std::map<int, std::string> found = lireNomsPistes(after);
    for (const auto& [track, name] : values.nomsPistes) {
        if (track >= 1) expected[track] = stored(name);
    }
    if (isOneTrackMoved(before, values) && !expected.empty()) {
        auto moved = expected.extract(expected.begin());
        moved.key() = 1;
        expected.insert(std::move(moved));
    }
    if (values.soleTrackName) {
        if (found.empty()) return false;
        expected[found.begin()->first] = stored(*values.soleTrackName);
    }
    // "<NAME/>", which names nothing, is spelled out in all tracks when one gets a name.
    const auto isEmpty = [](const auto& track) { return track.second.empty(); };
    std::erase_if(expected, isEmpty);
    std::erase_if(found, isEmpty);
    return expected == found;
}

bool numbersAreClean(const std::vector<IxmlTrack>& before, const std::vector<IxmlTrack>& after,
                     const MetadataValues& values) {
    std::map<int, int> expected = lireNumerosTracks(before);
    const std::map<int, int> found = lireNumerosTracks(after);
    for (const auto& [position, number] : values.numerosTracks) {
        if (position >= 1 && number >= 1) expected[position] = number;
    }
    if (values.soleTrackNumber && *values.soleTrackNumber >= 1) {
        if (found.empty()) return false;
        expected[found.begin()->first] = *values.soleTrackNumber;
    }
    // A track that was made for a name has a number of its own.
    const auto mayBeNew = [&](int position) {
        const auto number = found.find(position);
        if (number != found.end() && number->second == position) expected.try_emplace(position, position);
    };
    for (const auto& [track, name] : values.nomsPistes)
        mayBeNew(track);
    if (values.soleTrackName && before.empty()) mayBeNew(1);
    return expected == found;
}

bool tracksAreClean(const IxmlDocument& before, const IxmlDocument& after, const MetadataValues& values) {
    const std::vector<IxmlTrack> then = before.tracks();
    const std::vector<IxmlTrack> now = after.tracks();
    return namesAreClean(then, now, values) && numbersAreClean(then, now, values);
}

}  // namespace

bool editIsClean(std::string_view beforeText, std::string_view afterText, const MetadataValues& values) {
    const IxmlDocument before(beforeText);
    const IxmlDocument after(afterText);
    const std::array texts = {
        std::pair{std::string_view("PROJECT"), &values.project}, std::pair{std::string_view("SCENE"), &values.scene},
        std::pair{std::string_view("TAPE"), &values.tape}, std::pair{std::string_view("TAKE"), &values.prise},
        std::pair{std::string_view("NOTE"), &values.note}};
    for (const auto& [name, edited] : texts) {
        if (!textIsClean(before, after, name, *edited)) return false;
    }
    if (lireCircled(after) != values.circled.value_or(lireCircled(before))) return false;
    if (lireWild(after) != values.wild.value_or(lireWild(before))) return false;
    const auto unchanged = [&](std::string_view name) { return before.value(name) == after.value(name); };
    if (!unchanged("FILE_UID") || !unchanged("FAMILY_UID")) return false;
    if (values.framerate.empty() && (!unchanged("TIMECODE_RATE") || !unchanged("TIMECODE_FLAG"))) return false;
    if (values.timecode.empty() &&
        (!unchanged("TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO") || !unchanged("TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_HI"))) {
        return false;
    }
    return tracksAreClean(before, after, values);
}

}  // namespace dravik
