#pragma once

#include "app/take_order.h"
#include "app/take_rows.h"

#include <QAbstractItemModel>
#include <functional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace dravik {

/// The rows of the take table as views see them: sorted, filtered, the files of a mono set below it. It holds indices
/// into TakeRows and nothing of their content. Main thread.
///
/// Whatever changes (other rows, another order, another filter) is told as a change of layout in which every index
/// finds its row again, so that views keep selection, current cell, expansion and an open editor.
class TakeTableModel : public QAbstractItemModel {
    Q_OBJECT
  public:
    enum Role {
        PendingRole = Qt::UserRole,  ///< bool: the cell differs from what is on disk
        MixedRole,                   ///< bool: the files disagree
        ReadOnlyRole,                ///< bool: the row cannot be edited: its format, or it is missing
        FlagRole,                    ///< bool; invalid for cells that are no flag
        EditedRowRole,               ///< bool: anything of the row is pending
        MemberRole,                  ///< bool: a file of a set
        DamagedRole                  ///< bool: the name of a take, or file, with which something is wrong
    };

    explicit TakeTableModel(TakeRows& rows, QObject* parent = nullptr);

    [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex& child) const override;
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] bool hasChildren(const QModelIndex& parent = {}) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    /// A section that is no column is the order of the listing.
    void sort(int column, Qt::SortOrder order) override;

    /// Index into groupesTableau of the row, or of the set that the file belongs to; -1 for no index.
    [[nodiscard]] int sourceRow(const QModelIndex& index) const;
    /// Where the row stands; invalid when the filter hides it.
    [[nodiscard]] QModelIndex indexOfRow(int sourceRow, int column = 0) const;
    [[nodiscard]] const GroupeFichiers& groupe(int sourceRow) const;

    void setFilter(const QString& text);
    [[nodiscard]] const QString& filter() const noexcept { return filterText_; }

    /// While a cell is edited no row changes its place; what is due is done when it is let go.
    void setFrozen(bool frozen);

  private:
    void onRowsReset(const std::vector<int>& renumbered);
    void onRowsAppended(int first, int last);
    void onRowsChanged(const std::vector<int>& rows);
    /// Changes what is shown by `arrange`, all indices following their rows; `renumbered` gives a row's new number.
    void relayout(const std::function<void()>& arrange, const std::vector<int>* renumbered = nullptr);
    void arrange();
    void arrangeWithoutMoving(const std::vector<int>& before);
    void place(std::vector<int> shown);
    [[nodiscard]] bool isShown(int sourceRow);
    [[nodiscard]] QVariant groupData(int sourceRow, TakeColumn column, int role) const;
    [[nodiscard]] QVariant memberData(int sourceRow, std::size_t member, TakeColumn column, int role) const;
    [[nodiscard]] const std::set<RowField>& editedFields(int sourceRow) const;
    [[nodiscard]] QString toolTip(int sourceRow, TakeColumn column) const;

    TakeRows& rows_;
    TakeSort sort_;
    TakeFilter filter_;
    QString filterText_;
    std::vector<int> shown_;               ///< row of the view -> index into groupesTableau
    std::vector<int> position_;            ///< the other way round; -1 for hidden rows
    std::vector<std::string> searchable_;  ///< by index into groupesTableau; empty until it is looked through
    mutable std::unordered_map<int, std::set<RowField>> edited_;  ///< asked again and again while painting
    bool frozen_ = false;
    bool due_ = false;  ///< the order is to be made anew
};

}  // namespace dravik
