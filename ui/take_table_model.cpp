#include "ui/take_table_model.h"

#include "app/table_edits.h"
#include "app/text.h"

#include <QTextDocument>
#include <algorithm>

namespace dravik {
namespace {

/// Of a file: number of its set, from 1. Takes have none.
constexpr quintptr takeId = 0;

TakeColumn columnOf(const QModelIndex& index) { return static_cast<TakeColumn>(index.column()); }

QString flagText(bool mixed, bool flag) {
    return mixed ? TakeTableModel::tr("mixed") : flag ? TakeTableModel::tr("yes") : TakeTableModel::tr("no");
}

/// A tool tip that holds the name of a file, which may look like markup.
QString plain(const QString& text) { return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text; }

/// What a screen reader says of a cell: the sign stands before the name.
QString withWarning(const QString& told, TakeColumn column, const QString& warning) {
    return column != TakeColumn::name || warning.isEmpty() ? told : told + QLatin1Char('\n') + warning;
}

}  // namespace

TakeTableModel::TakeTableModel(TakeRows& rows, QObject* parent) : QAbstractItemModel(parent), rows_(rows) {
    connect(&rows_, &TakeRows::rowsReset, this, &TakeTableModel::onRowsReset);
    connect(&rows_, &TakeRows::rowsAppended, this, &TakeTableModel::onRowsAppended);
    connect(&rows_, &TakeRows::rowsChanged, this, &TakeTableModel::onRowsChanged);
    onRowsReset({});
}

// --- Structure -----------------------------------------------------------------------------------------------------

QModelIndex TakeTableModel::index(int row, int column, const QModelIndex& parent) const {
    if (row < 0 || column < 0 || column >= takeColumnCount || row >= rowCount(parent)) return {};
    if (!parent.isValid()) return createIndex(row, column, takeId);
    return createIndex(row, column, static_cast<quintptr>(sourceRow(parent)) + 1);
}

QModelIndex TakeTableModel::parent(const QModelIndex& child) const {
    if (!child.isValid() || child.internalId() == takeId) return {};
    return indexOfRow(static_cast<int>(child.internalId()) - 1);
}

int TakeTableModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid()) return static_cast<int>(shown_.size());
    if (parent.internalId() != takeId || parent.column() != 0) return 0;
    const int row = sourceRow(parent);
    if (row < 0) return 0;
    const GroupeFichiers& of = groupe(row);
    return of.isMonoSet() ? static_cast<int>(of.fichiers.size()) : 0;
}

int TakeTableModel::columnCount(const QModelIndex&) const { return takeColumnCount; }

bool TakeTableModel::hasChildren(const QModelIndex& parent) const { return rowCount(parent) > 0; }

int TakeTableModel::sourceRow(const QModelIndex& index) const {
    if (!index.isValid()) return -1;
    const int count = static_cast<int>(rows_.groupesTableau().size());
    int row = -1;
    if (index.internalId() != takeId) {
        row = static_cast<int>(index.internalId()) - 1;
    } else if (static_cast<std::size_t>(index.row()) < shown_.size()) {
        row = shown_[static_cast<std::size_t>(index.row())];
    }
    return row < count ? row : -1;
}

QModelIndex TakeTableModel::indexOfRow(int sourceRow, int column) const {
    if (sourceRow < 0 || static_cast<std::size_t>(sourceRow) >= position_.size()) return {};
    const int at = position_[static_cast<std::size_t>(sourceRow)];
    return at < 0 ? QModelIndex() : createIndex(at, column, takeId);
}

const GroupeFichiers& TakeTableModel::groupe(int sourceRow) const {
    return rows_.groupesTableau().at(static_cast<std::size_t>(sourceRow)).groupe;
}

Qt::ItemFlags TakeTableModel::flags(const QModelIndex& index) const {
    const int row = sourceRow(index);
    if (row < 0) return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    const bool member = index.internalId() != takeId;
    if (member || !groupe(row).isMonoSet()) flags |= Qt::ItemNeverHasChildren;
    const TakeColumn column = columnOf(index);
    if (!member && isTextColumn(column) && rows_.canEdit(row) &&
        toQt(cellText(groupe(row), column)).size() <= longestTypedText) {
        flags |= Qt::ItemIsEditable;
    }
    return flags;
}

// --- What cells say ------------------------------------------------------------------------------------------------

QVariant TakeTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= takeColumnCount) return {};
    const auto column = static_cast<TakeColumn>(section);
    if (role == Qt::DisplayRole) return columnTitle(column);
    if (role == Qt::TextAlignmentRole) {
        return QVariant::fromValue(Qt::Alignment(Qt::AlignVCenter | (isNumberColumn(column) ? Qt::AlignRight
                                                                     : isFlagColumn(column) ? Qt::AlignHCenter
                                                                                            : Qt::AlignLeft)));
    }
    return {};
}

