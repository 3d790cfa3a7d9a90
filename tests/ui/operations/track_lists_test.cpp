#include "tests/ui/operations/widget_stage.h"
#include "ui/operations/check_table.h"
#include "ui/operations/take_check_list.h"
#include "ui/operations/track_checks.h"
#include "ui/operations/track_order_list.h"
#include "ui/operations/track_order_view.h"

#include <QScrollBar>
#include <QSignalSpy>

namespace dravik {
namespace {

using testing::ElementsAre;

std::vector<TrackName> tracks(int count) {
    std::vector<TrackName> all;
    for (int numero = 1; numero <= count; ++numero)
        all.push_back({numero, QStringLiteral("T%1").arg(numero)});
    return all;
}

QPoint middleOf(const QTableView& table, int row) { return table.visualRect(table.model()->index(row, 0)).center(); }

class TrackOrder : public test::WidgetStage {
  protected:
    void show(int count) {
        list.setTracks(tracks(count));
        WidgetStage::show(list);
    }
    [[nodiscard]] QString cell(int row, int column) {
        return list.view().model()->index(row, column).data().toString();
    }

    TrackOrderList list{theme};
};

TEST_F(TrackOrder, RowsStandWhereTheyAreLetGoAndSayWhereTheyWere) {
    show(4);
    QSignalSpy changed(&list, &TrackOrderList::orderChanged);
    QWidget& viewport = *list.view().viewport();
    const auto below = [&](int row) { return middleOf(list.view(), row) + QPoint(0, 8); };
    drag(viewport, middleOf(list.view(), 0), below(2));
    EXPECT_THAT(list.order(), ElementsAre(1, 2, 0, 3));
    EXPECT_EQ(cell(2, TrackOrderModel::name), QStringLiteral("T1"));
    EXPECT_EQ(cell(2, TrackOrderModel::before), QStringLiteral("was 1"));
    EXPECT_EQ(cell(3, TrackOrderModel::before), QString());
    EXPECT_EQ(list.view().currentIndex().row(), 2) << "the row goes with it";
    drag(viewport, middleOf(list.view(), 3), QPoint(20, 0));
    EXPECT_THAT(list.order(), ElementsAre(3, 1, 2, 0));
    EXPECT_EQ(changed.count(), 2);
    drag(viewport, middleOf(list.view(), 1), below(1));
    drag(viewport, middleOf(list.view(), 1), below(3), false);
    key(Qt::Key_Escape);
    QTest::mouseRelease(&viewport, Qt::LeftButton, {}, below(3));
    EXPECT_EQ(changed.count(), 2) << "nothing has moved";
    EXPECT_THAT(list.order(), ElementsAre(3, 1, 2, 0));
}

TEST_F(TrackOrder, KeysAndButtonsMoveTheCurrentRow) {
    show(3);
    EXPECT_FALSE(named<QPushButton>(QStringLiteral("Up")).isEnabled());
    EXPECT_FALSE(named<QPushButton>(QStringLiteral("Original Order")).isEnabled());
    list.view().setFocus();
    key(Qt::Key_Up, Qt::AltModifier);
    key(Qt::Key_Down, Qt::AltModifier);
    key(Qt::Key_Down, Qt::AltModifier);
    key(Qt::Key_Down, Qt::AltModifier);
    EXPECT_THAT(list.order(), ElementsAre(1, 2, 0));
    EXPECT_FALSE(named<QPushButton>(QStringLiteral("Down")).isEnabled());
    click(QStringLiteral("Up"));
    EXPECT_THAT(list.order(), ElementsAre(1, 0, 2));
    click(QStringLiteral("Original Order"));
    EXPECT_THAT(list.order(), ElementsAre(0, 1, 2));
    expectNamed();
}

TEST_F(TrackOrder, WhatIsNoOrderOfTheTracksCountsAsTheirOwn) {
    for (const std::vector<int>& wrong : {std::vector<int>{0, 0, 1}, {1, 0}, {0, 1, 3}, {-1, 0, 1}}) {
        list.setTracks(tracks(3), wrong);
        EXPECT_THAT(list.order(), ElementsAre(0, 1, 2));
    }
    list.setTracks({});
    EXPECT_TRUE(list.order().empty());
}

using TrackMarks = test::WidgetStage;

TEST_F(TrackMarks, SpaceMarksWhatIsSelectedAndThePairNeedsTwoTracks) {
    TrackChecks checks(TrackChecks::Meaning::taken, theme);
    checks.setStereoOffered(true);
    checks.setTracks(tracks(12));
    checks.setChecked({1, 40, -1});
    show(checks);
    EXPECT_THAT(checks.checked(), ElementsAre(1));
    QSignalSpy changed(&checks, &TrackChecks::checkedChanged);
    CheckTable& table = checks.table();
    table.setFocus();
    table.setCurrentIndex(table.model()->index(1, 1));
    key(Qt::Key_Down, Qt::ShiftModifier);
    key(Qt::Key_Down, Qt::ShiftModifier);
    key(Qt::Key_Space);
    EXPECT_THAT(checks.checked(), ElementsAre(0, 1, 2));
    key(Qt::Key_Space);
    EXPECT_TRUE(checks.checked().empty());
    table.setCurrentIndex(table.model()->index(0, 0));
    key(Qt::Key_Space);
    EXPECT_TRUE(checks.stereoChecked());
    QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, QPoint(9, middleOf(table, 12).y()));
    EXPECT_THAT(checks.checked(), ElementsAre(11));

