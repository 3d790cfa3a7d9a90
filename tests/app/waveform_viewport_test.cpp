#include "app/waveform_viewport.h"

#include <algorithm>

#include <gmock/gmock.h>

namespace dravik {
namespace {

WaveformViewport viewportOf(std::int64_t frames, int width) {
    WaveformViewport viewport;
    viewport.setWidth(width);
    viewport.setTake(frames);
    return viewport;
}

TEST(WaveformViewport, ZoomsAroundThePointerAndStaysWithinTheTake) {
    WaveformViewport viewport = viewportOf(480'000, 1000);
    EXPECT_TRUE(viewport.isWhole());
    const std::int64_t held = viewport.frameAt(300);
    viewport.zoom(4, 300);
    EXPECT_EQ(viewport.frameAt(300), held);
    EXPECT_DOUBLE_EQ(viewport.framesPerPixel(), 120);
    viewport.zoom(0.001, 300);
    EXPECT_TRUE(viewport.isWhole());
    EXPECT_EQ(viewport.firstFrame(), 0);
    viewport.zoom(1e9, 999);
    EXPECT_DOUBLE_EQ(viewport.framesPerPixel(), 1.0 / 16);
    EXPECT_LE(viewport.firstFrame() + viewport.visibleFrames(), 480'000);
    viewport.scrollBy(1e12);
    EXPECT_EQ(viewport.frameAt(1000), 480'000);
    viewport.scrollBy(-1e12);
    EXPECT_EQ(viewport.firstFrame(), 0);
}

TEST(WaveformViewport, IsDrawnOnAFinerScreenFrameForFrameWhereItIsShown) {
    WaveformViewport viewport = viewportOf(480'000, 1000);
    viewport.zoom(1e9, 333);
    viewport.scrollBy(7.25);
    for (const double ratio : {1.0, 1.5, 2.0}) {
        const WaveformViewport fine = viewport.scaledBy(ratio);
        for (const double frame : {viewport.firstFrame(), viewport.firstFrame() + 31.0})
            EXPECT_NEAR(fine.xOf(frame), viewport.xOf(frame) * ratio, 1e-6) << ratio;
        EXPECT_EQ(fine.width(), static_cast<int>(1000 * ratio));
    }
}

TEST(WaveformViewport, ATakeShownWholeStaysSoInAnotherWidth) {
    WaveformViewport viewport = viewportOf(1'000'000, 1000);
    viewport.setWidth(500);
    EXPECT_TRUE(viewport.isWhole());
    viewport.zoom(10, 0);
    viewport.scrollTo(400'000);
    viewport.setWidth(700);
    EXPECT_FALSE(viewport.isWhole());
    EXPECT_DOUBLE_EQ(viewport.firstFrame(), 400'000);
}

TEST(WaveformViewport, FollowsAPlayheadPageByPage) {
    WaveformViewport viewport = viewportOf(100'000, 100);
    viewport.zoom(10, 0);  // ten thousand frames a page
    EXPECT_FALSE(viewport.pageTo(9'999));
    EXPECT_TRUE(viewport.pageTo(10'000));
    EXPECT_DOUBLE_EQ(viewport.firstFrame(), 10'000);
    EXPECT_TRUE(viewport.pageTo(57'000));
    EXPECT_DOUBLE_EQ(viewport.firstFrame(), 50'000);
    EXPECT_TRUE(viewport.pageTo(0));
    EXPECT_DOUBLE_EQ(viewport.firstFrame(), 0);
}

TEST(WaveformViewport, ShorterTakesThanThePixelsAndEmptyOnesAreShownToo) {
    WaveformViewport viewport = viewportOf(3, 1000);
    EXPECT_EQ(viewport.frameAt(1000), 3);
    viewport.zoom(2, 10);
    EXPECT_EQ(viewport.firstFrame(), 0);
    viewport = viewportOf(0, 1000);
    EXPECT_EQ(viewport.frameAt(500), 0);
    viewport.zoom(2, 10);
    EXPECT_FALSE(viewport.pageTo(0));
    EXPECT_TRUE(rulerTicks(viewport, 48000, {}, true, 80).empty());
}

std::vector<std::string> labels(const std::vector<RulerTick>& ticks) {
    std::vector<std::string> all;
    for (const RulerTick& tick : ticks) {
        if (!tick.label.empty()) all.push_back(tick.label);
    }
    return all;
}

TEST(Ruler, IsMarkedAtRoundTimesNoCloserThanItsLabels) {
    WaveformViewport viewport = viewportOf(480'000, 1000);  // ten seconds
    EXPECT_THAT(
        labels(rulerTicks(viewport, 48000, {}, true, 150)),
        testing::ElementsAre("00:00:00.00", "00:00:02.00", "00:00:04.00", "00:00:06.00", "00:00:08.00", "00:00:10.00"));
    const TakeTimecode start = TakeTimecode::of("25", "10:00:00:10");
    const std::vector<RulerTick> ticks = rulerTicks(viewport, 48000, start, false, 150);
    EXPECT_THAT(labels(ticks),
                testing::ElementsAre("10:00:02:00", "10:00:04:00", "10:00:06:00", "10:00:08:00", "10:00:10:00"));
    const auto second =
        std::find_if(ticks.begin(), ticks.end(), [](const RulerTick& tick) { return tick.label == "10:00:02:00"; });
    ASSERT_NE(second, ticks.end());
    EXPECT_DOUBLE_EQ(second->frame, 40 * 1920.0);
}

TEST(Ruler, CountsSingleTimecodeFramesFromNearAndTheRealLengthOfASecond) {
    WaveformViewport viewport = viewportOf(48'048 * 10, 1000);
    viewport.showRange(0, 48'048);
    const TakeTimecode ntsc = TakeTimecode::of("29.97", "01:00:00:00");
    const std::vector<std::string> near = labels(rulerTicks(viewport, 48000, ntsc, false, 100));
    ASSERT_GE(near.size(), 6U);
    EXPECT_EQ(near[1], "01:00:00:05");
    viewport.showWhole();
    const std::vector<RulerTick> far = rulerTicks(viewport, 48000, ntsc, false, 90);
    EXPECT_NEAR(far.front().frame, 0, 1e-6);
    EXPECT_EQ(labels(far)[1], "01:00:01:00");
}

}  // namespace
}  // namespace dravik
