#include "app/take_rows.h"

#include "base/paths.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <utility>

namespace dravik {
namespace {

/// Far more steps than anybody goes back, and the rows that all of them hold together: about a kilobyte each.
constexpr std::size_t maxSteps = 200;
constexpr std::size_t maxStepRows = 100'000;

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
            case RowField::trackNumbers:
                static_cast<void>(setTrackNumbers(result.groupe, editedNumbers(tracks, tracksBefore)));
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
    byKey.reserve(originals.size());
    byFile.reserve(originals.size());
    for (const GroupeFichiers& groupe : originals) {
        const int row = static_cast<int>(rows.size());
        byKey.emplace(TakeRows::keyOf(groupe), row);
        for (const InfoFichier& fichier : groupe.fichiers)
            byFile.emplace(fichier.url.native(), row);
        rows.push_back({groupe, std::nullopt});
    }
}

const std::string& TakeRows::keyOf(const GroupeFichiers& groupe) { return groupe.fichiers.front().url.native(); }

int TakeRows::indexOf(const std::string& key) const {
    const auto found = byKey_.find(key);
    return found == byKey_.end() ? -1 : found->second;
}

int TakeRows::indexOfFile(const std::filesystem::path& file) const {
    const auto found = byFile_.find(file.native());
    return found == byFile_.end() ? -1 : found->second;
}

// --- Reading -------------------------------------------------------------------------------------------------------

void TakeRows::exchange(ReadRows& read) {
    originals_.swap(read.originals);
    rows_.swap(read.rows);
    byKey_.swap(read.byKey);
    byFile_.swap(read.byFile);
}

void TakeRows::load(ReadRows& read) {
    exchange(read);
    edited_.clear();
    missing_.clear();
    forget();
    emit rowsReset(std::vector<int>(read.rows.size(), -1));
    emit pendingChanged();
}

void TakeRows::append(ReadRows& read) {
    const auto first = static_cast<std::ptrdiff_t>(originals_.size());
    originals_.insert(originals_.end(), std::make_move_iterator(read.originals.begin() + first),
                      std::make_move_iterator(read.originals.end()));
    rows_.insert(rows_.end(), std::make_move_iterator(read.rows.begin() + first),
                 std::make_move_iterator(read.rows.end()));
    byKey_.swap(read.byKey);
    byFile_.swap(read.byFile);
    const int last = static_cast<int>(originals_.size()) - 1;
    if (last >= first) emit rowsAppended(static_cast<int>(first), last);
}

void TakeRows::refresh(ReadRows& read, Reading reading) {
    // While a folder streams in, most readings are the rows so far and some more.
    const bool extends = reading != Reading::again && missing_.empty() && read.originals.size() >= originals_.size() &&
                         std::equal(originals_.begin(), originals_.end(), read.originals.begin(), sameFiles);
    if (extends) {
        append(read);
        return;
    }
    exchange(read);
    const ReadRows& before = read;
    const std::set<int> editedBefore = std::exchange(edited_, {});
    missing_.clear();

    std::vector<int> renumbered(before.rows.size(), -1);
    for (std::size_t row = 0; row < renumbered.size(); ++row) {
        const std::string& key = keyOf(before.originals[row]);
        // Most are where they were.
        const bool stays = row < originals_.size() && keyOf(originals_[row]) == key;
        renumbered[row] = stays ? static_cast<int>(row) : indexOf(key);
        if (renumbered[row] >= 0 && before.rows[row].groupe.estDeplie) setDeplie(renumbered[row], true);
    }
    for (const int row : editedBefore) {
        const auto at = static_cast<std::size_t>(row);
        int& now = renumbered[at];
        if (now >= 0) {
            RowState& edited = rows_[static_cast<std::size_t>(now)];
            edited = editedAgain(before.rows[at], before.originals[at], edited.groupe);
        } else {
            now = keepMissing(before.rows[at], before.originals[at]);
        }
        markEdited(now);
    }
    carrySteps(before, renumbered);
    emit rowsReset(renumbered);
    emit pendingChanged();
}

int TakeRows::keepMissing(const RowState& row, const GroupeFichiers& original) {
    const int at = static_cast<int>(rows_.size());
    rows_.push_back(row);
    originals_.push_back(original);
    byKey_.emplace(keyOf(original), at);
    for (const InfoFichier& fichier : original.fichiers)
        byFile_.emplace(fichier.url.native(), at);
    missing_.insert(at);
    return at;
}

void TakeRows::carrySteps(const ReadRows& before, const std::vector<int>& renumbered) {
    for (std::vector<Step>* steps : {&undo_, &redo_}) {
        for (Step& step : *steps) {
            for (Change& change : step.changes) {
                const auto found = before.byKey.find(change.key);
                if (found == before.byKey.end()) continue;
                const auto row = static_cast<std::size_t>(found->second);
                if (renumbered[row] < 0 || missing_.contains(renumbered[row])) continue;
                const GroupeFichiers& was = before.originals[row];
                const GroupeFichiers& now = originals_[static_cast<std::size_t>(renumbered[row])];
                change.other = editedAgain(change.other, was, now);
            }
        }
    }
}

// --- Editing -------------------------------------------------------------------------------------------------------

bool TakeRows::canEdit(int row) const {
    return row >= 0 && !locked_ && !missing_.contains(row) &&
           isEditable(rows_.at(static_cast<std::size_t>(row)).groupe);
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
    if (locked_) return;
    Step step{name, {}};
    step.changes.reserve(changes.size());
    std::vector<int> touched;
    touched.reserve(changes.size());
    for (auto& [row, state] : changes) {
        RowState& current = rows_.at(static_cast<std::size_t>(row));
        if (sameEdits(state, current)) continue;
        state.groupe.estDeplie = current.groupe.estDeplie;
        std::swap(current, state);
        step.changes.push_back({keyOf(originals_[static_cast<std::size_t>(row)]), std::move(state)});
        markEdited(row);
        touched.push_back(row);
    }
    if (step.changes.empty()) return;
    // A row may have another number by now, and another take its old one.
    const bool collapses =
        !collapseKey.isEmpty() && collapseKey == collapse_ && !undo_.empty() &&
        std::equal(undo_.back().changes.begin(), undo_.back().changes.end(), step.changes.begin(), step.changes.end(),
                   [](const Change& a, const Change& b) { return a.key == b.key; });
    if (collapses) {
        // The step before holds the rows as they were before both. Typed and taken back, there is nothing to undo.
        std::erase_if(undo_.back().changes, [this](const Change& change) {
            return sameEdits(change.other, rows_[static_cast<std::size_t>(indexOf(change.key))]);
        });
        if (undo_.back().changes.empty()) undo_.pop_back();
    } else {
        undo_.push_back(std::move(step));
        dropOldSteps();
    }
    redo_.clear();
    collapse_ = collapseKey;
    emit rowsChanged(touched);
    emit pendingChanged();
}

void TakeRows::dropOldSteps() {
    std::size_t rows = 0;
    auto kept = undo_.end();
    while (kept != undo_.begin() && undo_.end() - kept < static_cast<std::ptrdiff_t>(maxSteps)) {
        rows += std::prev(kept)->changes.size();
        if (rows > maxStepRows && kept != undo_.end()) break;
        --kept;
    }
    undo_.erase(undo_.begin(), kept);
}

void TakeRows::replay(Step& step) {
    std::vector<int> touched;
    touched.reserve(step.changes.size());
    for (Change& change : step.changes) {
        const int row = indexOf(change.key);
        if (row < 0) continue;  // the take is not in the folder any more
        RowState& current = rows_[static_cast<std::size_t>(row)];
        change.other.groupe.estDeplie = current.groupe.estDeplie;
        std::swap(current, change.other);
        markEdited(row);
        touched.push_back(row);
    }
    collapse_.clear();
    emit rowsChanged(touched);
    emit pendingChanged();
}

void TakeRows::forget() {
    undo_.clear();
    redo_.clear();
    collapse_.clear();
}

void TakeRows::forgetSteps() {
    forget();
    emit pendingChanged();
}

void TakeRows::undo() {
    if (undo_.empty() || locked_) return;
    redo_.push_back(std::move(undo_.back()));
    undo_.pop_back();
    replay(redo_.back());
}

void TakeRows::redo() {
    if (redo_.empty() || locked_) return;
    undo_.push_back(std::move(redo_.back()));
    redo_.pop_back();
    replay(undo_.back());
}

void TakeRows::discard(const std::set<int>& rows) {
    if (locked_) return;
    std::vector<int> touched;
    bool gone = false;
    for (const int row : rows) {
        const auto at = static_cast<std::size_t>(row);
        const bool estDeplie = rows_.at(at).groupe.estDeplie;
        rows_[at] = {originals_[at], std::nullopt};
        rows_[at].groupe.estDeplie = estDeplie;
        edited_.erase(row);
        gone = gone || missing_.contains(row);
        touched.push_back(row);
    }
    forget();
    emit rowsChanged(touched);
    if (gone) dropMissing();
    emit pendingChanged();
}

void TakeRows::dropMissing() {
    // They stand behind all others: whoever stays keeps its number, or gets a lower one.
    std::vector<GroupeFichiers> there;
    std::vector<RowState> states;
    std::vector<int> renumbered;
    std::set<int> edited;
    std::set<int> missing;
    for (std::size_t at = 0; at < rows_.size(); ++at) {
        const int row = static_cast<int>(at);
        const bool stays = !missing_.contains(row) || edited_.contains(row);
        renumbered.push_back(stays ? static_cast<int>(there.size()) : -1);
        if (!stays) continue;
        if (edited_.contains(row)) edited.insert(renumbered.back());
        if (missing_.contains(row)) missing.insert(renumbered.back());
        there.push_back(std::move(originals_[at]));
        states.push_back(std::move(rows_[at]));
    }
    ReadRows read(std::move(there));
    read.rows = std::move(states);
    exchange(read);
    edited_ = std::move(edited);
    missing_ = std::move(missing);
    emit rowsReset(renumbered);
}

void TakeRows::accept(const std::set<int>& rows) {
    for (const int row : rows) {
        const auto at = static_cast<std::size_t>(row);
        rows_.at(at).cues.reset();
        originals_[at] = rows_[at].groupe;
        edited_.erase(row);
    }
    forget();
    emit rowsChanged({rows.begin(), rows.end()});
    emit pendingChanged();
}

void TakeRows::filesMoved(const FileMoves& moved) {
    std::set<int> touched;
    for (const auto& [from, to] : moved) {
        const int row = indexOfFile(from);
        if (row >= 0 && !missing_.contains(row)) touched.insert(row);
    }
    const auto follow = [&](GroupeFichiers& groupe) {
        groupe.fichiers.edit([&](std::vector<InfoFichier>& fichiers) {
            for (InfoFichier& fichier : fichiers) {
                const auto found = moved.find(fichier.url);
                if (found == moved.end()) continue;
                fichier.url = found->second;
                fichier.nom = baseNameText(found->second);
            }
        });
    };
    // Names may be passed on from one take to another: all old ones go before the first new one comes.
    for (const int row : touched) {
        const auto at = static_cast<std::size_t>(row);
        byKey_.erase(keyOf(originals_[at]));
        for (const InfoFichier& fichier : originals_[at].fichiers)
            byFile_.erase(fichier.url.native());
    }
    for (const int row : touched) {
        const auto at = static_cast<std::size_t>(row);
        const bool sameNames = rows_[at].groupe.fichiers.isSharedWith(originals_[at].fichiers);
        follow(originals_[at]);
        originals_[at].nom = rows_[at].groupe.nom;
        if (sameNames) {
            rows_[at].groupe.fichiers = originals_[at].fichiers;
        } else {
            follow(rows_[at].groupe);
        }
        byKey_.emplace(keyOf(originals_[at]), row);
        for (const InfoFichier& fichier : originals_[at].fichiers)
            byFile_.emplace(fichier.url.native(), row);
        markEdited(row);
    }
    forget();  // the steps lead to names that are no more
    std::vector<int> unmoved(rows_.size());
    std::iota(unmoved.begin(), unmoved.end(), 0);
    emit rowsReset(unmoved);
    emit pendingChanged();
}

void TakeRows::setDeplie(int row, bool estDeplie) {
    rows_.at(static_cast<std::size_t>(row)).groupe.estDeplie = estDeplie;
}

}  // namespace dravik
