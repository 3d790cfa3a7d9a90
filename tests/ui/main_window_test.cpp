#include "ui/main_window.h"

#include "app/text.h"
#include "tests/support/files.h"
#include "tests/ui/window_stage.h"

#include <QAction>
#include <QDropEvent>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QToolBar>
#include <QUrl>

#include <gmock/gmock.h>

namespace dravik {
namespace {

using test::namesIn;
using test::readFile;
using test::recorderFile;
using test::WindowStage;

/// A mono set and two poly takes in the window.
class MainWindowTest : public testing::Test, public WindowStage {
  protected:
    MainWindowTest() {
        for (int i = 1; i <= 2; ++i) {
            const std::string n = std::to_string(i);
            recorderFile({.scene = "1", .tracks = {{i, 1, "Mic " + n}}}, {}, 4800, static_cast<unsigned>(i))
                .write(folder / ("A_T0" + n + ".wav"));
        }
        recorderFile({.scene = "2"}, {.channels = 2}, 4800).write(folder / "B.wav");
        recorderFile({.scene = "3"}, {.channels = 2}, 4800).write(folder / "C.wav");
    }
    QAction* action(const QString& start) const {
        for (QAction* one : window->findChildren<QAction*>()) {
            if (one->text().startsWith(start)) return one;
        }
        ADD_FAILURE() << "no action " << qPrintable(start);
        return nullptr;
    }
    void drop(const std::vector<std::filesystem::path>& paths) {
        QMimeData data;
        QList<QUrl> urls;
        for (const std::filesystem::path& path : paths)
            urls << QUrl::fromLocalFile(toQt(path));
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(500, 300), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(window.get(), &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent event(QPointF(500, 300), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(window.get(), &event);
        settle();
    }
};

TEST_F(MainWindowTest, ADaysWorkWithTheKeyboardAlone) {
    open();
    window->takeTable().focusTable();
    key(Qt::Key_Home, Qt::ControlModifier);
    key(Qt::Key_Down);
    ASSERT_TRUE(QTest::qWaitFor([&] { return content->fichierSelectionne() == folder / "B.wav"; }));
    settle();
    // Name, circled, wild, scene: type into it, go to the row below, type again.
    for (int column = 0; column < 3; ++column)
        key(Qt::Key_Right);
    type(QStringLiteral("2A"));
    key(Qt::Key_Return);
    type(QStringLiteral("3A"));
    key(Qt::Key_Return);
    EXPECT_EQ(row(1).groupe.scene, "2A");
    EXPECT_EQ(row(2).groupe.scene, "3A");
    EXPECT_EQ(action(QStringLiteral("Save All"))->text(), QStringLiteral("Save All (2)"));
    EXPECT_TRUE(window->isWindowModified());
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(row(2).groupe.scene, "3");
    key(Qt::Key_S, Qt::ControlModifier);
    settle();
    EXPECT_EQ(onDisk().at(1).scene, "2A");
    EXPECT_EQ(onDisk().at(2).scene, "3");
    EXPECT_FALSE(window->isWindowModified());
    key(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_TRUE(terminated);
}

TEST_F(MainWindowTest, ClosingItAsksFirstWhenSomethingIsUnsaved) {
    open();
    edit(1, RowField::scene, "2A");
    window->close();
    EXPECT_TRUE(window->isVisible());
    press(QStringLiteral("Cancel"));
    EXPECT_FALSE(terminated);
    EXPECT_EQ(row(1).groupe.scene, "2A");

    window->close();
    QTRY_VERIFY(alert() != nullptr);
    QTest::keyClick(alert(), Qt::Key_Escape);
    QTRY_VERIFY(alert() == nullptr);
    EXPECT_FALSE(terminated) << "Escape is Cancel";

    window->close();
    press(QStringLiteral("Save"));
    QTRY_VERIFY(terminated);
    EXPECT_EQ(onDisk().at(1).scene, "2A");
}

TEST_F(MainWindowTest, TakesWhatIsDroppedOnIt) {
    drop({folder / "C.wav"});
    EXPECT_EQ(content->fichierSelectionne(), folder / "C.wav");
    EXPECT_EQ(rowCount(), 3U);
    test::TempFolder other;
    recorderFile().write(other / "D.wav");
    edit(1, RowField::scene, "2A");
    drop({other.path()});
    press(QStringLiteral("Discard changes"));
    settle();
    EXPECT_EQ(content->dossierSelectionne(), other.path());
    EXPECT_EQ(rowCount(), 1U);
}

TEST_F(MainWindowTest, RemembersItsLayout) {
    action(QStringLiteral("Folder Browser"))->trigger();
    action(QStringLiteral("Table Only"))->trigger();
    window.reset();
    EXPECT_FALSE(settings.value(settings::layoutNavigateurVisible));
    EXPECT_EQ(settings.value(settings::layoutVueActive), QStringLiteral("table"));
    window = std::make_unique<MainWindow>(
        MainWindow::Services{*content, settings, commands, asking, workspace, files, termination, windows, theme});
    window->show();
    EXPECT_FALSE(window->takeEditor().isVisible());
    EXPECT_TRUE(window->takeTable().isVisible());
}

TEST_F(MainWindowTest, NamesEveryControlForThoseWhoDoNotSeeIt) {
    open();
    content->selectionnerLigne(1);
    settle();
    for (const QWidget* widget : window->findChildren<QWidget*>()) {
        const bool takesKeys = widget->focusPolicy() != Qt::NoFocus && widget->isVisibleTo(window.get());
        if (!takesKeys || widget->objectName().startsWith(QStringLiteral("qt_"))) continue;
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        const bool speaksForItself =
            (button != nullptr && !button->text().isEmpty()) || qobject_cast<const QLabel*>(widget) != nullptr;
        const bool named = !widget->accessibleName().isEmpty() || speaksForItself;
        EXPECT_TRUE(named) << widget->metaObject()->className() << " " << qPrintable(widget->objectName());
    }
}

}  // namespace
}  // namespace dravik
