#include "ui/operations/operations_window.h"

#include "tests/support/files.h"
#include "tests/ui/window_stage.h"
#include "ui/operations/export_form.h"
#include "ui/operations/operation_overlay.h"
#include "ui/operations/rename_pattern_editor.h"
#include "ui/operations/take_check_list.h"
#include "ui/operations/track_checks.h"
#include "ui/operations/track_order_list.h"
#include "ui/status_line.h"

#include <QProcess>

#include <gmock/gmock.h>

namespace dravik {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::Not;

/// The window as a user has it, over two poly takes and a mono set.
class OperationsWindowTest : public testing::Test, public test::WindowStage {
  protected:
    OperationsWindowTest() {
        test::Ixml poly;
        poly.tracks = {{1, 1, "Boom"}, {2, 2, "Lav"}};
        for (const char* name : {"A1.wav", "A2.wav"})
            test::recorderFile(poly, {.channels = 2}, 4800).write(folder / name);
        test::Ixml mono;
        mono.familyUid = "set";
        for (const char* name : {"S_1.wav", "S_2.wav"})
            test::recorderFile(mono, {}, 4800).write(folder / name);
        open();
    }
    template <typename Child>
    Child& child(const QString& name = {}) {
        Child* found = window->operationsWindow().findChild<Child*>(name);
        EXPECT_NE(found, nullptr);
        return *found;
    }
    /// Opens the tab by its menu's command, for all takes.
    void show(void (Commands::*command)()) {
        emit(commands.*command)();
        operations->setAppliquerTous(true);
        planned();
    }
    void planned() {
        ASSERT_TRUE(QTest::qWaitFor([this] { return !operations->isPlanning(); }));
    }
    /// Presses the button, waits for the end and reads what stands on the card.
    QString run() {
        planned();
        auto& button = child<QPushButton>(QStringLiteral("run"));
        EXPECT_TRUE(button.isEnabled()) << operations->preview().problems.toStdString();
        QTest::mouseClick(&button, Qt::LeftButton);
        EXPECT_TRUE(QTest::qWaitFor(
            [this] {
                const auto& overlay = operations->running().overlay();
                return overlay && std::holds_alternative<OperationCompletionInfo>(*overlay);
            },
            20'000));
        settle();
        auto& overlay = child<OperationOverlay>();
        EXPECT_TRUE(overlay.isVisible());
        const auto info = std::get<OperationCompletionInfo>(*operations->running().overlay());
        QTest::keyClick(&overlay, Qt::Key_Return);
        EXPECT_FALSE(overlay.isVisible());
        return info.title();
    }
    [[nodiscard]] std::vector<std::string> names() const { return test::namesIn(folder.path()); }
};

TEST_F(OperationsWindowTest, RunsEachTrackOperationOnTheTakesOfTheFolder) {
    show(&Commands::dravikMergeAudio);
    EXPECT_EQ(run(), "Merge Complete");
    EXPECT_THAT(names(), Contains("S_merge.wav"));
    EXPECT_EQ(row(content->selectedRow()).groupe.nom, "S_merge") << "what was made is selected";

    show(&Commands::dravikSplitAudio);
    operations->setAllChecked(false);
    operations->setChecked(0, true);
    EXPECT_EQ(run(), "Split Complete");
    EXPECT_THAT(names(), IsSupersetOf({"A1_split_T01_Boom.wav", "A1_split_T02_Lav.wav"}));
    EXPECT_THAT(names(), Not(Contains("A2_split_T01_Boom.wav")));

    show(&Commands::dravikRemoveTracks);
    EXPECT_FALSE(child<QPushButton>(QStringLiteral("run")).isEnabled()) << "nothing is to be removed";
    operations->setCurrentItem(0);
    for (TrackChecks* checks : window->operationsWindow().findChildren<TrackChecks*>()) {
        if (checks->isVisible()) emit checks->checkedChanged({1}, false);
    }
    EXPECT_EQ(run(), "Delete Tracks Complete");
    EXPECT_THAT(names(), Contains("A1_del.wav"));

    show(&Commands::dravikReorderTracks);
    operations->setCurrentItem(0);
    emit child<TrackOrderList>().orderChanged({1, 0});
    EXPECT_EQ(run(), "Reorder Tracks Complete");
    EXPECT_THAT(names(), Contains("A1_order.wav"));
}

TEST_F(OperationsWindowTest, ExportsRenamesAndReports) {
    show(&Commands::dravikExportAudio);
    ExportAudioSessionState state = operations->exportState();
    state.format = ExportAudioFormat::mp3;
    emit child<ExportForm>().stateChanged(state.allowed());
    EXPECT_EQ(run(), "Export Complete");
    EXPECT_THAT(names(), IsSupersetOf({"A1_export.mp3", "A2_export.mp3", "S_export.mp3"}));

    show(&Commands::dravikBatchRename);
    operations->setAllChecked(false);
    operations->setChecked(0, true);
    emit child<RenamePatternEditor>().patternChanged(parsePattern("{project}-{originalName}"));
    EXPECT_EQ(run(), "Rename Complete");
    EXPECT_THAT(names(), Contains("Film-A1.wav"));

    show(&Commands::dravikExportReport);
    EXPECT_FALSE(child<QPushButton>(QStringLiteral("run")).isEnabled());
    const test::TempFolder out;
    operations->setDestination(out.path());
    EXPECT_EQ(run(), "Sound Report Complete");
    const std::string name = folder.path().filename().native() + "_SoundReport";
    EXPECT_THAT(test::namesIn(out.path()), ElementsAre(name + ".csv", name + ".pdf"));
    QProcess text;
    text.start(QStringLiteral("pdftotext"), {QString::fromStdString((out / (name + ".pdf")).native()), "-"});
    if (!text.waitForFinished()) GTEST_SKIP() << "pdftotext is not here";
    EXPECT_TRUE(text.readAll().contains("Film-A1"));
}

TEST_F(OperationsWindowTest, KeepsItsTabAndHandsItsProgressToTheMainWindowWhenItIsClosed) {
    show(&Commands::dravikSplitAudio);
    OperationsWindow& operationsWindow = window->operationsWindow();
    std::atomic<bool> held{true};
    files.before([&](test::Call call, int) {
        while (call == test::Call::create && held)
            std::this_thread::yield();
    });
    operations->run();
    QTest::keyClick(&operationsWindow, Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(operations->tab(), OperationsTab::split) << "switching is refused while it runs";
    operationsWindow.close();
    EXPECT_FALSE(operations->afficherOperations());
    held = false;
    ASSERT_TRUE(QTest::qWaitFor([this] { return !operations->running().isRunning(); }, 20'000));
    settle();
    EXPECT_EQ(window->statusLine().message(), "Split Complete");
    emit commands.dravikShowOperations();
    EXPECT_TRUE(operationsWindow.isVisible());
    EXPECT_TRUE(child<OperationOverlay>().isVisible()) << "the results are still to be read";
}

TEST_F(OperationsWindowTest, SaysWhyThereIsNothingToDoAndOffersTheFolder) {
    content->selectionnerLigne(2);
    emit commands.dravikSplitAudio();
    auto& all = child<QPushButton>(QStringLiteral("emptyAll"));
    EXPECT_TRUE(all.isVisible());
    QTest::mouseClick(&all, Qt::LeftButton);
    EXPECT_EQ(child<TakeCheckList>().rows().size(), 2U);
    EXPECT_TRUE(child<TakeCheckList>().isVisible());
}

}  // namespace
}  // namespace dravik
