#include "ui/operations/operations_window.h"

#include "tests/support/samples.h"
#include "tests/ui/operations/operations_stage.h"
#include "ui/status_line.h"

#include <QProcess>

namespace dravik {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::Not;

class OperationsWindowTest : public test::OperationsStage {
  protected:
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
    spaceOn(takes(), 1);
    EXPECT_EQ(run(), "Split Complete");
    EXPECT_THAT(names(), IsSupersetOf({"A1_split_T01_Boom.wav", "A1_split_T02_Lav.wav"}));
    EXPECT_THAT(names(), Not(Contains("A2_split_T01_Boom.wav")));

    show(&Commands::dravikRemoveTracks);
    EXPECT_FALSE(child<QPushButton>(QStringLiteral("run")).isEnabled()) << "nothing is to be removed";
    goTo(takes(), 0);
    spaceOn(tracks(), 1);
    EXPECT_EQ(run(), "Delete Tracks Complete");
    EXPECT_THAT(names(), Contains("A1_del.wav"));

    show(&Commands::dravikReorderTracks);
    goTo(takes(), 0);
    goTo(child<TrackOrderList>().view(), 0);
    press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(run(), "Reorder Tracks Complete");
    EXPECT_THAT(names(), Contains("A1_order.wav"));
}

TEST_F(OperationsWindowTest, WorksOnRealRecordings) {
    DRAVIK_NEEDS_SAMPLES();
    const test::TempFolder day;
    std::size_t copied = 0;
    for (const std::filesystem::path& sample : test::samplesOf(".wav")) {
        const std::string recorder = sample.parent_path().filename().native();
        if (!recorder.starts_with("recorder_")) continue;
        std::filesystem::copy_file(sample, day.path() / sample.filename());
        ++copied;
    }
    open(day.path());
    const std::pair<void (Commands::*)(), const char*> runs[] = {{&Commands::dravikMergeAudio, "Merge Complete"},
                                                                 {&Commands::dravikSplitAudio, "Split Complete"},
                                                                 {&Commands::dravikReorderTracks, nullptr},
                                                                 {&Commands::dravikExportAudio, "Export Complete"}};
    for (const auto& [command, title] : runs) {
        show(command);
        ASSERT_GT(takes().model()->rowCount(), 0);
        if (title == nullptr) {
            goTo(takes(), 0);
            goTo(child<TrackOrderList>().view(), 0);
            press(Qt::Key_Down, Qt::AltModifier);
        }
        EXPECT_EQ(run(), title == nullptr ? "Reorder Tracks Complete" : title);
    }
    EXPECT_GT(test::namesIn(day.path()).size(), copied * 2);
}

TEST_F(OperationsWindowTest, ExportsRenamesAndReports) {
    show(&Commands::dravikExportAudio);
    spaceOn(takes(), 1);
    choose(QStringLiteral("Format"), QStringLiteral("MP3"));
    EXPECT_EQ(run(), "Export Complete");
    EXPECT_THAT(names(), IsSupersetOf({"A1_export.mp3", "S_export.mp3"}));
    EXPECT_THAT(names(), Not(Contains("A2_export.mp3")));

    show(&Commands::dravikBatchRename);
    click(QStringLiteral("No files"));
    spaceOn(takes(), 0);
    clearPattern();
    for (const char* block : {"Project", "Separator", "Original Name"})
        click(QString::fromLatin1(block));
    EXPECT_EQ(run(), "Rename Complete");
    EXPECT_THAT(names(), Contains("Film_A1.wav"));

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
    EXPECT_TRUE(text.readAll().contains("Film_A1"));
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
    auto& all = seen<QPushButton>(QStringLiteral("Use All Takes of the Folder"));
    QTest::mouseClick(&all, Qt::LeftButton);
    EXPECT_EQ(child<TakeCheckList>().rows().size(), 2U);
    EXPECT_TRUE(child<TakeCheckList>().isVisible());
}

}  // namespace
}  // namespace dravik
