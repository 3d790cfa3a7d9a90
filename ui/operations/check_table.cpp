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
    setToolTip(tr("Space checks or unchecks what is selected"));
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

void CheckBar::setNoun(Noun noun) {
    struct Texts {
        QString all, allHelp, none, noneHelp;
    };
    const Texts texts =
        noun == Noun::track ? Texts{tr("All tracks"), tr("Check all tracks"), tr("No tracks"), tr("Uncheck all tracks")}
        : noun == Noun::file ? Texts{tr("All files"), tr("Check all files"), tr("No files"), tr("Uncheck all files")}
        : noun == Noun::document
            ? Texts{tr("All documents"), tr("Check all documents"), tr("No documents"), tr("Uncheck all documents")}
            : Texts{tr("All takes"), tr("Check all takes"), tr("No takes"), tr("Uncheck all takes")};
    noun_ = noun;
    all_->setAccessibleName(texts.all);
    all_->setToolTip(texts.allHelp);
    none_->setAccessibleName(texts.none);
    none_->setToolTip(texts.noneHelp);
}

CheckBar::CheckBar(Noun noun, QWidget* parent)
    : QWidget(parent),
      noun_(noun),
      count_(new QLabel(this)),
      all_(new QPushButton(tr("All"), this)),
      none_(new QPushButton(tr("None"), this)) {
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
    const QString text = tr("%1 of %2").arg(QLocale().toString(qulonglong(checked)), counted(all, noun_));
    count_->setText(text);
    count_->setToolTip(text);
    enable(checked<all, checked> 0);
}

void CheckBar::enable(bool canCheck, bool canUncheck) {
    all_->setEnabled(canCheck);
    none_->setEnabled(canUncheck);
}

}  // namespace dravik
