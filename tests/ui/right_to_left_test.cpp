#include "tests/ui/all_windows.h"
#include "ui/counter_view.h"
#include "ui/cue_list.h"
#include "ui/fader.h"
#include "ui/level_meter.h"
#include "ui/list_looks.h"
#include "ui/operations/operations_window.h"
#include "ui/operations/pattern_row.h"
#include "ui/pan_control.h"
#include "ui/take_table_view.h"
#include "ui/transport_bar.h"
#include "ui/waveform_view.h"

#include <QAbstractButton>
#include <QLabel>
#include <QScrollArea>
#include <QSplitter>
#include <QToolButton>
#include <set>

#include <gmock/gmock.h>

namespace dravik {
namespace {

/// Before the windows are made.
struct RightToLeft {
    RightToLeft() { QApplication::setLayoutDirection(Qt::RightToLeft); }
    ~RightToLeft() { QApplication::setLayoutDirection(Qt::LeftToRight); }
    RightToLeft(const RightToLeft&) = delete;
    RightToLeft& operator=(const RightToLeft&) = delete;
};

class RightToLeftWindows : public testing::Test, public RightToLeft, public test::AllWindows {
  protected:
    template <typename Widget>
    [[nodiscard]] Widget& part() const {
        auto* found = window->findChild<Widget*>();
        if (found == nullptr) throw std::runtime_error("there is none");
        return *found;
    }
};

/// Is it cut off by what it stands in? What scrolls shows the rest.
bool isCut(const QWidget& widget) {
    const QWidget* parent = widget.parentWidget();
    for (const QWidget* above = parent; above != nullptr; above = above->parentWidget()) {
        if (qobject_cast<const QAbstractScrollArea*>(above) != nullptr) return false;
    }
    // The toolkit counts one pixel too many when it turns the parts of a splitter round.
    const int spare = qobject_cast<const QSplitter*>(parent) != nullptr ? 1 : 0;
    return !parent->rect().adjusted(0, 0, spare, 0).contains(widget.geometry());
}

TEST_F(RightToLeftWindows, NothingStandsOutsideOfItsPlace) {
    std::set<QString> faults;
    EXPECT_TRUE(visit([&](QWidget& shown, const QString& name) {
        for (const QWidget* one : shown.findChildren<QWidget*>()) {
            if (one->window() != &shown || !one->isVisible() || one->size().isEmpty() || !isCut(*one)) continue;
            faults.insert(QStringLiteral("%1: %2 “%3” at %5 of %6 in %4")
                              .arg(name, QString::fromLatin1(one->metaObject()->className()), one->accessibleName(),
                                   QString::fromLatin1(one->parentWidget()->metaObject()->className()))
                              .arg(one->x())
                              .arg(one->parentWidget()->width()));
        }
        return true;
    }));
    for (const QString& fault : faults)
        ADD_FAILURE() << fault.toStdString();
}

TEST_F(RightToLeftWindows, TimeLevelsAndNamesStillRunFromLeftToRight) {
    open();
    ASSERT_TRUE(QTest::qWaitFor([&] { return player.pret(); }, 20'000));
    window->setPresentation(PresentationMode::mixer);
    EXPECT_EQ(window->layoutDirection(), Qt::RightToLeft);
    EXPECT_EQ(part<WaveformView>().layoutDirection(), Qt::LeftToRight);
    EXPECT_EQ(part<CounterView>().layoutDirection(), Qt::LeftToRight);
    EXPECT_EQ(part<Fader>().layoutDirection(), Qt::LeftToRight);
    EXPECT_EQ(part<PanControl>().layoutDirection(), Qt::LeftToRight);
    EXPECT_EQ(part<LevelMeter>().layoutDirection(), Qt::LeftToRight);
    EXPECT_EQ(part<MixerMeterScaleView>().layoutDirection(), Qt::LeftToRight);
    EXPECT_EQ(window->operationsWindow().findChild<PatternRow*>()->layoutDirection(), Qt::LeftToRight);

    std::map<int, QString> buttons;  // by their place
    for (const QToolButton* button : part<TransportBar>().findChildren<QToolButton*>())
        buttons[button->mapTo(window.get(), QPoint(0, 0)).x()] = button->accessibleName();
    std::vector<QString> moves;
    for (const auto& [x, name] : buttons) {
        if (name.startsWith(QLatin1String("Nudge")) || name.startsWith(QLatin1String("Return"))) moves.push_back(name);
    }
    EXPECT_THAT(moves, testing::ElementsAre(QStringLiteral("Return to beginning"), QStringLiteral("Nudge backward"),
                                            QStringLiteral("Nudge forward")));
}

TEST_F(RightToLeftWindows, KeysForTheNextAndThePreviousCellStayThem) {
    open();
    window->takeTable().focusTable();
    key(Qt::Key_Home, Qt::ControlModifier);
    key(Qt::Key_Down);  // the first one is a set, which the keys unfold
    ASSERT_TRUE(QTest::qWaitFor([&] { return content->selectedRow() == 1; }, 20'000));
    settle();
    const auto* view = window->findChild<TakeTableView*>();
    ASSERT_EQ(QApplication::focusWidget(), view);
    const int before = view->currentIndex().column();
    key(Qt::Key_Left);  // towards the end of the line, which is on the left
    EXPECT_EQ(view->currentIndex().column(), before + 1);
    key(Qt::Key_Right);
    EXPECT_EQ(view->currentIndex().column(), before);
    key(Qt::Key_Down);
    EXPECT_EQ(view->currentIndex().row(), 2);
}

TEST(RightToLeftTexts, AValueIsWrittenInItsOwnDirectionOnItsColumnsSide) {
    const QString take = QStringLiteral("12-T01"), hebrew = QString::fromUtf8("תקציר");
    EXPECT_EQ(textFlags(Qt::AlignLeft, Qt::LeftToRight, take),
              int(Qt::AlignLeft | Qt::AlignAbsolute) | Qt::TextForceLeftToRight);
    EXPECT_EQ(textFlags(Qt::AlignLeft, Qt::RightToLeft, take),
              int(Qt::AlignRight | Qt::AlignAbsolute) | Qt::TextForceLeftToRight);
    EXPECT_EQ(textFlags(Qt::AlignLeft, Qt::LeftToRight, hebrew),
              int(Qt::AlignLeft | Qt::AlignAbsolute) | Qt::TextForceRightToLeft);
    EXPECT_EQ(inItsOwnDirection(take, Qt::LeftToRight), take);
    EXPECT_EQ(inItsOwnDirection(hebrew, Qt::RightToLeft), hebrew);
    EXPECT_NE(inItsOwnDirection(take, Qt::RightToLeft), take);
}

}  // namespace
}  // namespace dravik