    checks.setTracks(tracks(1));
    EXPECT_FALSE(checks.stereoChecked()) << "no pair of one track";
    table.setCurrentIndex(table.model()->index(0, 0));
    key(Qt::Key_Space);
    EXPECT_FALSE(checks.stereoChecked());
    EXPECT_TRUE(checks.checked().empty()) << "marks of tracks that are gone are gone";
    changed.clear();
    click(QStringLiteral("All tracks"));
    EXPECT_THAT(checks.checked(), ElementsAre(0));
    EXPECT_EQ(changed.count(), 1);
    EXPECT_FALSE(named<QPushButton>(QStringLiteral("All tracks")).isEnabled());
    expectNamed();
}

TEST_F(TrackMarks, WhatIsRemovedIsStruckThroughAndSaysSo) {
    TrackChecks checks(TrackChecks::Meaning::removed, theme);
    checks.setTracks(tracks(2));
    checks.setChecked({1});
    const QAbstractItemModel& model = *checks.table().model();
    EXPECT_FALSE(model.index(0, 1).data(Qt::FontRole).value<QFont>().strikeOut());
    EXPECT_TRUE(model.index(1, 1).data(Qt::FontRole).value<QFont>().strikeOut());
    EXPECT_EQ(model.index(1, 1).data(Qt::AccessibleTextRole).toString(), QStringLiteral("T2, will be deleted"));
}

class TakeMarks : public test::WidgetStage {
  protected:
    static std::vector<TakeCheckRow> takes(int count) {
        std::vector<TakeCheckRow> all;
        for (int row = 0; row < count; ++row)
            all.push_back({QStringLiteral("Take %1").arg(row), QStringLiteral("2 tracks"), row % 2 == 0});
        return all;
    }

    TakeCheckList list{theme};
};

TEST_F(TakeMarks, OneOfManyIsMarkedAlone) {
    list.setRows(takes(20'000));
    show(list);
    EXPECT_TRUE(says(QStringLiteral("10,000 of 20,000 takes")));
    QSignalSpy drawn(list.table().model(), &QAbstractItemModel::dataChanged);
    QSignalSpy changed(&list, &TakeCheckList::checkedChanged);
    QSignalSpy current(&list, &TakeCheckList::currentChanged);
    list.setCurrentRow(15'000);
    EXPECT_EQ(current.count(), 0) << "not by the user";
    list.table().setFocus();
    key(Qt::Key_Space);
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0][0].toInt(), 15'000);
    EXPECT_FALSE(changed[0][1].toBool());
    EXPECT_EQ(drawn.count(), 1);
    EXPECT_TRUE(says(QStringLiteral("9,999 of 20,000 takes")));
    key(Qt::Key_Down);
    ASSERT_EQ(current.count(), 1);
    EXPECT_EQ(current[0][0].toInt(), 15'001);
    expectNamed();
}

TEST_F(TakeMarks, AllIsToldOnceAndAsManyNewRowsLeaveTheListWhereItWas) {
    list.setRows(takes(1000));
    show(list);
    QSignalSpy one(&list, &TakeCheckList::checkedChanged);
    QSignalSpy all(&list, &TakeCheckList::allCheckedChanged);
    click(QStringLiteral("No takes"));
    EXPECT_EQ(one.count(), 0);
    EXPECT_EQ(all.count(), 1);
    EXPECT_TRUE(says(QStringLiteral("0 of 1,000 takes")));
    list.table().setFocus();
    key(Qt::Key_Down);
    list.table().selectAll();
    key(Qt::Key_Space);
    EXPECT_EQ(one.count(), 0) << "Space on all of them is All";
    EXPECT_EQ(all.count(), 2);
    EXPECT_TRUE(says(QStringLiteral("1,000 of 1,000 takes")));
    list.setCurrentRow(500);
    const int place = list.table().verticalScrollBar()->value();
    EXPECT_GT(place, 0);
    list.setRows(takes(1000));
    EXPECT_EQ(list.table().verticalScrollBar()->value(), place);
    EXPECT_EQ(list.currentRow(), 500);
    EXPECT_TRUE(says(QStringLiteral("500 of 1,000 takes")));
    list.setChecked(1, true);
    list.setChecked(7000, true);
    EXPECT_TRUE(says(QStringLiteral("501 of 1,000 takes")));
    list.setRows({});
    EXPECT_EQ(list.currentRow(), -1);
}

}  // namespace
}  // namespace dravik
