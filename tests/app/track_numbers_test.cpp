#include "app/content_view.h"
#include "app/table_edits.h"
#include "app/text.h"
#include "tests/app/main_window_stage.h"
#include "tests/support/files.h"

#include <gmock/gmock.h>

namespace dravik {
namespace {

using test::MainWindowStage;
using test::readFile;
using test::recorderFile;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// A mono set of two and a poly take of three, of which the last has neither number nor name.
class TrackNumbersTest : public testing::Test, public MainWindowStage {
  protected:
    TrackNumbersTest() {
        for (int i = 1; i <= 2; ++i) {
            recorderFile({.tracks = {{i + 2, 1, "Mic"}}}, {}, 4800, static_cast<unsigned>(i))
                .write(folder / ("A_T0" + std::to_string(i) + ".wav"));
        }
        recorderFile({.tracks = {{1, 1, "Boom"}, {2, 2, "Lav"}}}, {.channels = 3}, 4800).write(folder / "B.wav");
        open();
        content->selectionnerLigne(1);
        settle();
        QObject::connect(content.get(), &ContentView::notice, content.get(),
                         [this](const QString& text) { told = text.toStdString(); });
    }
    [[nodiscard]] TrackNumbers shown(int at) const { return fieldsOf(row(at).groupe).numerosPistes; }
    std::string told;
};

TEST_F(TrackNumbersTest, AreOneNamedStepInTheRowAndInTheFields) {
    EXPECT_EQ(editTrackNumbers(content->rows(), 1, {{1, 2}, {2, 1}, {3, 7}}), std::nullopt);
    EXPECT_EQ(content->undoName(), QStringLiteral("Edit Recorder Number"));
    EXPECT_THAT(content->modifications().numerosPistes(), ElementsAre(Pair(1, 2), Pair(2, 1), Pair(3, 7)));
    EXPECT_TRUE(content->modifications().aDesModifications());
    EXPECT_THAT(content->rows().editedFields(1), ElementsAre(RowField::trackNumbers));
    content->undo();
    EXPECT_FALSE(content->hasUnsavedChanges());
    EXPECT_THAT(content->modifications().numerosPistes(), ElementsAre(Pair(1, 1), Pair(2, 2)));
    content->redo();
    EXPECT_THAT(shown(1), ElementsAre(Pair(1, 2), Pair(2, 1), Pair(3, 7)));

    const auto problem = editTrackNumbers(content->rows(), 1, {{3, 2}});
    ASSERT_TRUE(problem);
    EXPECT_EQ(problem->toStdString(), "Tracks 1 and 3 of B cannot both have the recorder number 2.");
    content->modifications().setTrackNumbers({{3, 2}});
    EXPECT_EQ(told, problem->toStdString());
    EXPECT_THAT(content->modifications().numerosPistes(), ElementsAre(Pair(1, 2), Pair(2, 1), Pair(3, 7)));
    EXPECT_THAT(shown(1), ElementsAre(Pair(1, 2), Pair(2, 1), Pair(3, 7)));
    EXPECT_TRUE(editTrackNumbers(content->rows(), 9, {{1, 5}})) << "there is no such row";
    content->modifications().setTrackNumbers({{3, 9}});
    EXPECT_THAT(shown(1), ElementsAre(Pair(1, 2), Pair(2, 1), Pair(3, 9)));
}

TEST_F(TrackNumbersTest, StayPendingWhenTheFolderIsReadAgainAndAreSavedAndPutBack) {
    const Bytes poly = readFile(folder / "B.wav");
    const Bytes mono = readFile(folder / "A_T02.wav");
    const Bytes untouched = readFile(folder / "A_T01.wav");
    ASSERT_EQ(editTrackNumbers(content->rows(), 1, {{1, 2}, {2, 1}, {3, 7}}), std::nullopt);
    ASSERT_EQ(editTrackNumbers(content->rows(), 0, {{2, 9}}), std::nullopt);
    content->modifications().setTrackName(2, "Anna");
    recorderFile().write(folder / "0.wav");
    content->reload();
    settle();
    EXPECT_THAT(shown(1), ElementsAre(Pair(1, 3), Pair(2, 9)));
    EXPECT_THAT(shown(2), ElementsAre(Pair(1, 2), Pair(2, 1), Pair(3, 7)));

    content->saveAll();
    settle();
    EXPECT_FALSE(content->hasUnsavedChanges());
    EXPECT_EQ(readFile(folder / "A_T01.wav"), untouched);
    const std::vector<GroupeFichiers> saved = onDisk();
    EXPECT_THAT(fieldsOf(saved.at(1)).numerosPistes, ElementsAre(Pair(1, 3), Pair(2, 9)));
    EXPECT_THAT(fieldsOf(saved.at(2)).numerosPistes, ElementsAre(Pair(1, 2), Pair(2, 1), Pair(3, 7)));
    EXPECT_THAT(fieldsOf(saved.at(2)).nomsPistes, ElementsAre(Pair(1, "Boom"), Pair(2, "Anna"), Pair(3, "")));

    content->undo();
    dialogs.answer(0);
    settle();
    EXPECT_EQ(readFile(folder / "B.wav"), poly);
    EXPECT_EQ(readFile(folder / "A_T02.wav"), mono);
}

TEST_F(TrackNumbersTest, AreGivenUpWhereTheFileHasGivenTheNumberAwayMeanwhile) {
    ASSERT_EQ(editTrackNumbers(content->rows(), 1, {{3, 7}}), std::nullopt);
    recorderFile({.tracks = {{7, 1, "Boom"}, {2, 2, "Lav"}}}, {.channels = 3}, 4800).write(folder / "B.wav");
    content->reload();
    settle();
    EXPECT_THAT(shown(1), ElementsAre(Pair(1, 7), Pair(2, 2)));
    EXPECT_THAT(content->rows().editedRows(), IsEmpty());
}

}  // namespace
}  // namespace dravik
