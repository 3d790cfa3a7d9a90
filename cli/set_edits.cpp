#include "cli/set_edits.h"

#include "base/paths.h"
#include "base/text.h"
#include "cli/display_text.h"
#include "editing/modifications_en_cours.h"
#include "editing/row_edits.h"
#include "model/folder_scan.h"
#include "model/wave/timecode.h"

#include <cmath>
#include <set>
#include <utility>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace dravik {
namespace {

/// High-speed cameras end here; more is a typing error.
constexpr double greatestFramerate = 240;

std::string withoutBlanks(std::string_view text) { return replacedAll(lowerAscii(text), " ", ""); }

void checkText(std::string_view option, const std::optional<std::string>& text) {
    if (!text) return;
    if (!isValidUtf8(*text)) throw UsageError(fmt::format("{}: the value is not UTF-8 text.", option));
    if (!isPlainText(*text)) throw UsageError(fmt::format("{}: the value holds a control character.", option));
}

/// Fields on which the take's files disagree and for which a value was given: also a value that equals the one an
/// undecided field shows ("" or no) is an edit of them.
std::set<MetadataField> decidedFields(const SetOptions& options) {
    std::set<MetadataField> fields;
    const auto add = [&](bool given, MetadataField field) {
        if (given) fields.insert(field);
    };
    add(options.project.has_value(), MetadataField::project);
    add(options.scene.has_value(), MetadataField::scene);
    add(options.take.has_value(), MetadataField::prise);
    add(options.tape.has_value(), MetadataField::tape);
    add(options.note.has_value(), MetadataField::note);
    add(options.circled.has_value(), MetadataField::circled);
    add(options.wild.has_value(), MetadataField::wild);
    return fields;
}

}  // namespace

std::optional<std::string> framerateFromTyped(std::string_view typed) {
    const std::string wanted = withoutBlanks(typed);
    for (const std::string_view label : framerateLabels) {
        if (withoutBlanks(label) == wanted) return std::string(label);
    }
    const std::optional<double> number = parseDouble(wanted);
    if (!number || *number < 1 || *number > greatestFramerate || *number != std::floor(*number)) return std::nullopt;
    return framerateLabel(*number, std::nullopt);
}

SetEdits::SetEdits(const SetOptions& options) : options_(options) {
    checkText("--project", options.project);
    checkText("--scene", options.scene);
    checkText("--take", options.take);
    checkText("--tape", options.tape);
    checkText("--note", options.note);
    for (const auto& track : options.tracks)
        checkText("--track", track.second);
    checkText("--name", options.name);
    if (options.name && !isValidName(*options.name)) {
        throw UsageError(fmt::format("\"{}\" cannot be the name of a file.", *options.name));
    }
    if (options.name && isListed(*options.name)) {
        throw UsageError("--name is given without the extension; every file keeps its own.");
    }
    if (options.framerate) {
        framerate_ = framerateFromTyped(*options.framerate);
        if (!framerate_) {
            throw UsageError(fmt::format("\"{}\" is not a frame rate: use {}, or a whole number.", *options.framerate,
                                         fmt::join(framerateLabels, ", ")));
        }
    }
}

std::string SetEdits::timecodeFor(const GroupeFichiers& groupe) const {
    std::string text;
    for (const InfoFichier& fichier : groupe.fichiers) {
        const std::optional<std::string>& label = framerate_ ? framerate_ : fichier.framerate;
        if (!label) {
            throw UsageError(fmt::format("{} has no frame rate to count a timecode in: give --framerate as well.",
                                         shown(fichier.url)));
        }
        if (!isWritableLabel(*label)) {
            throw UsageError(fmt::format("{}: a start timecode cannot be kept at {} fps; give --framerate as well.",
                                         shown(fichier.url), *label));
        }
        const std::optional<std::string> valid = parseTypedTimecode(*options_.timecode, *label);
        if (!valid) {
            throw UsageError(fmt::format("Invalid Timecode: \"{}\" at {} fps. Use HH:MM:SS:FF or HHMMSSFF.",
                                         *options_.timecode, *label));
        }
        text = *valid;
    }
    return text;
}

std::vector<SaveItem> SetEdits::itemsFor(const GroupeFichiers& groupe) const {
    const std::vector<Piste> pistes = tracksOfGroup(groupe);
    ModificationsEnCours edits;
    edits.charger(summary(groupe), pistes, groupe.fichiers.front().sampleRate);
    if (options_.project) edits.setProject(*options_.project);
    if (options_.scene) edits.setScene(*options_.scene);
    if (options_.take) edits.setPrise(*options_.take);
    if (options_.tape) edits.setTape(*options_.tape);
    if (options_.note) edits.setNote(*options_.note);
    if (options_.circled) edits.setCircled(*options_.circled);
    if (options_.wild) edits.setWild(*options_.wild);
    if (framerate_) edits.setFramerate(*framerate_);
    if (options_.timecode) edits.setTimecode(timecodeFor(groupe));
    const auto checkTrack = [&](int track) {
        if (track >= 1 && std::cmp_less_equal(track, pistes.size())) return;
        throw UsageError(
            fmt::format("There is no track {}: {} has {}.", track, groupe.nom, counted(pistes.size(), "track")));
    };
    for (const auto& [track, name] : options_.tracks) {
        checkTrack(track);
        edits.setTrackName(track, name);
    }
    TrackNumbers numbers;
    for (const auto& [track, number] : options_.channels) {
        checkTrack(track);
        numbers[track] = number;
    }
    if (const auto problem = trackNumberProblem(groupe, numbers)) throw UsageError(*problem);
    edits.setTrackNumbers(numbers);
    std::set<MetadataField> decided = decidedFields(options_);
    std::erase_if(decided, [&](MetadataField field) { return !groupe.mixedFields.contains(field); });
    return planSave(groupe, edits.fields(), edits.originals(), options_.name, decided);
}

}  // namespace dravik
