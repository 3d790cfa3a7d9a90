#include "model/wave/cue_bytes.h"

#include <limits>

#include <gtest/gtest.h>

namespace dravik {
namespace {

using namespace std::string_literals;
using Points = std::vector<CuePoint>;

/// "adtl" and these bytes.
Bytes list(std::string_view subChunks) { return toBytes("adtl" + std::string(subChunks)); }

Bytes cues(const Points& points) { return cueChunkPayload(points); }

std::string label(std::uint32_t number, std::string_view text, std::uint32_t size) {
    Bytes out = toBytes("labl");
    appendLE(out, size);
    appendLE(out, number);
    append(out, text);
    return std::string(asText(out));
}

std::string label(std::uint32_t number, std::string_view text) {
    return label(number, text, static_cast<std::uint32_t>(text.size() + 4));
}

TEST(CueBytes, PointsAndLabelsAreLaidOutAsTheFormatSays) {
    const Points points = {{1, 48000, "Slate"}, {2, 0x01020304, std::nullopt}, {3, 7, "ab"}};
    EXPECT_EQ(asText(cueChunkPayload(points)),
              "\3\0\0\0"
              "\1\0\0\0\0\0\0\0data\0\0\0\0\0\0\0\0\x80\xBB\0\0"
              "\2\0\0\0\0\0\0\0data\0\0\0\0\0\0\0\0\4\3\2\1"
              "\3\0\0\0\0\0\0\0data\0\0\0\0\0\0\0\0\7\0\0\0"s);
    EXPECT_EQ(asText(labelListPayload(points)), "adtllabl\x0A\0\0\0\1\0\0\0Slate\0labl\7\0\0\0\3\0\0\0ab\0\0"s);
}

TEST(CueBytes, FramesAreClampedTo32Bits) {
    const Points read = readCuePoints(cues({{1, -5, {}}, {2, std::numeric_limits<std::int64_t>::max(), {}}}), {});
    EXPECT_EQ(read, (Points{{1, 0, {}}, {2, 4294967295, {}}}));
}

TEST(CueBytes, NoLabelNoList) {
    EXPECT_TRUE(labelListPayload({{1, 0, std::nullopt}, {2, 0, ""}, {3, 0, "\0hidden"s}}).empty());
}

TEST(CueBytes, PointsComeBackInFrameOrderWithTheLabelsOfTheirNumbers) {
    const Bytes labels = list(label(1, "one\0"s) + label(3, "\xE9t\xE9\0"s) + "note\2\0\0\0xx" + label(2, ""));
    EXPECT_EQ(readCuePoints(cues({{3, 900, {}}, {2, 50, {}}, {1, 50, {}}}), {ByteSpan(labels)}),
              (Points{{1, 50, "one"}, {2, 50, {}}, {3, 900, "été"}}));
}

TEST(CueBytes, DamagedLabelsCostOnlyThemselves) {
    struct Case {
        const char* what;
        Bytes labels;
        std::optional<std::string> first, second;
    };
    const Case cases[] = {
        {"no terminator", list(label(1, "ab") + label(2, "cd")), "ab", "cd"},
        {"too small for a number", list("labl\2\0\0\0xx"s + label(2, "cd")), {}, "cd"},
        {"larger than its list", list(label(2, "cd") + label(1, "ab", 0xFFFFFFFF)), "ab", "cd"},
        {"cut header", list(label(1, "ab") + "lab"), "ab", {}},
        {"odd with its pad byte", list(label(1, "a") + "\0"s + label(2, "cd")), "a", "cd"},
        {"odd without its pad byte", list(label(1, "a") + label(2, "cd")), "a", "cd"},
        {"odd and last", list(label(1, "a")), "a", {}},
        {"text behind its zero", list(label(1, "ab\0junk"s)), "ab", {}},
        {"two labels of one number", list(label(1, "ab") + label(1, "cd")), "ab", {}},
        {"another list", toBytes("INFO" + label(1, "ab")), {}, {}},
        {"empty", {}, {}, {}},
    };
    for (const Case& c : cases) {
        const Points expected = {{1, 0, c.first}, {2, 1, c.second}};
        EXPECT_EQ(readCuePoints(cues({{1, 0, {}}, {2, 1, {}}}), {ByteSpan(c.labels)}), expected) << c.what;
    }
}

TEST(CueBytes, PointsThatShareANumberShareOutItsLabels) {
    const Bytes labels = list(label(7, "a ") + label(7, "b "));
    EXPECT_EQ(readCuePoints(cues({{7, 1, {}}, {7, 2, {}}, {7, 3, {}}}), {ByteSpan(labels)}),
              (Points{{7, 1, "a "}, {7, 2, "b "}, {7, 3, {}}}));
}

TEST(CueBytes, AHostileCountReadsAsManyPointsAsThereAre) {
    Bytes payload = cues({{1, 5, {}}, {2, 6, {}}});
    payload.resize(payload.size() - 1);
    writeLE<std::uint32_t>(payload.data(), 0xFFFFFFFF);
    EXPECT_EQ(readCuePoints(payload, {}), (Points{{1, 5, {}}}));
    EXPECT_TRUE(readCuePoints(ByteSpan(payload).first(3), {}).empty());
    EXPECT_TRUE(readCuePoints({}, {}).empty());
    EXPECT_EQ(readCuePoints(cues(Points(maxCuePoints + 1)), {}).size(), maxCuePoints);
}

}  // namespace
}  // namespace dravik
