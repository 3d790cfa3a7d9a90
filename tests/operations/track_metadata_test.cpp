#include "operations/track_metadata.h"

#include "operations/xml_text.h"
#include "tests/support/repeated.h"
#include "tests/support/wav_builder.h"

#include <string>

#include <gtest/gtest.h>

namespace dravik {
namespace {

using namespace OperationsAudio;
using Tracks = std::vector<OutputTrack>;

/// Track `from` of a poly file under a new number.
OutputTrack track(int from, int numero, std::optional<std::string> nom) {
    return {.canal = static_cast<std::size_t>(from) - 1, .numeroSource = from, .numero = numero, .nom = std::move(nom)};
}

const std::string onlyBoom =
    "<TRACK_LIST>\n  <TRACK_COUNT>1</TRACK_COUNT>\n  <TRACK>\n    <CHANNEL_INDEX>3</CHANNEL_INDEX>\n"
    "    <INTERLEAVE_INDEX>1</INTERLEAVE_INDEX>\n    <NAME>Boom &amp; &lt;Lav&gt; &quot;A&quot; &apos;</NAME>\n"
    "  </TRACK>\n</TRACK_LIST>";

TEST(TrackMetadata, ReplacesTheFirstTrackListAndNothingElse) {
    const Tracks tracks = {track(3, 3, "Boom & <Lav> \"A\" '")};
    const std::string before = "<BWFXML><!-- \xC3\xA9 --><X/>";
    const std::string behind = "\r\n<TRACK_LIST><TRACK/></TRACK_LIST></BWFXML>\0\0  ";
    for (const std::string list :
         {"<TRACK_LIST></TRACK_LIST>", "<track_list a=\"1>\r\n<TRACK><NAME>x</NAME></TRACK>\n</Track_List>",
          "<TRACK_LIST\n b='2'><TRACK_COUNT>9</TRACK_COUNT></TRACK_LIST>"}) {
        EXPECT_EQ(asText(ixmlWithTracks(asBytes(before + list + behind), tracks)), before + onlyBoom + behind);
    }
    for (const std::string unchanged : {"", "<BWFXML></BWFXML>", "<TRACK_LIST><TRACK>", "<TRACK_LISTS></TRACK_LISTS>"})
        EXPECT_EQ(asText(ixmlWithTracks(asBytes(unchanged), tracks)), unchanged);
}

TEST(TrackMetadata, KeepsAccentsReadableWhateverTheDocumentDeclares) {
    const std::string latin1 =
        "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><BWFXML><NOTE>\xE9</NOTE><TRACK_LIST></TRACK_LIST></BWFXML>";
    const Bytes out = ixmlWithTracks(asBytes(latin1), Tracks{track(1, 1, "\xC3\xA8")});
    EXPECT_NE(asText(out).find("encoding=\"UTF-8\""), std::string::npos);
    EXPECT_NE(asText(out).find("<NOTE>\xC3\xA9</NOTE>"), std::string::npos);
    EXPECT_NE(asText(out).find("<NAME>\xC3\xA8</NAME>"), std::string::npos);
}

TEST(TrackMetadata, CallsATrackWithoutANameByItsNumber) {
    EXPECT_EQ(trackLabel(track(7, 1, std::nullopt)), "Track 7");
    EXPECT_EQ(unescapedXml("&lt;A&gt; &amp;amp; &#233;&#xE9; &quot;&apos; &nbsp; & &#0; &#xD800;"),
              "<A> &amp; \xC3\xA9\xC3\xA9 \"' &nbsp; & &#0; &#xD800;");
    EXPECT_EQ(unescapedXml("a<!-- &amp; -->b<![CDATA[ <&amp;> ]]>c<!--<![CDATA[d]]>"), "ab <&amp;> c<!--d");
    EXPECT_FALSE(unescapedXml(test::repeated("<!--<![CDATA[", 4UL << 20U)).empty()) << "and stays linear";
}

/// The channels of a file of which these are some.
std::vector<SourceTrack> channelsOf(const Tracks& tracks) {
    std::vector<SourceTrack> own;
    for (const OutputTrack& track : tracks) {
        if (track.source != 0) continue;
        while (own.size() <= track.canal)
            own.push_back({static_cast<int>(own.size()) + 1, std::nullopt});
        own[track.canal] = {track.numeroSource, track.nom};
    }
    return own;
}

std::string description(std::string_view text, const Tracks& tracks, const std::vector<SourceTrack>& own) {
    const Bytes payload = test::bextPayload({.description = std::string(text)});
    const Bytes out = bextWithTracks(payload, tracks, 0, own);
    EXPECT_EQ(out.size(), payload.size());
    EXPECT_TRUE(std::equal(out.begin() + 256, out.end(), payload.begin() + 256));
    const std::string field(asText(ByteSpan(out).first(256)));
    EXPECT_EQ(field.find_first_not_of('\0', field.find('\0')), std::string::npos);
    return field.substr(0, field.find('\0'));
}
std::string description(std::string_view text, const Tracks& tracks) {
    return description(text, tracks, channelsOf(tracks));
}

TEST(TrackMetadata, RebuildsTheTrackLinesOfTheDescription) {
    const Tracks swapped = {track(2, 1, "Lav"), track(1, 2, std::nullopt)};
    const Tracks second = {track(2, 2, "Lav")};
    const Tracks third = {track(3, 1, "Room")};
    struct Case {
        const char* what;
        std::string before;
        Tracks tracks;
        std::string after;
    };
    const Case cases[] = {
        {"in the new order, where the first stood", "sSCENE=1\r\nsTRK1=Boom\r\nsTRK2=old\r\nsNOTE=x\r\n", swapped,
         "sSCENE=1\r\nsTRK1=Lav\r\nsTRK2=Boom\r\nsNOTE=x\r\n"},
        {"removed tracks go", "sTRK1=Boom\r\nsNOTE=x\r\nsTRK2=old\r\n", second, "sTRK2=Lav\r\nsNOTE=x\r\n"},
        {"all of them", "sSCENE=1\r\nsTRK1=Boom\r\nsTRK2=old\r\n", third, "sSCENE=1\r\n"},
        {"each prefix has its own", "dTRK1=a\ndTRK2=b\nTRK2=b\nTRK1=a\n", swapped,
         "dTRK1=Lav\ndTRK2=a\nTRK1=Lav\nTRK2=a\n"},
        {"no line end at the end", "gTRK1=a\r\ngTRK2=b", swapped, "gTRK1=Lav\r\ngTRK2=a"},
        {"other lines are others", "TR1=a\r\nsTRKS=2\r\nsTRK=1\r\nSTRK1=a\r\nsTRK1x=a\r\n", swapped,
         "TR1=a\r\nsTRKS=2\r\nsTRK=1\r\nSTRK1=a\r\nsTRK1x=a\r\n"},
        {"a track that had no line gets none", "sTRK1=Boom\r\n", swapped, "sTRK2=Boom\r\n"},
        {"none at all", "plain text", swapped, "plain text"},
        {"old line ends", "sSCENE=1\rsTRK1=a\rsTRK2=b\rsNOTE=x", swapped, "sSCENE=1\rsTRK1=Lav\rsTRK2=a\rsNOTE=x"},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.what);
        EXPECT_EQ(description(one.before, one.tracks), one.after);
    }
}

TEST(TrackMetadata, CountsLinesByPositionWhereTheyDoNotCountAsTheTrackListDoes) {
    // Recorders number inputs 3 and 4 in the iXML and tracks 1 and 2 in the description.
    const Tracks tracks = {{.canal = 1, .numeroSource = 4, .numero = 1, .nom = "B"},
                           {.canal = 0, .numeroSource = 3, .numero = 2, .nom = "A"}};
    EXPECT_EQ(description("sTRK1=A\r\nsTRK2=B\r\n", tracks), "sTRK1=B\r\nsTRK2=A\r\n");
    const Tracks mono = {{.numeroSource = 1, .numero = 5, .nom = std::nullopt}};
    EXPECT_EQ(description("sTRK2=Boom\r\n", mono), "sTRK5=Boom\r\n");
}

TEST(TrackMetadata, FindsATracksLineAfterItsNumberWasChangedInTheTrackList) {
    struct Case {
        const char* what;
        std::vector<SourceTrack> own;
        std::string first, second;  ///< the lines of each channel by itself
    };
    const std::string before = "sTRK1=A\r\nsTRK2=B\r\n";
    const Case cases[] = {
        {"exchanged", {{2, "A"}, {1, "B"}}, "sTRK2=A\r\n", "sTRK1=B\r\n"},
        {"onto another's old number, without names", {{2, {}}, {5, {}}}, "sTRK2=A\r\n", "sTRK5=B\r\n"},
        {"to a number that no line has", {{7, "A"}, {2, {}}}, "sTRK7=A\r\n", "sTRK2=B\r\n"},
        {"names that say nothing", {{2, "X"}, {9, "X"}}, "sTRK2=X\r\n", "sTRK9=X\r\n"},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.what);
        for (const std::size_t canal : {0U, 1U}) {
            const SourceTrack& from = one.own[canal];
            const Tracks alone = {
                {.canal = canal, .numeroSource = from.numero, .numero = from.numero, .nom = from.nom}};
            EXPECT_EQ(description(before, alone, one.own), canal == 0 ? one.first : one.second);
        }
    }
    EXPECT_EQ(description("sTRK7=A\r\nsTRK8=B\r\n", {{.canal = 1, .numeroSource = 1, .numero = 1, .nom = "B"}},
                          {{7, "A"}, {1, "B"}}),
              "sTRK1=B\r\n")
        << "a line that only its name tells";
}

