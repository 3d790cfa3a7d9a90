#include "editing/save_values.h"

#include <algorithm>

namespace dravik {

MetadataValues valuesForFile(const EditedFields& edited, const EditedFields& originals, const GroupeFichiers& groupe,
                             std::size_t position, const std::set<MetadataField>& decided) {
    const auto ifEdited = [&](auto EditedFields::*member, MetadataField field) {
        const auto& value = edited.*member;
        return value == originals.*member && !decided.contains(field) ? std::nullopt : std::optional(value);
    };
    constexpr double assumedSampleRate = 48000;
    const InfoFichier& fichier = groupe.fichiers.at(position);
    MetadataValues valeurs;
    valeurs.project = ifEdited(&EditedFields::project, MetadataField::project);
    valeurs.scene = ifEdited(&EditedFields::scene, MetadataField::scene);
    valeurs.tape = ifEdited(&EditedFields::tape, MetadataField::tape);
    valeurs.prise = ifEdited(&EditedFields::prise, MetadataField::prise);
    valeurs.note = ifEdited(&EditedFields::note, MetadataField::note);
    valeurs.circled = ifEdited(&EditedFields::circled, MetadataField::circled);
    valeurs.wild = ifEdited(&EditedFields::wild, MetadataField::wild);
    // A file that has the value already is not written for it.
    const auto dropOwn = [](std::optional<std::string>& valeur, const std::optional<std::string>& own) {
        if (valeur && *valeur == own.value_or("")) valeur.reset();
    };
    dropOwn(valeurs.project, fichier.project);
    dropOwn(valeurs.scene, fichier.scene);
    dropOwn(valeurs.tape, fichier.tape);
    dropOwn(valeurs.prise, fichier.prise);
    dropOwn(valeurs.note, fichier.notes);
    if (valeurs.circled == fichier.circled) valeurs.circled.reset();
    if (valeurs.wild == fichier.wild) valeurs.wild.reset();
    valeurs.sampleRate = fichier.sampleRate > 0 ? fichier.sampleRate : assumedSampleRate;

    const bool timecodeEdited = edited.timecode != originals.timecode;
    const bool framerateEdited = edited.framerate != originals.framerate;
    if (timecodeEdited || framerateEdited) {
        valeurs.timecode = timecodeEdited ? edited.timecode : fichier.timecode.value_or("");
        valeurs.framerate = framerateEdited ? edited.framerate : fichier.framerate.value_or("");
    }

    const auto wasEdited = [&](int piste, const std::string& nom) {
        const auto original = originals.nomsPistes.find(piste);
        return original == originals.nomsPistes.end() || original->second != nom;
    };
    // A file with one channel has one track, whatever number its recorder gave it; unless it lists several.
    const bool oneTrack = groupe.isMonoSet() || (fichier.channels == 1 && fichier.nomsPistes.size() <= 1);
    const int own = groupe.isMonoSet() ? static_cast<int>(position) + 1 : 1;
    for (const auto& [piste, nom] : edited.nomsPistes) {
        if (!wasEdited(piste, nom)) continue;
        if (!oneTrack) {
            valeurs.nomsPistes[piste] = nom;
        } else if (piste == own) {
            valeurs.soleTrackName = nom;
        }
    }
    for (const auto& [piste, numero] : edited.numerosPistes) {
        const auto original = originals.numerosPistes.find(piste);
        if (original != originals.numerosPistes.end() && original->second == numero) continue;
        if (!oneTrack) {
            valeurs.numerosTracks[piste] = numero;
        } else if (piste == own) {
            valeurs.soleTrackNumber = numero;
        }
    }
    return valeurs;
}

bool isPlainText(std::string_view text) noexcept {
    return std::none_of(text.begin(), text.end(), [](char c) {
        return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
    });
}

bool holdsOnlyText(const MetadataValues& valeurs) noexcept {
    const auto plain = [](const std::optional<std::string>& text) { return !text || isPlainText(*text); };
    return plain(valeurs.project) && plain(valeurs.scene) && plain(valeurs.tape) && plain(valeurs.prise) &&
           plain(valeurs.note) && plain(valeurs.soleTrackName) &&
           std::all_of(valeurs.nomsPistes.begin(), valeurs.nomsPistes.end(),
                       [](const auto& track) { return isPlainText(track.second); });
}

bool hasEdit(const MetadataValues& valeurs) noexcept {
    return valeurs.project || valeurs.scene || valeurs.tape || valeurs.prise || valeurs.note || valeurs.circled ||
           valeurs.wild || !valeurs.nomsPistes.empty() || valeurs.soleTrackName || !valeurs.numerosTracks.empty() ||
           valeurs.soleTrackNumber || !valeurs.timecode.empty() || !valeurs.framerate.empty();
}

}  // namespace dravik
