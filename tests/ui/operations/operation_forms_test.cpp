#include "ui/operations/operation_forms.h"

#include "tests/ui/operations/operations_stage.h"

#include <QLineEdit>

namespace dravik {
namespace {

using testing::ElementsAre;

/// What the forms send to the controller and show of it.
using OperationFormsTest = test::OperationsStage;

TEST_F(OperationFormsTest, MarksOfTracksAreOfTheTakeThatIsShown) {
    const struct {
        void (Commands::*command)();
        int row;  // of the list of tracks
        std::function<bool(const TrackChoices&)> isChosen;
    } cases[] = {
        {&Commands::dravikSplitAudio, 0, [](const TrackChoices& one) { return one.stereoTracks12; }},
        {&Commands::dravikSplitAudio, 2, [](const TrackChoices& one) { return one.monoCanaux == std::set{0}; }},
        {&Commands::dravikRemoveTracks, 1, [](const TrackChoices& one) { return one.supprimes == std::set{1}; }},
        {&Commands::dravikMergeAudio, 1, [](const TrackChoices& one) { return one.exclus == std::set{1}; }},
    };
    for (const auto& [command, row, isChosen] : cases) {
        show(command);
        goTo(takes(), 0);
        const QModelIndex mark = tracks().model()->index(row, 0);
        const auto shown = [&] { return mark.data(Qt::CheckStateRole).toInt(); };
        const int before = shown();
        ASSERT_FALSE(isChosen(operations->currentChoices()));
        spaceOn(tracks(), row);
        EXPECT_TRUE(isChosen(operations->currentChoices()));
        EXPECT_NE(shown(), before);
        if (operations->items().size() < 2) continue;
        goTo(takes(), 1);
        EXPECT_FALSE(isChosen(operations->currentChoices()));
        EXPECT_EQ(shown(), before) << "the other take has its own";
        goTo(takes(), 0);
        EXPECT_NE(shown(), before);
        click(QStringLiteral("Use for 1 More Take"));
        goTo(takes(), 1);
        EXPECT_TRUE(isChosen(operations->currentChoices()));
        EXPECT_NE(shown(), before);
    }
}

TEST_F(OperationFormsTest, AFileThatCannotBeReadIsLeftOutOfAMergeByItsMark) {
    test::writeFile(folder / "S_3.wav", "no audio");
    open();
    show(&Commands::dravikMergeAudio);
    EXPECT_FALSE(operations->canRun());
    EXPECT_TRUE(operations->preview().rows.at(0).problem.contains(QStringLiteral("S_3.wav cannot be read")));
    goTo(takes(), 0);
    EXPECT_EQ(tracks().model()->rowCount(), 3);
    spaceOn(tracks(), 2);
    planned();
    EXPECT_EQ(operations->preview().rows.at(0).target, "S_merge.wav");
    EXPECT_TRUE(operations->canRun());
    spaceOn(tracks(), 2);
    planned();
    EXPECT_FALSE(operations->canRun());
}

TEST_F(OperationFormsTest, AnOrderIsOfTheTakeThatIsShown) {
    show(&Commands::dravikReorderTracks);
    goTo(takes(), 0);
    auto& order = child<TrackOrderList>();
    goTo(order.view(), 0);
    press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_THAT(operations->currentChoices().ordre, ElementsAre(1, 0));
    goTo(takes(), 1);
    EXPECT_THAT(order.order(), ElementsAre(0, 1));
    goTo(takes(), 0);
    EXPECT_THAT(order.order(), ElementsAre(1, 0));
    EXPECT_FALSE(operations->preserveTrackNumbers());
    click(QStringLiteral("Preserve Track Numbers"));
    EXPECT_TRUE(operations->preserveTrackNumbers());
}

TEST_F(OperationFormsTest, ATakeThatIsLeftOutStaysOutWhateverTheExportIs) {
    show(&Commands::dravikExportAudio);
    spaceOn(takes(), 1);
    choose(QStringLiteral("Channels"), QStringLiteral("Mono"));
    choose(QStringLiteral("Mixed with"), QStringLiteral("2  Lav"));
    EXPECT_EQ(operations->exportState().modeCanaux, ExportAudioChannelMode::mono);
    EXPECT_EQ(operations->exportState().pisteMonoSource2, 1);
    press(Qt::Key_PageDown, Qt::ControlModifier);
    press(Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_EQ(operations->tab(), OperationsTab::export_);
    EXPECT_FALSE(operations->items()[1].checked);
    EXPECT_EQ(operations->checkedCount(), 2);
    EXPECT_EQ(seen<QComboBox>(QStringLiteral("Channels")).currentText(), "Mono") << "and the form is as it was left";
}

TEST_F(OperationFormsTest, NamesAreMadeOfTheBlocksAndRulesThatAreChosen) {
    show(&Commands::dravikBatchRename);
    clearPattern();
    click(QStringLiteral("Scene"));
    EXPECT_EQ(patternText(operations->renameChoice().pattern), "{scene}");
    click(QStringLiteral("Keep Both wherever names collide"));
    click(QStringLiteral("Keep separators of empty values"));
    click(QStringLiteral("Copy && Rename"));
    const BatchRenameChoice& choice = operations->renameChoice();
    EXPECT_TRUE(choice.keepBoth);
    EXPECT_EQ(choice.emptyTokens, OperationsAudio::EmptyTokens::leaveSeparators);
    EXPECT_EQ(choice.mode, OperationAudioBatchRenameMode::copyAndRename);
    press(Qt::Key_Left);
    EXPECT_EQ(choice.mode, OperationAudioBatchRenameMode::renameInPlace) << "the one before, with an arrow";
}

TEST_F(OperationFormsTest, ATapeIsTypedForOneFolder) {
    show(&Commands::dravikExportReport);
    auto& tape = seen<QLineEdit>(QStringLiteral("Tape"));
    tape.setFocus();
    press(Qt::Key_7);
    EXPECT_EQ(operations->reportTape(), "7");
    click(QStringLiteral("CSV"));
    EXPECT_FALSE(operations->reportForm().inclureCSV);
    const test::TempFolder other;
    test::recorderFile({}, {}, 4800).write(other / "B1.wav");
    open(other.path());
    EXPECT_EQ(operations->reportTape(), "");
    EXPECT_EQ(tape.text(), "") << "the next folder is of another day";
    EXPECT_FALSE(operations->reportForm().inclureCSV);
}

}  // namespace
}  // namespace dravik