TEST(TrackMetadata, ListsTheTracksOfOtherFilesOfAMerge) {
    const Tracks tracks = {{.source = 0, .numeroSource = 1, .numero = 1, .nom = "Boom"},
                           {.source = 1, .numeroSource = 2, .numero = 2, .nom = "Lav\nB"}};
    EXPECT_EQ(description("sTRK1=Boom\r\nsNOTE=x\r\n", tracks), "sTRK1=Boom\r\nsTRK2=Lav B\r\nsNOTE=x\r\n");
}

TEST(TrackMetadata, ShortensNamesWhereTheDescriptionHasNoRoomAndKeepsEveryOtherLine) {
    const std::string other = "sNOTE=" + std::string(150, 'n') + "\r\n";
    std::string lines;
    Tracks tracks;
    for (int number = 1; number <= 3; ++number) {
        lines += "sTRK" + std::to_string(number) + "=x\r\n";
        std::string nom;
        for (int i = 0; i < 30; ++i)
            nom += "\xC3\xA9";
        tracks.push_back(track(number, number, nom));
    }
    const std::string fitted = description(other + lines, tracks);
    EXPECT_LE(fitted.size(), 256U);
    EXPECT_GE(fitted.size(), 250U);
    EXPECT_TRUE(fitted.starts_with(other));
    EXPECT_NE(fitted.find("sTRK3=\xC3\xA9"), std::string::npos);
    for (std::size_t at = fitted.find("sTRK1"); at < fitted.size(); ++at) {
        if (fitted[at] == '\xC3') {
            ASSERT_EQ(fitted.substr(at + 1, 1), "\xA9");
        }
    }
    const std::string full = "sNOTE=" + std::string(232, 'n') + "\r\n";
    EXPECT_EQ(description(full + "sTRK1=a\r\n", {track(1, 1, "0123456789")}), full + "sTRK1=01234567\r\n");
    EXPECT_EQ(description(full + "sTRK1=a\r\nsTRK2=b", tracks), full + "sTRK1=" + "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9")
        << "the last lines are left out";
}

TEST(TrackMetadata, StaysLinearInNamesOfAnyLength) {
    Bytes payload = toBytes("sTRK1=a\r\nsTRK2=b\r\n");
    payload.resize(602);
    const Tracks tracks = {track(1, 1, std::string(4U << 20U, 'x')), track(2, 2, std::string(4U << 20U, 'y'))};
    EXPECT_EQ(bextWithTracks(payload, tracks, 0, channelsOf(tracks)).size(), payload.size());
}

}  // namespace
}  // namespace dravik
