#include "app/operation_eligibility.h"

#include "operations/track_eligibility.h"

#include <algorithm>

namespace dravik {

bool isEligible(OperationsTab tab, const GroupeFichiers& groupe) noexcept {
    switch (tab) {
        case OperationsTab::merge:
            return OperationsAudio::isMergeable(groupe);
        case OperationsTab::split:
        case OperationsTab::deleteTracks:
            return OperationsAudio::isPolyWave(groupe);
        case OperationsTab::reorderTracks:
            return OperationsAudio::isReorderable(groupe);
        case OperationsTab::export_:
            return OperationsAudio::isExportable(groupe);
        case OperationsTab::rename:
        case OperationsTab::report:
            return true;
    }
    return false;
}

std::vector<int> eligibleRows(OperationsTab tab, const std::vector<GroupeFichiers>& groupes,
                              const std::vector<int>& selected, bool appliquerTous) {
    std::vector<int> rows;
    const auto add = [&](int row) {
        if (row >= 0 && row < std::ssize(groupes) && isEligible(tab, groupes[static_cast<std::size_t>(row)])) {
            rows.push_back(row);
        }
    };
    if (appliquerTous || tab == OperationsTab::report) {
        for (int row = 0; row < std::ssize(groupes); ++row)
            add(row);
    } else {
        std::for_each(selected.begin(), selected.end(), add);
        std::sort(rows.begin(), rows.end());
    }
    return rows;
}

EmptyState emptyState(OperationsTab tab, const std::vector<GroupeFichiers>& groupes, const std::vector<int>& selected,
                      bool appliquerTous) {
    const OperationTexts texts = textsOf(tab);
    if (eligibleRows(tab, groupes, {}, true).empty()) {
        // With all takes asked for the line names what was looked for; the title says it of the folder.
        return {texts.emptyTitle, appliquerTous && !texts.noneFound.isEmpty() ? texts.noneFound : texts.emptyMessage};
    }
    if (!eligibleRows(tab, groupes, selected, appliquerTous).empty()) return {};
    return {QString(), texts.noneSelected.isEmpty() ? texts.emptyMessage : texts.noneSelected};
}

OperationMenuAvailability OperationMenuAvailability::of(const std::vector<GroupeFichiers>& groupes) noexcept {
    const auto any = [&](OperationsTab tab) {
        return std::any_of(groupes.begin(), groupes.end(),
                           [tab](const GroupeFichiers& groupe) { return isEligible(tab, groupe); });
    };
    return {any(OperationsTab::export_), any(OperationsTab::report),       any(OperationsTab::merge),
            any(OperationsTab::split),   any(OperationsTab::deleteTracks), any(OperationsTab::reorderTracks),
            any(OperationsTab::rename)};
}

bool OperationMenuAvailability::can(OperationsTab tab) const noexcept {
    switch (tab) {
        case OperationsTab::merge:
            return canMergeAudio;
        case OperationsTab::split:
            return canSplitAudio;
        case OperationsTab::deleteTracks:
            return canRemoveTracks;
        case OperationsTab::reorderTracks:
            return canReorderTracks;
        case OperationsTab::rename:
            return canBatchRename;
        case OperationsTab::export_:
            return canExportAudio;
        case OperationsTab::report:
            return canExportReport;
    }
    return false;
}

void OperationMenuState::set(const OperationMenuAvailability& availability) {
    if (availability == availability_) return;
    availability_ = availability;
    emit changed();
}

}  // namespace dravik
