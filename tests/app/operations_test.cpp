#include "app/operation_eligibility.h"
#include "app/operations_run.h"
#include "base/file_error.h"

#include <QSignalSpy>
#include <QTest>
#include <semaphore>

#include <gmock/gmock.h>

namespace dravik {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

InfoFichier file(const std::string& name, int channels) {
    InfoFichier made;
    made.url = "/day/" + name;
    made.nom = made.url.stem();
    made.format = name.ends_with(".wav") ? "WAV" : "MP3";
    made.estRiff = made.format == "WAV";
    made.channels = channels;
    made.sampleRate = 48000;
    made.bits = 24;
    made.dureeSecondes = 10;
    return made;
}

GroupeFichiers take(std::vector<InfoFichier> files) {
    GroupeFichiers groupe;
    groupe.nom = files.front().nom;
    groupe.estPoly = files.size() == 1;
    groupe.fichiers = Fichiers(std::move(files));
    return groupe;
}

const GroupeFichiers poly = take({file("poly.wav", 8)});
const GroupeFichiers mono = take({file("mono.wav", 1)});
const GroupeFichiers set = take({file("set_1.wav", 1), file("set_2.wav", 1)});
const GroupeFichiers copy = take({file("copy.mp3", 2)});

TEST(OperationEligibility, EachTabTakesWhatItIsFor) {
    const std::vector<GroupeFichiers> folder = {poly, mono, set, copy};
    const struct {
        OperationsTab tab;
        std::vector<int> rows;
    } cases[] = {{OperationsTab::merge, {2}},           {OperationsTab::split, {0}},
                 {OperationsTab::deleteTracks, {0}},    {OperationsTab::reorderTracks, {0, 2}},
                 {OperationsTab::rename, {0, 1, 2, 3}}, {OperationsTab::export_, {0, 1, 2}},
                 {OperationsTab::report, {0, 1, 2, 3}}};
    for (const auto& [tab, rows] : cases) {
        EXPECT_EQ(eligibleRows(tab, folder, {}, true), rows) << rawValue(tab).toStdString();
        EXPECT_TRUE(OperationMenuAvailability::of(folder).can(tab));
        EXPECT_TRUE(emptyState(tab, folder, {}, true).isEmpty());
    }
    EXPECT_THAT(eligibleRows(OperationsTab::export_, folder, {3, 1}, false), ElementsAre(1));
    EXPECT_THAT(eligibleRows(OperationsTab::report, folder, {3}, false), ElementsAre(0, 1, 2, 3));
    GroupeFichiers uneven = take({file("u_1.wav", 1), file("u_2.wav", 1)});
    uneven.fichiers.edit([](std::vector<InfoFichier>& files) { files.back().sampleRate = 44100; });
    EXPECT_FALSE(isEligible(OperationsTab::merge, uneven)) << "no two fit";
}

TEST(OperationEligibility, AFolderOfMonoFilesEnablesMergeAndSaysWhyItCannotSplit) {
    const std::vector<GroupeFichiers> folder = {mono, set};
    const auto available = OperationMenuAvailability::of(folder);
    EXPECT_TRUE(available.canMergeAudio);
    EXPECT_FALSE(available.canSplitAudio);
    EXPECT_FALSE(available.canRemoveTracks);
    const EmptyState split = emptyState(OperationsTab::split, folder, {0}, false);
    EXPECT_EQ(split.title, "No Poly WAV Files to Split in this Folder");
    EXPECT_EQ(split.message, "Split requires poly WAV files with multiple tracks.");
    EXPECT_EQ(emptyState(OperationsTab::split, folder, {0}, true).message, "No compatible poly file found.");
    const EmptyState selection = emptyState(OperationsTab::merge, folder, {0}, false);
    EXPECT_EQ(selection.title, "");
    EXPECT_EQ(selection.message, "No compatible current file or mono group.");
    EXPECT_TRUE(emptyState(OperationsTab::merge, folder, {1}, false).isEmpty());
    EXPECT_EQ(OperationMenuAvailability::of({}), OperationMenuAvailability());
    EXPECT_EQ(emptyState(OperationsTab::report, {}, {}, true).title, "No Files Available for Sound Report");
}

TEST(OperationMenuState, TellsOfAChangeOnly) {
    OperationMenuState state;
    QSignalSpy changes(&state, &OperationMenuState::changed);
    state.set(OperationMenuAvailability::of({mono, set}));
    state.set(OperationMenuAvailability::of({set, mono}));
    EXPECT_EQ(changes.count(), 1);
    state.set(OperationMenuAvailability::of({poly}));
    EXPECT_EQ(changes.count(), 2);
}

TEST(OperationsTab, GoesRoundAndIsStoredByItsName) {
    EXPECT_EQ(nextTab(OperationsTab::report), OperationsTab::merge);
    EXPECT_EQ(previousTab(OperationsTab::merge), OperationsTab::report);
    EXPECT_EQ(nextTab(std::nullopt), OperationsTab::merge);
    for (const OperationsTab tab : allOperationsTabs) {
        EXPECT_EQ(operationsTab(rawValue(tab)), tab);
        EXPECT_EQ(previousTab(nextTab(tab)), tab);
    }
    EXPECT_EQ(rawValue(OperationsTab::export_), "export");
    EXPECT_EQ(operationsTab(QStringLiteral("other")), std::nullopt);
    EXPECT_EQ(runningText(OperationsTab::export_, 3), "Exporting 3");
    EXPECT_EQ(runningText(OperationsTab::reorderTracks, 3), "Reordering Tracks...");
}

class OperationsRunTest : public testing::Test {
  protected:
    static OperationAudioResult result(bool success, const std::string& made = {}) {
        OperationAudioResult one;
        one.success = success;
        if (!made.empty()) one.destinationURLs = {made};
        return one;
    }
    static OperationsRun::Work gives(std::vector<bool> successes) {
        return [successes = std::move(successes)](const TaskContext&) {
            OperationOutcome outcome;
            for (const bool success : successes)
                outcome.results.push_back(result(success, success ? "/day/made.wav" : ""));
            return outcome;
        };
    }
    const OperationCompletionInfo& completed() {
        EXPECT_TRUE(QTest::qWaitFor([this] { return !run.isRunning(); }, 20'000));
        return std::get<OperationCompletionInfo>(*run.overlay());
    }

    Background background;
    OperationsRun run{background};
};

TEST_F(OperationsRunTest, EndsWithTheTitleThatItsResultsEarn) {
    const struct {
        std::vector<bool> successes;
        const char* title;
    } cases[] = {{{true, true}, "Export Complete"},
                 {{true, false, true}, "Operation Completed with Errors"},
                 {{false}, "Export Failed"}};
    for (const auto& [successes, title] : cases) {
        ASSERT_TRUE(run.start(OperationsTab::export_, 3, QStringLiteral("take"), gives(successes)));
        EXPECT_EQ(std::get<OperationWorking>(*run.overlay()).message, "Exporting 3");
        EXPECT_EQ(completed().title(), title);
        EXPECT_EQ(completed().results.size(), successes.size());
        EXPECT_FALSE(run.start(OperationsTab::merge, 1, {}, gives({true}))) << "the result is still shown";
        run.dismiss();
        EXPECT_FALSE(run.overlay());
    }
}

TEST_F(OperationsRunTest, OneRunsAtATimeTellsHowFarItIsAndStopsWhenItIsCancelled) {
    std::binary_semaphore begun{0};
    ASSERT_TRUE(run.start(OperationsTab::merge, 1, {}, [&](const TaskContext& task) -> OperationOutcome {
        task.advance({1, 4, "take_merge.wav"});
        begun.release();
        while (!task.token->isCancelled())
            std::this_thread::yield();
        throw Cancelled();
    }));
    begun.acquire();
    EXPECT_FALSE(run.start(OperationsTab::split, 1, {}, gives({true})));
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return std::get<OperationWorking>(*run.overlay()).fraction.has_value(); }, 20'000));
    EXPECT_EQ(std::get<OperationWorking>(*run.overlay()).fraction, 0.25);
    EXPECT_EQ(std::get<OperationWorking>(*run.overlay()).fileName, "take_merge.wav");
    run.cancel();
    EXPECT_EQ(completed().title(), "Operation Cancelled");
    EXPECT_THAT(completed().results, IsEmpty());
}

TEST_F(OperationsRunTest, WhatStopsTheWholeRunIsItsOneResult) {
    QSignalSpy ended(&run, &OperationsRun::ended);
    ASSERT_TRUE(
        run.start(OperationsTab::split, 1, QStringLiteral("12-T01"), [](const TaskContext&) -> OperationOutcome {
            throw FileError("there is no room", "/day/12-T01.wav", std::errc::no_space_on_device);
        }));
    EXPECT_EQ(completed().title(), "Split Failed");
    ASSERT_EQ(completed().results.size(), 1U);
    EXPECT_EQ(completed().results[0].sourceName, "12-T01");
    EXPECT_THAT(completed().results[0].message, testing::HasSubstr("there is no room"));
    EXPECT_EQ(ended.count(), 1);
}

}  // namespace
}  // namespace dravik
