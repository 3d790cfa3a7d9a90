#include "app/take_playback.h"

#include "app/playback_preferences.h"
#include "platform/media/lazy_sample_decoder.h"
#include "tests/app/main_window_stage.h"
#include "tests/playback/offline_output.h"

#include <gmock/gmock.h>

namespace dravik {
namespace {

using test::MainWindowStage;
using test::recorderFile;

/// Two takes of a tenth of a second, the first one with markers at 10, 20 and 30 ms.
class TakePlaybackTest : public testing::Test, public MainWindowStage {
  protected:
    TakePlaybackTest() {
        recorderFile({.scene = "1"}, {.channels = 2}, 4800)
            .cues({{1, 480, {}}, {2, 960, {}}, {3, 1440, {}}})
            .write(folder / "A.wav");
        recorderFile({.scene = "2"}, {.channels = 2}, 4800).write(folder / "B.wav");
        open();
        EXPECT_TRUE(QTest::qWaitFor([this] { return player.pret(); }, 20'000));
    }
    ~TakePlaybackTest() override = default;

    PlaybackPreferences preferences{settings};
    std::unique_ptr<SampleDecoder> decoder = makeLazySampleDecoder();
    test::OfflineOutputs outputs;
    LecteurCoreAudio player{preferences, *decoder, [] { return std::nullopt; }, outputs.outputs()};
    TakePlayback playback{*content, player, settings};
};

TEST_F(TakePlaybackTest, WhatIsSelectedIsWhatIsLoadedAndASaveOfItsFieldsDoesNotInterruptIt) {
    int loads = 0;
    QObject::connect(&player, &LecteurCoreAudio::loaded, [&] { ++loads; });
    edit(0, RowField::scene, "1A");
    content->saveAll();
    settle();
    QTest::qWait(200);
    edit(0, RowField::name, "C");
    content->saveAll();
    settle();
    QTest::qWait(200);
    EXPECT_EQ(content->fichierSelectionne(), folder / "C.wav");
    EXPECT_EQ(loads, 0);
    EXPECT_TRUE(player.pret());

    content->selectionnerLigne(content->rows().indexOfFile(folder / "B.wav"));
    EXPECT_FALSE(player.pret()) << "nothing of another take is heard";
    EXPECT_TRUE(playback.isLoading());
    ASSERT_TRUE(QTest::qWaitFor([this] { return player.pret(); }, 20'000));
    EXPECT_EQ(player.urlFichier(), folder / "B.wav");
    EXPECT_EQ(loads, 1);
    content->gererActionProtegee(OuvrirDossier{settingsFolder.path()});
    settle();
    EXPECT_FALSE(player.pret());
    EXPECT_FALSE(playback.isLoading());
}

TEST_F(TakePlaybackTest, ATakeThatCannotBeHeardSaysWhy) {
    std::filesystem::remove(folder / "B.wav");
    content->selectionnerLigne(1);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !playback.error().isEmpty(); }, 20'000));
    EXPECT_TRUE(playback.error().contains(QStringLiteral("B.wav"))) << playback.error().toStdString();
    content->selectionnerLigne(0);
    EXPECT_TRUE(playback.error().isEmpty());
}

TEST_F(TakePlaybackTest, PlayAtTheVeryEndStartsOver) {
    player.setFrame(player.frameTotal());
    playback.togglePlay();
    EXPECT_TRUE(player.enLecture());
    EXPECT_EQ(player.frameAuDemarrage(), 0);
    playback.togglePlay();
    EXPECT_FALSE(player.enLecture());
}

TEST_F(TakePlaybackTest, GoesFromMarkerToMarkerAndSetsOneWhereItStands) {
    player.setFrame(700);
    const struct {
        void (TakePlayback::*go)();
        std::int64_t frame;
    } steps[] = {{&TakePlayback::goToNextCue, 960},     {&TakePlayback::goToNextCue, 1440},
                 {&TakePlayback::goToNextCue, 1440},    {&TakePlayback::goToPreviousCue, 960},
                 {&TakePlayback::goToPreviousCue, 480}, {&TakePlayback::goToPreviousCue, 0}};
    for (const auto& [go, frame] : steps) {
        (playback.*go)();
        EXPECT_EQ(player.frameCourante(), frame);
    }
    player.setFrame(2000);
    playback.addCueAtPlayhead();
    EXPECT_EQ(content->cueMarkers().back().frame, 2000);
}

TEST_F(TakePlaybackTest, TheTogglesAreKeptAsTheirSettings) {
    playback.toggleLoop();
    playback.toggleSoloMode();
    playback.toggleInsertionFollows();
    EXPECT_TRUE(playback.loops() && playback.addsSolos() && !playback.insertionFollows());
    EXPECT_TRUE(settings.value(settings::lectureEnBoucle));
    EXPECT_EQ(settings.value(settings::soloComportement), "X");
    EXPECT_EQ(settings.value(settings::pauseComportement), "retour");
    settings.set(settings::nudgeValeur, QStringLiteral("5s"));
    EXPECT_EQ(playback.nudgeAmount(), "5 seconds");
}

}  // namespace
}  // namespace dravik
