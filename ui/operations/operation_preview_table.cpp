#include "ui/operations/operation_preview_table.h"

#include "app/text.h"
#include "ui/list_looks.h"
#include "ui/metrics.h"
#include "ui/operations/row_delegate.h"

#include <QAbstractTableModel>
#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QMenu>
#include <QVBoxLayout>
#include <algorithm>

namespace dravik {

class OperationPreviewModel final : public QAbstractTableModel {
  public:
    enum Column { source, target, problem };
    OperationPreviewModel(const Theme& theme, QObject* parent) : QAbstractTableModel(parent), theme_(theme) {}

    void setHeads(const QString& ofSource, const QString& ofTarget) {
        heads_ = {ofSource, ofTarget, OperationPreviewTable::tr("Problem")};
        emit headerDataChanged(Qt::Horizontal, source, problem);
    }
    void setRows(std::vector<OperationPreviewRow> rows) {
        const bool sameCount = rows.size() == rows_.size();
        if (!sameCount) beginResetModel();
        rows_ = std::move(rows);
        if (!sameCount) {
            endResetModel();
        } else if (!rows_.empty()) {
            emit dataChanged(index(0, 0), index(rowCount() - 1, problem));
        }
    }
    [[nodiscard]] const std::vector<OperationPreviewRow>& rows() const noexcept { return rows_; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(rows_.size());
    }
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : 3; }
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex&) const override {
        return Qt::ItemNeverHasChildren | Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    }
    [[nodiscard]] QVariant data(const QModelIndex& at, int role) const override {
        const OperationPreviewRow& row = rows_.at(static_cast<std::size_t>(at.row()));
        const bool bad = !row.problem.isEmpty();
        switch (role) {
            case Qt::DisplayRole:
                return shortened(shown(row, at.column()), longestCellText);
            case Qt::DecorationRole:
                return bad && at.column() == problem ? QVariant(theme_.icon(QStringLiteral("warning"))) : QVariant();
            case Qt::ForegroundRole:
                if (bad && at.column() != source) return theme_.error();
                return row.unchanged || at.column() == source ? QVariant(theme_.dimmed()) : QVariant();
            case Qt::ToolTipRole:
                return bad                    ? QStringLiteral("%1\n%2").arg(text(row, target), row.problem)
                       : row.remark.isEmpty() ? text(row, at.column())
                                              : QStringLiteral("%1\n%2").arg(text(row, at.column()), row.remark);
            case Qt::AccessibleTextRole:
                return at.column() == target && !row.remark.isEmpty()
                           ? QStringLiteral("%1, %2").arg(row.target, row.remark)
                           : text(row, at.column());
            default:
                return {};
        }
    }
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
        return heads_.value(section);
    }

  private:
    /// With the remark, but for a renaming, where the dimmed name says it.
    static QString shown(const OperationPreviewRow& row, int column) {
        if (column != target || row.remark.isEmpty() || row.unchanged) return text(row, column);
        return QStringLiteral("%1 — %2").arg(row.target, row.remark);
    }
    static const QString& text(const OperationPreviewRow& row, int column) {
        return column == source ? row.source : column == target ? row.target : row.problem;
    }

    const Theme& theme_;
    QStringList heads_{OperationPreviewTable::tr("File"), OperationPreviewTable::tr("New File"),
                       OperationPreviewTable::tr("Problem")};
    std::vector<OperationPreviewRow> rows_;
};

OperationPreviewTable::OperationPreviewTable(const QString& accessibleName, const Theme& theme, QWidget* parent)
    : QWidget(parent),
      theme_(theme),
      model_(new OperationPreviewModel(theme, this)),
      table_(new QTableView(this)),
      counts_(new QLabel(this)),
      button_(new QPushButton(tr("Keep Both"), this)) {
    table_->setModel(model_);
    makeDense(*table_, theme, accessibleName, {});
    table_->setItemDelegate(new RowDelegate(OperationPreviewModel::problem, this));
    table_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    table_->setColumnHidden(OperationPreviewModel::problem, true);
    table_->setFrameShape(QFrame::StyledPanel);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setTextElideMode(Qt::ElideMiddle);  // names differ at their ends
    table_->setIconSize({metrics::iconSide, metrics::iconSide});
    table_->viewport()->installEventFilter(this);
    connect(table_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &OperationPreviewTable::showButton);

    button_->setToolTip(tr("Give the file a name that is free"));
    button_->setAccessibleName(button_->text());
    button_->setAutoDefault(false);
    button_->hide();
    connect(button_, &QPushButton::clicked, this, [this] { emit keepBothRequested(table_->currentIndex().row()); });
    counts_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);

    auto* top = new QHBoxLayout;
    top->setSpacing(metrics::fieldSpacing);
    top->addWidget(counts_, 1);
    top->addWidget(button_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(metrics::fieldSpacing);
    layout->addLayout(top);
    layout->addWidget(table_, 1);
    connect(&theme_, &Theme::changed, this, &OperationPreviewTable::applyTheme);
    applyTheme();
}

void OperationPreviewTable::setHeads(const QString& source, const QString& target) { model_->setHeads(source, target); }

void OperationPreviewTable::setCounts(const QString& text, bool problems) {
    counts_->setText(text);
    counts_->setToolTip(text);
    problems_ = problems;
    applyTheme();
}

void OperationPreviewTable::setRows(std::vector<OperationPreviewRow> rows) {
    const bool problems =
        std::any_of(rows.begin(), rows.end(), [](const OperationPreviewRow& row) { return !row.problem.isEmpty(); });
    model_->setRows(std::move(rows));
    table_->setColumnHidden(OperationPreviewModel::problem, !problems);
    showButton();
}

void OperationPreviewTable::setKeepBothOffered(bool offered) {
    keepBothOffered_ = offered;
    button_->setVisible(offered);
    showButton();
}

const std::vector<OperationPreviewRow>& OperationPreviewTable::rows() const noexcept { return model_->rows(); }

bool OperationPreviewTable::mayKeepBoth(int row) const {
    if (!keepBothOffered_ || row < 0 || row >= model_->rowCount()) return false;
    const OperationPreviewRow& one = rows()[static_cast<std::size_t>(row)];
    return !one.problem.isEmpty() && one.canKeepBoth;
}

void OperationPreviewTable::showButton() { button_->setEnabled(mayKeepBoth(table_->currentIndex().row())); }

bool OperationPreviewTable::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::ContextMenu) {
        const auto& asked = static_cast<QContextMenuEvent&>(*event);
        // The menu key means the current row, wherever the mouse is.
        const bool byKey = asked.reason() == QContextMenuEvent::Keyboard;
        openMenu(byKey ? table_->visualRect(table_->currentIndex()).center() : asked.pos());
        return true;
    }
    return QWidget::eventFilter(object, event);
}

void OperationPreviewTable::openMenu(const QPoint& where) {
    const int row = table_->indexAt(where).row();
    if (!mayKeepBoth(row)) return;
    table_->setCurrentIndex(model_->index(row, 0));
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("Keep Both"), this, [this, row] {
        if (mayKeepBoth(row)) emit keepBothRequested(row);
    });
    menu->popup(table_->viewport()->mapToGlobal(where));
}

void OperationPreviewTable::applyTheme() {
    QPalette palette = QApplication::palette();
    palette.setColor(QPalette::WindowText, problems_ ? theme_.error() : theme_.dimmed());
    counts_->setPalette(palette);
    table_->viewport()->update();
}

}  // namespace dravik
