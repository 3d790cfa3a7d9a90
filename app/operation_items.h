#pragma once

#include "app/operation_eligibility.h"
#include "app/take_audio.h"
#include "app/take_rows.h"

#include <QString>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace dravik {

/// A take, or for renaming a file, that a tab of the operations can work on.
struct OperationChoiceItem {
    std::string key;  ///< path of the (first) file
    QString name, summary;
    bool checked = true;
    int row = 0;  ///< of the table
    friend bool operator==(const OperationChoiceItem&, const OperationChoiceItem&) = default;
};

/// What each tab of the operations works on: the selected takes or all of the folder, those of them that were left out,
/// and the one that is looked at. Kept by the paths of files, so that it survives a reading of the folder. No signals:
/// its owner tells. Main thread.
class OperationItems {
  public:
    /// The rows outlive this.
    explicit OperationItems(const TakeRows& rows) : rows_(rows) {}

    [[nodiscard]] const std::vector<OperationChoiceItem>& all() const noexcept { return items_; }
    [[nodiscard]] int checkedCount() const noexcept;
    [[nodiscard]] std::vector<std::string> checkedKeys() const;
    /// Index of the item that is looked at; -1 for none.
    [[nodiscard]] int current() const noexcept { return current_; }
    /// Its take, and that of any item, as the table shows it; null without one.
    [[nodiscard]] const GroupeFichiers* currentTake() const;
    [[nodiscard]] const GroupeFichiers* takeOf(const OperationChoiceItem& item) const;
    /// Which takes the tab asks for, and of which there are none; empty when there are some.
    [[nodiscard]] EmptyState emptyState() const;

    /// Another tab; its items are listed by `list`.
    void setTab(std::optional<OperationsTab> tab);
    /// Lists the items of the tab anew. The one that is looked at stays, or is the one of `loadedRow`.
    void list(int loadedRow);
    /// Forgets the items, not the choices: rows are about to be others, and nobody looks.
    void clear();

    void setCurrent(int item) noexcept { current_ = item; }
    void setChecked(int item, bool checked);
    void setAllChecked(bool checked);
    /// False when they are selected already.
    [[nodiscard]] bool setSelectedRows(const std::vector<int>& rows);
    /// All takes rather than the selected ones; of a report always.
    [[nodiscard]] bool appliquerTous() const;
    [[nodiscard]] bool appliquerTous(OperationsTab tab) const;
    void setAppliquerTous(OperationsTab tab, bool all) { tabs_[tab].appliquerTous = all; }
    [[nodiscard]] std::optional<std::filesystem::path> destination() const;
    void setDestination(OperationsTab tab, const std::optional<std::filesystem::path>& folder) {
        tabs_[tab].destination = folder;
    }
    /// Keys of those that were left out of a tab, also of other folders.
    [[nodiscard]] std::set<std::string> unchecked(OperationsTab tab) const;
    void forgetUnchecked();
    /// Files have other names.
    void follow(const FileMoves& moved);

  private:
    struct Tab {
        std::set<std::string> unchecked;
        bool appliquerTous = false;
        std::optional<std::filesystem::path> destination;
    };
    [[nodiscard]] const Tab& state(std::optional<OperationsTab> tab) const;
    void add(int row, const GroupeFichiers& groupe);
    void add(int row, std::string key, const QString& name, const QString& summary);
    void mark(OperationChoiceItem& item, bool checked);

    const TakeRows& rows_;
    std::optional<OperationsTab> tab_;
    std::map<OperationsTab, Tab> tabs_;
    std::vector<int> selectedRows_;
    std::vector<OperationChoiceItem> items_;
    int current_ = -1;
};

}  // namespace dravik
