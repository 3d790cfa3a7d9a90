#include "base/text.h"

#include <iterator>
#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace dravik {
namespace {

using namespace std::string_literals;

TEST(Text, Utf8IsCheckedStrictly) {
    for (const std::string& good : {""s, "plain"s, "é€𝄞"s, "\0"s, "\xF4\x8F\xBF\xBF"s, "\xEF\xBF\xBF"s}) {
        EXPECT_TRUE(isValidUtf8(good));
        EXPECT_TRUE(isValidUtf8("12345678" + good + "12345678"));
    }
    for (const char* bad : {"\x80", "\xC3", "\xE2\x82", "\xF0\x9D\x84", "\xC0\x80", "\xE0\x80\xAF", "\xED\xA0\x80",
                            "\xF4\x90\x80\x80", "\xFF", "\xE9t\xE9"}) {
        EXPECT_FALSE(isValidUtf8(bad));
        EXPECT_FALSE(isValidUtf8("12345678"s + bad));
        EXPECT_FALSE(isValidUtf8(bad + "12345678"s));
    }
}

TEST(Text, AStrayByteIsReadAsLatin1AndGarblesNoOtherCharacter) {
    const struct {
        std::string bytes, text;
    } cases[] = {
        {"\xE9\x80 \xFF", "é\xC2\x80 ÿ"},       // nothing but Latin-1
        {"Café \xE9", "Café é"},                // one byte too many in a text that is UTF-8
        {"été \xE2\x82", "été â\xC2\x82"},      // a character that was cut off
        {"Café \xE9 \xE8 \xEA", "Café é è ê"},  // several of them
        {"<?xml encoding='UTF-8'?>\xC9t\xE9 é", "<?xml encoding='UTF-8'?>Été é"},
        {"\xEF\xBB\xBF<?xml encoding='latin1'?>\xE9 é", "\xEF\xBB\xBF<?xml encoding='latin1'?>é é"},
        // Declared, Latin-1 is no matter of guessing, unless all of it is UTF-8: the end of this happens to look like
        // it.
        {"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\xABpr\xE9\xA0\xBB",
         "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>«pré\u00A0»"},
        {"<?xml encoding='Windows-1252' ?>\xC9\xBB \xE9", "<?xml encoding='Windows-1252' ?>É» é"},
        {"<?xml encoding = 'ISO 8859-1'?>\xE9 é", "<?xml encoding = 'ISO 8859-1'?>é Ã©"},
        {"<?xml encoding='latin1<A>'?>\xE9 é", "<?xml encoding='latin1<A>'?>é é"},
        {"<?xml encoding='ISO_8859-1'?>é", "<?xml encoding='ISO_8859-1'?>é"},
        {"<?xml version='1.0'?><A encoding='latin1'>\xE9é", "<?xml version='1.0'?><A encoding='latin1'>éé"},
    };
    for (const auto& [bytes, text] : cases)
        EXPECT_EQ(utf8OrLatin1(bytes), text);
}

TEST(Text, TruncationKeepsCharactersWhole) {
    struct Case {
        const char* text;
        std::size_t maxBytes;
        const char* result;
    };
    for (const Case& c :
         {Case{"abc", 3, "abc"}, Case{"abc", 2, "ab"}, Case{"aé", 2, "a"}, Case{"aé", 3, "aé"}, Case{"€", 2, ""},
          Case{"𝄞", 3, ""}, Case{"𝄞", 1, ""}, Case{"a𝄞b", 4, "a"}, Case{"a𝄞b", 5, "a𝄞"}, Case{"abc", 0, ""},
          Case{"\x80\x80\x80\x80\x80", 4, "\x80\x80\x80\x80"},  // not UTF-8: cut where it stands
          Case{"a\xE9\x62", 2, "a\xE9"}}) {
        EXPECT_EQ(truncatedUtf8(c.text, c.maxBytes), c.result) << c.text << ' ' << c.maxBytes;
    }
}

TEST(Text, NaturalOrderIsTheOnePeopleExpect) {
    const std::string ordered[] = {"",         "1",    "01a",  "2",      "10",      "10a", "A1_9", "a1_10", "scene 2",
                                   "Scene 10", "Take", "take", "take 9", "Take 10", "É1",  "é02",  "é3"};
    EXPECT_LT(compareNatural("take 99999999999999999999", "take 100000000000000000000"), 0);
    for (std::size_t i = 0; i < std::size(ordered); ++i) {
        for (std::size_t j = 0; j < std::size(ordered); ++j) {
            const int order = compareNatural(ordered[i], ordered[j]);
            EXPECT_EQ(order < 0, i < j) << ordered[i] << " | " << ordered[j];
            EXPECT_EQ(order == 0, i == j) << ordered[i] << " | " << ordered[j];
        }
    }
}

TEST(Text, CaseFoldingKeepsWhatIsNotUtf8) {
    EXPECT_EQ(foldedCase("ÉTÉ \xC9 ΑΒΓ"), "été \xC9 αβγ");
    EXPECT_EQ(lowerAscii("ÀB"), "Àb");
    EXPECT_TRUE(equalsIgnoringAsciiCase("aB[", "Ab["));
    EXPECT_FALSE(equalsIgnoringAsciiCase("[", "{"));
    EXPECT_FALSE(equalsIgnoringAsciiCase("a", "ab"));
}

TEST(Text, WidthCountsTerminalCells) {
    EXPECT_EQ(displayWidth("abc"), 3);
    EXPECT_EQ(displayWidth("été"), 3);
    EXPECT_EQ(displayWidth("e\xCC\x81"), 1);  // a combining accent
    EXPECT_EQ(displayWidth("日本"), 4);
    EXPECT_EQ(displayWidth("\xFF\xFE"), 2);
}

TEST(Text, IntegersAreWholeOrAbsent) {
    struct Case {
        const char* text;
        std::optional<std::int64_t> integer;
        std::optional<std::uint32_t> unsigned32;
    };
    for (const Case& c : {Case{"0", 0, 0U}, Case{"007", 7, 7U}, Case{"+7", 7, 7U}, Case{"-7", -7, {}},
                          Case{"-0", 0, {}}, Case{"4294967295", 4294967295, 4294967295U},
                          Case{"4294967296", 4294967296, {}}, Case{"9223372036854775808", {}, {}},
                          Case{"-9223372036854775808", std::numeric_limits<std::int64_t>::min(), {}}, Case{"", {}, {}},
                          Case{"+", {}, {}}, Case{"+-7", {}, {}}, Case{"++7", {}, {}}, Case{" 7", {}, {}},
                          Case{"7 ", {}, {}}, Case{"7.0", {}, {}}, Case{"0x7", {}, {}}}) {
        EXPECT_EQ(parseInteger(c.text), c.integer) << c.text;
        EXPECT_EQ(parseUnsigned32(c.text), c.unsigned32) << c.text;
    }
}

TEST(Text, NumbersAreFiniteOrAbsent) {
    EXPECT_EQ(parseDouble("29.97"), 29.97);
    EXPECT_EQ(parseDouble("+1e3"), 1000.0);
    EXPECT_EQ(parseDouble("-.5"), -0.5);
    for (const char* text : {"", ".", "inf", "nan", "-INFINITY", "1e999", "0x10", "1,5", " 1", "1 ", "+-1", "1e"}) {
        EXPECT_EQ(parseDouble(text), std::nullopt) << text;
    }
}

TEST(Text, NumbersPrintShortAndWithAFraction) {
    EXPECT_EQ(shortestDouble(50), "50.0");
    EXPECT_EQ(shortestDouble(60000.0 / 1001.0), "59.94005994005994");
    EXPECT_EQ(shortestDouble(1e22), "1e+22");
    EXPECT_EQ(shortestDouble(-2), "-2.0");
}

TEST(Text, ReplacementIsNotLookedAtAgain) {
    EXPECT_EQ(replacedAll("a&b&&", "&", "&amp;"), "a&amp;b&amp;&amp;");
    EXPECT_EQ(replacedAll("abc", "", "x"), "abc");
}

TEST(Text, TrimmingTakesAsciiWhiteSpaceOnly) {
    EXPECT_EQ(trimmed("\t\r\n\v\f a b \n"), "a b");
    EXPECT_EQ(trimmed("\xC2\xA0x\0 "s), "\xC2\xA0x\0"s);
    EXPECT_EQ(trimmed(" \n "), "");
}

}  // namespace
}  // namespace dravik
