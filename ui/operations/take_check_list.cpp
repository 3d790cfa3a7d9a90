#include "ui/operations/take_check_list.h"

#include "app/text.h"
#include "ui/metrics.h"
#include "ui/operations/check_table.h"

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QScopedValueRollback>
#include <QVBoxLayout>
#include <algorithm>
#include <functional>

namespace dravik {

class TakeCheckModel final : public QAbstractTableModel {
  public:
    TakeCheckModel(const Theme& theme, QObject* parent) : QAbstractTableModel(parent), theme_(theme) {}

    std::function<void(int, bool)> userChanged;

    void setRows(std::vector<TakeCheckRow> rows) {
        if (rows == rows_) return;
        const bool sameCount = rows.size() == rows_.size();
        if (!sameCount) beginResetModel();
        rows_ = std::move(rows);
        checked_ = std::count_if(rows_.begin(), rows_.end(), [](const TakeCheckRow& row) { return row.checked; });
        sameCount ? allChanged() : endResetModel();
    }
    void setChecked(int row, bool checked) {
        TakeCheckRow& one = rows_.at(static_cast<std::size_t>(row));
        if (one.checked == checked) return;
        one.checked = checked;
        checked_ += checked ? 1 : -1;
        emit dataChanged(index(row, 0), index(row, 1));
    }
    void setAll(bool checked) {
        for (TakeCheckRow& row : rows_)
            row.checked = checked;
        checked_ = checked ? static_cast<std::ptrdiff_t>(rows_.size()) : 0;
        allChanged();
    }
    [[nodiscard]] const std::vector<TakeCheckRow>& rows() const noexcept { return rows_; }
    [[nodiscard]] std::size_t checkedCount() const noexcept { return static_cast<std::size_t>(checked_); }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(rows_.size());
    }
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : 2; }
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& at) const override {
        const Qt::ItemFlags flags = Qt::ItemNeverHasChildren | Qt::ItemIsSelectable | Qt::ItemIsEnabled;
        return at.column() == 0 ? flags | Qt::ItemIsUserCheckable : flags;
    }
    [[nodiscard]] QVariant data(const QModelIndex& at, int role) const override {
        const TakeCheckRow& row = rows_.at(static_cast<std::size_t>(at.row()));
        switch (role) {
            case Qt::DisplayRole:
                return shortened(at.column() == 0 ? row.name : row.summary, longestCellText);
            case Qt::CheckStateRole:
                return at.column() == 0 ? QVariant(int(row.checked ? Qt::Checked : Qt::Unchecked)) : QVariant();
            case Qt::ForegroundRole:
                return at.column() == 1 || !row.checked ? QVariant(theme_.dimmed()) : QVariant();
            case Qt::ToolTipRole:
                return row.summary.isEmpty() ? row.name : QStringLiteral("%1\n%2").arg(row.name, row.summary);
            default:
                return {};
        }
    }
    bool setData(const QModelIndex& at, const QVariant& value, int role) override {
        if (role != Qt::CheckStateRole || at.column() != 0) return false;
        const bool on = value.toInt() == Qt::Checked;
        if (rows_.at(static_cast<std::size_t>(at.row())).checked == on) return true;
        setChecked(at.row(), on);
        userChanged(at.row(), on);
        return true;
    }

  private:
    void allChanged() {
        if (!rows_.empty()) emit dataChanged(index(0, 0), index(rowCount() - 1, 1));
    }

    const Theme& theme_;
    std::vector<TakeCheckRow> rows_;
    std::ptrdiff_t checked_ = 0;
};

TakeCheckList::TakeCheckList(const Theme& theme, QWidget* parent)
    : QWidget(parent),
      model_(new TakeCheckModel(theme, this)),
      table_(new CheckTable(*model_, theme, tr("Takes"), {}, this)),
      bar_(new CheckBar(Noun::take, this)) {
    table_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    table_->setTextElideMode(Qt::ElideMiddle);  // names differ at their ends
    setFocusProxy(table_);
    model_->userChanged = [this](int row, bool checked) {
        refreshCount();
        emit checkedChanged(row, checked);
    };
    const auto checkAll = [this](bool checked) {
        model_->setAll(checked);
        refreshCount();
        emit allCheckedChanged(checked);
    };
    connect(bar_, &CheckBar::allRequested, this, checkAll);
    connect(table_, &CheckTable::allRequested, this, checkAll);
    connect(table_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& current) {
                if (!setting_) emit currentChanged(current.row());
            });
    connect(&theme, &Theme::changed, table_->viewport(), qOverload<>(&QWidget::update));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(metrics::fieldSpacing);
    layout->addWidget(bar_);
    layout->addWidget(table_, 1);
    refreshCount();
}

void TakeCheckList::setNoun(Noun noun) { bar_->setNoun(noun); }

void TakeCheckList::setRows(std::vector<TakeCheckRow> rows) {
    const QScopedValueRollback<bool> set(setting_, true);
    model_->setRows(std::move(rows));
    refreshCount();
}

void TakeCheckList::setChecked(int row, bool checked) {
    if (row < 0 || row >= model_->rowCount()) return;
    model_->setChecked(row, checked);
    refreshCount();
}

void TakeCheckList::setCurrentRow(int row) {
    const QScopedValueRollback<bool> set(setting_, true);
    if (row == currentRow()) return;
    if (row < 0 || row >= model_->rowCount()) {
        table_->selectionModel()->clear();
    } else {
        table_->setCurrentIndex(model_->index(row, 0));
    }
}

int TakeCheckList::currentRow() const { return table_->currentIndex().row(); }

const std::vector<TakeCheckRow>& TakeCheckList::rows() const noexcept { return model_->rows(); }

void TakeCheckList::refreshCount() { bar_->setCount(model_->checkedCount(), model_->rows().size()); }

}  // namespace dravik