QVariant TakeTableModel::data(const QModelIndex& index, int role) const {
    const int row = sourceRow(index);
    if (row < 0) return {};
    if (index.internalId() == takeId) return groupData(row, columnOf(index), role);
    const auto member = static_cast<std::size_t>(index.row());
    return member < groupe(row).fichiers.size() ? memberData(row, member, columnOf(index), role) : QVariant();
}

QVariant TakeTableModel::groupData(int sourceRow, TakeColumn column, int role) const {
    const GroupeFichiers& of = groupe(sourceRow);
    switch (role) {
        case Qt::DisplayRole:
            if (isMixedCell(of, column)) return isFlagColumn(column) ? QString() : tr("mixed");
            return shortened(toQt(cellText(of, column)), longestCellText);
        case Qt::EditRole:
            return toQt(cellText(of, column));
        case Qt::AccessibleTextRole: {
            const QString value = isFlagColumn(column)      ? flagText(isMixedCell(of, column), flagOf(of, column))
                                  : isMixedCell(of, column) ? tr("mixed")
                                                            : toQt(cellText(of, column));
            return withWarning(
                tr("%1: %2", "a column and its value").arg(columnTitle(column), value.isEmpty() ? tr("empty") : value),
                column, warningOf(rows_, sourceRow));
        }
        case Qt::ToolTipRole:
            return toolTip(sourceRow, column);
        case PendingRole: {
            const std::optional<RowField> field = fieldOf(column);
            return field && editedFields(sourceRow).contains(*field);
        }
        case MixedRole:
            return isMixedCell(of, column);
        case ReadOnlyRole:
            return rows_.isMissing(sourceRow) || !isEditable(of);
        case FlagRole:
            return isFlagColumn(column) ? QVariant(flagOf(of, column)) : QVariant();
        case EditedRowRole:
            return rows_.isEdited(sourceRow);
        case MemberRole:
            return false;
        case DamagedRole:
            return column == TakeColumn::name && isDamaged(of);
        default:
            return {};
    }
}

QVariant TakeTableModel::memberData(int sourceRow, std::size_t member, TakeColumn column, int role) const {
    const GroupeFichiers& of = groupe(sourceRow);
    switch (role) {
        case Qt::DisplayRole:
        case Qt::EditRole:
            return toQt(memberText(of, member, column));
        case Qt::AccessibleTextRole:
            return withWarning(
                tr("%1: %2", "a column and its value").arg(columnTitle(column), toQt(memberText(of, member, column))),
                column, whatIsWrong(of.fichiers.at(member)));
        case Qt::ToolTipRole:
            if (const QString wrong = whatIsWrong(of.fichiers.at(member)); !wrong.isEmpty()) return plain(wrong);
            return plain(tr("One file of the set %1, which is edited as a whole.").arg(toQt(of.nom)));
        case ReadOnlyRole:
            return rows_.isMissing(sourceRow) || !isEditable(of);
        case MemberRole:
            return true;
        case DamagedRole:
            return column == TakeColumn::name && isDamaged(of.fichiers.at(member));
        case PendingRole:
        case MixedRole:
        case EditedRowRole:
            return false;
        default:
            return {};
    }
}

QString TakeTableModel::toolTip(int sourceRow, TakeColumn column) const {
    const GroupeFichiers& of = groupe(sourceRow);
    if (!whyReadOnly(rows_, sourceRow).isEmpty() || column == TakeColumn::name || column == TakeColumn::format) {
        if (const QString warning = warningOf(rows_, sourceRow); !warning.isEmpty()) return plain(warning);
    }
    const std::optional<RowField> field = fieldOf(column);
    const GroupeFichiers& original = rows_.groupesOriginauxTableau().at(static_cast<std::size_t>(sourceRow));
    if (field && editedFields(sourceRow).contains(*field)) {
        const QString was = isMixedCell(original, column) ? tr("mixed")
                            : isFlagColumn(column)        ? flagText(false, flagOf(original, column))
                                                          : toQt(cellText(original, column));
        return tr("Not saved yet. On disk: %1").arg(was.isEmpty() ? tr("nothing") : was);
    }
    if (isMixedCell(of, column)) return tr("The files of this take do not agree. Unfold it to see them.");
    return {};
}

const std::set<RowField>& TakeTableModel::editedFields(int sourceRow) const {
    static const std::set<RowField> none;
    if (!rows_.isEdited(sourceRow)) return none;
    const auto found = edited_.find(sourceRow);
    return found != edited_.end() ? found->second
                                  : edited_.emplace(sourceRow, rows_.editedFields(sourceRow)).first->second;
}

// --- Order and filter ----------------------------------------------------------------------------------------------

bool TakeTableModel::isShown(int sourceRow) {
    if (filter_.isEmpty()) return true;
    std::string& searchable = searchable_[static_cast<std::size_t>(sourceRow)];
    if (searchable.empty()) searchable = searchableText(groupe(sourceRow));
    return filter_.matches(searchable);
}

