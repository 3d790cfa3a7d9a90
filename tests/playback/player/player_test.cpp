#include "base/abandoned_work.h"
#include "tests/playback/fake_take.h"
#include "tests/playback/player/player_stage.h"
#include "tests/playback/reference_mix.h"
#include "tests/support/silent_decoder.h"

#include <fstream>
#include <numeric>

#include <gtest/gtest.h>

namespace dravik::test {
namespace {

class Player : public testing::Test {
  protected:
    TempFolder folder_;
    FakeSettings settings_;
    OfflineOutputs output_;
    const std::unique_ptr<SampleDecoder> decoder_ = makeLazySampleDecoder();
    std::optional<std::uint64_t> memory_ = std::nullopt;
    LecteurCoreAudio player_{settings_, *decoder_, [this] { return memory_; }, output_.outputs()};

    /// Loads a take of one ramp, whose n-th sample is n + 1, heard on the left alone.
    void loadRamp(std::size_t frames) {
        std::vector<float> ramp(frames);
        std::iota(ramp.begin(), ramp.end(), 1.0F);
        load(takeOfFiles({writeFloats(folder_ / "ramp.wav", {ramp})}));
        player_.setPan(0, -1);
    }
    void load(const GroupeFichiers& take) {
        player_.load(take);
        ASSERT_TRUE(comes([&] { return player_.pret(); }));
    }
    /// What is heard on the left in the next frames.
    std::vector<float> heard(std::size_t frames) {
        output_.left.clear();
        output_.run(frames, 64);
        return output_.left;
    }
    float nextHeard() { return heard(1).front(); }
};

TEST_F(Player, PlaysATakeThroughItsMixer) {
    const auto channels = noise(4, 20000);
    std::vector<std::filesystem::path> files;
    for (std::size_t c = 0; c < channels.size(); ++c)
        files.push_back(writeFloats(folder_ / (std::to_string(c) + ".wav"), {channels[c]}));
    for (const bool estPoly : {true, false}) {
        load(takeOfFiles(estPoly ? std::vector{writeFloats(folder_ / "poly.wav", channels)} : files));
        EXPECT_EQ(player_.nbCanaux(), 4);
        EXPECT_EQ(player_.frameTotal(), 20000);
        EXPECT_EQ(output_.sampleRate, 48000);
        player_.setFader(3, -12);
        player_.toggleReversePolarity(2);
        ASSERT_TRUE(player_.setPaireMS(0, 1, OrientationMonitoringMS::ms, 0.5F));
        player_.setBoost(-6);
        const auto wanted = referenceMix(player_.mixer(), channels, -6);
        EXPECT_EQ(heard(100), std::vector<float>(100, 0.0F)) << "the output runs, and is silent";
        player_.play();
        output_.left.clear();
        output_.right.clear();
        output_.run(21000);
        for (std::size_t i = 0; i < 20000; ++i) {
            ASSERT_NEAR(double{output_.left[i]}, wanted[i][0], 2e-5) << i;
            ASSERT_NEAR(double{output_.right[i]}, wanted[i][1], 2e-5) << i;
        }
        EXPECT_TRUE(comes([&] { return !player_.enLecture(); })) << "it ends by itself";
    }
}

TEST_F(Player, OfSeveralLoadsOnlyTheLastBecomesReady) {
    const auto slow = writeFloats(folder_ / "slow.wav", noise(8, 500000));
    const auto fast = writeFloats(folder_ / "fast.wav", noise(2, 100));
    QSignalSpy loaded(&player_, &LecteurCoreAudio::loaded);
    for (int i = 0; i < 5; ++i)
        player_.load(takeOfFiles({slow}));
    player_.load(takeOfFiles({fast}));
    EXPECT_FALSE(player_.pret());
    ASSERT_TRUE(comes([&] { return player_.pret(); }));
    QTest::qWait(50);
    EXPECT_EQ(loaded.count(), 1);
    EXPECT_EQ(player_.nbCanaux(), 2);
    EXPECT_EQ(player_.urlFichier(), fast);
    // One that was read, but whose result was not yet taken over when the next load began.
    player_.load(takeOfFiles({fast}));
    QThread::msleep(100);
    player_.load(takeOfFiles({slow}));
    ASSERT_TRUE(comes([&] { return player_.pret(); }));
    EXPECT_EQ(player_.nbCanaux(), 8);
    EXPECT_EQ(loaded.count(), 2);
}

TEST_F(Player, ATakeThatCannotBeHadIsReportedAndNothingIsReady) {
    loadRamp(1000);
    QSignalSpy failed(&player_, &LecteurCoreAudio::loadFailed);
    player_.load(takeOfFiles({folder_ / "absent.wav"}));
    EXPECT_FALSE(player_.pret()) << "the take before is gone at once";
    ASSERT_TRUE(comes([&] { return failed.count() == 1; }));
    EXPECT_NE(failed[0][0].value<std::string>().find("absent.wav"), std::string::npos);
    memory_ = 1000;
    player_.load(takeOfFiles({folder_ / "ramp.wav"}));
    ASSERT_TRUE(comes([&] { return failed.count() == 2; }));
    EXPECT_NE(failed[1][0].value<std::string>().find("too large to be played"), std::string::npos);
    EXPECT_FALSE(player_.pret());
    player_.play();
    player_.nudge(LecteurCoreAudio::Direction::forward);
    EXPECT_FALSE(player_.enLecture());
    EXPECT_EQ(player_.positionLecture(), 0);
}

TEST_F(Player, APauseGoesBackOrStaysAsTheSettingSays) {
    for (const bool back : {true, false}) {
        SCOPED_TRACE(back);
        settings_.pause = back ? "retour" : "stay";
        loadRamp(48000);
        player_.setFrame(1000);
        player_.play();
        EXPECT_EQ(heard(500).front(), 1001);
        player_.pause();
        EXPECT_FALSE(player_.enLecture());
        EXPECT_EQ(player_.tempsReferenceLecture(), 0);
        EXPECT_EQ(heard(64), std::vector<float>(64, 0.0F)) << "silent at once";
        EXPECT_EQ(player_.frameCourante(), back ? 1000 : 1500);
        EXPECT_DOUBLE_EQ(player_.positionLecture(), (back ? 1000 : 1500) / 48000.0);
        player_.play();
        EXPECT_EQ(player_.frameAuDemarrage(), back ? 1000 : 1500);
        EXPECT_EQ(nextHeard(), back ? 1001 : 1501);
        player_.pause();
    }
}

TEST_F(Player, AtTheEndItEndsAsOnAPauseOrBeginsAgain) {
    settings_.pause = "retour";
    loadRamp(300);
    player_.play();
    output_.run(400);
    ASSERT_TRUE(comes([&] { return !player_.enLecture(); }));
    EXPECT_EQ(player_.frameCourante(), 0);

    settings_.loop = true;
    player_.setSelection(100.0 / 48000, 200.0 / 48000);
    player_.play();
    const std::vector<float> sound = heard(350);
    EXPECT_EQ(sound[199], 200);
    EXPECT_EQ(sound[200], 101) << "without a gap";
    EXPECT_EQ(sound[300], 101);
    ASSERT_TRUE(comes([&] { return player_.frameDepart() == 100; }));
    EXPECT_TRUE(player_.enLecture());
    EXPECT_EQ(player_.frameAuDemarrage(), 100);
    EXPECT_EQ(player_.tempsReferenceLecture(), 0);
    player_.toggleLoop();
    QTest::qWait(60);  // the setting is read again
    const std::vector<float> rest = heard(100);
    EXPECT_EQ(rest[49], 200);
    EXPECT_EQ(rest[50], 0) << "the end is the end now";
    ASSERT_TRUE(comes([&] { return !player_.enLecture(); }));
    EXPECT_EQ(player_.frameCourante(), 100) << "back to where this round began";
}

TEST_F(Player, ASelectionEndsThePlayUnlessItIsNoneOrLiesBehind) {
    const struct {
        double debut, fin;
        std::int64_t from, to;
    } cases[] = {{0.1, 0.2, 0, 9600}, {0.1, 0.2, 9600, 48000}, {0.1, 0.2, 20000, 48000}, {0.3, 0.2, 0, 48000}};
    for (const auto& one : cases) {
        loadRamp(48000);
        player_.setSelection(one.debut, one.fin);
        player_.setFrame(one.from);
        player_.play();
        output_.run(60000);
        ASSERT_TRUE(comes([&] { return !player_.enLecture(); }));
        EXPECT_EQ(player_.frameCourante(), one.to);
    }
    // Set while it plays.
    loadRamp(48000);
    player_.play();
    output_.run(1000);
    player_.setSelection(0.0, 1500.0 / 48000);
    const std::vector<float> sound = heard(1000);
    EXPECT_EQ(sound.front(), 1001) << "the position moves on from where it is";
    EXPECT_EQ(sound[499], 1500);
    EXPECT_EQ(sound[500], 0);
}

TEST_F(Player, ANudgeMovesOnlyAndStaysWithinTheTake) {
    using enum LecteurCoreAudio::Direction;
    loadRamp(48000);
    player_.nudge(backward);
    EXPECT_EQ(player_.frameCourante(), 0);
    player_.nudge(forward, 2);
    EXPECT_EQ(player_.frameCourante(), 3840);
    EXPECT_EQ(player_.timecode(), "10:00:00:02");
    EXPECT_EQ(player_.timecodeMillis(), "00:00:00.08");
    EXPECT_FALSE(player_.enLecture());
    EXPECT_EQ(nextHeard(), 0);
    player_.play();
    output_.run(10);
    player_.nudge(forward);
    EXPECT_EQ(player_.frameReferenceLecture(), 5760);
    EXPECT_EQ(nextHeard(), 5761) << "playback goes on from there";
    settings_.nudge = "5s";
    player_.pause();
    player_.nudge(forward);
    EXPECT_EQ(player_.frameCourante(), 48000);
    EXPECT_EQ(player_.positionLecture(), 1);
}

TEST_F(Player, PublishesThePositionAtMostSixtyTimesASecond) {
    loadRamp(480000);
    player_.play();
    QSignalSpy published(&player_, &LecteurCoreAudio::positionChanged);
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < 500) {
        output_.run(48);
        QTest::qWait(1);
    }
    EXPECT_GT(published.count(), 5);
    EXPECT_LE(published.count(), static_cast<int>(static_cast<double>(clock.elapsed()) * 60 / 1000) + 1);
    EXPECT_GT(player_.frameCourante(), 0);
}

TEST_F(Player, MetersShowTheLevelsAndFallSilentSoonAfterAPause) {
    load(takeOfFiles({writeFloats(folder_ / "loud.wav", {std::vector(96000, 0.5F), std::vector(96000, 1.0F)})}));
    player_.setFader(0, -96);
    player_.play();
    output_.run(4800);
    ASSERT_TRUE(comes([&] { return player_.niveauxDB()[0] > -60; }));
    EXPECT_FLOAT_EQ(player_.niveauxDB()[0], 20 * std::log10(0.5F));
    EXPECT_EQ(player_.meterClipHeld(), (std::vector{false, true}));
    player_.pause();
    EXPECT_GT(player_.niveauxDB()[0], -60);
    ASSERT_TRUE(comes([&] { return player_.niveauxDB()[0] <= -60; }));
    EXPECT_EQ(player_.meterPeakDB(), (std::vector{-60.0F, -60.0F}));
    EXPECT_EQ(player_.meterClipHeld(), (std::vector{false, true})) << "stays until it is cleared";
    player_.resetMeters(true);
    EXPECT_EQ(player_.meterClipHeld(), (std::vector{false, false}));
}

TEST_F(Player, TheSameTakeComesBackWithItsMixer) {
    const auto first = takeOfFiles({writeFloats(folder_ / "a.wav", noise(3, 100))});
    const auto second = takeOfFiles({writeFloats(folder_ / "b.wav", noise(3, 100))});
    load(first);
    player_.setFader(1, -9);
    player_.setPan(0, 0.5F);
    ASSERT_TRUE(player_.makeLinkAB(1, 2));
    const MixerState left = player_.mixer();
    load(second);
    EXPECT_EQ(player_.mixer(), MixerState(3)) << "another take begins anew";
    load(first);
    EXPECT_EQ(player_.mixer(), left);
    load(first);
    EXPECT_EQ(player_.mixer(), left) << "loaded again without another between";
}

TEST_F(Player, AListenerMayBeginAnotherLoadFromAnySignal) {
    const auto first = takeOfFiles({writeFloats(folder_ / "a.wav", noise(1, 5000))});
    const auto second = takeOfFiles({writeFloats(folder_ / "b.wav", noise(2, 5000))});
    using Signal = void (LecteurCoreAudio::*)();
    for (const Signal signal :
         {&LecteurCoreAudio::pretChanged, &LecteurCoreAudio::enLectureChanged, &LecteurCoreAudio::positionChanged,
          &LecteurCoreAudio::metersChanged, &LecteurCoreAudio::volumeParCanalChanged, &LecteurCoreAudio::loaded}) {
        load(first);
        bool armed = true;
        const auto once = QObject::connect(&player_, signal, &player_, [&] {
            if (std::exchange(armed, false)) player_.load(second);
        });
        player_.play();
        output_.run(6000);
        player_.toggleMute(0);
        QTest::qWait(40);
        if (armed) player_.load(first);
        ASSERT_TRUE(comes([&] { return !armed && player_.pret(); }));
        QObject::disconnect(once);
    }
}

TEST_F(Player, AMixerChangeIsAnnouncedByWhatItChanged) {
    load(takeOfFiles({writeFloats(folder_ / "a.wav", noise(3, 100))}));
    QSignalSpy mute(&player_, &LecteurCoreAudio::muteParCanalChanged);
    QSignalSpy volume(&player_, &LecteurCoreAudio::volumeParCanalChanged);
    QSignalSpy pan(&player_, &LecteurCoreAudio::panParCanalChanged);
    QSignalSpy fader(&player_, &LecteurCoreAudio::faderDBParCanalChanged);
    QSignalSpy links(&player_, &LecteurCoreAudio::pairesABLinkChanged);
    player_.toggleMute(1);
    EXPECT_EQ(std::tuple(mute.count(), volume.count(), pan.count(), fader.count()), std::tuple(1, 1, 0, 0));
    player_.setFader(1, -3);
    EXPECT_EQ(std::tuple(mute.count(), volume.count(), pan.count(), fader.count()), std::tuple(1, 1, 0, 1))
        << "a muted channel is as loud as before";
    player_.makeLinkAB(0, 1);
    EXPECT_EQ(std::tuple(pan.count(), links.count()), std::tuple(1, 1));
    player_.setFader(7, -3);
    EXPECT_EQ(fader.count(), 1);
}

TEST_F(Player, ADeviceChangeKeepsThePositionAndThePlayback) {
    loadRamp(480000);
    player_.play();
    output_.run(1000);
    ASSERT_TRUE(comes([&] { return player_.meterClipHeld()[0]; }));
    for (int i = 0; i < 5; ++i)
        output_.deviceChanges();
    ASSERT_TRUE(comes([&] { return output_.started == 2; })) << "one rebuild for a flock of changes";
    EXPECT_TRUE(player_.enLecture());
    EXPECT_EQ(nextHeard(), 1001);
    QTest::qWait(60);
    EXPECT_TRUE(player_.meterClipHeld()[0]) << "only the user clears it";
    QTest::qWait(150);
    EXPECT_EQ(output_.started, 2);

    // The device is gone, and comes back.
    QSignalSpy failed(&player_, &LecteurCoreAudio::loadFailed);
    output_.refuse = true;
    output_.deviceChanges();
    ASSERT_TRUE(comes([&] { return !player_.pret(); }));
    EXPECT_FALSE(player_.enLecture());
    EXPECT_EQ(failed.count(), 1);
    output_.refuse = false;
    output_.deviceChanges();
    ASSERT_TRUE(comes([&] { return player_.pret(); }));
    EXPECT_FALSE(player_.enLecture());
    player_.play();
    EXPECT_EQ(nextHeard(), 1002) << "from where it was heard last";

    // It stops as a pause does.
    output_.run(100);
    settings_.pause = "retour";
    output_.refuse = true;
    output_.deviceChanges();
    ASSERT_TRUE(comes([&] { return !player_.pret(); }));
    EXPECT_EQ(player_.frameCourante(), 1001);
    EXPECT_EQ(player_.tempsReferenceLecture(), 0);
    EXPECT_TRUE(comes([&] { return player_.niveauxDB()[0] == meterMinimumDB; })) << "no level stands still";
}

TEST_F(Player, AVolumeThatDoesNotAnswerKeepsNobodyFromPlayingAnotherTakeOrQuitting) {
    const test::SilentDecoder silent;
    auto player = std::make_unique<LecteurCoreAudio>(
        settings_, silent, [] { return std::nullopt; }, output_.outputs());
    std::ofstream(folder_ / "hung.flac") << "for the codecs";
    player->load(takeOfFiles({folder_ / "hung.flac"}));
    silent.asked.acquire();
    player->load(takeOfFiles({writeFloats(folder_ / "a.wav", noise(1, 100))}));
    EXPECT_TRUE(comes([&] { return player->pret(); }));
    QElapsedTimer quitting;
    quitting.start();
    player.reset();
    EXPECT_LT(quitting.elapsed(), 10'000);
    EXPECT_FALSE(waitForAbandonedWork(std::chrono::milliseconds(0)));
    silent.answer.release();
    EXPECT_TRUE(waitForAbandonedWork(std::chrono::seconds(20)));
}

TEST_F(Player, RenamedFilesKeepTheirMixAndPlayOn) {
    const auto a = writeFloats(folder_ / "a.wav", noise(2, 4000));
    const auto b = writeFloats(folder_ / "b.wav", noise(2, 4000));
    load(takeOfFiles({a}));
    player_.setFader(0, -12);
    load(takeOfFiles({b}));
    player_.setFader(0, -6);
    player_.play();
    // The two swap their names.
    player_.filesMoved({{a, b}, {b, a}});
    EXPECT_TRUE(player_.enLecture());
    EXPECT_EQ(player_.urlFichier(), a);
    load(takeOfFiles({b}));
    EXPECT_EQ(player_.faderDBParCanal()[0], -12);
    load(takeOfFiles({a}));
    EXPECT_EQ(player_.faderDBParCanal()[0], -6);
}

TEST_F(Player, WithoutADeviceATakeIsNotReadyUntilOneComes) {
    output_.refuse = true;
    QSignalSpy failed(&player_, &LecteurCoreAudio::loadFailed);
    player_.load(takeOfFiles({writeFloats(folder_ / "a.wav", noise(1, 100))}));
    ASSERT_TRUE(comes([&] { return failed.count() == 1; }));
    EXPECT_FALSE(player_.pret());
    output_.refuse = false;
    output_.deviceChanges();
    EXPECT_TRUE(comes([&] { return player_.pret(); }));
}

TEST_F(Player, AnEmptyTakeIsAtItsBeginningAndEndsAtOnce) {
    load(takeOfFiles({WavBuilder().fmt({.channels = 2}).audio(0).write(folder_ / "empty.wav")}));
    EXPECT_EQ(player_.positionLecture(), 0);
    settings_.loop = true;
    player_.play();
    output_.run(100);
    EXPECT_TRUE(comes([&] { return !player_.enLecture(); }));
    player_.setPosition(0.5);
    player_.nudge(LecteurCoreAudio::Direction::forward);
    EXPECT_EQ(player_.positionLecture(), 0);
}

}  // namespace
}  // namespace dravik::test
