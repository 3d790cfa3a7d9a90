#include "app/operations_model.h"

#include "app/rename_patterns.h"
#include "platform/lame/lame_encoder.h"
#include "platform/media/lazy_aac_encoders.h"
#include "platform/media/lazy_sample_decoder.h"
#include "platform/soxr/soxr_converter.h"
#include "report/report_document.h"
#include "tests/app/folder_workspace.h"
#include "tests/app/main_window_stage.h"
#include "tests/support/files.h"

#include <QSignalSpy>

#include <gmock/gmock.h>

namespace dravik {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// Pages that need no font.
class PlainPages final : public PdfRenderer {
  public:
    [[nodiscard]] Bytes render(const ReportDocument&, const PageSetup&, const TaskContext&) const override {
        return Bytes(100);
    }
};

/// The window's controller over a day of two poly takes and a set of monos.
class OperationsModelTest : public testing::Test, public test::MainWindowStage {
  protected:
    OperationsModelTest() {
        for (const char* name : {"A1.wav", "A2.wav"})
            poly(name, {"Boom", "Lav"});
        for (const int track : {1, 2}) {
            test::Ixml ixml;
            ixml.familyUid = "set";
            ixml.tracks = {{track, 1, "Mic " + std::to_string(track)}};
            test::WavBuilder().fmt().ixml(ixml).audio(4800).write(folder / ("S_" + std::to_string(track) + ".wav"));
        }
    }
    void poly(const std::string& name, const std::vector<std::string>& tracks) const {
        test::Ixml ixml;
        ixml.tracks.clear();
        for (const std::string& track : tracks) {
            const int number = static_cast<int>(ixml.tracks.size()) + 1;
            ixml.tracks.push_back({number, number, track});
        }
        test::WavBuilder()
            .fmt({.channels = static_cast<std::uint16_t>(tracks.size())})
            .ixml(ixml)
            .audio(4800)
            .write(folder / name);
    }
    void show(OperationsTab tab, bool all) {
        open();
        model.setAfficherOperations(true);
        ASSERT_TRUE(model.setTab(tab));
        model.setAppliquerTous(all);
        planned();
    }
    void planned() {
        ASSERT_TRUE(QTest::qWaitFor([this] { return !model.isPlanning(); }, 20'000));
    }
    [[nodiscard]] QStringList targets() const {
        QStringList targets;
        for (const OperationPreviewRow& row : model.preview().rows)
            targets << row.target + row.problem;
        return targets;
    }
    const OperationCompletionInfo& ran() {
        model.run();
        return ended();
    }
    const OperationCompletionInfo& ended() {
        EXPECT_TRUE(QTest::qWaitFor([this] { return !model.running().isRunning(); }, 20'000));
        settle();
        return std::get<OperationCompletionInfo>(*model.running().overlay());
    }

    test::CardWorkspace workspace;
    const std::unique_ptr<SampleRateConverters> converters = makeSoxrConverters();
    const std::unique_ptr<AacEncoders> aac = makeLazyAacEncoders();
    const std::unique_ptr<MP3Encoders> mp3 = makeLameEncoders();
    const std::unique_ptr<SampleDecoder> decoder = makeLazySampleDecoder();
    const PlainPages pages;
    const ExportServices exports{files, *converters, *aac, *mp3, *decoder};
    OperationsModel model{{*content, settings, dialogs, workspace, commands, background, {exports, pages}}};
};

TEST_F(OperationsModelTest, ShowsWhatEachTabWouldMakeOfAllTakes) {
    const struct {
        OperationsTab tab;
        QStringList targets;
    } cases[] = {
        {OperationsTab::merge, {"S_merge.wav"}},
        {OperationsTab::split,
         {"A1_split_T01_Boom.wav", "A1_split_T02_Lav.wav", "A2_split_T01_Boom.wav", "A2_split_T02_Lav.wav"}},
        {OperationsTab::deleteTracks, {}},
        {OperationsTab::export_, {"A1_export.wav", "A2_export.wav", "S_export.wav"}},
    };
    for (const auto& [tab, wanted] : cases) {
        show(tab, true);
        EXPECT_EQ(targets(), wanted) << targets().join(' ').toStdString();
        EXPECT_EQ(model.canRun(), tab != OperationsTab::deleteTracks);
    }
    EXPECT_EQ(test::namesIn(folder.path()).size(), 4U) << "a preview makes nothing";
}

TEST_F(OperationsModelTest, WorksOnTheSelectionUnlessAllTakesAreAskedFor) {
    show(OperationsTab::split, false);
    EXPECT_EQ(model.emptyState().message, "No compatible current poly file.");
    model.setSelectedRows({1, 2});
    ASSERT_TRUE(QTest::qWaitFor([this] { return !model.items().empty(); }, 20'000));
    ASSERT_EQ(model.items().size(), 1U);
    EXPECT_EQ(model.items()[0].name, "A2");
    EXPECT_THAT(model.items()[0].summary.toStdString(), HasSubstr("2 tracks · 48"));
    model.setAppliquerTous(true);
    EXPECT_EQ(model.items().size(), 2U);
    EXPECT_EQ(model.currentItem(), 1) << "the take that was shown stays";
    model.setChecked(0, false);
    planned();
    EXPECT_EQ(targets(), QStringList({"A2_split_T01_Boom.wav", "A2_split_T02_Lav.wav"}));
    model.setAllChecked(false);
    planned();
    EXPECT_FALSE(model.canRun());
}

TEST_F(OperationsModelTest, MakesTheFilesSelectsThemAndRefusesAnotherRunBefore) {
    show(OperationsTab::split, true);
    QSignalSpy notices(&model, &OperationsModel::notice);
    QSignalSpy selected(content.get(), &ContentView::rowsToSelect);
    model.setCurrentChoices({{}, {1}, true, {}, {0, 1}});
    model.copyChoicesToSimilar();
    planned();
    model.run();
    EXPECT_TRUE(content->operationsEnCours());
    model.run();
    EXPECT_FALSE(model.setTab(OperationsTab::merge));
    ASSERT_EQ(notices.count(), 2);
    EXPECT_EQ(notices[1][0].toString(), "Finish the current operation first");
    const OperationCompletionInfo& info = ended();
    EXPECT_EQ(info.title(), "Split Complete");
    EXPECT_EQ(info.successMessage, "Created 4 files.");
    ASSERT_EQ(info.results.size(), 2U);
    EXPECT_EQ(info.results[0].message, "Created 2 split files: A1_split_T02_Lav.wav, A1_split_T01-T02.wav");
    EXPECT_FALSE(content->operationsEnCours());
    ASSERT_EQ(selected.count(), 1);
    std::vector<std::string> names;
    for (const int row : selected[0][0].value<std::vector<int>>())
        names.push_back(this->row(row).groupe.nom);
    EXPECT_THAT(names, testing::UnorderedElementsAre("A1_split_T01-T02", "A1_split_T02_Lav", "A2_split_T01-T02",
                                                     "A2_split_T02_Lav"));
}

TEST_F(OperationsModelTest, OneOfThreeTakesThatFailsLeavesTheOthersDone) {
    poly("A3.wav", {"Boom", "Lav"});
    show(OperationsTab::split, true);
    EXPECT_TRUE(model.canRun());
    test::appendToFile(folder / "A2.wav", "axml");  // now it ends in half a chunk
    const OperationCompletionInfo& info = ran();
    EXPECT_EQ(info.title(), "Operation Completed with Errors");
    ASSERT_EQ(info.results.size(), 3U);
    EXPECT_FALSE(info.results[1].success);
    EXPECT_EQ(test::namesIn(folder.path()).size(), 9U);
}

TEST_F(OperationsModelTest, SavesBeforeItRunsAndNotWhileItDoes) {
    show(OperationsTab::split, true);
    edit(0, RowField::scene, "99");
    dialogs.answers = {{1}, {0}};
    planned();
    model.run();
    EXPECT_FALSE(model.running().isRunning()) << "the question was answered with Cancel";
    model.run();
    ASSERT_TRUE(QTest::qWaitFor([this] { return model.running().isRunning(); }, 20'000));
    edit(1, RowField::scene, "100");
    bool saved = true;
    content->saveAll([&](bool ok) { saved = ok; });
    EXPECT_FALSE(saved);
    EXPECT_EQ(ended().title(), "Split Complete");
    const std::vector<GroupeFichiers> made = onDisk();
    const auto first = std::find_if(made.begin(), made.end(), [](const GroupeFichiers& groupe) {
        return groupe.fichiers.front().url.filename() == "A1_split_T01_Boom.wav";
    });
    ASSERT_NE(first, made.end());
    EXPECT_EQ(first->scene, "99");
}

TEST_F(OperationsModelTest, RenamesWithEditsInTheNamesAndConflictsShown) {
    show(OperationsTab::rename, true);
    ASSERT_EQ(model.items().size(), 4U);
    model.setRenamePattern(parsePattern("{scene}"));
    planned();
    EXPECT_EQ(model.preview().problems, "4 filename conflicts");
    EXPECT_TRUE(model.preview().rows[0].canKeepBoth);
    EXPECT_FALSE(model.canRun());
    model.setRenamePattern(parsePattern("{scene}_{trackName}_{originalName}"));
    model.setChecked(2, false);
    model.setChecked(3, false);
    edit(1, RowField::scene, "77");
    ASSERT_TRUE(QTest::qWaitFor([this] { return targets().contains("77_Boom-Lav_A2.wav"); }, 20'000))
        << targets().join(QLatin1Char(0x20)).toStdString();
    EXPECT_EQ(model.preview().summary, "2 files will be renamed");
    dialogs.answers = {{0}};
    model.run();
    ASSERT_TRUE(QTest::qWaitFor([this] { return model.running().overlay().has_value(); }, 20'000));
    EXPECT_EQ(ended().successMessage, "2 renamed successfully.");
    EXPECT_THAT(test::namesIn(folder.path()),
                ElementsAre("12A_Boom-Lav_A1.wav", "77_Boom-Lav_A2.wav", "S_1.wav", "S_2.wav"));
    EXPECT_GE(content->selectedRow(), 0) << "the loaded take went along";
    EXPECT_EQ(content->undoName(), "") << "the save before it was into files of other names";
    EXPECT_EQ(patternText(rememberedRenamePattern(settings)), "{scene}_{trackName}_{originalName}");
}

TEST_F(OperationsModelTest, CopiesAndReportsNeedAFolder) {
    const test::TempFolder out;
    show(OperationsTab::report, true);
    EXPECT_EQ(model.preview().problems, "No destination folder selected");
    dialogs.choices = {out.path()};
    model.chooseDestination();
    planned();
    ASSERT_EQ(model.preview().rows.size(), 2U);
    const OperationCompletionInfo& info = ran();
    EXPECT_EQ(info.title(), "Sound Report Complete");
    EXPECT_EQ(info.successMessage, "PDF and CSV created successfully.");
    EXPECT_EQ(info.results[0].message, "PDF report created");
    ASSERT_TRUE(QTest::qWaitFor([this] { return !workspace.revealed().empty(); }, 20'000));
    EXPECT_EQ(workspace.revealed()[0].extension(), ".pdf");

    model.running().dismiss();
    ASSERT_TRUE(model.setTab(OperationsTab::rename));
    model.setAppliquerTous(true);
    model.setRenameMode(OperationAudioBatchRenameMode::copyAndRename);
    planned();
    EXPECT_EQ(model.preview().problems, "Choose a destination folder.");
    EXPECT_TRUE(model.needsDestination());
}

TEST_F(OperationsModelTest, CancelInTheSecondOfThreeExportsLeavesTheFirst) {
    poly("A3.wav", {"Boom", "Lav"});
    show(OperationsTab::export_, true);
    model.setAllChecked(false);
    for (const int item : {0, 1, 2})
        model.setChecked(item, true);
    planned();
    int created = 0;
    files.before([&](test::Call call, int) {
        if (call != test::Call::create || ++created != 2) return;
        QMetaObject::invokeMethod(
            &model, [this] { model.running().cancel(); }, Qt::BlockingQueuedConnection);
    });
    EXPECT_EQ(ran().title(), "Operation Cancelled");
    EXPECT_THAT(test::namesIn(folder.path()),
                ElementsAre("A1.wav", "A1_export.wav", "A2.wav", "A3.wav", "S_1.wav", "S_2.wav"));
}

TEST_F(OperationsModelTest, ATakeThatIsLeftOutStaysSoWhateverElseIsChosenOrRenamed) {
    show(OperationsTab::export_, true);
    ExportAudioSessionState other = model.exportState();
    other.format = ExportAudioFormat::mp3;
    model.setChecked(0, false);
    model.setExportState(other);  // of a form that has not heard of it
    content->setOperationsEnCours(true);
    std::filesystem::rename(folder / "A1.wav", folder / "B1.wav");
    content->setOperationsEnCours(false);
    content->filesRenamed({{folder / "A1.wav", folder / "B1.wav"}});
    settle();
    ASSERT_TRUE(model.setTab(OperationsTab::split));
    ASSERT_TRUE(model.setTab(OperationsTab::export_));
    const auto renamed = std::find_if(model.items().begin(), model.items().end(),
                                      [](const OperationsModel::Item& item) { return item.name == "B1"; });
    ASSERT_NE(renamed, model.items().end());
    EXPECT_FALSE(renamed->checked);
    EXPECT_EQ(model.checkedCount(), 2);
}

TEST_F(OperationsModelTest, DoesWhatWasConfirmedWhateverIsChosenWhileItSaves) {
    show(OperationsTab::split, true);
    model.setChecked(1, false);
    edit(0, RowField::name, "Z1");
    ASSERT_TRUE(QTest::qWaitFor([this] { return targets().contains("Z1_split_T01_Boom.wav"); }, 20'000));
    model.run();
    ASSERT_EQ(dialogs.asked.size(), 1U);
    EXPECT_FALSE(model.setTab(OperationsTab::rename));
    model.setChecked(1, true);
    dialogs.answer(0);
    model.setAfficherOperations(false);  // the window is closed while it saves
    ASSERT_TRUE(QTest::qWaitFor([this] { return model.running().overlay().has_value(); }, 20'000));
    EXPECT_EQ(ended().title(), "Split Complete");
    EXPECT_THAT(test::namesIn(folder.path()),
                ElementsAre("A2.wav", "S_1.wav", "S_2.wav", "Z1.wav", "Z1_split_T01_Boom.wav", "Z1_split_T02_Lav.wav"));
}

TEST_F(OperationsModelTest, ShowsNewNamesMadeOfNamesThatAreStillPending) {
    show(OperationsTab::rename, true);
    model.setAllChecked(false);
    model.setChecked(0, true);
    model.setRenamePattern(parsePattern("{originalName}_x"));
    edit(0, RowField::name, "Z1");
    ASSERT_TRUE(QTest::qWaitFor([this] { return targets().contains("Z1_x.wav"); }, 20'000))
        << targets().join(' ').toStdString();
    EXPECT_EQ(model.preview().summary, QString::fromUtf8("1 file selected · 1 file will be renamed"));
}

TEST_F(OperationsModelTest, AnotherFolderHasNoneOfTheChoices) {
    show(OperationsTab::deleteTracks, true);
    TrackChoices second = model.currentChoices();
    second.supprimes = {1};
    model.setCurrentChoices(second);
    model.setChecked(1, false);
    planned();
    EXPECT_EQ(targets(), QStringList({"A1_del.wav"}));
    open();  // the next card is mounted at the same path
    planned();
    EXPECT_EQ(targets(), QStringList());
    EXPECT_EQ(model.checkedCount(), 2);
}

TEST_F(OperationsModelTest, QuittingAsksWhileItRuns) {
    show(OperationsTab::split, true);
    model.run();
    termination.applicationShouldTerminate();
    ASSERT_EQ(dialogs.asked.size(), 1U);
    EXPECT_FALSE(terminated);
    dialogs.answer(1);
    ASSERT_TRUE(QTest::qWaitFor([this] { return terminated; }, 20'000));
    EXPECT_FALSE(content->operationsEnCours());
}

TEST_F(OperationsModelTest, CommandsOpenTheirTabAndTheMenuKnowsWhatMakesSense) {
    open();
    ASSERT_TRUE(QTest::qWaitFor([this] { return model.menuState().availability().canSplitAudio; }, 20'000));
    EXPECT_TRUE(model.menuState().availability().canMergeAudio);
    QSignalSpy presented(&model, &OperationsModel::presentRequested);
    emit commands.dravikRemoveTracks();
    EXPECT_EQ(model.tab(), OperationsTab::deleteTracks);
    EXPECT_EQ(model.operationsTabDemandee(), OperationsTab::deleteTracks);
    emit commands.dravikOperationsNextTab();
    EXPECT_EQ(model.tab(), OperationsTab::reorderTracks);
    emit commands.dravikOperationsPreviousTab();
    emit commands.dravikShowOperations();
    EXPECT_EQ(model.tab(), OperationsTab::deleteTracks);
    EXPECT_EQ(model.operationsTabDemandeID(), 4);
    EXPECT_EQ(presented.count(), 4);
}

}  // namespace
}  // namespace dravik
