#include "model/wave/cue_bytes.h"

#include <limits>

#include <gtest/gtest.h>

namespace dravik {
namespace {

using namespace std::string_literals;
using Points = std::vector<CuePoint>;

std::string le32(std::size_t value) {
    Bytes out;
    appendLE(out, static_cast<std::uint32_t>(value));
    return std::string(asText(out));
}

/// An entry of the list, without a pad byte.
std::string entry(std::string_view id, std::uint32_t number, std::string_view text) {
    return std::string(id) + le32(text.size() + 4) + le32(number) + std::string(text);
}
std::string label(std::uint32_t number, std::string_view text) { return entry("labl", number, text); }

Points read(const Points& points, std::string_view subChunks) {
    const Bytes list = toBytes("adtl" + std::string(subChunks));
    const Bytes cues = cueChunkPayload(points);
    return readCues({cues}, {list}).points;
}

TEST(CueBytes, PointsAndLabelsAreLaidOutAsTheFormatSays) {
    const Points points = {{1, -48000, "Slate"}, {2, 0x01020304, "\0hidden"s}, {3, std::int64_t{1} << 40, "ab"}};
    EXPECT_EQ(asText(cueChunkPayload(points)),
              "\3\0\0\0"
              "\1\0\0\0\0\0\0\0data\0\0\0\0\0\0\0\0\0\0\0\0"
              "\2\0\0\0\0\0\0\0data\0\0\0\0\0\0\0\0\4\3\2\1"
              "\3\0\0\0\0\0\0\0data\0\0\0\0\0\0\0\0\xFF\xFF\xFF\xFF"s);
    EXPECT_EQ(asText(labelListPayload(points)), "adtllabl\x0A\0\0\0\1\0\0\0Slate\0labl\7\0\0\0\3\0\0\0ab\0\0"s);
    EXPECT_TRUE(labelListPayload({{1, 0, std::nullopt}, {2, 0, ""}}).empty());
}

TEST(CueBytes, DamagedLabelsCostOnlyThemselves) {
    const struct {
        const char* what;
        std::string labels;
        std::optional<std::string> first, second;
    } cases[] = {
        {"no terminator, Latin-1", label(1, "\xE9t") + label(2, "cd"), "ét", "cd"},
        {"too small for a number", "labl\2\0\0\0xx"s + label(2, "cd"), {}, "cd"},
        {"larger than its list", label(2, "cd") + "labl\xFF\xFF\xFF\xFF\1\0\0\0ab"s, "ab", "cd"},
        {"cut header", label(1, "ab") + "lab", "ab", {}},
        {"odd with its pad byte", label(1, "a") + "\0"s + label(2, "cd"), "a", "cd"},
        {"odd without its pad byte", label(1, "a") + label(2, "cd"), "a", "cd"},
        {"text behind its zero", label(1, "ab\0junk"s) + label(2, ""), "ab", {}},
        {"two labels of one number", label(1, "ab") + label(1, "cd"), "ab", {}},
        {"an empty one first", label(1, "") + label(1, "\0x"s) + label(1, "cd"), "cd", {}},
    };
    for (const auto& [what, labels, first, second] : cases) {
        const Points points = read({{1, 1}, {2, 0}}, labels);
        ASSERT_EQ(points.size(), 2U);
        EXPECT_EQ(points[0].label, second) << what;
        EXPECT_EQ(points[1].label, first) << what;
    }
}

TEST(CueBytes, EntriesThatAreNoLabelsGoWithTheirPointUnderItsNewNumber) {
    const Bytes cues = cueChunkPayload({{7, 1}, {9, 2}, {9, 3}});
    const Bytes list =
        toBytes("adtl" + entry("ltxt", 7, "odd") + "\0"s + label(7, "a ") + entry("note", 9, "n1") +
                entry("note", 9, "n2") + entry("note", 9, "n3") + entry("ltxt", 9, "") + entry("mine", 7, "") +
                entry("note", 2, "of nobody ") + "mine\2\0\0\0ab"s + entry("mine", 50, "kept") + label(50, "kept"));
    CueContent content = readCues({cues}, {list});
    for (std::size_t i = 0; i < content.points.size(); ++i)
        content.points[i].number = static_cast<std::uint32_t>(i) + 1;
    content.points.erase(content.points.begin() + 1);
    EXPECT_EQ(asText(labelListPayload(content.points, content.loose)),
              "adtl" + label(1, "a \0"s) + "\0"s + entry("ltxt", 1, "odd") + "\0"s + entry("mine", 1, "") +
                  entry("note", 3, "n2") + entry("note", 3, "n3") + entry("note", 0, "of nobody ") + "mine\2\0\0\0ab"s +
                  entry("mine", 50, "kept") + label(0, "kept"));
}

TEST(CueBytes, ALabelTooManyStaysBehindTheFirstUntilThatIsTakenAway) {
    Points points = read({{5, 1}}, label(5, "ab") + entry("note", 5, "ab") + label(5, "cd\0\0"s));
    ASSERT_EQ(points.size(), 1U);
    EXPECT_EQ(points[0].label, "ab");
    points[0].number = 1;
    const Bytes kept = labelListPayload(points);
    EXPECT_EQ(asText(kept), "adtl" + label(1, "ab\0"s) + "\0"s + entry("note", 1, "ab") + label(1, "cd\0\0"s));
    EXPECT_EQ(readCues({cueChunkPayload(points)}, {kept}).points, points);
    points[0].label = std::nullopt;
    EXPECT_EQ(asText(labelListPayload(points)), "adtl" + entry("note", 1, "ab"));
}

TEST(CueBytes, AllChunksOfAFileAreReadAndPointsOfOneNumberShareItsLabels) {
    const Bytes first = cueChunkPayload({{1, 500}, {2, 100}});
    const Bytes second = cueChunkPayload({{1, 300}, {1, 400}});
    const Bytes labels = toBytes("adtl" + label(1, "a ") + label(2, "b "));
    const Bytes more = toBytes("adtl" + label(1, "c "));
    const Bytes other = toBytes("INFO" + label(1, "x "));
    const CueContent content = readCues({first, second}, {other, labels, more});
    EXPECT_EQ(content.points, (Points{{2, 100, "b "}, {1, 300, "c "}, {1, 400}, {1, 500, "a "}}));
    EXPECT_TRUE(content.complete);
}

TEST(CueBytes, AHostileCountReadsAsManyPointsAsThereAre) {
    Bytes payload = cueChunkPayload({{1, 5}, {2, 6}});
    payload.pop_back();
    writeLE<std::uint32_t>(payload.data(), 0xFFFFFFFF);
    EXPECT_EQ(readCues({payload}, {}).points, (Points{{1, 5}}));
    EXPECT_EQ(readCues({ByteSpan(payload).first(3), {}}, {}), CueContent());
}

TEST(CueBytes, WhatIsMoreThanTheLimitsIsSaidToBeThere) {
    const Bytes most = cueChunkPayload(Points(maxCuePoints));
    const Bytes one = cueChunkPayload(Points(1));
    EXPECT_TRUE(readCues({most}, {}).complete);
    const CueContent content = readCues({most, one}, {});
    EXPECT_EQ(content.points.size(), maxCuePoints);
    EXPECT_FALSE(content.complete);
    Bytes list = toBytes("adtl");
    list.resize(list.size() + maxListEntries * 8);
    EXPECT_TRUE(readCues({}, {list}).complete);
    EXPECT_FALSE(readCues({}, {list, toBytes("adtl" + label(1, ""))}).complete);
}

}  // namespace
}  // namespace dravik
