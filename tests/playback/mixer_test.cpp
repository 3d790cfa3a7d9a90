#include "playback/mix_plan.h"
#include "playback/mixer_state.h"
#include "tests/playback/fake_take.h"
#include "tests/playback/reference_mix.h"

#include <functional>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace dravik::test {
namespace {

using Orientation = OrientationMonitoringMS;

TEST(Mixer, AFaderStaysInItsRangeAndItsBottomIsSilence) {
    const struct {
        double asked, stored;
        float gain;
    } cases[] = {
        {0, 0, 1.0F},      {-120, -96, 0.0F},
        {-96, -96, 0.0F},  {20, 12, 3.981072F},
        {-20, -20, 0.1F},  {std::numeric_limits<double>::infinity(), 12, 3.981072F},
        {6, 6, 1.995262F}, {-95.9, -95.9, static_cast<float>(std::pow(10.0, -95.9 / 20))},
    };
    for (const auto& one : cases) {
        MixerState mixer(2);
        mixer.setFader(1, one.asked);
        EXPECT_EQ(mixer.faderDBParCanal[1], one.stored) << one.asked;
        EXPECT_FLOAT_EQ(mixer.gainsParCanal[1], one.gain) << one.asked;
        EXPECT_EQ(mixer.volumeParCanal[1], mixer.gainsParCanal[1]) << one.asked;
        EXPECT_EQ(mixer.faderDBParCanal[0], 0) << one.asked;
    }
}

TEST(Mixer, ChannelsThatTheTakeDoesNotHaveAndNumbersThatAreNoneChangeNothing) {
    const MixerState before(3);
    MixerState mixer = before;
    const double none = std::numeric_limits<double>::quiet_NaN();
    for (const int index : {-1, 3, 1000, std::numeric_limits<int>::min()}) {
        mixer.setFader(index, -10);
        mixer.setPan(index, 1);
        mixer.toggleMute(index);
        mixer.toggleSolo(index, true, "OR");
        mixer.toggleReversePolarity(index);
        EXPECT_FALSE(mixer.setPaireMS(index, 0, Orientation::ms, 1));
        EXPECT_FALSE(mixer.makeLinkAB(index, 0));
        mixer.removeLinkAB(index, 0);
        mixer.setWidth(0, index, 0);
    }
    mixer.setFader(0, none);
    mixer.setPan(0, static_cast<float>(none));
    EXPECT_FALSE(mixer.setPaireMS(0, 1, Orientation::ms, static_cast<float>(none)));
    EXPECT_EQ(mixer, before);
}

TEST(Mixer, LinkedFadersKeepTheirDifferenceAndStopWhereEitherMeetsAnEnd) {
    const struct {
        double a, b;
        int moved;
        double to, endA, endB;
    } cases[] = {
        {-10, 8, 0, 0, -6, 12},        // cut at the top by the other one
        {-10, 8, 1, 20, -6, 12},       // its own top
        {-10, 8, 0, -20, -20, -2},     // free
        {-90, -40, 1, -96, -96, -46},  // cut at the bottom
        {0, 0, 1, -3, -3, -3},
    };
    for (const auto& one : cases) {
        MixerState mixer(3);
        mixer.setFader(1, one.a);
        mixer.setFader(2, one.b);
        ASSERT_TRUE(mixer.makeLinkAB(1, 2));
        mixer.setFader(one.moved + 1, one.to);
        EXPECT_NEAR(mixer.faderDBParCanal[1], one.endA, 1e-9);
        EXPECT_NEAR(mixer.faderDBParCanal[2], one.endB, 1e-9);
        EXPECT_EQ(mixer.faderDBParCanal[0], 0);
    }
}

TEST(Mixer, SoloFollowsItsModeAndTheShiftKey) {
    struct Click {
        int index;
        bool shift;
    };
    const struct {
        const char* mode;
        std::vector<Click> clicks;
        std::vector<bool> solo;
    } cases[] = {
        {"OR", {{0, false}, {2, false}}, {false, false, true, false}},
        {"OR", {{0, false}, {2, false}, {2, false}}, {false, false, false, false}},
        {"OR", {{0, false}, {2, true}}, {true, false, true, false}},
        {"OR", {{0, true}, {2, true}, {0, true}}, {false, false, true, false}},
        {"X", {{0, false}, {2, false}}, {true, false, true, false}},
        {"other", {{0, true}, {2, true}}, {false, false, true, false}},
    };
    for (const auto& one : cases) {
        MixerState mixer(4);
        for (const Click& click : one.clicks)
            mixer.toggleSolo(click.index, click.shift, one.mode);
        EXPECT_EQ(mixer.soloParCanal, one.solo) << one.mode;
    }
}

TEST(Mixer, LinkedChannelsSoloTogether) {
    MixerState mixer(4);
    ASSERT_TRUE(mixer.makeLinkAB(1, 2));
    mixer.toggleSolo(0, false, "OR");
    mixer.toggleSolo(2, true, "OR");
    EXPECT_EQ(mixer.soloParCanal, (std::vector{true, true, true, false}));
    mixer.toggleSolo(1, true, "OR");
    EXPECT_EQ(mixer.soloParCanal, (std::vector{true, false, false, false}));
    mixer.toggleSolo(1, false, "OR");
    EXPECT_EQ(mixer.soloParCanal, (std::vector{false, true, true, false}));
    mixer.toggleSolo(2, false, "OR");
    EXPECT_EQ(mixer.soloParCanal, (std::vector{false, false, false, false}));
}

TEST(Mixer, MuteWinsOverSolo) {
    MixerState mixer(2);
    mixer.toggleSolo(0, false, "OR");
    mixer.toggleMute(0);
    EXPECT_EQ(mixer.volumeParCanal, (std::vector{0.0F, 0.0F}));
    mixer.toggleMute(0);
    EXPECT_EQ(mixer.volumeParCanal, (std::vector{1.0F, 0.0F}));
}

TEST(Mixer, ALinkPansItsChannelsApartAndGivesTheirPansBack) {
    MixerState mixer(4);
    mixer.setPan(1, 0.25F);
    mixer.setPan(2, -2.0F);
    EXPECT_EQ(mixer.panParCanal[2], -1.0F);
    EXPECT_FALSE(mixer.makeLinkAB(0, 2));
    ASSERT_TRUE(mixer.makeLinkAB(1, 2));
    ASSERT_TRUE(mixer.makeLinkAB(1, 2)) << "made again";
    EXPECT_EQ(mixer.panParCanal, (std::vector{0.0F, -1.0F, 1.0F, 0.0F}));
    EXPECT_EQ(mixer.panoramiquesParCanal[2], (Panoramique{0.0F, 1.0F}));
    EXPECT_FALSE(mixer.makeLinkAB(2, 3)) << "2 is taken";
    mixer.removeLinkAB(2, 1);
    EXPECT_EQ(mixer.panParCanal, (std::vector{0.0F, 0.25F, -1.0F, 0.0F}));
    EXPECT_EQ(mixer.pairesABLink.size(), 1U) << "the entry stays";
    EXPECT_TRUE(mixer.activeLinksAB().empty());
    mixer.setPan(1, 0.5F);
    ASSERT_TRUE(mixer.makeLinkAB(2, 1));
    EXPECT_EQ(mixer.pairesABLink.size(), 1U) << "the entry is taken up again";
    mixer.removeLinkAB(1, 2);
    EXPECT_EQ(mixer.panParCanal[1], 0.5F);
}

TEST(Mixer, AChannelIsInOnePairOrLinkOnly) {
    MixerState mixer(6);
    EXPECT_FALSE(mixer.setPaireMS(1, 1, Orientation::ms, 1));
    ASSERT_TRUE(mixer.setPaireMS(0, 2, Orientation::ms, 2.0F)) << "need not be neighbours";
    EXPECT_EQ(mixer.pairesMSMonitoring[0].width, 1.0F);
    EXPECT_FALSE(mixer.setPaireMS(2, 3, Orientation::ms, 1));
    EXPECT_FALSE(mixer.makeLinkAB(2, 3));
    ASSERT_TRUE(mixer.makeLinkAB(4, 5));
    EXPECT_FALSE(mixer.setPaireMS(3, 4, Orientation::ms, 1));
    ASSERT_TRUE(mixer.setPaireMS(2, 0, Orientation::sm, 0.5F));
    EXPECT_EQ(mixer.pairesMSMonitoring, (std::vector{PaireMonitoringMS{0, 2, Orientation::sm, 0.5F, true}}))
        << "the same pair in the other order: its indexes stay";
    mixer.setWidth(2, 0, -1.0F);
    EXPECT_EQ(mixer.pairesMSMonitoring[0].width, 0.0F);
    mixer.removePaireMS(2, 0);
    EXPECT_TRUE(mixer.activePairesMS().empty());
    EXPECT_TRUE(mixer.makeLinkAB(2, 3));
    EXPECT_FALSE(mixer.setPaireMS(0, 2, Orientation::ms, 1));
}

TEST(Mixer, ASnapshotComesBackOnATakeOfAsManyChannelsOnly) {
    MixerState mixer(4);
    mixer.setFader(0, -7);
    mixer.setPan(3, 0.5F);
    mixer.toggleMute(1);
    mixer.toggleReversePolarity(2);
    ASSERT_TRUE(mixer.setPaireMS(0, 1, Orientation::sm, 0.3F));
    ASSERT_TRUE(mixer.makeLinkAB(2, 3));
    const auto state = mixer.snapshot();
    ASSERT_TRUE(state);

    MixerState same(4);
    EXPECT_TRUE(same.restore(*state));
    EXPECT_EQ(same, mixer);
    MixerState other(3);
    EXPECT_FALSE(other.restore(*state));
    EXPECT_EQ(other, MixerState(3));
    EXPECT_FALSE(MixerState(0).snapshot());

    MonitoringSessionState damaged = *state;
    damaged.pairesMSMonitoring.push_back({2, 9, Orientation::ms, 1, true});
    damaged.pairesABLink.push_back({0, 2, 0, 0, true});
    EXPECT_TRUE(same.restore(damaged));
    EXPECT_EQ(same, mixer) << "pairs that cannot be are left out";
    damaged.muteParCanal.pop_back();
    EXPECT_FALSE(same.restore(damaged));
}

TEST(Mixer, TheBoostIsLabelledWithItsWholePart) {
    const struct {
        float boost;
        const char* label;
    } cases[] = {{0, "0 dB"}, {6, "+6 dB"}, {-3, "-3 dB"}, {0.5F, "+0 dB"}, {-0.5F, "0 dB"}, {2.9F, "+2 dB"}};
    for (const auto& one : cases)
        EXPECT_EQ(volumeLabel(one.boost), one.label);
    EXPECT_FLOAT_EQ(outputGain(20), 10.0F);
    EXPECT_EQ(outputGain(0), 1.0F);
}

// --- What is heard

void expectHeardAsByTheRules(const MixerState& mixer, const std::vector<std::vector<float>>& channels) {
    const std::vector<std::array<double, 2>> wanted = referenceMix(mixer, channels);
    std::vector<float> left(wanted.size(), 0.0F);
    std::vector<float> right(wanted.size(), 0.0F);
    for (const MixTerm& term : mixPlan(mixer)) {
        mixInto(left.data(), right.data(), channels[static_cast<std::size_t>(term.canal)], term.gauche, term.droite);
    }
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        ASSERT_NEAR(double{left[i]}, wanted[i][0], 2e-5) << "left, frame " << i;
        ASSERT_NEAR(double{right[i]}, wanted[i][1], 2e-5) << "right, frame " << i;
    }
}

