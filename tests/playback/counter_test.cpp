#include "playback/counter.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace dravik::test {
namespace {

TEST(Counter, TheTimecodeOfAPositionCountsOnFromTheStart) {
    const struct {
        const char *framerate, *start;
        double sampleRate;
        std::int64_t frame;
        const char *text, *flag;
    } cases[] = {
        {"25", "10:00:00:00", 48000, 0, "10:00:00:00", "NDF"},
        {"25", "10:00:00:00", 48000, 1919, "10:00:00:00", "NDF"},
        {"25", "10:00:00:00", 48000, 1920, "10:00:00:01", "NDF"},
        {"25", "09:59:59:24", 48000, 1920, "10:00:00:00", "NDF"},
        {"29.97", "01:00:00:00", 48000, 48048, "01:00:01:00", "NDF"},
        {"29.97 DF", "01:00:59:29", 48000, 1602, "01:01:00:00", "DF"},
        {"29.97", "00:00:00:00", 48000, 3203, "00:00:00:02", "NDF"},  // the boundary is at 3203.2
        {"23.976", "00:00:00:00", 48000, 48048, "00:00:01:00", "NDF"},
        {"24", "25:00:00:00", 96000, 96000 * 2, "25:00:02:00", "NDF"},
        {"30", "99:59:59:29", 48000, 1600, "100:00:00:00", "NDF"},
        {"59.94", "00:00:01:00", 48000, 0, "00:00:01:00", "NDF"},
        {nullptr, nullptr, 48000, 48000, "00:00:01:00", ""},
        {"25", "broken", 48000, 1920, "00:00:00:01", "NDF"},
        {"25", "1:2:3", 48000, 0, "00:00:00:00", "NDF"},
        {"25", "01:00:00:00", 0, 500, "01:00:00:00", "NDF"},
    };
    for (const auto& one : cases) {
        const auto text = [](const char* given) {
            return given == nullptr ? std::nullopt : std::optional<std::string>(given);
        };
        const TakeTimecode take = TakeTimecode::of(text(one.framerate), text(one.start));
        EXPECT_EQ(timecodeText(timecodeFrameAt(one.frame, one.sampleRate, take), take.tcFps), one.text)
            << one.framerate << " " << one.start << " " << one.frame;
        EXPECT_EQ(take.tcFlag, one.flag);
        EXPECT_EQ(take.timecodeRateDisponible, one.framerate != nullptr);
    }
    EXPECT_FALSE(TakeTimecode::of("25", "broken").timecodeDepartDisponible);
    EXPECT_TRUE(TakeTimecode::of({}, "00:00:00:00").timecodeDepartDisponible);
}

TEST(Counter, EveryNudgeByOneFrameMovesTheCounterByOneFrame) {
    for (const char* label : {"23.976", "24", "25", "29.97", "30", "50.0", "59.94"}) {
        for (const double rate : {44100.0, 48000.0, 47952.0, 96000.0}) {
            const TakeTimecode take = TakeTimecode::of(label, {});
            for (int count = 0; count < 2000; ++count) {
                ASSERT_EQ(timecodeFrameAt(nudgeSamples("1f", count, rate, take.tcFps), rate, take), count)
                    << label << " " << rate;
            }
        }
    }
}

TEST(Counter, ElapsedTimeIsCutOffAndNotRounded) {
    const struct {
        std::int64_t frame;
        double rate;
        const char* text;
    } cases[] = {
        {0, 48000, "00:00:00.00"},
        {479, 48000, "00:00:00.00"},
        {480, 48000, "00:00:00.01"},
        {13920, 48000, "00:00:00.29"},
        {47999, 48000, "00:00:00.99"},
        {48000LL * 3661, 48000, "01:01:01.00"},
        {48000LL * 360000, 48000, "100:00:00.00"},
        {-5, 48000, "00:00:00.00"},
        {100, 0, "00:00:00.00"},
    };
    for (const auto& one : cases)
        EXPECT_EQ(elapsedText(one.frame, one.rate), one.text) << one.frame;
}

TEST(Nudge, MovesByFramesOfTimecodeOrSecondsOfTimecode) {
    const struct {
        const char* value;
        int count;
        double rate, fps;
        std::int64_t samples;
    } cases[] = {
        {"5s", 1, 48000, 25, 240000},
        {"1s", 1, 48000, 30000.0 / 1001, 48048},
        {"1s", 1, 48000, 24000.0 / 1001, 48048},
        {"1f", 1, 48000, 30000.0 / 1001, 1602},
        {"1f", 2, 48000, 30000.0 / 1001, 3203},
        {"", 1, 48000, 25, 1920},
        {"2s", 3, 48000, 25, 5760},
        {"1f", 1, 48000, 0, 0},
        {"1f", 1, std::numeric_limits<double>::quiet_NaN(), 25, 0},
    };
    for (const auto& one : cases)
        EXPECT_EQ(nudgeSamples(one.value, one.count, one.rate, one.fps), one.samples) << one.value << " " << one.fps;
}

TEST(PlayRange, ASelectionCountsWhileItIsOneAndLiesAhead) {
    constexpr std::int64_t total = 480000;
    const struct {
        std::optional<double> debut, fin;
        std::int64_t position;
        PlayRange range;
    } cases[] = {
        {{}, {}, 0, {0, total}},
        {1.0, 2.0, 0, {48000, 96000}},
        {1.0, 2.0, 95999, {48000, 96000}},
        {1.0, 2.0, 96000, {48000, total}},
        {1.0, 2.0, 200000, {48000, total}},
        {2.0, 2.0, 0, {0, total}},
        {3.0, 2.0, 0, {0, total}},
        {{}, 2.0, 0, {0, 96000}},
        {1.0, {}, 0, {48000, total}},
        {-1.0, 100.0, 0, {0, total}},
        {20.0, 30.0, 0, {total, total}},
        {0.29, 0.58, 0, {13920, 27840}},
        {1.0, std::numeric_limits<double>::quiet_NaN(), 0, {0, total}},
        {1.0, std::numeric_limits<double>::infinity(), 0, {48000, total}},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(playRange(one.debut, one.fin, one.position, 48000, total), one.range)
            << one.debut.value_or(-1) << " " << one.fin.value_or(-1) << " " << one.position;
    }
    EXPECT_EQ(playRange(0.0, 1.0, 0, 48000, 0), (PlayRange{0, 0}));
}

}  // namespace
}  // namespace dravik::test
