#include "ui/folder_browser.h"

#include "app/text.h"
#include "base/abandoned_work.h"
#include "tests/app/folder_workspace.h"
#include "tests/app/main_window_stage.h"
#include "tests/support/files.h"

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

namespace dravik::test {
namespace {

namespace fs = std::filesystem;

class FolderBrowserTest : public testing::Test {
  protected:
    void SetUp() override {
        for (const char* name : {"Day 10", "Day 9/inner/deep", ".hidden"})
            fs::create_directories(stage.folder / name);
        recorderFile().write(stage.folder / "Day 9" / "a.wav");
        previousHome = qgetenv("HOME");
        qputenv("HOME", stage.settingsFolder.path().c_str());
        workspace.insert({stage.folder.path(), "CARD", 500'000'000, 1'000'000'000, true});
        theme = std::make_unique<Theme>(stage.settings);
        browser = std::make_unique<FolderBrowser>(*stage.content, workspace, stage.dialogs, stage.files, *theme);
        browser->resize(260, 400);
        browser->show();
        browser->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(browser.get()));
        browser->focusTree();
        select("Day 9");
    }
    void TearDown() override {
        browser.reset();
        ASSERT_TRUE(waitForAbandonedWork(std::chrono::seconds(20)));
        qputenv("HOME", previousHome);
    }

    [[nodiscard]] QString current() const {
        return browser->tree().currentIndex().data(FolderTreeModel::pathRole).toString();
    }
    [[nodiscard]] bool isCurrent(const fs::path& folder) const { return current() == toQt(folder); }
    void select(const char* name) {
        browser->reveal(stage.folder / name);
        ASSERT_TRUE(QTest::qWaitFor([&] { return isCurrent(stage.folder / name); }, 20'000)) << current().toStdString();
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&browser->tree(), key, modifiers); }
    void openCurrent() {
        const QString folder = current();
        key(Qt::Key_Return);
        ASSERT_TRUE(QTest::qWaitFor([&] { return stage.content->folderLabel() == folder; }, 20'000));
        stage.settle();
    }
    /// The names below the card as the tree shows them.
    [[nodiscard]] QStringList shown() const {
        const QAbstractItemModel& model = *browser->tree().model();
        QStringList names;
        const QModelIndex card = model.index(1, 0);
        for (int row = 0; row < model.rowCount(card); ++row)
            names << model.index(row, 0, card).data().toString();
        return names;
    }
    [[nodiscard]] QLineEdit* openField() const { return qobject_cast<QLineEdit*>(QApplication::focusWidget()); }
    void typeName(const QString& name) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return openField() != nullptr; }, 20'000));
        openField()->selectAll();
        QTest::keyClicks(openField(), name);
        QTest::keyClick(openField(), Qt::Key_Return);
    }

    QByteArray previousHome;
    MainWindowStage stage;
    CardWorkspace workspace;
    std::unique_ptr<Theme> theme;
    std::unique_ptr<FolderBrowser> browser;
};

TEST_F(FolderBrowserTest, FoldersAreInNaturalOrderWithTheNumberOfTheirFiles) {
    EXPECT_EQ(shown(), (QStringList{"Day 9", "Day 10"}));
    const QModelIndex day = browser->tree().currentIndex();
    EXPECT_TRUE(QTest::qWaitFor([&] { return day.data(FolderTreeModel::audioFilesRole).toInt() == 1; }, 20'000));
    EXPECT_EQ(day.parent().data().toString(), "CARD");
    EXPECT_TRUE(day.parent().data(Qt::ToolTipRole).toString().contains("500.0 MB free"));
}

TEST_F(FolderBrowserTest, ReturnAndClickOpenTheFolderThroughTheGate) {
    openCurrent();
    EXPECT_EQ(stage.content->dossierSelectionne(), stage.folder / "Day 9");
    ASSERT_EQ(stage.rowCount(), 1U);
    stage.edit(0, RowField::scene, "99");
    QTreeView& tree = browser->tree();
    const QModelIndex other = tree.currentIndex().siblingAtRow(1);
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualRect(other).center());
    ASSERT_TRUE(QTest::qWaitFor([&] { return stage.dialogs.asked.size() == 1; }, 20'000));
    EXPECT_EQ(stage.dialogs.asked.front().title, "Unsaved modifications");
    EXPECT_EQ(stage.content->dossierSelectionne(), stage.folder / "Day 9");
}

TEST_F(FolderBrowserTest, RevealUnfoldsDownToTheFolder) {
    browser->reveal(stage.folder / "Day 9" / "inner" / "deep");
    EXPECT_TRUE(QTest::qWaitFor([&] { return isCurrent(stage.folder / "Day 9" / "inner" / "deep"); }, 20'000));
    browser->reveal(stage.folder / "gone");  // as near as it gets
    EXPECT_TRUE(QTest::qWaitFor([&] { return isCurrent(stage.folder.path()); }, 20'000));
    browser->reveal(stage.folder / ".hidden");
    EXPECT_TRUE(QTest::qWaitFor([&] { return isCurrent(stage.folder / ".hidden"); }, 20'000));
    browser->reveal(stage.folder / ".gone");
    EXPECT_TRUE(QTest::qWaitFor([&] { return isCurrent(stage.folder.path()); }, 20'000));
}

TEST_F(FolderBrowserTest, WhatComesAndGoesOutsideIsShownAndTheSelectionStays) {
    fs::create_directory(stage.folder / "Day 1");
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown() == QStringList({"Day 1", "Day 9", "Day 10"}); }, 20'000));
    fs::remove(stage.folder / "Day 10");
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown() == QStringList({"Day 1", "Day 9"}); }, 20'000));
    EXPECT_TRUE(isCurrent(stage.folder / "Day 9"));
}

TEST_F(FolderBrowserTest, WhenAFolderGoesTheOneItLayInIsMarkedAndNotItsNeighbour) {
    openCurrent();
    fs::rename(stage.folder / "Day 9", workspace.trash / "Day 9");
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown() == QStringList{"Day 10"}; }, 20'000));
    EXPECT_TRUE(isCurrent(stage.folder.path())) << current().toStdString();
}

TEST_F(FolderBrowserTest, ANewFolderIsMarkedWhereverItIsMadeAndAsksForItsName) {
    for (const char* parent : {"Day 10", "Day 9", "Day 9/inner", "."}) {
        const fs::path folder = (stage.folder / parent).lexically_normal();
        browser->reveal(parent == std::string_view(".") ? stage.folder.path() : folder);
        ASSERT_TRUE(QTest::qWaitFor([&] { return QDir(current()) == QDir(toQt(folder)); }, 20'000)) << parent;
        key(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
        // Keys that come before the field do not take the wish back.
        key(Qt::Key_Shift);
        key(Qt::Key_X);
        ASSERT_TRUE(QTest::qWaitFor([&] { return openField() != nullptr; }, 20'000)) << parent;
        EXPECT_EQ(browser->tree().currentIndex().data().toString(), "New Folder") << parent;
        EXPECT_EQ(browser->tree().selectionModel()->selectedIndexes(), QModelIndexList{browser->tree().currentIndex()});
        EXPECT_TRUE(stage.content->enSaisie());
        QTest::qWait(400);  // the notice that the folder has changed comes, and changes nothing
        ASSERT_NE(openField(), nullptr) << parent;
        QTest::keyClick(openField(), Qt::Key_Escape);
        EXPECT_EQ(browser->tree().currentIndex().data().toString(), "New Folder") << parent;
        EXPECT_FALSE(stage.content->enSaisie());
    }
}

TEST_F(FolderBrowserTest, RefreshReadsTheTakesToo) {
    openCurrent();
    int readings = 0;
    QObject::connect(&stage.content->listing(), &FolderListing::finished, browser.get(), [&] { ++readings; });
    key(Qt::Key_F5);
    EXPECT_TRUE(QTest::qWaitFor([&] { return readings == 1; }, 20'000));
}

TEST_F(FolderBrowserTest, ANewFolderIsNamedAtOnce) {
    browser->tree().setCurrentIndex(browser->tree().currentIndex().parent());
    key(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    typeName("Day 11");
    EXPECT_TRUE(QTest::qWaitFor([&] { return isCurrent(stage.folder / "Day 11"); }, 20'000));
    EXPECT_TRUE(fs::is_directory(stage.folder / "Day 11"));
    EXPECT_FALSE(fs::exists(stage.folder / "New Folder"));
    EXPECT_FALSE(stage.content->enSaisie());
}

TEST_F(FolderBrowserTest, TheOpenFolderIsFollowedWhenItIsRenamedAndKeptWhenItHoldsUnsavedEdits) {
    openCurrent();
    stage.edit(0, RowField::scene, "99");
    key(Qt::Key_F2);
    typeName("Monday");
    ASSERT_TRUE(QTest::qWaitFor([&] { return stage.dialogs.asked.size() == 1; }, 20'000));
    EXPECT_EQ(stage.dialogs.asked.front().text,
              "“Day 9” holds takes with unsaved changes. Save or discard them first.");
    key(Qt::Key_Delete);
    ASSERT_EQ(stage.dialogs.asked.size(), 2U);
    EXPECT_EQ(stage.dialogs.asked.back().title, "Move to Trash Refused");
    EXPECT_TRUE(fs::exists(stage.folder / "Day 9" / "a.wav"));

    stage.content->undo();
    key(Qt::Key_F2);
    typeName("Monday");
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return stage.content->dossierSelectionne() == stage.folder / "Monday"; }, 20'000));
    stage.settle();
    EXPECT_EQ(stage.rowCount(), 1U);
    EXPECT_TRUE(QTest::qWaitFor([&] { return isCurrent(stage.folder / "Monday"); }, 20'000));
}

TEST_F(FolderBrowserTest, TheTrashIsAskedForByTheFoldersNameAndAFailureIsTold) {
    key(Qt::Key_Delete);
    ASSERT_EQ(stage.dialogs.asked.size(), 1U);
    EXPECT_TRUE(stage.dialogs.asked.front().title.contains("Day 9"));
    EXPECT_TRUE(stage.dialogs.asked.front().destructive);
    stage.dialogs.answer(1);
    EXPECT_TRUE(fs::exists(stage.folder / "Day 9"));

    workspace.trashFails = true;
    key(Qt::Key_Delete);
    stage.dialogs.answer(0);
    ASSERT_TRUE(QTest::qWaitFor([&] { return stage.dialogs.asked.size() == 3; }, 20'000));
    EXPECT_EQ(stage.dialogs.asked.back().text, "There is no trash.");

    workspace.trashFails = false;
    key(Qt::Key_Delete);
    stage.dialogs.waiting.erase(stage.dialogs.waiting.begin());
    stage.dialogs.answer(0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown() == QStringList{"Day 10"}; }, 20'000));
    EXPECT_TRUE(fs::exists(workspace.trash / "Day 9"));
}

TEST_F(FolderBrowserTest, ADuplicateAppearsWhenItIsComplete) {
    key(Qt::Key_D, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(browser->commands().isCopying());
    EXPECT_TRUE(QTest::qWaitFor([&] { return isCurrent(stage.folder / "Day 9 copy"); }, 20'000));
    EXPECT_FALSE(browser->commands().isCopying());
    EXPECT_EQ(readFile(stage.folder / "Day 9 copy" / "a.wav"), readFile(stage.folder / "Day 9" / "a.wav"));
}

TEST_F(FolderBrowserTest, AVolumeIsNeitherRenamedNorTrashedButEjected) {
    QTreeView& tree = browser->tree();
    tree.setCurrentIndex(tree.currentIndex().parent());
    key(Qt::Key_Delete);
    key(Qt::Key_D, Qt::ControlModifier | Qt::ShiftModifier);
    key(Qt::Key_F2);
    EXPECT_TRUE(stage.dialogs.asked.empty());
    EXPECT_FALSE(browser->commands().isCopying());
    EXPECT_EQ(openField(), nullptr);
    key(Qt::Key_R, Qt::ControlModifier | Qt::AltModifier);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !workspace.revealed().empty(); }, 20'000));
    EXPECT_EQ(workspace.revealed().front(), stage.folder.path());
    key(Qt::Key_E, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return tree.model()->rowCount() == 1; }, 20'000));
    EXPECT_EQ(workspace.ejected(), std::vector<fs::path>{stage.folder.path()});
}

}  // namespace
}  // namespace dravik::test
