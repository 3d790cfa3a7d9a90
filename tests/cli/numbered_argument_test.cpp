#include "cli/numbered_argument.h"

#include <CLI/CLI.hpp>
#include <gmock/gmock.h>

namespace dravik {
namespace {

using testing::ElementsAre;

TEST(NumberedText, IsSplitAtItsFirstEqualsSign) {
    const struct {
        const char* argument;
        std::int64_t number;
        std::optional<std::string> text;
    } cases[] = {
        {"3=Boom", 3, "Boom"},
        {"3", 3, std::nullopt},
        {"3=", 3, ""},
        {"0=A=B", 0, "A=B"},
        {"48000= Slate", 48000, " Slate"},
    };
    for (const auto& one : cases) {
        const NumberedText read = numberedText("--add", one.argument, 0);
        EXPECT_EQ(read.number, one.number) << one.argument;
        EXPECT_EQ(read.text, one.text) << one.argument;
    }
}

TEST(NumberedText, NeedsANumberInItsRange) {
    for (const char* argument :
         {"", "=Boom", "Boom", "1.5=A", "0x3=A", " 1=A", "99999999999999999999=A", "0=A", "-1=A"})
        EXPECT_THROW(static_cast<void>(numberedName("--track", argument)), CLI::ValidationError) << argument;
    EXPECT_THROW(static_cast<void>(numberedName("--track", "1")), CLI::ValidationError) << "no name at all";
    EXPECT_EQ(numberedName("--track", "1=").text, "") << "a name taken away";
}

TEST(NumberedText, ATrackThatNoTakeHasNeverBecomesOneThatItHas) {
    EXPECT_EQ(trackOf({1, {}}), 1);
    EXPECT_GT(trackOf({(std::int64_t{1} << 32) + 1, {}}), 65535);
}

TEST(NumberedText, NoTrackIsNamedTwice) {
    const std::vector<std::pair<int, std::string>> given = {{1, "Boom"}, {3, "Lav"}};
    EXPECT_NO_THROW(refuseSecond("--track", given, 2));
    EXPECT_THROW(refuseSecond("--track", given, 3), CLI::ValidationError);
}

TEST(TrackNumbers, AreCountedFromOneInTheOrderGiven) {
    EXPECT_THAT(trackNumbers("--order", "2,1,3"), ElementsAre(1, 0, 2));
    EXPECT_THAT(trackNumbers("--order", " 65535 ,1"), ElementsAre(65534, 0));
    for (const char* list : {"", ",", "1,", ",1", "1,,2", "0", "-1", "2-3", "1;2", "65536", "99999999999999999999"})
        EXPECT_THROW(static_cast<void>(trackNumbers("--order", list)), CLI::ValidationError) << list;
}

}  // namespace
}  // namespace dravik
