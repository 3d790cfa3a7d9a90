#include "app/folder_commands.h"

#include "app/text.h"
#include "base/abandoned_work.h"
#include "tests/app/folder_workspace.h"
#include "tests/app/main_window_stage.h"
#include "tests/support/files.h"

#include <atomic>
#include <thread>

#include <gmock/gmock.h>

namespace dravik::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

class FolderCommandsTest : public testing::Test {
  protected:
    void SetUp() override {
        for (const char* name : {"Day 9/inner", "Day 10"})
            fs::create_directories(stage.folder / name);
        recorderFile().write(day / "a.wav");
        recorderFile().write(stage.folder / "Day 10" / "b.wav");
        workspace.insert({stage.folder.path(), "CARD", 500, 1000, true});
        commands = std::make_unique<FolderCommands>(
            FolderCommands::Services{*stage.content, workspace, stage.dialogs, stage.files});
        QObject::connect(commands.get(), &FolderCommands::arrived, commands.get(),
                         [this](const fs::path& folder) { arrived.push_back(folder); });
        QObject::connect(commands.get(), &FolderCommands::created, commands.get(),
                         [this](const fs::path& folder) { created.push_back(folder); });
        QObject::connect(commands.get(), &FolderCommands::contentsChanged, commands.get(),
                         [this](const fs::path& folder) { changed.push_back(folder); });
        QObject::connect(stage.content.get(), &ContentView::notice, commands.get(),
                         [this](const QString& text) { notices << text; });
        commands->askVolumes();
        ASSERT_TRUE(QTest::qWaitFor([this] { return commands->volumes().size() == 1; }, 20'000));
    }
    void TearDown() override {
        workspace.setHangs(false);
        commands.reset();
        ASSERT_TRUE(waitForAbandonedWork(std::chrono::seconds(20)));
    }

    [[nodiscard]] QString lastTitle() const {
        return stage.dialogs.asked.empty() ? QString() : stage.dialogs.asked.back().title;
    }
    [[nodiscard]] bool isOpen(const fs::path& folder) const { return stage.content->dossierSelectionne() == folder; }
    /// The takes of both days, as files that were opened together.
    void openBoth() {
        stage.content->gererActionProtegee(OuvrirDepotFichiers{{day / "a.wav", stage.folder / "Day 10" / "b.wav"}, {}});
        stage.settle();
        ASSERT_EQ(stage.rowCount(), 2U);
    }

    MainWindowStage stage;
    CardWorkspace workspace;
    std::unique_ptr<FolderCommands> commands;
    const fs::path day = stage.folder / "Day 9";
    std::vector<fs::path> arrived, created, changed;
    std::atomic<bool> isHeld = true;  ///< file operations of a copy wait
    QStringList notices;
};

TEST_F(FolderCommandsTest, OfFoldersOpenedInARowTheLastOneIsOpenedThroughTheGate) {
    commands->open(day);
    commands->open(stage.folder / "Day 10");
    ASSERT_TRUE(QTest::qWaitFor([&] { return isOpen(stage.folder / "Day 10"); }, 20'000));
    stage.settle();
    stage.edit(0, RowField::scene, "99");
    commands->open(stage.folder / "Day 10");
    commands->open(day);
    ASSERT_TRUE(QTest::qWaitFor([&] { return lastTitle() == "Unsaved modifications"; }, 20'000));
    EXPECT_EQ(stage.dialogs.asked.size(), 1U);
    EXPECT_TRUE(isOpen(stage.folder / "Day 10"));
    commands->open(stage.folder / "gone");
    stage.dialogs.answer(1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return isOpen(day); }, 20'000));
}

TEST_F(FolderCommandsTest, ANewFolderIsMadeBesideOthersOfItsNameAndWaitsForItsOwn) {
    fs::create_directory(day / "New Folder");
    commands->createIn(day);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !created.empty(); }, 20'000));
    EXPECT_THAT(created, ElementsAre(day / "New Folder 2"));
    EXPECT_THAT(changed, ElementsAre(day));
    commands->createIn(stage.folder / "gone");
    ASSERT_TRUE(QTest::qWaitFor([&] { return lastTitle() == "New Folder Failed"; }, 20'000));
    EXPECT_EQ(created.size(), 1U);
}

TEST_F(FolderCommandsTest, WhatIsShownFollowsARenamedFolder) {
    stage.open(day / "inner");
    commands->rename(day, "Monday");
    ASSERT_TRUE(QTest::qWaitFor([&] { return isOpen(stage.folder / "Monday" / "inner"); }, 20'000));
    EXPECT_THAT(arrived, ElementsAre(stage.folder / "Monday"));
    EXPECT_THAT(changed, ElementsAre(stage.folder.path()));

    stage.open(stage.folder / "Day 10");
    commands->rename(stage.folder / "Monday", "Day 9");
    ASSERT_TRUE(QTest::qWaitFor([&] { return arrived.size() == 2; }, 20'000));
    EXPECT_TRUE(isOpen(stage.folder / "Day 10"));

    openBoth();
    commands->rename(day, "Tuesday");
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return stage.content->rows().indexOfFile(stage.folder / "Tuesday" / "a.wav") >= 0; }, 20'000));
    stage.settle();
    EXPECT_GE(stage.content->rows().indexOfFile(stage.folder / "Day 10" / "b.wav"), 0);
    EXPECT_EQ(stage.rowCount(), 2U);
}

TEST_F(FolderCommandsTest, ARenameThatFailsIsToldAndMovesNothing) {
    stage.open(day);
    commands->rename(day, "Day 10");
    ASSERT_TRUE(QTest::qWaitFor([&] { return lastTitle() == "Rename Failed"; }, 20'000));
    EXPECT_TRUE(isOpen(day));
    EXPECT_TRUE(arrived.empty());
    EXPECT_TRUE(fs::exists(day / "a.wav"));
}

TEST_F(FolderCommandsTest, NothingIsDoneToAFolderWhoseTakesHaveUnsavedChanges) {
    stage.open(day);
    stage.edit(0, RowField::scene, "99");
    const struct {
        const char* title;
        std::function<void()> act;
    } acts[] = {
        {"Rename Refused", [&] { commands->rename(day, "Monday"); }},
        {"Move to Trash Refused", [&] { commands->moveToTrash(day); }},
        {"Eject Refused", [&] { commands->eject(stage.folder.path()); }},
    };
    for (const auto& [title, act] : acts) {
        act();
        EXPECT_EQ(lastTitle(), title);
        EXPECT_TRUE(stage.dialogs.asked.back().text.contains("unsaved changes")) << title;
    }
    EXPECT_TRUE(workspace.ejected().empty());
    EXPECT_TRUE(fs::exists(day / "a.wav"));

    // Another folder is free.
    commands->rename(stage.folder / "Day 10", "Sunday");
    ASSERT_TRUE(QTest::qWaitFor([&] { return fs::exists(stage.folder / "Sunday"); }, 20'000));
    EXPECT_EQ(stage.dialogs.asked.size(), 3U);
    EXPECT_TRUE(stage.content->hasUnsavedChanges());
}

TEST_F(FolderCommandsTest, TakesShownBesideOthersWithUnsavedChangesStayWhereTheyAre) {
    openBoth();
    stage.edit(stage.content->rows().indexOfFile(stage.folder / "Day 10" / "b.wav"), RowField::scene, "99");
    commands->rename(day, "Monday");
    EXPECT_EQ(lastTitle(), "Rename Refused");
    EXPECT_TRUE(fs::exists(day / "a.wav"));
}

TEST_F(FolderCommandsTest, TheTrashIsLookedAtAgainWhenItsQuestionIsAnswered) {
    stage.open(day);
    commands->moveToTrash(day);
    ASSERT_EQ(lastTitle(), "Move “Day 9” to the Trash?");
    EXPECT_TRUE(stage.dialogs.asked.back().destructive);
    stage.edit(0, RowField::scene, "99");
    stage.dialogs.answer(0);
    EXPECT_EQ(lastTitle(), "Move to Trash Refused");
    EXPECT_TRUE(fs::exists(day / "a.wav"));
}

TEST_F(FolderCommandsTest, OfAnOpenFolderInTheTrashItIsSaidThatItIsGone) {
    stage.open(day);
    commands->moveToTrash(day);
    stage.dialogs.answer(0);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !notices.isEmpty(); }, 20'000));
    stage.settle();
    EXPECT_TRUE(notices.back().contains("cannot be reached")) << notices.back().toStdString();
    EXPECT_THAT(arrived, ElementsAre(stage.folder.path()));
    EXPECT_TRUE(fs::exists(workspace.trash / "Day 9"));
}

TEST_F(FolderCommandsTest, VolumesAreNeitherRenamedNorMovedNorCopied) {
    commands->rename(stage.folder.path(), "Monday");
    commands->moveToTrash(stage.folder.path());
    commands->duplicate(stage.folder.path());
    commands->duplicate({});
    EXPECT_FALSE(commands->isCopying());
    EXPECT_TRUE(stage.dialogs.asked.empty());
    commands->eject(day);  // no volume
    commands->reveal(day);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !workspace.revealed().empty(); }, 20'000));
    EXPECT_TRUE(workspace.ejected().empty());
}

TEST_F(FolderCommandsTest, AnOpenVolumeThatIsEjectedIsLetGoAndSaidToBeGone) {
    stage.open(day);
    bool isLetGo = false;
    QObject::connect(commands.get(), &FolderCommands::aboutToEject, commands.get(),
                     [&] { isLetGo = workspace.ejected().empty(); });
    workspace.ejectFails = true;
    commands->eject(stage.folder.path());
    EXPECT_TRUE(isLetGo);
    ASSERT_TRUE(QTest::qWaitFor([&] { return lastTitle() == "Eject Failed"; }, 20'000));
    EXPECT_TRUE(notices.isEmpty());
    ASSERT_TRUE(commands->isEjectable(stage.folder.path()));

    workspace.ejectFails = false;
    commands->eject(stage.folder.path());
    fs::rename(stage.folder.path(), workspace.trash / "gone");
    ASSERT_TRUE(QTest::qWaitFor([&] { return commands->volumes().empty() && !notices.isEmpty(); }, 20'000));
    EXPECT_EQ(stage.rowCount(), 1U);
}

TEST_F(FolderCommandsTest, AVolumeThatDoesNotAnswerKeepsNobodyFromWorkingOrQuitting) {
    workspace.setHangs(true);
    commands->askVolumes();
    commands->askVolumes();
    commands->eject(stage.folder.path());
    commands->eject(stage.folder.path());
    commands->createIn(day);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !created.empty(); }, 20'000));
    EXPECT_TRUE(QTest::qWaitFor([&] { return workspace.ejected().size() == 1; }, 20'000));
    QElapsedTimer quitting;
    quitting.start();
    commands.reset();
    EXPECT_LT(quitting.elapsed(), 10'000);
    EXPECT_FALSE(waitForAbandonedWork(std::chrono::milliseconds(0)));
    workspace.setHangs(false);
    EXPECT_TRUE(waitForAbandonedWork(std::chrono::seconds(20)));
}

TEST_F(FolderCommandsTest, AFolderThatIsBeingCopiedStaysAndACancelledCopyLeavesNothing) {
    stage.files.before([this](Call, int) {
        while (isHeld)
            std::this_thread::yield();
    });
    commands->duplicate(day);
    ASSERT_TRUE(commands->isCopying());
    commands->moveToTrash(stage.folder / "Day 10");
    EXPECT_TRUE(lastTitle().endsWith("to the Trash?"));
    commands->moveToTrash(day / "inner");
    EXPECT_EQ(lastTitle(), "Move to Trash Refused");
    commands->eject(stage.folder.path());
    EXPECT_EQ(lastTitle(), "Eject Refused");
    commands->cancelCopy();
    isHeld = false;
    ASSERT_TRUE(QTest::qWaitFor([&] { return !commands->isCopying(); }, 20'000));
    EXPECT_THAT(namesIn(stage.folder.path()), ElementsAre("Day 10", "Day 9"));
    EXPECT_TRUE(notices.back().contains("nothing is left of the copy"));

    commands->duplicate(day);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !arrived.empty(); }, 20'000));
    EXPECT_THAT(arrived, ElementsAre(stage.folder / "Day 9 copy"));
    EXPECT_EQ(readFile(arrived.front() / "a.wav"), readFile(day / "a.wav"));
}

}  // namespace
}  // namespace dravik::test
