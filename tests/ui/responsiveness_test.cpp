#include "tests/support/files.h"
#include "tests/ui/window_stage.h"
#include "ui/main_thread_watch.h"

#include <QClipboard>
#include <QLineEdit>
#include <QTreeView>
#include <iostream>

#include <gtest/gtest.h>

namespace dravik {
namespace {

/// Far more than a user should wait for, so that a busy machine fails nothing; what took longest is printed.
constexpr qint64 muchTooLong = 250;
constexpr int takes = 2000;

class Responsiveness : public testing::Test, public test::WindowStage {
  protected:
    /// Since the step before.
    void expectFluid(const char* step) {
        QCoreApplication::processEvents();
        const WatchedApplication::Longest longest = static_cast<WatchedApplication*>(qApp)->takeLongest();
        std::cout << "    " << step << ": " << longest.milliseconds << " ms, " << longest.what.toStdString() << '\n';
        EXPECT_LE(longest.milliseconds, muchTooLong) << step << ": " << longest.what.toStdString();
    }
};

TEST_F(Responsiveness, NoEventKeepsTheWindowBusyInAFolderOfTwoThousandTakes) {
    static_cast<void>(static_cast<WatchedApplication*>(qApp)->takeLongest());  // of tests before this one
    for (int at = 0; at < takes; ++at) {
        const std::string number = std::to_string(10'000 + at);
        test::recorderFile({.scene = std::to_string(at % 90)}, {}, 48).write(folder / ("T" + number + ".wav"));
    }
    expectFluid("start");
    open();
    ASSERT_EQ(rowCount(), static_cast<std::size_t>(takes));
    expectFluid("open");

    auto& view = *window->takeTable().findChild<QTreeView*>();
    window->takeTable().focusTable();
    key(Qt::Key_Home, Qt::ControlModifier);
    for (int row = 0; row < 20; ++row)
        key(Qt::Key_Down);
    settle();
    expectFluid("go down");
    for (int column = 0; column < 3; ++column)
        key(Qt::Key_Right);
    key(Qt::Key_A, Qt::ControlModifier);
    expectFluid("select all");
    type(QStringLiteral("77"));
    key(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(row(takes - 1).groupe.scene, "77");
    expectFluid("edit all");
    view.sortByColumn(3, Qt::DescendingOrder);
    expectFluid("sort");
    key(Qt::Key_F, Qt::ControlModifier);
    type(QStringLiteral("t119"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->takeTable().visibleRows() == 100; }, 20'000));
    expectFluid("filter");
    key(Qt::Key_Escape);
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->takeTable().visibleRows() == takes; }, 20'000));
    expectFluid("show all");
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_NE(row(takes - 1).groupe.scene, "77");
    expectFluid("undo");
    key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(row(takes - 1).groupe.scene, "77");
    expectFluid("redo");
    content->rows().discardAll();
    expectFluid("discard");
    window->resize(900, 600);
    expectFluid("resize");
}

}  // namespace
}  // namespace dravik
