#include "ui/main_window.h"

#include "app/text.h"
#include "tests/support/files.h"
#include "tests/ui/window_stage.h"
#include "ui/floating_views.h"
#include "ui/status_line.h"

#include <QAction>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QToolBar>
#include <QTreeView>
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
    ASSERT_TRUE(QTest::qWaitFor([&] { return content->fichierSelectionne() == folder / "B.wav"; }, 20'000));
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

TEST_F(MainWindowTest, AsksBeforeATimecodeThatIsNoneIsLostWithTheWindow) {
    open();
    content->selectionnerLigne(1);
    settle();
    QLineEdit* timecode = nullptr;
    for (QLineEdit* line : window->takeEditor().findChildren<QLineEdit*>()) {
        if (line->accessibleName() == QStringLiteral("Start timecode")) timecode = line;
    }
    ASSERT_NE(timecode, nullptr);
    timecode->setFocus();
    timecode->selectAll();
    type(QStringLiteral("1:2:3"));
    key(Qt::Key_Q, Qt::ControlModifier);
    QTRY_VERIFY(alert() != nullptr);
    EXPECT_THAT(alert()->informativeText().toStdString(), testing::HasSubstr("1:2:3"));
    QTest::keyClick(alert(), Qt::Key_Return);
    QTRY_VERIFY(alert() == nullptr);
    EXPECT_FALSE(terminated);
    EXPECT_TRUE(timecode->hasFocus());
    EXPECT_EQ(timecode->text(), QStringLiteral("1:2:3"));
    window->close();
    press(QStringLiteral("Quit"));
    QTRY_VERIFY(terminated);
}

TEST_F(MainWindowTest, IsOfUseAt900By600) {
    test::writeFile(folder / "D.mp3", "its editor says in two lines why nothing can be changed");
    open();
    content->selectionnerLigne(3);
    settle();
    EXPECT_LE(window->minimumSizeHint().width(), 900);
    EXPECT_LE(window->minimumSizeHint().height(), 600);
    window->resize(900, 600);
    QCoreApplication::processEvents();
    const auto* table = window->takeTable().findChild<QTreeView*>();
    const auto rowIsVisible = [&](int row) {
        return table->viewport()->rect().contains(table->visualRect(table->model()->index(row, 0)));
    };
    EXPECT_TRUE(rowIsVisible(2)) << "three rows at the least";
    for (const QLineEdit* line : window->takeEditor().findChildren<QLineEdit*>()) {
        const QRect shown(line->mapTo(window.get(), QPoint()), line->size());
        EXPECT_TRUE(window->rect().contains(shown)) << qPrintable(line->accessibleName());
        QTRY_VERIFY2(line->visibleRegion().boundingRect().size() == line->size(), qPrintable(line->accessibleName()));
    }
}

TEST_F(MainWindowTest, ACutOffRecordingIsToldWithTheCounts) {
    open();
    EXPECT_FALSE(window->statusLine().counts().contains(QStringLiteral("warning")));
    test::TempFolder other;
    recorderFile().write(other / "D.wav");
    std::filesystem::resize_file(other / "D.wav", std::filesystem::file_size(other / "D.wav") - 1000);
    recorderFile().write(other / "E.wav");
    content->gererActionProtegee(OuvrirDossier{other.path()});
    settle();
    EXPECT_TRUE(window->statusLine().counts().endsWith(QStringLiteral(" · 1 take with a warning")))
        << qPrintable(window->statusLine().counts());
}

TEST_F(MainWindowTest, CountsStayBesideWhateverIsTold) {
    open();
    const QString counts = QStringLiteral("3 takes · 4 files");
    StatusLine& status = window->statusLine();
    EXPECT_TRUE(status.counts().startsWith(counts)) << qPrintable(status.counts());
    emit content->notice(QStringLiteral("Told."));
    EXPECT_EQ(status.message(), QStringLiteral("Told."));
    edit(1, RowField::scene, "2A");
    key(Qt::Key_S, Qt::ControlModifier);
    settle();
    EXPECT_EQ(status.message(), QStringLiteral("Saved"));
    clock.pass(std::chrono::seconds(2));
    EXPECT_EQ(status.message(), QStringLiteral("Told.")) << "it was covered before it could be read";
    EXPECT_TRUE(status.counts().startsWith(counts));
    test::TempFolder other;
    recorderFile().write(other / "D.wav");
    MainWindowStage::open(other.path());
    EXPECT_EQ(status.message(), QString()) << "it was about the other folder";
}

TEST(StatusLine, ShowsWhatRunsThenWhatCameLastThenWhatIsUnderThePointer) {
    StatusLine status;
    status.resize(700, 24);
    status.setHint(QStringLiteral("hint"));
    EXPECT_EQ(status.message(), QStringLiteral("hint"));
    status.tell(QStringLiteral("notice"));
    EXPECT_EQ(status.message(), QStringLiteral("notice"));
    status.setSuccess(QStringLiteral("Saved"));
    EXPECT_EQ(status.message(), QStringLiteral("Saved"));
    status.tell(QStringLiteral("newer"));
    EXPECT_EQ(status.message(), QStringLiteral("newer"));
    status.beginWork();
    status.showWork(QStringLiteral("Reading"), 1, 2, false);
    EXPECT_EQ(status.message(), QStringLiteral("newer")) << "it may be over before anybody could read of it";
    status.showWork(QStringLiteral("Saving..."), 1, 2, true);
    EXPECT_EQ(status.message(), QStringLiteral("Saving..."));
    status.endWork();
    EXPECT_EQ(status.message(), QStringLiteral("newer"));
    status.tell({});
    EXPECT_EQ(status.message(), QStringLiteral("Saved"));
    status.setSuccess({});
    status.setHint({});
    EXPECT_EQ(status.message(), QString());
    status.tell(QString(2000, QLatin1Char('x')));
    EXPECT_LT(status.minimumSizeHint().width(), 700) << "a long text does not widen the window";
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

TEST_F(MainWindowTest, PlaybackAndViewActionsHoldWhileNothingIsOpen) {
    for (const char* menu : {"&View", "&Playback", "&Window"}) {
        for (QAction* top : window->menuBar()->actions()) {
            if (top->text() != QLatin1String(menu)) continue;
            for (QAction* one : top->menu()->actions())
                one->trigger();
        }
    }
    action(QStringLiteral("Mixer"))->trigger();
    EXPECT_EQ(settings.value(settings::layoutVueActive), "mixer");
    EXPECT_FALSE(player.enLecture());
}

TEST_F(MainWindowTest, RemembersItsLayout) {
    action(QStringLiteral("Folder Browser"))->trigger();
    action(QStringLiteral("Table"))->trigger();
    window.reset();
    EXPECT_FALSE(settings.value(settings::layoutNavigateurVisible));
    EXPECT_EQ(settings.value(settings::layoutVueActive), QStringLiteral("table"));
    window = makeWindow();
    window->show();
    EXPECT_FALSE(window->takeEditor().isVisible());
    EXPECT_TRUE(window->takeTable().isVisible());
}

TEST_F(MainWindowTest, TheTableAloneLeadsBackToWhatWasThereBefore) {
    emit commands.dravikShowMixerView();
    emit commands.dravikShowTable();
    EXPECT_EQ(settings.value(settings::layoutVueActive), QStringLiteral("table"));
    emit commands.dravikShowTable();
    EXPECT_EQ(settings.value(settings::layoutVueActive), QStringLiteral("mixer"));
}

TEST_F(MainWindowTest, PanesComeBackAsHighAsTheyWereBeforeTheTableWasAlone) {
    auto* down = window->findChild<QSplitter*>(QStringLiteral("down"));
    down->setSizes({150, 300, 250});
    const QList<int> before = down->sizes();
    window->setPresentation(PresentationMode::table);
    QTest::qWait(1);
    window->setPresentation(PresentationMode::waveforms);
    QTest::qWait(1);
    EXPECT_EQ(down->sizes(), before);
}

TEST_F(MainWindowTest, AFloatingWindowThatWasOpenAtTheEndOpensAgainWhereItStoodAndAClosedOneDoesNot) {
    FloatingWindow& mixer = window->floatingViews().mixer();
    emit commands.dravikShowFloatingMixer();
    emit commands.dravikShowFloatingMeters();
    mixer.setGeometry(40, 50, 700, 390);
    mixer.setStaysOnTop(true);
    EXPECT_TRUE(mixer.isVisible());
    window->floatingViews().meters().close();
    window.reset();

    window = makeWindow();
    window->show();
    window->floatingViews().restore();
    FloatingWindow& again = window->floatingViews().mixer();
    EXPECT_TRUE(again.isVisible());
    EXPECT_EQ(again.size(), QSize(700, 390));
    EXPECT_TRUE(again.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_FALSE(window->floatingViews().meters().isVisible());
    EXPECT_FALSE(window->floatingViews().transport().isVisible());
    again.activateWindow();
    QTest::keyClick(&again, Qt::Key_Escape);
    EXPECT_FALSE(again.isVisible());
    EXPECT_FALSE(settings.value(settings::floatingMixerVisible));
}

}  // namespace
}  // namespace dravik
