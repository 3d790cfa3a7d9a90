#include "app/content_view.h"
#include "app/table_edits.h"
#include "editing/cue_writer.h"
#include "tests/app/main_window_stage.h"

#include <gmock/gmock.h>

namespace dravik {
namespace {

using test::MainWindowStage;
using test::recorderFile;
using testing::IsEmpty;
using testing::SizeIs;

/// What comes in between: readings while something is done, edits while a reading runs, questions that stay open.
/// Three poly takes, the first one with two cues.
class ContentViewInBetween : public testing::Test, public MainWindowStage {
  protected:
    ContentViewInBetween() {
        recorderFile({.scene = "1"}, {.channels = 2}, 4800).cues({{1, 480, {}}, {2, 960, {}}}).write(folder / "A.wav");
        recorderFile({.scene = "2"}, {.channels = 2}, 4800).write(folder / "B.wav");
        recorderFile({.scene = "3"}, {.channels = 2}, 4800).write(folder / "C.wav");
        open();
    }
    void readAgain() {
        content->reload();
        settle();
    }
    void remove(const char* name) {
        std::filesystem::remove(folder / name);
        readAgain();
    }
};

TEST_F(ContentViewInBetween, ACueAddedRightAfterASaveJoinsThoseThatWereSaved) {
    content->selectionnerLigne(1);
    settle();
    content->cues().add(1000);
    content->saveAll([this](bool saved) {
        EXPECT_TRUE(saved);
        EXPECT_THAT(content->cueMarkers(), SizeIs(1)) << "the folder has not been read again yet";
        content->cues().add(2000);
    });
    settle();
    content->saveAll();
    settle();
    EXPECT_THAT(lireCues(folder / "B.wav"), SizeIs(2));
}

TEST_F(ContentViewInBetween, QuestionsAndDragsFindTheirCueAfterAReading) {
    std::size_t fewest = 2;
    QObject::connect(content.get(), &ContentView::cueMarkersChanged, content.get(),
                     [&] { fewest = std::min(fewest, content->cueMarkers().size()); });
    content->cues().beginDrag(content->cueMarkers()[0].id);
    content->cues().drag(500);
    readAgain();
    content->cues().drag(600);
    content->cues().endDrag();
    EXPECT_EQ(content->cueMarkers()[0].frame, 600);
    EXPECT_EQ(fewest, 2U) << "none goes for a moment";
    content->rows().discardAll();

    content->cues().remove(content->cueMarkers()[0].id);
    readAgain();
    QTest::qWait(50);  // their cues, too
    dialogs.answer(0);
    EXPECT_THAT(content->cueMarkers(), SizeIs(1));
}

TEST_F(ContentViewInBetween, OfAVanishedTakeNothingIsShownOnceItsEditsAreDiscarded) {
    content->selectionnerLigne(1);
    edit(1, RowField::scene, "2A");
    remove("B.wav");
    ASSERT_TRUE(content->metadata().has_value());
    content->rows().discardAll();
    EXPECT_FALSE(content->fichierSelectionne().has_value());
    EXPECT_FALSE(content->metadata().has_value());
}

TEST_F(ContentViewInBetween, NothingIsAskedAboutAVanishedTakeWhoseEditsWereUndone) {
    edit(2, RowField::scene, "3A");
    remove("C.wav");
    content->undo();
    edit(0, RowField::scene, "1A");
    content->saveAll();
    settle();
    EXPECT_THAT(dialogs.asked, IsEmpty());
    EXPECT_EQ(onDisk().at(0).scene, "1A");
}

TEST_F(ContentViewInBetween, AnswersGivenWhileASaveRunsNeitherSaveTwiceNorQuit) {
    edit(0, RowField::scene, "1A");
    edit(2, RowField::scene, "3A");
    remove("C.wav");
    std::vector<bool> ended;
    const auto note = [&](bool saved) { ended.push_back(saved); };
    content->saveAll(note);
    content->saveAll(note);
    termination.applicationShouldTerminate();
    ASSERT_THAT(dialogs.waiting, SizeIs(3));
    dialogs.answer(0);
    ASSERT_TRUE(content->sauvegardeEnCours());
    dialogs.answer(0);
    EXPECT_EQ(ended, std::vector<bool>{false}) << "the second one, at once";
    dialogs.answer(1);
    EXPECT_FALSE(terminated);
    settle();
    EXPECT_EQ(ended, (std::vector<bool>{false, true}));
    EXPECT_FALSE(terminated);
    EXPECT_EQ(onDisk().at(0).scene, "1A");
}

}  // namespace
}  // namespace dravik
