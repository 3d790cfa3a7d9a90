#include "playback/take_renderer.h"
#include "tests/playback/fake_take.h"
#include "tests/playback/reference_mix.h"

#include <atomic>
#include <numeric>
#include <thread>

#include <gtest/gtest.h>

namespace dravik::test {
namespace {

struct Stereo {
    std::vector<float> left, right;
};

/// Asks for so many frames in blocks of that size.
Stereo rendered(TakeRenderer& renderer, std::size_t frames, std::size_t block = 512) {
    Stereo out{std::vector<float>(frames, 9.0F), std::vector<float>(frames, 9.0F)};
    for (std::size_t at = 0; at < frames; at += block) {
        const std::size_t count = std::min(block, frames - at);
        renderer.render(std::span(out.left).subspan(at, count), std::span(out.right).subspan(at, count));
    }
    return out;
}

Transport playing(std::int64_t from, std::int64_t to) { return {true, from, to, -1, 0}; }

/// One channel whose n-th sample is n + 1, heard on the left alone: what is heard says where it is from.
struct Ramp {
    explicit Ramp(std::size_t frames) {
        std::vector<float> samples(frames);
        std::iota(samples.begin(), samples.end(), 1.0F);
        renderer = std::make_unique<TakeRenderer>(takeOf({samples}, true), 1000.0);
        renderer->setMix({{0, 1, 0}}, 1.0F);
    }
    std::unique_ptr<TakeRenderer> renderer;

