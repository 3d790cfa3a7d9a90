#include "model/wave/timecode.h"

#include <limits>

#include <gtest/gtest.h>

namespace dravik {
namespace {

constexpr std::uint64_t hour25At48k = 172'800'000;

TEST(Timecode, RateTextsGiveTheLabelTheyStandFor) {
    struct Case {
        const char* rate;
        const char* flag;
        const char* label;
    };
    for (const Case& c : {Case{"30000/1001", "df", "29.97 DF"}, Case{"30000/1001", "NDF", "29.97"},
                          Case{"24000/1001", nullptr, "23.976"}, Case{"24/1", "NDF", "24"}, Case{"48", nullptr, "48.0"},
                          Case{"60000/1001", nullptr, "59.94005994005994"}, Case{"fast", nullptr, "25"},
                          Case{"", "DF", "25 DF"}, Case{"//30//1", nullptr, "30"}, Case{"25/fast", nullptr, "25"},
                          Case{"25/0", nullptr, "25"}, Case{"-25", nullptr, "25"}, Case{"0", nullptr, "25"}}) {
        const auto flag = c.flag != nullptr ? std::optional<std::string_view>(c.flag) : std::nullopt;
        EXPECT_EQ(framerateLabel(rateFromIxml(c.rate), flag), c.label) << c.rate;
    }
}

TEST(Timecode, LabelsGiveTheTextsThatAreWritten) {
    struct Case {
        const char *label, *rate, *speed, *flag;
    };
    for (const Case& c : {Case{"23.976", "24000/1001", "023.976", "NDF"}, Case{"24", "24/1", "024.000", "NDF"},
                          Case{"29.97 DF", "30000/1001", "029.970", "DF"}, Case{"30 DF", "30/1", "030.000", "DF"},
                          Case{"50.0", "50/1", "050.000", "NDF"}, Case{"59.94", "59/1", "059.940", "NDF"},
                          Case{"119.88", "119/1", "119.880", "NDF"}, Case{"nonsense", "25/1", "025.000", "NDF"},
                          Case{"1e300", "25/1", "025.000", "NDF"}, Case{"0.5", "1/1", "000.500", "NDF"}}) {
        EXPECT_EQ(ixmlRateText(c.label), c.rate) << c.label;
        EXPECT_EQ(speedText(c.label), c.speed) << c.label;
        EXPECT_EQ(flagText(c.label), c.flag) << c.label;
    }
}

TEST(Timecode, SamplesAndTextAreInverseOnFrameBorders) {
    struct Case {
        const char *rate, *label, *timecode;
        double sampleRate;
        std::uint64_t samples;
    };
    for (const Case& c :
         {Case{"25/1", "25", "10:00:00:00", 48000, 10 * hour25At48k},
          Case{"25", "25", "25:00:00:00", 48000, 4'320'000'000},  // hours are not wrapped
          Case{"30000/1001", "29.97", "01:00:00:00", 48000, 172'972'800},
          Case{"30000/1001", "29.97 DF", "01:00:00:00", 48000, 172'972'800},
          Case{"24000/1001", "23.976", "00:00:01:00", 48000, 48048}, Case{"50", "50.0", "00:00:00:49", 96000, 94080},
          Case{"120", "120.0", "00:00:00:119", 48000, 47600}, Case{"25", "25", "123:59:59:24", 44100, 19'686'238'236},
          Case{"25", "25", "00:00:01:00", 0, 48000}}) {  // a sample rate that was not told
        EXPECT_EQ(timecodeFromSamples(c.samples, rateFromIxml(c.rate), c.sampleRate), c.timecode);
        EXPECT_EQ(samplesFromTimecode(c.timecode, c.label, c.sampleRate), c.samples) << c.timecode;
    }
}

TEST(Timecode, SamplesBetweenTwoFramesRoundToTheNearest) {
    EXPECT_EQ(timecodeFromSamples(959, 25, 48000), "00:00:00:00");
    EXPECT_EQ(timecodeFromSamples(960, 25, 48000), "00:00:00:01");  // half a frame: away from zero
    EXPECT_EQ(timecodeFromSamples(48000 * 60 - 1, 25, 48000), "00:01:00:00");
}

TEST(Timecode, WhatCannotBeCountedIsAbsentOrMidnight) {
    constexpr auto most = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(timecodeFromSamples(most, 1e6, 1), std::nullopt);
    EXPECT_EQ(timecodeFromSamples(48000, 1e300, 48000), std::nullopt);
    EXPECT_EQ(timecodeFromSamples(48000, 0.5, 48000), std::nullopt);
    EXPECT_EQ(timecodeFromSamples(48000, std::numeric_limits<double>::infinity(), 48000), std::nullopt);
    for (const char* text : {"", "01:00:00", "1:2:3:4:5", "a:b:c:d", "9223372036854775807:00:00:00",
                             "153722867280912930:59:59:00", "-1:00:00:00", "9000000000000000:00:00:00"}) {
        EXPECT_EQ(samplesFromTimecode(text, "25", 48000), 0U) << text;
    }
    EXPECT_EQ(samplesFromTimecode("::00:00:x:01::00", "25", 48000), 48000U);  // only the integers count
}

TEST(Timecode, TypedTimecodesAreTakenInTwoForms) {
    struct Case {
        const char *typed, *label, *result;
    };
    for (const Case& c : {Case{"10:20:30:24", "25", "10:20:30:24"}, Case{"10203024", "25", "10:20:30:24"},
                          Case{"00000029", "29.97 DF", "00:00:00:29"}, Case{"23595923", "23.976", "23:59:59:23"},
                          Case{"25:00:00:00", "25", "25:00:00:00"}, Case{"00:00:00:119", "120.0", "00:00:00:119"}}) {
        EXPECT_EQ(parseTypedTimecode(c.typed, c.label), c.result) << c.typed;
    }
    for (const char* typed : {"",
                              "1",
                              "10:00:00:25",
                              "10:60:00:00",
                              "10:00:60:00",
                              "10000025",
                              "1000000",
                              "100000000",
                              "10:00:00",
                              "10:00:00:00:00",
                              "10:00:00:",
                              ":10:00:00:00",
                              "1:00:00:00",
                              "10:0:00:00",
                              "10:00:00:0",
                              "+1:00:00:00",
                              "10:00:00:+1",
                              "10:00:00:-1",
                              " 10:00:00:00",
                              "10;00;00;00",
                              "1e:00:00:00",
                              "100:00:00:00",
                              "10:00:00:00000001"}) {
        EXPECT_EQ(parseTypedTimecode(typed, "25"), std::nullopt) << typed;
    }
}

}  // namespace
}  // namespace dravik
