#include "model/wave/ixml_document.h"

#include "base/text.h"
#include "fuzz/pcre_oracle.h"
#include "tests/support/repeated.h"

#include <random>

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace dravik {
namespace {

using test::repeated;
using Names = std::map<int, std::string>;
using Numbers = std::map<int, int>;

bool circled(std::string_view text) { return lireCircled(IxmlDocument(text)); }
bool wild(std::string_view text) { return lireWild(IxmlDocument(text)); }
Names names(std::string_view text) { return lireNomsPistes(IxmlDocument(text)); }

std::string element(std::string_view name, std::string_view value) {
    return fmt::format("<{0}>{1}</{0}>", name, value);
}

TEST(IxmlDocument, AnElementIsWhatThePatternFinds) {
    struct Case {
        const char* document;
        std::optional<std::string_view> note;
    };
    for (const Case& c :
         {Case{"<NOTE>wind</NOTE>", "wind"}, Case{"<note a='1'\nb>\r\n wind \t</NoTe>", "wind"},
          Case{"<NOTES>x</NOTES><NOTE_>y</NOTE_><NOTE>wind</NOTE>", "wind"},
          Case{"<NOTE-A>wind</NOTE>", "wind"},        // '-' ends the word
          Case{"<NOTE\xC3\xA9>wind</NOTE>", "wind"},  // so does a byte above 127
          Case{"<NOTE<NOTE>wind</NOTE>", "wind"},     // a tag may hold '<'
          Case{"<NOTE/>in between</NOTE>", "in between"}, Case{"<NOTE>a<NOTE>b</NOTE>c</NOTE>", "a<NOTE>b"},
          Case{"</NOTE><NOTE></NOTE>", ""}, Case{"<NOTE>wind</NOTE >", std::nullopt}, Case{"<NOTE", std::nullopt},
          Case{"<NOTE </NOTE>", std::nullopt},  // the '>' of the closing tag ends the opening one
          Case{"<NOTE>", std::nullopt}, Case{"< NOTE>wind</NOTE>", std::nullopt}, Case{"", std::nullopt}}) {
        EXPECT_EQ(IxmlDocument(c.document).value("NOTE"), c.note) << c.document;
        EXPECT_EQ(valeurTag("NOTE", c.document), c.note) << c.document;
    }
}

TEST(IxmlDocument, FindGoesOnFromAnOffset) {
    const IxmlDocument document("<A>1</A><A>2</A>");
    ASSERT_TRUE(document.find("A", 1));
    EXPECT_EQ(document.find("A", 1)->begin, 8U);
    EXPECT_FALSE(document.find("A", 9));
    EXPECT_FALSE(document.find("", 0));
}

TEST(IxmlDocument, TextFieldsAreReadLiterally) {
    struct Case {
        const char* document;
        std::optional<std::string_view> project;
    };
    for (const Case& c : {Case{"<PROJECT> a &amp; b\n</PROJECT>", " a &amp; b\n"}, Case{"<PROJECT></PROJECT>", ""},
                          Case{"<project>x</project>", std::nullopt}, Case{"<PROJECT a='1'>x</PROJECT>", std::nullopt},
                          Case{"<PROJECT a='1'>x<PROJECT>y</PROJECT>", "y"},
                          Case{"</PROJECT><PROJECT>x</PROJECT>", std::nullopt}, Case{"<PROJECT>x", std::nullopt}}) {
        EXPECT_EQ(IxmlDocument(c.document).literalValue("PROJECT"), c.project) << c.document;
    }
}

TEST(IxmlDocument, TheNoteOfTheSpeedBlockIsNotTheTakes) {
    struct Case {
        const char* document;
        std::optional<std::string_view> note;
    };
    for (const Case& c : {Case{"<SPEED><NOTE>fast</NOTE></SPEED><NOTE>wind</NOTE>", "wind"},
                          Case{"<NOTE>wind</NOTE><SPEED><NOTE>fast</NOTE></SPEED>", "wind"},
                          Case{"<SPEED><NOTE>fast</NOTE></SPEED>", std::nullopt},
                          Case{"<speed x><NOTE></NOTE></speed>\n<NOTE></NOTE>", ""},
                          Case{"<NOTE><SPEED><NOTE></SPEED>wind</NOTE>", "<SPEED><NOTE></SPEED>wind"},
                          Case{"<SPEED><NOTE>no end of the block</NOTE>", "no end of the block"}}) {
        EXPECT_EQ(IxmlDocument(c.document).literalValue("NOTE"), c.note) << c.document;
    }
    EXPECT_EQ(IxmlDocument("<SPEED><TAKE>1</TAKE></SPEED>").literalValue("TAKE"), "1");
}

TEST(IxmlDocument, TheFirstElementPresentDecidesAFlag) {
    for (const char* yes : {"1", "true", "YES", "y", "Oui", "o", " TRUE\n", "Circled"}) {
        EXPECT_TRUE(circled(element("CIRCLED", yes))) << yes;
        EXPECT_TRUE(circled(element("CIRCLE", yes))) << yes;
    }
    for (const char* no : {"", "FALSE", "0", "no", "truer", "2"}) {
        EXPECT_FALSE(circled(element("CIRCLED", no) + "<CIRCLE>1</CIRCLE>")) << no;
        EXPECT_FALSE(circled(element("CIRCLE", no) + "<TAKE_TYPE>CIRCLED</TAKE_TYPE>")) << no;
        EXPECT_FALSE(wild(element("WILD_TRACK", no) + "<TAKE_TYPE>WILD</TAKE_TYPE>")) << no;
    }
    EXPECT_TRUE(circled("<TAKE_TYPE> circled </TAKE_TYPE>"));
    EXPECT_FALSE(circled("<TAKE_TYPE>1</TAKE_TYPE>"));
    EXPECT_TRUE(wild("<WILD_TRACK>oui</WILD_TRACK>"));
    EXPECT_FALSE(wild("<WILD_TRACK>wild</WILD_TRACK>"));
    EXPECT_TRUE(wild("<TAKE_TYPE>wild</TAKE_TYPE>"));
    EXPECT_FALSE(circled("") || wild(""));
}

TEST(IxmlDocument, TracksAreKeyedByInterleaveThenChannelThenPlace) {
    EXPECT_EQ(names("<TRACK><CHANNEL_INDEX>3</CHANNEL_INDEX><NAME>Boom</NAME></TRACK>"), (Names{{3, "Boom"}}));
    EXPECT_EQ(
        names("<TRACK><INTERLEAVE_INDEX>2</INTERLEAVE_INDEX><CHANNEL_INDEX>7</CHANNEL_INDEX><NAME>a</NAME></TRACK>"),
        (Names{{2, "a"}}));
    EXPECT_EQ(names("<TRACK/x></TRACK><track><NAME>b</NAME></track>"), (Names{{2, "b"}}));
    for (const char* noNumber : {"0", "-1", "", "x", "1.5", "99999999999", "2147483648"}) {
        const std::string text = element("TRACK", element("INTERLEAVE_INDEX", noNumber) + "<NAME>c</NAME>");
        EXPECT_EQ(names(text), (Names{{1, "c"}})) << noNumber;
    }
    EXPECT_EQ(names("<TRACK><NAME>a</NAME></TRACK><TRACK><CHANNEL_INDEX>+1</CHANNEL_INDEX><NAME>b</NAME></TRACK>"),
              (Names{{1, "b"}}));
}

TEST(IxmlDocument, ATrackNameIsTakenFromTheFirstOfThreeElements) {
    EXPECT_EQ(names("<TRACK><TRACK_NAME>b</TRACK_NAME><NAME> a </NAME></TRACK>"), (Names{{1, "a"}}));
    EXPECT_EQ(names("<TRACK><CHANNEL_NAME>c</CHANNEL_NAME><TRACK_NAME>b</TRACK_NAME></TRACK>"), (Names{{1, "b"}}));
    EXPECT_EQ(names("<TRACK><CHANNEL_NAME>c</CHANNEL_NAME></TRACK>"), (Names{{1, "c"}}));
    EXPECT_EQ(names("<TRACK><NAME></NAME><TRACK_NAME>b</TRACK_NAME></TRACK>"), (Names{{1, ""}}));
    EXPECT_EQ(names("<TRACK><FUNCTION>L</FUNCTION></TRACK>"), Names{});
    EXPECT_EQ(names("<TRACK><NAME>open</TRACK><X></NAME><TRACK><NAME>a</NAME></TRACK>"), (Names{{2, "a"}}));
}

TEST(IxmlDocument, TrackNumbersNeedBothIndexes) {
    const IxmlDocument document(
        "<TRACK><CHANNEL_INDEX>3</CHANNEL_INDEX></TRACK>"
        "<TRACK><CHANNEL_INDEX>4</CHANNEL_INDEX><INTERLEAVE_INDEX>1</INTERLEAVE_INDEX></TRACK>"
        "<TRACK><CHANNEL_INDEX>5</CHANNEL_INDEX><INTERLEAVE_INDEX>1</INTERLEAVE_INDEX></TRACK>");
    EXPECT_EQ(lireNumerosTracks(document), (Numbers{{1, 5}}));
}

TEST(IxmlDocument, BytesThatAreNotUtf8AreReadAsLatin1) {
    EXPECT_EQ(decodeIxml("<NOTE>\xE9t\xE9</NOTE>"), "<NOTE>été</NOTE>");
    EXPECT_EQ(decodeIxml("<NOTE>été</NOTE>  "), "<NOTE>été</NOTE>  ");
    EXPECT_EQ(decodeIxml(""), std::nullopt);
    EXPECT_EQ(decodeIxml(std::string(maxIxmlBytes + 1, ' ')), std::nullopt);
}

TEST(IxmlDocument, ADocumentAboveTheCapHasNoElements) {
    std::string text = "<NOTE>wind</NOTE>";
    text.resize(maxIxmlBytes + 1, ' ');
    EXPECT_EQ(IxmlDocument(text).literalValue("NOTE"), std::nullopt);
}

// Anything that is not linear takes hours here.
TEST(IxmlDocument, ReadsMegabytesOfDamageInOnePass) {
    for (const char* unit : {"<TRACK ", "<TRACK>", "<TRACK><NAME>", "<TRACK></TRACK>", "<SPEED>", "<NOTE>", "</NOTE>",
                             "<", "<CIRCLED></CIRCLE>"}) {
        const std::string text = repeated(unit, maxIxmlBytes);
        const IxmlDocument document(text);
        EXPECT_FALSE(lireCircled(document));
        EXPECT_TRUE(lireNomsPistes(document).empty());
        EXPECT_EQ(document.literalValue("NOTE"), std::nullopt) << unit;
        EXPECT_EQ(valeurTag("TRACK_LIST", text), std::nullopt);
    }
}

TEST(IxmlDocument, ReadsRandomDamageAsThePatternsDo) {
    const std::vector<std::string> pieces = {"<TRACK",
                                             "<TRACK>",
                                             "</TRACK>",
                                             "<track a>",
                                             "<NAME>",
                                             "</NAME>",
                                             "<name/>",
                                             "<TRACK_NAME>",
                                             "</TRACK_NAME>",
                                             "<INTERLEAVE_INDEX>2</INTERLEAVE_INDEX>",
                                             "<CHANNEL_INDEX> 3\n</CHANNEL_INDEX>",
                                             "<SPEED>",
                                             "</SPEED>",
                                             "<NOTE>",
                                             "</NOTE>",
                                             "<NOTE_>",
                                             ">",
                                             "<",
                                             "/",
                                             "x",
                                             "\n",
                                             "\xE9",
                                             "é",
                                             "_",
                                             "-",
                                             " "};
    std::mt19937 random(20240307);
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        for (auto i = random() % 24; i > 0; --i)
            text += pieces[random() % pieces.size()];
        const IxmlDocument document(text);
        const auto [expectedNames, expectedNumbers] = oracle::readTracks(text);
        ASSERT_EQ(lireNomsPistes(document), expectedNames) << text;
        ASSERT_EQ(lireNumerosTracks(document), expectedNumbers) << text;
        for (const char* name : {"NOTE", "NAME", "SPEED", "TRACK"}) {
            ASSERT_EQ(valeurTag(name, text), oracle::valeurTag(name, text)) << text;
            ASSERT_EQ(document.value(name), oracle::valeurTag(name, text)) << text;
        }
        ASSERT_EQ(document.literalValue("NAME"), oracle::literalValue(text, "NAME")) << text;
    }
}

}  // namespace
}  // namespace dravik