TEST(MixPlan, AMidSidePairIsDecodedByItsRules) {
    const auto channels = noise(3, 37);
    const struct {
        const char* name;
        std::function<void(MixerState&)> change;
        std::vector<MixTerm> plan;
    } cases[] = {
        {"full width", [](MixerState&) {}, {{0, 1, 1}, {1, 1, -1}, {2, .5F, .5F}}},
        {"no width", [](MixerState& m) { m.setWidth(0, 1, 0); }, {{0, 1, 1}, {2, .5F, .5F}}},
        {"switched",
         [](MixerState& m) { m.setPaireMS(0, 1, Orientation::sm, .5F); },
         {{1, 1, 1}, {0, .5F, -.5F}, {2, .5F, .5F}}},
        {"side alone", [](MixerState& m) { m.toggleSolo(1, false, "OR"); }, {{1, 1, 1}}},
        {"mid alone", [](MixerState& m) { m.toggleSolo(0, false, "OR"); }, {{0, 1, 1}}},
        {"side alone and muted",
         [](MixerState& m) {
             m.toggleSolo(1, false, "OR");
             m.toggleMute(1);
         },
         {}},
        {"both solo",
         [](MixerState& m) {
             m.toggleSolo(0, false, "X");
             m.toggleSolo(1, false, "X");
         },
         {{0, 1, 1}, {1, 1, -1}}},
        {"another solo", [](MixerState& m) { m.toggleSolo(2, false, "OR"); }, {{2, .5F, .5F}}},
        {"mid muted", [](MixerState& m) { m.toggleMute(0); }, {{1, 1, -1}, {2, .5F, .5F}}},
        {"polarity of the side",
         [](MixerState& m) { m.toggleReversePolarity(1); },
         {{0, 1, 1}, {1, -1, 1}, {2, .5F, .5F}}},
        {"the side's fader and pans do not count",
         [](MixerState& m) {
             m.setFader(1, -20);
             m.setPan(0, 1);
             m.setPan(1, -1);
         },
         {{0, 1, 1}, {1, 1, -1}, {2, .5F, .5F}}},
        {"the mid's fader counts for both", [](MixerState& m) { m.setFader(0, -96); }, {{2, .5F, .5F}}},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        MixerState mixer(3);
        ASSERT_TRUE(mixer.setPaireMS(0, 1, Orientation::ms, 1));
        one.change(mixer);
        EXPECT_EQ(mixPlan(mixer), one.plan);
        expectHeardAsByTheRules(mixer, channels);
    }
}