void TakeTableModel::place(std::vector<int> shown) {
    shown_ = std::move(shown);
    position_.assign(rows_.groupesTableau().size(), -1);
    for (std::size_t at = 0; at < shown_.size(); ++at)
        position_[static_cast<std::size_t>(shown_[at])] = static_cast<int>(at);
}

void TakeTableModel::arrange() {
    due_ = false;
    std::vector<int> shown = sortedRows(rows_.groupesTableau(), sort_);
    if (!filter_.isEmpty()) std::erase_if(shown, [this](int row) { return !isShown(row); });
    place(std::move(shown));
}

void TakeTableModel::arrangeWithoutMoving(const std::vector<int>& before) {
    due_ = true;
    std::vector<bool> known(rows_.groupesTableau().size(), false);
    std::vector<int> shown;
    for (const int row : before) {
        if (row < 0) continue;
        known[static_cast<std::size_t>(row)] = true;
        shown.push_back(row);
    }
    for (std::size_t row = 0; row < known.size(); ++row) {
        if (!known[row] && isShown(static_cast<int>(row))) shown.push_back(static_cast<int>(row));
    }
    place(std::move(shown));
}

void TakeTableModel::relayout(const std::function<void()>& arrange, const std::vector<int>* renumbered) {
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList from = persistentIndexList();
    struct Place {
        int row, member, column;
    };
    std::vector<Place> places;
    places.reserve(static_cast<std::size_t>(from.size()));
    for (const QModelIndex& index : from) {
        const bool member = index.internalId() != takeId;
        const auto at = static_cast<std::size_t>(index.row());
        const int row = member ? static_cast<int>(index.internalId()) - 1 : at < shown_.size() ? shown_[at] : -1;
        places.push_back({renumbered != nullptr && row >= 0 ? renumbered->at(static_cast<std::size_t>(row)) : row,
                          member ? index.row() : -1, index.column()});
    }
    arrange();
    QModelIndexList to;
    to.reserve(from.size());
    for (const Place& place : places) {
        QModelIndex index = indexOfRow(place.row, place.column);
        if (index.isValid() && place.member >= 0) {
            index = this->index(place.member, place.column, index.siblingAtColumn(0));
        }
        to.append(index);
    }
    changePersistentIndexList(from, to);
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

void TakeTableModel::sort(int column, Qt::SortOrder order) {
    sort_.column =
        column >= 0 && column < takeColumnCount ? std::optional(static_cast<TakeColumn>(column)) : std::nullopt;
    sort_.descending = order == Qt::DescendingOrder;
    relayout([this] { arrange(); });
}

void TakeTableModel::setFilter(const QString& text) {
    if (text == filterText_) return;
    filterText_ = text;
    filter_ = TakeFilter(text);
    relayout([this] { arrange(); });
}

void TakeTableModel::setFrozen(bool frozen) {
    frozen_ = frozen;
    if (!frozen && due_) relayout([this] { arrange(); });
}

// --- What the rows tell --------------------------------------------------------------------------------------------

void TakeTableModel::onRowsReset(const std::vector<int>& renumbered) {
    edited_.clear();
    searchable_.assign(rows_.groupesTableau().size(), {});
    relayout(
        [&] {
            if (!frozen_) {
                arrange();
                return;
            }
            std::vector<int> rows;
            for (const int row : shown_)
                rows.push_back(renumbered.at(static_cast<std::size_t>(row)));
            arrangeWithoutMoving(rows);
        },
        &renumbered);
}

void TakeTableModel::onRowsAppended(int, int last) {
    searchable_.resize(static_cast<std::size_t>(last) + 1);
    relayout([this] {
        if (!frozen_) {
            arrange();
        } else {
            arrangeWithoutMoving(std::vector<int>(shown_));
        }
    });
}

void TakeTableModel::onRowsChanged(const std::vector<int>& rows) {
    int top = static_cast<int>(shown_.size());
    int bottom = -1;
    for (const int row : rows) {
        edited_.erase(row);
        searchable_.at(static_cast<std::size_t>(row)).clear();
        const int at = position_.at(static_cast<std::size_t>(row));
        if (at < 0) continue;
        top = std::min(top, at);
        bottom = std::max(bottom, at);
        if (!groupe(row).estDeplie) continue;  // nobody sees its files
        const QModelIndex set = index(at, 0);
        if (const int members = rowCount(set); members > 0) {
            emit dataChanged(index(0, 0, set), index(members - 1, takeColumnCount - 1, set));
        }
    }
    // One signal for all of them: views only repaint what is visible.
    if (bottom >= 0) emit dataChanged(index(top, 0), index(bottom, takeColumnCount - 1));
}

}  // namespace dravik
