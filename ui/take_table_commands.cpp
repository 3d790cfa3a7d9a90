// What menus and keys do with the selected takes.

#include "app/text.h"
#include "ui/take_names.h"
#include "ui/take_table.h"
#include "ui/take_table_model.h"
#include "ui/take_table_view.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <algorithm>

namespace dravik {

QString TakeTable::savingRuns() { return tr("Wait until saving is done, or cancel it."); }

bool TakeTable::mayEdit() {
    if (!content_.sauvegardeEnCours()) return !view_->isEditing();
    content_.tell(savingRuns());
    return false;
}

std::optional<TakeColumn> TakeTable::currentColumn() const {
    const QModelIndex current = view_->currentIndex();
    if (!current.isValid()) return std::nullopt;
    return static_cast<TakeColumn>(current.column());
}

void TakeTable::run(TakeCommand command) {
    switch (command) {
        case TakeCommand::edit:
            return editCurrentCell();
        case TakeCommand::fillDown:
            return fillDown();
        case TakeCommand::copyColumn:
            return copy();
        case TakeCommand::copyRows:
            return copyRows();
        case TakeCommand::paste:
            return paste();
        case TakeCommand::clear:
            return clearCells();
        case TakeCommand::toggleCircled:
            return toggleCircled();
        case TakeCommand::toggleWild:
            return toggleWild();
        case TakeCommand::incrementTakes:
            return incrementTakes();
        case TakeCommand::numberTakes:
            return numberTakes();
        case TakeCommand::find:
            return focusFilter();
        case TakeCommand::leaveFilter:
            return filter_->clear();
    }
}

void TakeTable::tell(const TableEditResult& result, TakeColumn column) {
    QStringList parts;
    if (result.readOnly > 0) {
        parts << tr("%Ln take(s) left out: changes cannot be saved to their format.", nullptr, result.readOnly);
    }
    if (result.refused > 0) {
        parts << tr("%Ln take(s) left as it was: the value is not valid for %1.", nullptr, result.refused)
                     .arg(columnTitle(column));
    }
    if (!parts.isEmpty()) content_.tell(parts.join(QLatin1Char(' ')));
}

void TakeTable::commit(const QModelIndex& index, const QString& text, bool toAll) {
    const int row = model_->sourceRow(index);
    const auto column = static_cast<TakeColumn>(index.column());
    const std::optional<RowField> field = fieldOf(column);
    if (row < 0 || !field) return;
    if (content_.sauvegardeEnCours()) {
        content_.tell(savingRuns());
        return;
    }
    std::vector<int> rows = {row};
    if (toAll && view_->selectionModel()->isSelected(index)) rows = view_->selectedTakes();
    if (*field == RowField::name && refusesNames(rows, {text})) return;
    tell(setField(content_.rows(), rows, *field, text), column);
}

bool TakeTable::refusesNames(const std::vector<int>& rows, const QStringList& names) {
    std::vector<std::pair<int, QString>> wanted;
    for (std::size_t at = 0; at < rows.size() && (names.size() == 1 || static_cast<qsizetype>(at) < names.size()); ++at)
        wanted.emplace_back(rows[at], names.size() == 1 ? names.front() : names.at(static_cast<qsizetype>(at)));
    const QString why = whyNotNames(content_.rows(), wanted);
    if (why.isEmpty()) return false;
    content_.tell(tr("%1 Nothing was changed.").arg(why));
    return true;
}

void TakeTable::editCurrentCell() {
    const QModelIndex current = view_->currentIndex();
    if (!mayEdit() || !current.isValid()) return;
    view_->setFocus();
    if (isFlagColumn(static_cast<TakeColumn>(current.column()))) {
        toggle(static_cast<TakeColumn>(current.column()), model_->sourceRow(current));
    } else {
        view_->editCell(current);
    }
}

void TakeTable::fillDown() {
    const std::optional<TakeColumn> column = currentColumn();
    if (!column || !mayEdit()) return;
    const std::vector<int> rows = selectedRows();
    if (!fieldOf(*column)) {
        content_.tell(tr("%1 cannot be edited.").arg(columnTitle(*column)));
    } else if (rows.size() < 2) {
        content_.tell(tr("Select the rows to fill; the first one gives the value."));
    } else if (isMixedCell(model_->groupe(rows.front()), *column)) {
        content_.tell(tr("The files of the first row do not agree: there is no value to fill."));
    } else if (*column != TakeColumn::name || !refusesNames(rows, {toQt(model_->groupe(rows.front()).nom)})) {
        tell(dravik::fillDown(content_.rows(), rows, *fieldOf(*column)), *column);
    }
}

void TakeTable::incrementTakes() {
    if (mayEdit()) tell(dravik::incrementTakes(content_.rows(), selectedRows()), TakeColumn::take);
}

void TakeTable::numberTakes() {
    if (!mayEdit()) return;
    const std::vector<int> rows = selectedRows();
    if (rows.size() < 2) {
        content_.tell(tr("Select the rows to number; the first one keeps its take."));
    } else {
        tell(dravik::numberTakes(content_.rows(), rows), TakeColumn::take);
    }
}

void TakeTable::copy() {
    const std::optional<TakeColumn> column = currentColumn();
    if (!column) return;
    QStringList lines;
    for (const int row : selectedRows())
        lines << spreadsheetLine({toQt(clipboardText(model_->groupe(row), *column))});
    if (!lines.isEmpty()) QApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

void TakeTable::copyRows() {
    QStringList lines;
    const std::vector<TakeColumn> columns = view_->visibleColumns();
    for (const int row : selectedRows()) {
        QStringList cells;
        for (const TakeColumn column : columns)
            cells << toQt(clipboardText(model_->groupe(row), column));
        lines << spreadsheetLine(cells);
    }
    if (!lines.isEmpty()) QApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

void TakeTable::paste() {
    const std::optional<TakeColumn> column = currentColumn();
    if (!column || !mayEdit()) return;
    const QStringList lines = firstSpreadsheetColumn(QApplication::clipboard()->text());
    if (lines.isEmpty()) return;
    if (!fieldOf(*column)) {
        content_.tell(tr("%1 cannot be edited.").arg(columnTitle(*column)));
        return;
    }
    std::vector<int> rows = selectedRows();
    if (rows.size() == 1) {
        // From the one row downwards, as far as there are lines.
        const int first = model_->indexOfRow(rows.front()).row();
        const int last = std::min(model_->rowCount() - 1, first + static_cast<int>(lines.size()) - 1);
        for (int at = first + 1; first >= 0 && at <= last; ++at)
            rows.push_back(model_->sourceRow(model_->index(at, 0)));
    }
    if (*column == TakeColumn::name && refusesNames(rows, lines)) return;
    tell(dravik::paste(content_.rows(), rows, *fieldOf(*column), lines.mid(0, static_cast<qsizetype>(rows.size()))),
         *column);
}

void TakeTable::clearCells() {
    const std::optional<TakeColumn> column = currentColumn();
    if (!column || !fieldOf(*column) || !mayEdit()) return;
    const std::vector<int> rows = selectedRows();
    tell(isFlagColumn(*column) ? setFlagField(content_.rows(), rows, *fieldOf(*column), false)
                               : setField(content_.rows(), rows, *fieldOf(*column), QString()),
         *column);
}

void TakeTable::toggle(TakeColumn column, int deciding) {
    if (deciding < 0 || !mayEdit()) return;
    const GroupeFichiers& groupe = model_->groupe(deciding);
    tell(setFlagField(content_.rows(), selectedRows(), *fieldOf(column), !flagOf(groupe, column)), column);
}

void TakeTable::toggleCircled() {
    const std::vector<int> rows = selectedRows();
    if (!rows.empty()) toggle(TakeColumn::circled, rows.front());
}

void TakeTable::toggleWild() {
    const std::vector<int> rows = selectedRows();
    if (!rows.empty()) toggle(TakeColumn::wild, rows.front());
}

void TakeTable::focusFilter() {
    filter_->setFocus(Qt::ShortcutFocusReason);
    filter_->selectAll();
}

void TakeTable::showLastChange() {
    if (lastChange_.empty()) return;
    const auto first = [this] {
        QModelIndex found;
        for (const int row : lastChange_) {
            const QModelIndex index = model_->indexOfRow(row, std::max(0, view_->currentIndex().column()));
            if (index.isValid() && (!found.isValid() || index.row() < found.row())) found = index;
        }
        return found;
    };
    QModelIndex shown = first();
    if (!shown.isValid() && !model_->filter().isEmpty()) {
        filter_->clear();
        filterDelay_.stop();
        model_->setFilter({});
        shown = first();
    }
    if (shown.isValid()) view_->scrollTo(shown);
}

void TakeTable::focusTable() {
    view_->setFocus(Qt::ShortcutFocusReason);
    if (!view_->selectionModel()->hasSelection()) {
        const QModelIndex current = view_->currentIndex();
        view_->goTo(current.isValid() ? current : model_->index(0, 0));
    }
}

void TakeTable::commitEditing() { view_->commitEditing(); }

void TakeTable::showMenu(const QPoint& globalPosition) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const std::optional<TakeColumn> column = currentColumn();
    const std::vector<int> rows = selectedRows();
    const bool any = column && !rows.empty();
    const bool writable =
        any && std::any_of(rows.begin(), rows.end(), [this](int row) { return content_.rows().canEdit(row); });
    const bool field = writable && fieldOf(*column);
    const bool several = rows.size() > 1;
    const QString title = column ? columnTitle(*column) : QString();
    // The keys are shown, not registered: the table has them already.
    const auto add = [&](const QString& text, TakeCommand command, bool enabled) {
        const QString keys = shortcutText(command);
        QAction* action = menu->addAction(keys.isEmpty() ? text : text + QLatin1Char('\t') + keys);
        action->setEnabled(enabled);
        connect(action, &QAction::triggered, this, [this, command] { run(command); });
    };
    add(tr("Edit %1").arg(title), TakeCommand::edit, field);
    const bool clears = field && whyNot(model_->groupe(rows.front()), *column, {}).isEmpty();
    add(tr("Clear %1").arg(title), TakeCommand::clear, clears);
    menu->addSeparator();
    add(tr("Copy %1").arg(title), TakeCommand::copyColumn, any);
    add(tr("Copy Rows"), TakeCommand::copyRows, any);
    add(tr("Paste into %1").arg(title), TakeCommand::paste, field && !QApplication::clipboard()->text().isEmpty());
    menu->addSeparator();
    add(tr("Fill Down %1").arg(title), TakeCommand::fillDown, field && several);
    add(tr("Increment Take"), TakeCommand::incrementTakes, writable);
    add(tr("Number Takes"), TakeCommand::numberTakes, writable && several);
    menu->addSeparator();
    add(tr("Toggle Circled"), TakeCommand::toggleCircled, writable);
    add(tr("Toggle Wild"), TakeCommand::toggleWild, writable);
    menu->addSeparator();
    if (column) {
        connect(menu->addAction(tr("Sort by %1").arg(title)), &QAction::triggered, this, [this, column] {
            const QHeaderView& header = *view_->header();
            const auto section = static_cast<int>(*column);
            const bool ascending =
                header.sortIndicatorSection() == section && header.sortIndicatorOrder() == Qt::AscendingOrder;
            view_->sortByColumn(section, ascending ? Qt::DescendingOrder : Qt::AscendingOrder);
        });
    }
    view_->addColumnActions(*menu->addMenu(tr("Columns")));
    menu->popup(globalPosition);
}

}  // namespace dravik