    std::vector<float> heard(std::size_t frames, std::size_t block = 512) {
        return rendered(*renderer, frames, block).left;
    }
};

TEST(TakeRenderer, APolyTakeAndAMonoSetSoundAsTheReferenceMix) {
    const auto channels = noise(5, 3000);
    MixerState mixer(5);
    mixer.setFader(2, -6);
    mixer.setPan(3, -0.4F);
    mixer.toggleReversePolarity(4);
    ASSERT_TRUE(mixer.setPaireMS(0, 1, OrientationMonitoringMS::ms, 0.7F));
    const auto wanted = referenceMix(mixer, channels, 3.0);
    for (const bool estPoly : {true, false}) {
        TakeRenderer renderer(takeOf(channels, estPoly), 0);
        renderer.setMix(mixPlan(mixer), outputGain(3.0F));
        renderer.setTransport(playing(100, 3000));
        const Stereo out = rendered(renderer, 3500, 333);
        for (std::size_t i = 0; i < 3500; ++i) {
            const std::array<double, 2> silence{};
            const auto& frame = i < 2900 ? wanted[i + 100] : silence;
            ASSERT_NEAR(double{out.left[i]}, frame[0], 2e-5) << i;
            ASSERT_NEAR(double{out.right[i]}, frame[1], 2e-5) << i;
        }
        EXPECT_EQ(renderer.heard().frameCourante, 3000);
        EXPECT_TRUE(renderer.heard().finAtteinte);
    }
}

TEST(TakeRenderer, AFileOfASetThatEndsEarlyIsSilentFromThere) {
    TakeRenderer renderer(takeOf({std::vector(10, 1.0F), std::vector(30, 1.0F)}, false), 0);
    renderer.setMix({{0, 1, 0}, {1, 0, 1}}, 1.0F);
    renderer.setTransport(playing(5, 30));
    const Stereo out = rendered(renderer, 25, 16);
    EXPECT_EQ(std::accumulate(out.left.begin(), out.left.end(), 0.0F), 5.0F);
    EXPECT_EQ(std::accumulate(out.right.begin(), out.right.end(), 0.0F), 25.0F);
}

TEST(TakeRenderer, IsSilentWhileNothingIsPlayed) {
    Ramp ramp(1000);
    EXPECT_EQ(ramp.heard(600), std::vector<float>(600, 0.0F));
    EXPECT_EQ(ramp.renderer->heard().frameCourante, 0);
    EXPECT_NEAR(ramp.renderer->heard().mediaTime, 1000 + 600.0 / 48000, 1e-9) << "the clock goes on";
    ramp.renderer->setTransport({false, 400, 1000, -1, 0});
    EXPECT_EQ(ramp.heard(10), std::vector<float>(10, 0.0F));
    EXPECT_EQ(ramp.renderer->heard().frameCourante, 400);
}

TEST(TakeRenderer, ALoopGoesOnWithoutAMissingFrame) {
    Ramp ramp(1000);
    ramp.renderer->setTransport({true, 95, 100, 90, 100});
    EXPECT_EQ(ramp.heard(20, 16),
              (std::vector<float>{96, 97, 98, 99, 100, 91, 92, 93, 94, 95, 96, 97, 98, 99, 100, 91, 92, 93, 94, 95}));
    EXPECT_EQ(ramp.renderer->heard().tours, 2U);
    EXPECT_EQ(ramp.renderer->heard().frameCourante, 95);
    // From behind the selection to the end of the take, then round in the selection.
    ramp.renderer->setTransport({true, 998, 1000, 10, 12});
    EXPECT_EQ(ramp.heard(6), (std::vector<float>{999, 1000, 11, 12, 11, 12}));
    // Nothing to go round in.
    ramp.renderer->setTransport({true, 998, 1000, 1000, 1000});
    EXPECT_EQ(ramp.heard(4), (std::vector<float>{999, 1000, 0, 0}));
    EXPECT_TRUE(ramp.renderer->heard().finAtteinte);
}

TEST(TakeRenderer, APositionThatIsSetWinsAndANewRangeKeepsThePosition) {
    Ramp ramp(1000);
    ramp.renderer->setTransport(playing(0, 1000));
    EXPECT_EQ(ramp.heard(2).back(), 2);
    ramp.renderer->setTransport(playing(500, 1000));
    EXPECT_EQ(ramp.renderer->heard().frameCourante, 500) << "at once";
    EXPECT_EQ(ramp.heard(2).front(), 501);
    ramp.renderer->setRange({true, 0, 504, -1, 0});
    EXPECT_EQ(ramp.heard(4), (std::vector<float>{503, 504, 0, 0}));
    // The end that was reached is forgotten with the next position.
    ramp.renderer->setTransport(playing(3, 1000));
    EXPECT_EQ(ramp.heard(1).front(), 4);
    EXPECT_FALSE(ramp.renderer->heard().finAtteinte);
}

TEST(TakeRenderer, AnEmptyTakeEndsAtOnce) {
    TakeRenderer renderer(takeOf({{}, {}}, true), 0);
    renderer.setTransport({true, 0, 0, 0, 0});
    EXPECT_EQ(rendered(renderer, 64).left, std::vector<float>(64, 0.0F));
    EXPECT_TRUE(renderer.heard().finAtteinte);
}

TEST(TakeRenderer, MetersShowTheFileWhateverTheMixerDoesAtMost48TimesASecond) {
    TakeRenderer renderer(takeOf({std::vector(48000, 0.5F), std::vector(48000, -1.0F)}, true), 50.0);
    renderer.setMix({}, 0.0F);  // nothing is heard
    renderer.setTransport(playing(0, 48000));
    LevelMeters meters;
    int steps = 0;
    for (int block = 0; block < 93; ++block) {
        rendered(renderer, 512);
        if (renderer.copyMeters(meters)) ++steps;
    }
    EXPECT_EQ(steps, 47) << "512 frames are too short, so every second block of 93 is measured";
    EXPECT_FLOAT_EQ(meters.niveauxDB[0], 20 * std::log10(0.5F));
    EXPECT_EQ(meters.niveauxDB[1], 0.0F);
    EXPECT_EQ(meters.meterClipHeld, (std::vector{false, true}));
    EXPECT_NEAR(meters.dernierTempsBallistiqueMeters, 50 + 92 * 512.0 / 48000, 1e-9);
    renderer.resetMeters(true);
    ASSERT_TRUE(renderer.copyMeters(meters));
    EXPECT_EQ(meters.niveauxDB, (std::vector{-60.0F, -60.0F}));
    EXPECT_FALSE(renderer.copyMeters(meters)) << "nothing new";
}

TEST(TakeRenderer, EverySettingCanChangeWhileItRenders) {
    // Whatever the audio thread takes over is one whole plan: left and right always differ by the sign alone. Also for
    // the thread sanitizer to look at.
    TakeRenderer renderer(takeOf({std::vector(100000, 0.5F)}, true), 0);
    renderer.setTransport({true, 0, 100000, 0, 100000});
    std::atomic<bool> stop{false};
    std::atomic<int> torn{0};
    std::thread audio([&] {
        std::vector<float> left(128);
        std::vector<float> right(128);
        while (!stop.load(std::memory_order_relaxed)) {
            renderer.render(left, right);
            for (std::size_t i = 0; i < left.size(); ++i) {
                if (left[i] != -right[i] || left[i] != left[0]) torn.fetch_add(1, std::memory_order_relaxed);
            }
        }
    });
    LevelMeters meters;
    for (int i = 1; i <= 20000; ++i) {
        const float gain = static_cast<float>(i % 17) / 16;
        renderer.setMix({{0, gain, -gain}}, 1.0F);
        if (i % 3 == 0) renderer.setTransport({true, i % 90000, 100000, 0, 100000});
        if (i % 5 == 0) renderer.setRange({true, 0, 100000, i % 100, 100000});
        static_cast<void>(renderer.copyMeters(meters));
        if (i % 7 == 0) renderer.resetMeters(i % 2 == 0);
        const TakeRenderer::Heard heard = renderer.heard();
        ASSERT_LE(heard.frameCourante, 100000);
    }
    stop = true;
    audio.join();
    EXPECT_EQ(torn, 0);
}

}  // namespace
}  // namespace dravik::test
