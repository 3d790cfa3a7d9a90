#include "playback/level_meters.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace dravik::test {
namespace {

TEST(PeakLevel, IsTheLargestMagnitudeAndNeverBelowTheFloor) {
    constexpr float none = std::numeric_limits<float>::quiet_NaN();
    constexpr float infinite = std::numeric_limits<float>::infinity();
    const struct {
        std::vector<float> samples;
        float level;
    } cases[] = {
        {{}, -60},
        {{0, 0, -0.0F}, -60},
        {{0.1F, -0.5F, 0.25F}, 20 * std::log10(0.5F)},
        {{1.0F}, 0},
        {{-2.0F}, 20 * std::log10(2.0F)},
        {{1e-6F}, -60},
        {{std::numeric_limits<float>::denorm_min()}, -60},
        {{0.1F, none}, 0},
        {{-infinite}, 0},
    };
    for (const auto& one : cases)
        EXPECT_FLOAT_EQ(peakLevelDB(one.samples), one.level);
    std::vector<float> long1(1003, 0.01F);
    for (const std::size_t place : {std::size_t{0}, std::size_t{517}, std::size_t{1002}}) {
        std::vector<float> samples = long1;
        samples[place] = -0.75F;
        EXPECT_FLOAT_EQ(peakLevelDB(samples), 20 * std::log10(0.75F)) << place;
    }
}

TEST(LevelMeters, ABarRisesAtOnceAndFallsTwentyDecibelsASecond) {
    LevelMeters meters(1);
    const std::vector<float> burst{-10.0F};
    const std::vector<float> silence{-60.0F};
    double t = 100;
    meters.step(burst, t);
    EXPECT_EQ(meters.niveauxDB[0], -10.0F);
    for (int i = 1; i <= 100; ++i) {
        meters.step(silence, t + i * 0.02);
        EXPECT_NEAR(meters.niveauxDB[0], -10 - 20 * i * 0.02, 1e-3) << i;
        const double held = i * 0.02;
        // The step in which the time is up falls already, by its own length.
        const double marker = held < 1.0 - 1e-9 ? -10.0 : -10 - 15 * (held - 0.98);
        EXPECT_NEAR(meters.meterPeakDB[0], marker, 1e-2) << i;
    }
    meters.step(burst, t + 3);
    EXPECT_EQ(meters.niveauxDB[0], -10.0F);
    EXPECT_EQ(meters.meterPeakHoldUntil[0], t + 4);
}

TEST(LevelMeters, APauseLetsABarFallByFiveDecibelsAtMost) {
    LevelMeters meters(1);
    meters.step(std::vector{-3.0F}, 10);
    meters.step(std::vector{-60.0F}, 20);
    EXPECT_NEAR(meters.niveauxDB[0], -8, 1e-4);
    meters.step(std::vector{-60.0F}, 19);
    EXPECT_EQ(meters.niveauxDB[0], -60.0F) << "no time has passed on a clock that went back";
}

TEST(LevelMeters, FullScaleIsLatchedUntilItIsCleared) {
    LevelMeters meters;
    meters.step(std::vector{0.0F, -0.01F, 3.0F}, 1);
    EXPECT_EQ(meters.meterClipHeld, (std::vector{true, false, true}));
    EXPECT_EQ(meters.niveauxDB[2], 0.0F) << "the bar ends at full scale";
    EXPECT_EQ(meters.meterPeakDB[2], 3.0F);
    meters.step(std::vector{-60.0F}, 1.02);
    EXPECT_EQ(meters.meterClipHeld, (std::vector{true, false, true}));
    EXPECT_NEAR(meters.niveauxDB[1], -0.41, 1e-3) << "a channel without a level falls as if silent";
    meters.reset(2, false);
    EXPECT_EQ(meters.meterClipHeld, (std::vector{true, false}));
    EXPECT_EQ(meters.niveauxDB, (std::vector{-60.0F, -60.0F}));
    EXPECT_EQ(meters.meterPeakDB, (std::vector{-60.0F, -60.0F}));
    meters.reset(3, true);
    EXPECT_EQ(meters.meterClipHeld, (std::vector{false, false, false}));
}

}  // namespace
}  // namespace dravik::test
