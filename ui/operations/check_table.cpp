#include "ui/operations/check_table.h"

#include "app/text.h"
#include "ui/list_looks.h"
#include "ui/metrics.h"
#include "ui/operations/row_delegate.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLocale>

namespace dravik {
namespace {

constexpr int shortButtonPadding = 12;

}  // namespace

CheckTable::CheckTable(QAbstractItemModel& model, const Theme& theme, const QString& accessibleName,
                       std::initializer_list<int> widths, QWidget* parent)
    : QTableView(parent) {
    setModel(&model);
    makeDense(*this, theme, accessibleName, widths);
    setItemDelegate(new RowDelegate(-1, this));
    horizontalHeader()->hide();
    setFrameShape(QFrame::StyledPanel);
    setToolTip(QStringLiteral("Space checks or unchecks what is selected"));
}

bool CheckTable::event(QEvent* event) {
    // Elsewhere Space plays.
    if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space) {
        event->accept();
        return true;
    }
    return QTableView::event(event);
}

void CheckTable::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Space || event->modifiers() != Qt::NoModifier) {
        QTableView::keyPressEvent(event);
        return;
    }
    const QModelIndex current = currentIndex().siblingAtColumn(0);
    if (!current.isValid()) return;
    const bool check = current.data(Qt::CheckStateRole).toInt() != Qt::Checked;
    QModelIndexList rows = selectionModel()->selectedRows(0);
    if (rows.size() > 1 && rows.size() == model()->rowCount()) {
        emit allRequested(check);
        return;
    }
    if (!rows.contains(current)) rows = {current};
    for (const QModelIndex& row : rows)
        model()->setData(row, check ? Qt::Checked : Qt::Unchecked, Qt::CheckStateRole);
}

void CheckBar::setNoun(const QString& noun) {
    noun_ = noun;
    all_->setAccessibleName(QStringLiteral("All %1s").arg(noun));
    all_->setToolTip(QStringLiteral("Check all %1s").arg(noun));
    none_->setAccessibleName(QStringLiteral("No %1s").arg(noun));
    none_->setToolTip(QStringLiteral("Uncheck all %1s").arg(noun));
}

CheckBar::CheckBar(const QString& noun, QWidget* parent)
    : QWidget(parent),
      count_(new QLabel(this)),
      all_(new QPushButton(QStringLiteral("All"), this)),
      none_(new QPushButton(QStringLiteral("None"), this)) {
    setNoun(noun);
    for (QPushButton* button : {all_, none_}) {
        button->setAutoDefault(false);
        // As wide as its word: the count beside it needs the room more.
        button->setMaximumWidth(fontMetrics().horizontalAdvance(button->text()) + 2 * shortButtonPadding);
    }
    connect(all_, &QPushButton::clicked, this, [this] { emit allRequested(true); });
    connect(none_, &QPushButton::clicked, this, [this] { emit allRequested(false); });
    count_->setForegroundRole(QPalette::PlaceholderText);
    count_->setMinimumWidth(0);
    count_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(metrics::fieldSpacing);
    layout->addWidget(count_, 1);
    layout->addWidget(all_);
    layout->addWidget(none_);
}

void CheckBar::setCount(std::size_t checked, std::size_t all) {
    const QString text =
        QStringLiteral("%1 of %2").arg(QLocale(QLocale::English).toString(qulonglong(checked)), counted(all, noun_));
    count_->setText(text);
    count_->setToolTip(text);
    enable(checked<all, checked> 0);
}

void CheckBar::enable(bool canCheck, bool canUncheck) {
    all_->setEnabled(canCheck);
    none_->setEnabled(canUncheck);
}

}  // namespace dravik
