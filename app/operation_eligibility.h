#pragma once

#include "app/operations_tab.h"
#include "model/groupe_fichiers.h"

#include <QObject>
#include <QString>
#include <vector>

namespace dravik {

/// Which takes the operations are for, out of what the table knows: no file is opened. Pure functions.

/// Is the operation offered for this take?
[[nodiscard]] bool isEligible(OperationsTab tab, const GroupeFichiers& groupe) noexcept;

/// The rows of the folder's takes that a tab works on: all that are for it, or of the selected ones those that are.
/// Renaming and reporting take files of any kind; a report is always of the whole folder.
[[nodiscard]] std::vector<int> eligibleRows(OperationsTab tab, const std::vector<GroupeFichiers>& groupes,
                                            const std::vector<int>& selected, bool appliquerTous);

/// What a tab shows instead of takes: the folder has none for it, or the selection has none. Both empty when there are
/// some.
struct EmptyState {
    QString title, message;
    [[nodiscard]] bool isEmpty() const noexcept { return title.isEmpty() && message.isEmpty(); }
    friend bool operator==(const EmptyState&, const EmptyState&) = default;
};
[[nodiscard]] EmptyState emptyState(OperationsTab tab, const std::vector<GroupeFichiers>& groupes,
                                    const std::vector<int>& selected, bool appliquerTous);

/// Which commands of the menu make sense: each is enabled when the folder has something for it.
struct OperationMenuAvailability {
    bool canExportAudio = false, canExportReport = false, canMergeAudio = false, canSplitAudio = false,
         canRemoveTracks = false, canReorderTracks = false, canBatchRename = false;

    [[nodiscard]] static OperationMenuAvailability of(const std::vector<GroupeFichiers>& groupes) noexcept;
    [[nodiscard]] bool can(OperationsTab tab) const noexcept;
    friend bool operator==(const OperationMenuAvailability&, const OperationMenuAvailability&) = default;
};

/// The availability as menus observe it: they hear of a change only. Main thread.
class OperationMenuState : public QObject {
    Q_OBJECT
  public:
    [[nodiscard]] const OperationMenuAvailability& availability() const noexcept { return availability_; }
    void set(const OperationMenuAvailability& availability);

  signals:
    void changed();

  private:
    OperationMenuAvailability availability_;
};

}  // namespace dravik
