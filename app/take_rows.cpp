#include "app/take_rows.h"

#include "base/paths.h"
#include "base/text.h"

#include <algorithm>
#include <iterator>

namespace dravik {
namespace {

/// Far more steps than anybody goes back.
constexpr std::size_t maxSteps = 200;

/// Made of the same files, whatever was read from them?
bool sameFiles(const GroupeFichiers& a, const GroupeFichiers& b) {
    return std::equal(a.fichiers.begin(), a.fichiers.end(), b.fichiers.begin(), b.fichiers.end(),
                      [](const InfoFichier& x, const InfoFichier& y) { return x.url.native() == y.url.native(); });
}

/// The edits of a row, made again on what was read since.
RowState editedAgain(const RowState& row, const GroupeFichiers& before, GroupeFichiers now) {
    RowState result{std::move(now), row.cues};
    result.groupe.estDeplie = row.groupe.estDeplie;
    const EditedFields tracks = fieldsOf(row.groupe);
    const EditedFields tracksBefore = fieldsOf(before);
    for (const RowField field : editedFields(row, before)) {
        switch (field) {
            case RowField::circled:
                setFlag(result.groupe, field, row.groupe.circled);
                break;
            case RowField::wild:
                setFlag(result.groupe, field, row.groupe.wild);
                break;
            case RowField::tracks:
                for (const auto& [piste, nom] : tracks.nomsPistes) {
                    const auto old = tracksBefore.nomsPistes.find(piste);
                    if (old == tracksBefore.nomsPistes.end() || old->second != nom) {
                        setTrackName(result.groupe, piste, nom);
                    }
                }
                break;
            case RowField::timecode:
                // As typed at the row's own rate, which may be edited as well.
                result.groupe.timecode = row.groupe.timecode;
                result.groupe.mixedFields.erase(MetadataField::timecode);
                break;
            case RowField::cues:
                break;
            default:
                static_cast<void>(setText(result.groupe, field, textOf(row.groupe, field)));
        }
    }
    return result;
}

bool sameCues(const std::optional<std::vector<CueMarker>>& a, const std::optional<std::vector<CueMarker>>& b) {
    if (!a || !b) return a.has_value() == b.has_value();
    return std::equal(a->begin(), a->end(), b->begin(), b->end(), [](const CueMarker& x, const CueMarker& y) {
        return x.id == y.id && x.frame == y.frame && x.label == y.label;
    });
}

bool sameEdits(const RowState& a, const RowState& b) {
    return sameCues(a.cues, b.cues) && editedFields({a.groupe, std::nullopt}, b.groupe).empty();
}

}  // namespace

ReadRows::ReadRows(std::vector<GroupeFichiers> read) : originals(std::move(read)) {
    rows.reserve(originals.size());
    for (const GroupeFichiers& groupe : originals)
        rows.push_back({groupe, std::nullopt});
}

std::string TakeRows::keyOf(const GroupeFichiers& groupe) { return groupe.fichiers.front().url.native(); }

int TakeRows::indexOf(const std::string& key) const {
    const auto found = byKey_.find(key);
    return found == byKey_.end() ? -1 : found->second;
}

int TakeRows::indexOfFile(const std::filesystem::path& file) const {
    const auto found = byFile_.find(file.native());
    return found == byFile_.end() ? -1 : found->second;
}

void TakeRows::index(std::size_t from) {
    if (from == 0) {
        byKey_.clear();
        byFile_.clear();
    }
    for (std::size_t at = from; at < originals_.size(); ++at) {
        byKey_.emplace(keyOf(originals_[at]), static_cast<int>(at));
        for (const InfoFichier& fichier : originals_[at].fichiers)
            byFile_.emplace(fichier.url.native(), static_cast<int>(at));
    }
}

void TakeRows::load(std::vector<GroupeFichiers> groupes) {
    ReadRows read(std::move(groupes));
    originals_ = std::move(read.originals);
    rows_ = std::move(read.rows);
    edited_.clear();
    undo_.clear();
    redo_.clear();
    waiting_.clear();
    waitingOriginals_.clear();
    collapse_.clear();
    index();
    emit rowsReset();
    emit pendingChanged();
}

std::vector<std::string> TakeRows::refresh(ReadRows read, Reading reading) {
    // While a folder streams in, most readings are the rows so far and some more.
    const bool extends = reading != Reading::again && waiting_.empty() && read.originals.size() >= originals_.size() &&
                         std::equal(originals_.begin(), originals_.end(), read.originals.begin(), sameFiles);
    if (extends) {
        const auto first = originals_.size();
        const auto begin = static_cast<std::ptrdiff_t>(first);
        originals_.insert(originals_.end(), std::make_move_iterator(read.originals.begin() + begin),
                          std::make_move_iterator(read.originals.end()));
        rows_.insert(rows_.end(), std::make_move_iterator(read.rows.begin() + begin),
                     std::make_move_iterator(read.rows.end()));
        index(first);
        if (originals_.size() > first) {
            emit rowsAppended(static_cast<int>(first), static_cast<int>(originals_.size()) - 1);
        }
        return {};
    }

    std::set<std::string> unfolded;
    for (const RowState& row : rows_) {
        if (row.groupe.estDeplie) unfolded.insert(keyOf(row.groupe));
    }
    for (const int row : edited_) {
        const auto at = static_cast<std::size_t>(row);
        const std::string key = keyOf(originals_[at]);
        waiting_.insert_or_assign(key, std::move(rows_[at]));
        waitingOriginals_.insert_or_assign(key, std::move(originals_[at]));
    }
    edited_.clear();
    if (!undo_.empty() || !redo_.empty()) {
        for (const GroupeFichiers& now : read.originals) {
            const std::string key = keyOf(now);
            const auto waiting = waitingOriginals_.find(key);
            const int row = indexOf(key);
            if (waiting != waitingOriginals_.end()) {
                carrySteps(key, waiting->second, now);
            } else if (row >= 0) {
                carrySteps(key, originals_[static_cast<std::size_t>(row)], now);
            }
        }
    }
    originals_ = std::move(read.originals);
    rows_ = std::move(read.rows);
    for (std::size_t at = 0; at < rows_.size() && !(waiting_.empty() && unfolded.empty()); ++at) {
        const std::string key = keyOf(originals_[at]);
        if (const auto pending = waiting_.find(key); pending != waiting_.end()) {
            rows_[at] = editedAgain(pending->second, waitingOriginals_.at(key), originals_[at]);
            waiting_.erase(pending);
            waitingOriginals_.erase(key);
            markEdited(static_cast<int>(at));
        }
        rows_[at].groupe.estDeplie = rows_[at].groupe.estDeplie || unfolded.contains(key);
    }
    index();
    std::vector<std::string> gone;
    if (reading != Reading::partial) {
        for (const auto& [key, row] : waiting_)
            gone.push_back(row.groupe.nom);
        std::sort(gone.begin(), gone.end(),
                  [](const std::string& a, const std::string& b) { return compareNatural(a, b) < 0; });
        waiting_.clear();
        waitingOriginals_.clear();
    }
    emit rowsReset();
    emit pendingChanged();
    return gone;
}

std::set<RowField> TakeRows::editedFields(int row) const {
    if (!edited_.contains(row)) return {};
    const auto at = static_cast<std::size_t>(row);
    return dravik::editedFields(rows_[at], originals_[at]);
}

void TakeRows::markEdited(int row) {
    const auto at = static_cast<std::size_t>(row);
    if (dravik::isEdited(rows_[at], originals_[at])) {
        edited_.insert(row);
    } else {
        edited_.erase(row);
    }
}

void TakeRows::edit(const QString& name, std::vector<std::pair<int, RowState>> changes, const QString& collapseKey) {
    Step step{name, {}};
    std::vector<int> touched;
    for (auto& [row, state] : changes) {
        RowState& current = rows_.at(static_cast<std::size_t>(row));
        if (sameEdits(state, current)) continue;
        state.groupe.estDeplie = current.groupe.estDeplie;
        step.changes.push_back({keyOf(originals_[static_cast<std::size_t>(row)]), std::move(current), state});
        current = std::move(state);
        markEdited(row);
        touched.push_back(row);
    }
    if (step.changes.empty()) return;
    const bool collapses = !collapseKey.isEmpty() && collapseKey == collapse_ && !undo_.empty() &&
                           undo_.back().changes.size() == step.changes.size();
    if (collapses) {
        for (std::size_t at = 0; at < step.changes.size(); ++at)
            undo_.back().changes[at].after = std::move(step.changes[at].after);
        // Typed and taken back: nothing to undo.
        std::erase_if(undo_.back().changes,
                      [](const Change& change) { return sameEdits(change.before, change.after); });
        if (undo_.back().changes.empty()) undo_.pop_back();
    } else {
        undo_.push_back(std::move(step));
        if (undo_.size() > maxSteps) undo_.erase(undo_.begin());
    }
    redo_.clear();
    collapse_ = collapseKey;
    emit rowsChanged(touched);
    emit pendingChanged();
}

void TakeRows::put(const std::string& key, const RowState& state, std::vector<int>& touched) {
    const int row = indexOf(key);
    if (row < 0) return;  // the take is not in the folder any more
    RowState& current = rows_[static_cast<std::size_t>(row)];
    const bool estDeplie = current.groupe.estDeplie;
    current = state;
    current.groupe.estDeplie = estDeplie;
    markEdited(row);
    touched.push_back(row);
}

void TakeRows::replay(const Step& step, bool forwards) {
    std::vector<int> touched;
    for (const Change& change : step.changes)
        put(change.key, forwards ? change.after : change.before, touched);
    collapse_.clear();
    emit rowsChanged(touched);
    emit pendingChanged();
}

void TakeRows::carrySteps(const std::string& key, const GroupeFichiers& before, const GroupeFichiers& now) {
    for (std::vector<Step>* steps : {&undo_, &redo_}) {
        for (Step& step : *steps) {
            for (Change& change : step.changes) {
                if (change.key != key) continue;
                change.before = editedAgain(change.before, before, now);
                change.after = editedAgain(change.after, before, now);
            }
        }
    }
}

void TakeRows::forgetSteps() {
    undo_.clear();
    redo_.clear();
    collapse_.clear();
    emit pendingChanged();
}

void TakeRows::undo() {
    if (undo_.empty()) return;
    redo_.push_back(std::move(undo_.back()));
    undo_.pop_back();
    replay(redo_.back(), false);
}

void TakeRows::redo() {
    if (redo_.empty()) return;
    undo_.push_back(std::move(redo_.back()));
    redo_.pop_back();
    replay(undo_.back(), true);
}

void TakeRows::discard(const std::set<int>& rows) {
    const std::set<int> which = rows.empty() ? edited_ : rows;
    std::vector<int> touched;
    for (const int row : which) {
        const auto at = static_cast<std::size_t>(row);
        const bool estDeplie = rows_.at(at).groupe.estDeplie;
        rows_[at] = {originals_[at], std::nullopt};
        rows_[at].groupe.estDeplie = estDeplie;
        edited_.erase(row);
        touched.push_back(row);
    }
    undo_.clear();
    redo_.clear();
    collapse_.clear();
    emit rowsChanged(touched);
    emit pendingChanged();
}

void TakeRows::accept() {
    std::vector<int> touched(edited_.begin(), edited_.end());
    for (const int row : touched) {
        const auto at = static_cast<std::size_t>(row);
        rows_[at].cues.reset();
        originals_[at] = rows_[at].groupe;
    }
    edited_.clear();
    undo_.clear();
    redo_.clear();
    collapse_.clear();
    emit rowsChanged(touched);
    emit pendingChanged();
}

void TakeRows::filesMoved(const std::map<std::filesystem::path, std::filesystem::path>& moved) {
    const auto follow = [&](GroupeFichiers& groupe) {
        bool any = false;
        for (InfoFichier& fichier : groupe.fichiers) {
            const auto found = moved.find(fichier.url);
            if (found == moved.end()) continue;
            fichier.url = found->second;
            fichier.nom = baseNameText(found->second);
            any = true;
        }
        return any;
    };
    for (std::size_t at = 0; at < rows_.size(); ++at) {
        if (!follow(rows_[at].groupe)) continue;
        follow(originals_[at]);
        originals_[at].nom = rows_[at].groupe.nom;
        markEdited(static_cast<int>(at));
    }
    // The steps lead to names that are no more.
    undo_.clear();
    redo_.clear();
    collapse_.clear();
    index();
    emit rowsReset();
    emit pendingChanged();
}

void TakeRows::setDeplie(int row, bool estDeplie) {
    rows_.at(static_cast<std::size_t>(row)).groupe.estDeplie = estDeplie;
}

}  // namespace dravik