TEST(MixPlan, WhateverTheMixerIsSetToItSoundsAsTheRulesSay) {
    std::mt19937 random(7);
    const auto below = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    for (int round = 0; round < 200; ++round) {
        const int channels = 1 + below(9);
        MixerState mixer(channels);
        for (int step = 0; step < 25; ++step) {
            const int i = below(channels);
            const int j = below(channels);
            switch (below(9)) {
                case 0:
                    mixer.setFader(i, below(130) - 110);
                    break;
                case 1:
                    mixer.setPan(i, static_cast<float>(below(21) - 10) / 10);
                    break;
                case 2:
                    mixer.toggleMute(i);
                    break;
                case 3:
                    mixer.toggleSolo(i, below(2) == 0, below(2) == 0 ? "X" : "OR");
                    break;
                case 4:
                    mixer.toggleReversePolarity(i);
                    break;
                case 5:
                    mixer.setPaireMS(i, j, below(2) == 0 ? Orientation::ms : Orientation::sm,
                                     0.1F * static_cast<float>(below(11)));
                    break;
                case 6:
                    mixer.removePaireMS(i, j);
                    break;
                case 7:
                    mixer.makeLinkAB(i, i + 1);
                    break;
                default:
                    mixer.removeLinkAB(i, i + 1);
                    break;
            }
        }
        SCOPED_TRACE(round);
        expectHeardAsByTheRules(mixer, noise(channels, 67, static_cast<unsigned>(round)));
    }
}

TEST(MixPlan, WithoutPansTheFirstTwoOfSeveralChannelsAreLeftAndRight) {
    MixerState mixer(3);
    mixer.panoramiquesParCanal.clear();
    EXPECT_EQ(mixPlan(mixer), (std::vector<MixTerm>{{0, 1, 0}, {1, 0, 1}, {2, .5F, .5F}}));
    MixerState one(1);
    one.panoramiquesParCanal.clear();
    one.volumeParCanal.clear();
    EXPECT_EQ(mixPlan(one, 2.0F), (std::vector<MixTerm>{{0, 1, 1}})) << "a channel without a volume counts 1, boosted";
}

}  // namespace
}  // namespace dravik::test
