#include "ui/operations/operation_preview_table.h"

#include "tests/ui/operations/widget_stage.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QScrollBar>
#include <QSignalSpy>
#include <memory>

namespace dravik {
namespace {

class PreviewTable : public test::WidgetStage {
  protected:
    static std::vector<OperationPreviewRow> rows(int count, int problemAt = -1) {
        std::vector<OperationPreviewRow> all;
        for (int row = 0; row < count; ++row) {
            all.push_back({QStringLiteral("a%1.wav").arg(row), QStringLiteral("b%1.wav").arg(row),
                           row == problemAt ? QStringLiteral("Duplicate filename: b.wav") : QString(), row == 1, true,
                           row == 1 ? QStringLiteral("keeps its name") : QString()});
        }
        return all;
    }
    void openMenu(int row) {
        QWidget& viewport = *table.table().viewport();
        const QPoint at = table.table().visualRect(table.table().model()->index(row, 0)).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, viewport.mapToGlobal(at));
        QApplication::sendEvent(&viewport, &event);
    }

    OperationPreviewTable table{QStringLiteral("New names"), theme};
};

TEST_F(PreviewTable, StaysWhereItIsScrolledToWhileNamesChange) {
    table.setRows(rows(300'000));
    show(table);
    QScrollBar& bar = *table.table().verticalScrollBar();
    table.table().selectRow(200'000);
    table.table().scrollTo(table.table().currentIndex());
    const int place = bar.value();
    ASSERT_GT(place, 0);
    table.setRows(rows(300'000, 5));
    EXPECT_EQ(bar.value(), place);
    EXPECT_EQ(table.table().currentIndex().row(), 200'000);
    expectNamed();
}

TEST_F(PreviewTable, AProblemIsToldInItsRowAndAColumnOfItsOwn) {
    table.setRows(rows(4));
    show(table);
    EXPECT_TRUE(table.table().isColumnHidden(2));
    table.setRows(rows(4, 3));
    EXPECT_FALSE(table.table().isColumnHidden(2));
    const QModelIndex problem = table.table().model()->index(3, 2);
    EXPECT_EQ(problem.data().toString(), QStringLiteral("Duplicate filename: b.wav"));
    EXPECT_FALSE(problem.data(Qt::DecorationRole).value<QIcon>().isNull());
    EXPECT_TRUE(problem.siblingAtColumn(1).data(Qt::ToolTipRole).toString().contains(QStringLiteral("Duplicate")));
    EXPECT_EQ(problem.sibling(1, 1).data(Qt::AccessibleTextRole).toString(), QStringLiteral("b1.wav, keeps its name"));
    table.setRows(rows(4));
    EXPECT_TRUE(table.table().isColumnHidden(2));
}

TEST_F(PreviewTable, KeepBothIsOfferedWhereItHelps) {
    std::vector<OperationPreviewRow> all = rows(4, 2);
    all[3].problem = QStringLiteral("Invalid filename: ..");
    all[3].canKeepBoth = false;
    table.setRows(all);
    show(table);
    QSignalSpy asked(&table, &OperationPreviewTable::keepBothRequested);
    openMenu(2);
    EXPECT_EQ(table.findChild<QMenu*>(), nullptr) << "not unless the caller has it offered";
    table.setKeepBothOffered(true);
    auto& button = named<QPushButton>(QStringLiteral("Keep Both"));
    for (const auto& [row, offered] : {std::pair{0, false}, {2, true}, {3, false}}) {
        table.table().selectRow(row);
        EXPECT_EQ(button.isEnabled(), offered) << row;
        openMenu(row);
        const std::unique_ptr<QMenu> menu(table.findChild<QMenu*>());
        EXPECT_EQ(menu != nullptr, offered) << row;
        if (menu) menu->actions().front()->trigger();
    }
    table.table().selectRow(2);
    QTest::mouseClick(&button, Qt::LeftButton);
    ASSERT_EQ(asked.count(), 2);
    EXPECT_EQ(asked[0][0].toInt(), 2);
    EXPECT_EQ(asked[1][0].toInt(), 2);
    table.setRows(rows(4));
    EXPECT_FALSE(button.isEnabled()) << "the problem is gone";
}

}  // namespace
}  // namespace dravik
