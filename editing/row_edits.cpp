#include "editing/row_edits.h"

#include "base/text.h"
#include "model/wave/timecode.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <tuple>

#include <fmt/format.h>

namespace dravik {
namespace {

/// The optional text behind a field; null for name, flags, tracks and cues.
template <typename Groupe>
auto textIn(Groupe& groupe, RowField field) -> decltype(&groupe.scene) {
    switch (field) {
        case RowField::project:
            return &groupe.project;
        case RowField::scene:
            return &groupe.scene;
        case RowField::prise:
            return &groupe.prise;
        case RowField::tape:
            return &groupe.tape;
        case RowField::note:
            return &groupe.notes;
        case RowField::timecode:
            return &groupe.timecode;
        case RowField::framerate:
            return &groupe.framerate;
        default:
            return nullptr;
    }
}

std::optional<MetadataField> metadataField(RowField field) {
    switch (field) {
        case RowField::project:
            return MetadataField::project;
        case RowField::scene:
            return MetadataField::scene;
        case RowField::prise:
            return MetadataField::prise;
        case RowField::tape:
            return MetadataField::tape;
        case RowField::note:
            return MetadataField::note;
        case RowField::circled:
            return MetadataField::circled;
        case RowField::wild:
            return MetadataField::wild;
        case RowField::timecode:
            return MetadataField::timecode;
        case RowField::framerate:
            return MetadataField::framerate;
        case RowField::name:
        case RowField::tracks:
        case RowField::trackNumbers:
        case RowField::cues:
            return std::nullopt;
    }
    return std::nullopt;
}

void settle(GroupeFichiers& groupe, RowField field) {
    if (const auto metadata = metadataField(field)) groupe.mixedFields.erase(*metadata);
}

bool isOfferedRate(const std::string& label) {
    return std::find(std::begin(framerateLabels), std::end(framerateLabels), label) != std::end(framerateLabels);
}

/// A start timecode needs a rate that all files count in and that can be written.
std::optional<std::string> validTimecode(const GroupeFichiers& groupe, const std::string& text) {
    if (!groupe.framerate || !isWritableLabel(*groupe.framerate)) return std::nullopt;
    return parseTypedTimecode(text, *groupe.framerate);
}

/// An empty text is no value.
bool sameText(const std::optional<std::string>& a, const std::optional<std::string>& b) {
    return (a ? std::string_view(*a) : std::string_view()) == (b ? std::string_view(*b) : std::string_view());
}

std::vector<std::string> trackNames(const GroupeFichiers& groupe) {
    std::vector<std::string> names;
    for (Piste& piste : tracksOfGroup(groupe))
        names.push_back(std::move(piste.nom));
    return names;
}

TrackNumbers trackNumbers(const std::vector<Piste>& pistes) {
    TrackNumbers numbers;
    for (const Piste& piste : pistes) {
        if (piste.numeroTrack) numbers[piste.numero] = *piste.numeroTrack;
    }
    return numbers;
}

}  // namespace

EditedFields fieldsOf(const GroupeFichiers& groupe) {
    EditedFields fields;
    fields.project = groupe.project.value_or("");
    fields.scene = groupe.scene.value_or("");
    fields.tape = groupe.tape.value_or("");
    fields.prise = groupe.prise.value_or("");
    fields.note = groupe.notes.value_or("");
    fields.circled = groupe.circled;
    fields.wild = groupe.wild;
    fields.timecode = groupe.timecode.value_or("");
    fields.framerate = groupe.framerate.value_or("");
    std::vector<Piste> pistes = tracksOfGroup(groupe);
    fields.numerosPistes = trackNumbers(pistes);
    for (Piste& piste : pistes)
        fields.nomsPistes[piste.numero] = std::move(piste.nom);
    return fields;
}

std::string textOf(const GroupeFichiers& groupe, RowField field) {
    if (field == RowField::name) return groupe.nom;
    const std::optional<std::string>* text = textIn(groupe, field);
    return text != nullptr ? text->value_or("") : std::string();
}

bool setText(GroupeFichiers& groupe, RowField field, const std::string& text) {
    if (!isValidUtf8(text)) return false;
    if (field == RowField::name) {
        if (!isValidName(text)) return false;
        // On the volumes that recorders write, names that differ only in case are one: nothing would be renamed.
        const std::string& onDisk = groupe.fichiers.front().nom;
        const std::string wanted = newBaseName(groupe, 0, text);
        if (wanted != onDisk && foldedCase(wanted) == foldedCase(onDisk)) return false;
        groupe.nom = text;
        return true;
    }
    std::optional<std::string>* place = textIn(groupe, field);
    if (place == nullptr) return false;
    std::string value = text;
    if (field == RowField::framerate && !isOfferedRate(value)) return false;
    if (field == RowField::timecode) {
        const std::optional<std::string> valid = validTimecode(groupe, text);
        if (!valid) return false;
        value = *valid;
    }
    *place = value.empty() ? std::nullopt : std::optional(std::move(value));
    settle(groupe, field);
    return true;
}

void setFlag(GroupeFichiers& groupe, RowField field, bool valeur) {
    if (field != RowField::circled && field != RowField::wild) return;
    (field == RowField::circled ? groupe.circled : groupe.wild) = valeur;
    settle(groupe, field);
}

void setTrackName(GroupeFichiers& groupe, int piste, const std::string& nom) {
    const std::vector<std::string> names = trackNames(groupe);
    if (piste < 1 || static_cast<std::size_t>(piste) > names.size()) return;
    if (names[static_cast<std::size_t>(piste) - 1] == nom) return;
    const auto put = [&](InfoFichier& fichier, bool sole) {
        const int cle = !sole ? piste : fichier.nomsPistes.empty() ? 1 : fichier.nomsPistes.begin()->first;
        // Stored texts are escaped, shown ones are not; a bare "&" reads the same either way, "&amp;" would not.
        fichier.nomsPistes[cle] = replacedAll(nom, "&", "&amp;");
    };
    if (groupe.isMonoSet()) {
        const auto position = static_cast<std::size_t>(piste - 1);
        groupe.fichiers.edit([&](std::vector<InfoFichier>& fichiers) { put(fichiers[position], true); });
        return;
    }
    const bool sole = names.size() == 1 && groupe.fichiers.front().channels == 1;
    groupe.fichiers.edit([&](std::vector<InfoFichier>& fichiers) { put(fichiers.front(), sole); });
}

std::optional<int> parseTrackNumber(std::string_view text) noexcept {
    const std::optional<std::int64_t> number = parseInteger(text);
    if (!number || *number < 1 || *number > maxTrackNumber) return std::nullopt;
    return static_cast<int>(*number);
}

std::optional<std::string> trackNumberProblem(const GroupeFichiers& groupe, const TrackNumbers& numeros) {
    const std::vector<Piste> pistes = tracksOfGroup(groupe);
    const TrackNumbers before = trackNumbers(pistes);
    TrackNumbers after = before;
    for (const auto& [piste, numero] : numeros) {
        if (piste < 1 || static_cast<std::size_t>(piste) > pistes.size()) continue;
        const auto own = before.find(piste);
        if (own != before.end() && own->second == numero) continue;  // as it is, whatever the recorder wrote
        if (numero < 1 || numero > maxTrackNumber) {
            return fmt::format("A recorder number is a whole number from 1 to {}.", maxTrackNumber);
        }
        after[piste] = numero;
    }
    for (const auto& [piste, numero] : after) {
        const auto own = before.find(piste);
        if (own != before.end() && own->second == numero) continue;
        const auto other = std::find_if(after.begin(), after.end(), [&, p = piste, n = numero](const auto& entry) {
            return entry.first != p && entry.second == n;
        });
        if (other != after.end()) {
            return fmt::format("Tracks {} and {} of {} cannot both have the recorder number {}.",
                               std::min(piste, other->first), std::max(piste, other->first), groupe.nom, numero);
        }
    }
    return std::nullopt;
}

bool setTrackNumbers(GroupeFichiers& groupe, const TrackNumbers& numeros) {
    if (trackNumberProblem(groupe, numeros)) return false;
    const std::vector<Piste> pistes = tracksOfGroup(groupe);
    const bool set = groupe.isMonoSet();
    const bool sole = set || (pistes.size() == 1 && groupe.fichiers.front().channels == 1);
    for (const auto& [piste, numero] : numeros) {
        if (piste < 1 || static_cast<std::size_t>(piste) > pistes.size()) continue;
        if (pistes[static_cast<std::size_t>(piste) - 1].numeroTrack == numero) continue;
        groupe.fichiers.edit([&, p = piste, n = numero](std::vector<InfoFichier>& fichiers) {
            std::map<int, int>& own = fichiers[set ? static_cast<std::size_t>(p) - 1 : 0].numerosTracks;
            own[!sole ? p : own.empty() ? 1 : own.begin()->first] = n;
        });
    }
    return true;
}

TrackNumbers editedNumbers(const EditedFields& fields, const EditedFields& before) {
    TrackNumbers edited;
    std::set_difference(fields.numerosPistes.begin(), fields.numerosPistes.end(), before.numerosPistes.begin(),
                        before.numerosPistes.end(), std::inserter(edited, edited.end()));
    return edited;
}

bool isEditable(const GroupeFichiers& groupe) {
    // A file without channels could not be read as audio: nothing can be put into it.
    return std::all_of(groupe.fichiers.begin(), groupe.fichiers.end(), [](const InfoFichier& fichier) {
        return isEditable(fichier.url) && fichier.channels > 0 && fichier.estRiff;
    });
}

bool isMixed(const GroupeFichiers& groupe, RowField field) {
    const auto metadata = metadataField(field);
    return metadata && groupe.mixedFields.contains(*metadata);
}

std::set<RowField> editedFields(const RowState& row, const GroupeFichiers& original) {
    std::set<RowField> fields;
    if (row.groupe.nom != original.nom) fields.insert(RowField::name);
    for (const RowField field : {RowField::project, RowField::scene, RowField::prise, RowField::tape, RowField::note,
                                 RowField::timecode, RowField::framerate}) {
        if (!sameText(*textIn(row.groupe, field), *textIn(original, field))) fields.insert(field);
    }
    if (row.groupe.circled != original.circled) fields.insert(RowField::circled);
    if (row.groupe.wild != original.wild) fields.insert(RowField::wild);
    for (int at = static_cast<int>(RowField::project); at <= static_cast<int>(RowField::framerate); ++at) {
        const auto field = static_cast<RowField>(at);
        if (isMixed(original, field) && !isMixed(row.groupe, field)) fields.insert(field);
    }
    // Names and numbers stand in the files; a row whose files nobody has touched has those of the original.
    if (!row.groupe.fichiers.isSharedWith(original.fichiers)) {
        if (trackNames(row.groupe) != trackNames(original)) fields.insert(RowField::tracks);
        if (trackNumbers(tracksOfGroup(row.groupe)) != trackNumbers(tracksOfGroup(original))) {
            fields.insert(RowField::trackNumbers);
        }
    }
    if (row.cues) fields.insert(RowField::cues);
    return fields;
}

bool isEdited(const RowState& row, const GroupeFichiers& original) { return !editedFields(row, original).empty(); }

std::vector<InfoFichier> filesAsShown(const GroupeFichiers& groupe) {
    const std::tuple<MetadataField, std::optional<std::string> GroupeFichiers::*,
                     std::optional<std::string> InfoFichier::*>
        texts[] = {{MetadataField::project, &GroupeFichiers::project, &InfoFichier::project},
                   {MetadataField::scene, &GroupeFichiers::scene, &InfoFichier::scene},
                   {MetadataField::prise, &GroupeFichiers::prise, &InfoFichier::prise},
                   {MetadataField::tape, &GroupeFichiers::tape, &InfoFichier::tape},
                   {MetadataField::note, &GroupeFichiers::notes, &InfoFichier::notes},
                   {MetadataField::timecode, &GroupeFichiers::timecode, &InfoFichier::timecode},
                   {MetadataField::framerate, &GroupeFichiers::framerate, &InfoFichier::framerate}};
    std::vector<InfoFichier> files(groupe.fichiers.begin(), groupe.fichiers.end());
    for (InfoFichier& file : files) {
        for (const auto& [field, ofGroup, ofFile] : texts) {
            if (!groupe.mixedFields.contains(field)) file.*ofFile = groupe.*ofGroup;
        }
        if (!groupe.mixedFields.contains(MetadataField::circled)) file.circled = groupe.circled;
        if (!groupe.mixedFields.contains(MetadataField::wild)) file.wild = groupe.wild;
    }
    return files;
}

std::vector<SaveItem> planSave(const RowState& row, const GroupeFichiers& original) {
    std::set<MetadataField> decided;
    std::set_difference(original.mixedFields.begin(), original.mixedFields.end(), row.groupe.mixedFields.begin(),
                        row.groupe.mixedFields.end(), std::inserter(decided, decided.end()));
    const std::optional<std::string> newName =
        row.groupe.nom != original.nom ? std::optional(row.groupe.nom) : std::nullopt;
    std::vector<SaveItem> items = planSave(original, fieldsOf(row.groupe), fieldsOf(original), newName, decided);
    if (row.cues) {
        for (SaveItem& item : items)
            item.cues = row.cues;
    }
    std::erase_if(items, [](const SaveItem& item) { return item.empty(); });
    return items;
}

std::string incrementedTake(const std::string& take) {
    const auto end = std::find_if(take.rbegin(), take.rend(), isAsciiDigit).base();
    if (end == take.begin()) return take.empty() ? "1" : take + "2";
    const auto begin = std::find_if_not(std::make_reverse_iterator(end), take.rend(), isAsciiDigit).base();
    std::string digits(begin, end);
    auto digit = digits.rbegin();
    while (digit != digits.rend() && *digit == '9')
        *digit++ = '0';
    if (digit == digits.rend()) {
        digits.insert(digits.begin(), '1');
    } else {
        ++*digit;
    }
    return std::string(take.begin(), begin) + digits + std::string(end, take.end());
}

}  // namespace dravik
