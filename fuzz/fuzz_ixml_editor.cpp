// The iXML editor against the patterns that define it, and against what a reader must find after an edit. The first
// byte of the input chooses the edit.
#include "base/text.h"
#include "fuzz/pcre_oracle.h"
#include "fuzz/require.h"
#include "model/wave/ixml_document.h"
#include "model/wave/ixml_editor.h"

#include <cstddef>
#include <cstdint>

using namespace dravik;

namespace {

constexpr std::size_t oracleLimit = 4096;  // the oracle's removal is cubic

void checkPrimitives(std::string_view text) {
    for (const char* name : {"CIRCLED", "CIRCLE", "TAKE_TYPE", "WILD_TRACK", "NOTE", "TAKE", "A"}) {
        const std::string removed = supprimerTags(text, name);
        require(removed == oracle::supprimerTags(text, name));
        require(!oracle::plageTag(removed, name));
        require(remplacerValeurTag(text, name, "v & <w>") == oracle::remplacerValeurTag(text, name, "v & <w>"));
        require(insererTag(text, name, "v").size() >= text.size() + 2 * std::string_view(name).size() + 7);
    }
    if (const auto speed = oracle::plageTag(text, "SPEED")) {
        const std::string inner(text.substr(speed->valueBegin, speed->valueEnd - speed->valueBegin));
        const std::string edited = oracle::plageTag(inner, "MASTER_SPEED")
                                       ? oracle::remplacerValeurTag(inner, "MASTER_SPEED", "025.000")
                                       : inner + "\n<MASTER_SPEED>025.000</MASTER_SPEED>";
        const std::string expected =
            std::string(text.substr(0, speed->valueBegin)) + edited + std::string(text.substr(speed->valueEnd));
        require(definirSousTag(text, "SPEED", "MASTER_SPEED", "025.000") == expected);
    }
}

/// A list as recorders write it. In others, readers may take the damage for a track or for its name.
bool hasTidyTrackList(std::string_view text) {
    static const oracle::Pattern tidy(
        "^[^<]*<TRACK_LIST>(?:\\s*<(TRACK_COUNT)>[^<]*</\\1>)?"
        "(?:\\s*<TRACK>(?:\\s*<(INTERLEAVE_INDEX|CHANNEL_INDEX|NAME|TRACK_NAME|FUNCTION)>[^<]*</\\2>)*\\s*</TRACK>)*"
        "\\s*</TRACK_LIST>[^<]*\\z");
    return tidy.first(text).has_value();
}

void checkTrackNames(std::string_view text, int track) {
    const std::string named = setTrackName(text, track, "Boom & Lav");
    if (!hasTidyTrackList(text)) return;
    require(hasTidyTrackList(named));
    const auto before = oracle::readTracks(text);
    auto expected = before.first;
    expected[track] = "Boom &amp; Lav";
    require(oracle::readTracks(named).first == expected);

    const std::string numbered = setTrackNumber(text, track, 777);
    require(hasTidyTrackList(numbered));
    auto numbers = before.second;
    numbers[track] = 777;
    require(oracle::readTracks(numbered).first == before.first);
    require(oracle::readTracks(numbered).second == numbers);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0 || size > oracleLimit) return 0;
    const unsigned choice = data[0];
    const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
    checkPrimitives(text);
    checkTrackNames(text, static_cast<int>(choice % 5) + 1);

    MetadataValues values;
    if ((choice & 1U) != 0) values.project = "Film";
    if ((choice & 2U) != 0) values.note = "wind & rain";
    if ((choice & 4U) != 0) values.circled = (choice & 8U) != 0;
    if ((choice & 16U) != 0) values.wild = (choice & 8U) != 0;
    if ((choice & 32U) != 0) values.nomsPistes = {{0, "none"}, {1, "Boom"}, {3, "Lav"}};
    if ((choice & 64U) != 0) values.soleTrackName = "Only";
    if ((choice & 96U) == 96U) values.numerosTracks = {{0, 5}, {1, 3}, {3, 1}};
    if ((choice & 128U) != 0) {
        values.framerate = "29.97 DF";
        values.timecode = "10:00:00:00";
        values.sampleRate = 48000;
    }
    try {
        const std::string edited = mettreAJourIXML(text, values);
        require(isValidUtf8(edited));
        const IxmlDocument before(text);
        const IxmlDocument after(edited);
        const auto circled = after.value("CIRCLED");
        const bool wildWritten = (choice & 16U) != 0 || lireWild(before);
        // Damage in front of the inserted element may swallow it, and removing another element may join two halves of
        // one; what else is found must not contradict the edit.
        if (!wildWritten && circled && (*circled == "TRUE" || *circled == "FALSE")) {
            require((*circled == "TRUE") == (values.circled ? *values.circled : lireCircled(before)));
        }
        if ((choice & ~12U) == 0 && !wildWritten && text.find("/>") == std::string_view::npos) {
            std::string expected(text);
            for (const char* name : {"CIRCLE", "TAKE_TYPE", "CIRCLED"})
                expected = oracle::supprimerTags(expected, name);
            const bool state = values.circled ? *values.circled : lireCircled(before);
            require(edited == insererTag(expected, "CIRCLED", state ? "TRUE" : "FALSE"));
        }
        const std::string kept = withPaddingKept(text, edited);
        require(kept.size() == edited.size() || kept.size() == text.size());
        const std::size_t common = std::min(kept.size(), edited.size());
        require(kept.compare(0, common, edited, 0, common) == 0);
    } catch (const IxmlError&) {
        require(!isValidUtf8(text));
    }
    return 0;
}
