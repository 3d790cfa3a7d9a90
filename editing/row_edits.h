#pragma once

#include "editing/cue_marker.h"
#include "editing/modifications_en_cours.h"
#include "editing/save_transaction.h"
#include "model/groupe_fichiers.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace dravik {

/// The pending edits of a row of the take list: the row as it is shown beside the row as it was read. Both are whole
/// values, so that an edit is a changed value, and undo is the value before it. Pure functions, any thread.

/// A row as shown: the take with its edited fields, name and track names, and its markers where they were edited.
struct RowState {
    GroupeFichiers groupe;
    std::optional<std::vector<CueMarker>> cues;  ///< absent: the markers are those of the files
};

/// What of a row can be edited, for marks and messages. The metadata fields are a range of it in the same order.
enum class RowField {
    name,
    project,
    scene,
    prise,
    tape,
    note,
    circled,
    wild,
    timecode,
    framerate,
    tracks,
    trackNumbers,
    cues
};

/// The row's fields as texts and flags, track names and numbers included.
[[nodiscard]] EditedFields fieldsOf(const GroupeFichiers& groupe);

/// Text fields of a row: name, project, scene, prise, tape, note, timecode, framerate. An empty text is no value.
[[nodiscard]] std::string textOf(const GroupeFichiers& groupe, RowField field);
/// Sets one of them, in the form in which it is kept; the field is not mixed any more. False when the text cannot be
/// a value of this field (a name no file can have, a timecode that is none at the row's frame rate, a frame rate that
/// is not offered); the row is as before then.
[[nodiscard]] bool setText(GroupeFichiers& groupe, RowField field, const std::string& text);
/// Circled or wild.
void setFlag(GroupeFichiers& groupe, RowField field, bool valeur);
/// Name of a track of the take, as shown; `piste` counts from 1 as in tracksOfGroup. Unknown tracks are passed over.
void setTrackName(GroupeFichiers& groupe, int piste, const std::string& nom);

/// Recorder's channel numbers by track of the take, as in tracksOfGroup.
using TrackNumbers = std::map<int, int>;
/// Largest number that can be given: no recorder has more inputs, and the list shows three digits.
inline constexpr int maxTrackNumber = 999;
/// "7" as a number that a track can have; absent for anything but 1 to maxTrackNumber.
[[nodiscard]] std::optional<int> parseTrackNumber(std::string_view text) noexcept;
/// Why these numbers cannot be given to the take, as a sentence: one is none, or two tracks would have the same. Two
/// tracks that are not edited may, as recorders write it. Absent when they can; unknown tracks are passed over.
[[nodiscard]] std::optional<std::string> trackNumberProblem(const GroupeFichiers& groupe, const TrackNumbers& numeros);
/// Gives all of them at once, so that two can change places. False, and nothing changed, when there is a problem.
[[nodiscard]] bool setTrackNumbers(GroupeFichiers& groupe, const TrackNumbers& numeros);
/// The numbers in which `fields` differ from `before`.
[[nodiscard]] TrackNumbers editedNumbers(const EditedFields& fields, const EditedFields& before);

/// Can this row be edited: could all its files be read, and are they of a writable format, in name and in fact?
[[nodiscard]] bool isEditable(const GroupeFichiers& groupe);
/// Do its files disagree on the field?
[[nodiscard]] bool isMixed(const GroupeFichiers& groupe, RowField field);

/// The fields in which the row differs from what was read.
[[nodiscard]] std::set<RowField> editedFields(const RowState& row, const GroupeFichiers& original);
[[nodiscard]] bool isEdited(const RowState& row, const GroupeFichiers& original);

/// The files of a take with the fields that the take shows: those on which the files do not agree are each file's own.
[[nodiscard]] std::vector<InfoFichier> filesAsShown(const GroupeFichiers& groupe);

/// What a save has to do for the row, files without work left out.
[[nodiscard]] std::vector<SaveItem> planSave(const RowState& row, const GroupeFichiers& original);

/// The take after this one: the last run of digits in the text plus one, as many digits as before or more ("09" gives
/// "10", "A7" gives "A8"); a text without digits gets "2" behind it, an empty one becomes "1".
[[nodiscard]] std::string incrementedTake(const std::string& take);

}  // namespace dravik
