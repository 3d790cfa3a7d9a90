#include "app/operation_items.h"

#include "app/operation_request.h"
#include "app/take_columns.h"
#include "app/text.h"
#include "base/paths.h"

#include <QCoreApplication>
#include <algorithm>

namespace dravik {
namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(dravik::OperationItems)
};

QString summaryOf(const GroupeFichiers& groupe) {
    QStringList parts;
    parts << counted(static_cast<std::size_t>(trackCount(groupe)), Noun::track);
    if (const QString rate = toQt(cellText(groupe, TakeColumn::sampleRate)); !rate.isEmpty()) parts << rate;
    return parts.join(QStringLiteral(" · "));
}

QString summaryOf(const InfoFichier& fichier) {
    QStringList parts;
    if (fichier.scene) parts << Texts::tr("Scene %1").arg(toQt(displayName(*fichier.scene)));
    if (fichier.prise) parts << Texts::tr("Take %1").arg(toQt(displayName(*fichier.prise)));
    return parts.join(QStringLiteral(" · "));
}

}  // namespace

const OperationItems::Tab& OperationItems::state(std::optional<OperationsTab> tab) const {
    static const Tab untouched;
    const auto found = tab ? tabs_.find(*tab) : tabs_.end();
    return found == tabs_.end() ? untouched : found->second;
}

int OperationItems::checkedCount() const noexcept {
    return static_cast<int>(
        std::count_if(items_.begin(), items_.end(), [](const OperationChoiceItem& item) { return item.checked; }));
}

std::vector<std::string> OperationItems::checkedKeys() const {
    std::vector<std::string> keys;
    for (const OperationChoiceItem& item : items_) {
        if (item.checked) keys.push_back(item.key);
    }
    return keys;
}

void OperationItems::forgetUnchecked() {
    for (auto& [tab, state] : tabs_)
        state.unchecked.clear();
}

const GroupeFichiers* OperationItems::takeOf(const OperationChoiceItem& item) const {
    const auto row = static_cast<std::size_t>(item.row);
    return row < rows_.groupesTableau().size() ? &rows_.groupesTableau()[row].groupe : nullptr;
}

const GroupeFichiers* OperationItems::currentTake() const {
    return current_ < 0 ? nullptr : takeOf(items_[static_cast<std::size_t>(current_)]);
}

EmptyState OperationItems::emptyState() const {
    if (!tab_) return {chooseAnOperation(), {}};
    if (!items_.empty()) return {};
    return dravik::emptyState(*tab_, rows_.groupesOriginauxTableau(), selectedRows_, appliquerTous());
}

void OperationItems::setTab(std::optional<OperationsTab> tab) {
    tab_ = tab;
    clear();
}

void OperationItems::clear() {
    items_.clear();
    current_ = -1;
}

void OperationItems::list(int loadedRow) {
    const std::string looked = current_ >= 0 ? items_[static_cast<std::size_t>(current_)].key : std::string();
    clear();
    if (!tab_) return;
    for (const int row : eligibleRows(*tab_, rows_.groupesOriginauxTableau(), selectedRows_, appliquerTous())) {
        if (!rows_.isMissing(row)) add(row, rows_.groupesTableau()[static_cast<std::size_t>(row)].groupe);
    }
    if (items_.empty()) return;
    const auto is = [&](const auto& same) { return std::find_if(items_.begin(), items_.end(), same); };
    const auto before = is([&](const OperationChoiceItem& item) { return item.key == looked; });
    const auto loaded = is([&](const OperationChoiceItem& item) { return item.row == loadedRow; });
    const auto found = before != items_.end() ? before : loaded != items_.end() ? loaded : items_.begin();
    current_ = static_cast<int>(found - items_.begin());
}

void OperationItems::add(int row, const GroupeFichiers& groupe) {
    if (tab_ != OperationsTab::rename) {
        add(row, TakeRows::keyOf(groupe), toQt(groupe.nom), summaryOf(groupe));
        return;
    }
    for (const InfoFichier& fichier : groupe.fichiers)
        add(row, fichier.url.native(), toQt(fileNameText(fichier.url)), summaryOf(fichier));
}

void OperationItems::add(int row, std::string key, const QString& name, const QString& summary) {
    const bool checked = !state(tab_).unchecked.contains(key);
    items_.push_back({std::move(key), name, summary, checked, row});
}

void OperationItems::mark(OperationChoiceItem& item, bool checked) {
    item.checked = checked;
    std::set<std::string>& unchecked = tabs_[*tab_].unchecked;
    if (checked) {
        unchecked.erase(item.key);
    } else {
        unchecked.insert(item.key);
    }
}

void OperationItems::setChecked(int item, bool checked) { mark(items_.at(static_cast<std::size_t>(item)), checked); }

void OperationItems::setAllChecked(bool checked) {
    for (OperationChoiceItem& item : items_)
        mark(item, checked);
}

bool OperationItems::setSelectedRows(const std::vector<int>& rows) {
    if (rows == selectedRows_) return false;
    selectedRows_ = rows;
    return true;
}

bool OperationItems::appliquerTous() const { return tab_ && appliquerTous(*tab_); }

bool OperationItems::appliquerTous(OperationsTab tab) const {
    return tab == OperationsTab::report || state(tab).appliquerTous;
}

std::optional<std::filesystem::path> OperationItems::destination() const { return state(tab_).destination; }

std::set<std::string> OperationItems::unchecked(OperationsTab tab) const { return state(tab).unchecked; }

void OperationItems::follow(const FileMoves& moved) {
    for (auto& [tab, state] : tabs_) {
        // All go before any comes: files may have exchanged their names.
        std::set<std::string> come;
        for (const auto& [before, now] : moved) {
            if (state.unchecked.erase(before.native()) > 0) come.insert(now.native());
        }
        state.unchecked.merge(come);
    }
}

}  // namespace dravik
