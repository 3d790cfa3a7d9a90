#include "editing/save_values.h"

namespace dravik {

ValeursMetadata valeursPourFichier(const ChampsEdites& edites, const ChampsEdites& originaux,
                                   const GroupeFichiers& groupe, std::size_t position,
                                   const std::set<ChampMetadata>& decided) {
    const auto ifEdited = [&](auto ChampsEdites::*member, ChampMetadata champ) {
        const auto& edite = edites.*member;
        return edite == originaux.*member && !decided.contains(champ) ? std::nullopt : std::optional(edite);
    };
    constexpr double assumedSampleRate = 48000;
    const InfoFichier& fichier = groupe.fichiers.at(position);
    ValeursMetadata valeurs;
    valeurs.project = ifEdited(&ChampsEdites::project, ChampMetadata::project);
    valeurs.scene = ifEdited(&ChampsEdites::scene, ChampMetadata::scene);
    valeurs.tape = ifEdited(&ChampsEdites::tape, ChampMetadata::tape);
    valeurs.prise = ifEdited(&ChampsEdites::prise, ChampMetadata::prise);
    valeurs.note = ifEdited(&ChampsEdites::note, ChampMetadata::note);
    valeurs.circled = ifEdited(&ChampsEdites::circled, ChampMetadata::circled);
    valeurs.wild = ifEdited(&ChampsEdites::wild, ChampMetadata::wild);
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

    const bool timecodeEdited = edites.timecode != originaux.timecode;
    const bool framerateEdited = edites.framerate != originaux.framerate;
    if (timecodeEdited || framerateEdited) {
        valeurs.timecode = timecodeEdited ? edites.timecode : fichier.timecode.value_or("");
        valeurs.framerate = framerateEdited ? edites.framerate : fichier.framerate.value_or("");
    }

    const auto wasEdited = [&](int piste, const std::string& nom) {
        const auto original = originaux.nomsPistes.find(piste);
        return original == originaux.nomsPistes.end() || original->second != nom;
    };
    // A file with one channel has one track, whatever number its recorder gave it; unless it lists several.
    const bool oneTrack = groupe.estEnsembleMono() || (fichier.channels == 1 && fichier.nomsPistes.size() <= 1);
    const int own = groupe.estEnsembleMono() ? static_cast<int>(position) + 1 : 1;
    for (const auto& [piste, nom] : edites.nomsPistes) {
        if (!wasEdited(piste, nom)) continue;
        if (!oneTrack) {
            valeurs.nomsPistes[piste] = nom;
        } else if (piste == own) {
            valeurs.nomPisteUnique = nom;
        }
    }
    return valeurs;
}

bool contientUneEdition(const ValeursMetadata& valeurs) noexcept {
    return valeurs.project || valeurs.scene || valeurs.tape || valeurs.prise || valeurs.note || valeurs.circled ||
           valeurs.wild || !valeurs.nomsPistes.empty() || valeurs.nomPisteUnique || !valeurs.timecode.empty() ||
           !valeurs.framerate.empty();
}

}  // namespace dravik
