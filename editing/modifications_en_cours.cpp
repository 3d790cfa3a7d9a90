#include "editing/modifications_en_cours.h"

#include <utility>

namespace dravik {

template <typename Value>
void ModificationsEnCours::set(Value& champ, const Value& valeur, void (ModificationsEnCours::*changed)()) {
    if (champ == valeur) return;
    champ = valeur;
    emit(this->*changed)();
    recalculer();
}

void ModificationsEnCours::charger(const AudioMetadata& metadata, const std::vector<Piste>& pistes, double sampleRate) {
    ChampsEdites champs;
    champs.project = metadata.project.value_or("");
    champs.scene = metadata.scene.value_or("");
    champs.tape = metadata.tape.value_or("");
    champs.prise = metadata.prise.value_or("");
    champs.note = metadata.note.value_or("");
    champs.circled = metadata.circled;
    champs.wild = metadata.wild;
    champs.timecode = metadata.timecode.value_or("");
    champs.framerate = metadata.framerate.value_or("");
    for (const Piste& piste : pistes)
        champs.nomsPistes[piste.numero] = piste.nom;
    sampleRate_ = sampleRate;
    originaux_ = champs;
    remplacer(std::move(champs));
}

void ModificationsEnCours::recalculer() {
    const bool modifie = edites_ != originaux_ || modifTableau_ || modifCues_;
    if (modifie == aDesModifications_) return;
    aDesModifications_ = modifie;
    emit aDesModificationsChanged();
}

void ModificationsEnCours::annuler() { remplacer(originaux_); }

void ModificationsEnCours::valider() {
    originaux_ = edites_;
    remplacer(edites_);
}

void ModificationsEnCours::remplacer(ChampsEdites champs) {
    // All values first: nobody who is told of one may find the others of another take, or edits where there are none.
    std::swap(edites_, champs);
    const bool wasTableau = std::exchange(modifTableau_, false);
    const bool wasCues = std::exchange(modifCues_, false);
    const ChampsEdites& avant = champs;
    const std::pair<bool, void (ModificationsEnCours::*)()> changes[] = {
        {avant.project != edites_.project, &ModificationsEnCours::projectChanged},
        {avant.scene != edites_.scene, &ModificationsEnCours::sceneChanged},
        {avant.tape != edites_.tape, &ModificationsEnCours::tapeChanged},
        {avant.prise != edites_.prise, &ModificationsEnCours::priseChanged},
        {avant.note != edites_.note, &ModificationsEnCours::noteChanged},
        {avant.circled != edites_.circled, &ModificationsEnCours::circledChanged},
        {avant.wild != edites_.wild, &ModificationsEnCours::wildChanged},
        {avant.nomsPistes != edites_.nomsPistes, &ModificationsEnCours::nomsPistesChanged},
        {avant.timecode != edites_.timecode, &ModificationsEnCours::timecodeChanged},
        {avant.framerate != edites_.framerate, &ModificationsEnCours::framerateChanged},
        {wasTableau, &ModificationsEnCours::modifTableauChanged},
        {wasCues, &ModificationsEnCours::modifCuesChanged},
        {std::exchange(aDesModifications_, false), &ModificationsEnCours::aDesModificationsChanged},
    };
    for (const auto& [changed, signal] : changes) {
        if (changed) emit(this->*signal)();
    }
}

void ModificationsEnCours::setProject(const std::string& texte) {
    set(edites_.project, texte, &ModificationsEnCours::projectChanged);
}
void ModificationsEnCours::setScene(const std::string& texte) {
    set(edites_.scene, texte, &ModificationsEnCours::sceneChanged);
}
void ModificationsEnCours::setTape(const std::string& texte) {
    set(edites_.tape, texte, &ModificationsEnCours::tapeChanged);
}
void ModificationsEnCours::setPrise(const std::string& texte) {
    set(edites_.prise, texte, &ModificationsEnCours::priseChanged);
}
void ModificationsEnCours::setNote(const std::string& texte) {
    set(edites_.note, texte, &ModificationsEnCours::noteChanged);
}
void ModificationsEnCours::setCircled(bool valeur) {
    set(edites_.circled, valeur, &ModificationsEnCours::circledChanged);
}
void ModificationsEnCours::setWild(bool valeur) { set(edites_.wild, valeur, &ModificationsEnCours::wildChanged); }
void ModificationsEnCours::setNomPiste(int piste, const std::string& nom) {
    std::map<int, std::string> noms = edites_.nomsPistes;
    noms[piste] = nom;
    set(edites_.nomsPistes, noms, &ModificationsEnCours::nomsPistesChanged);
}
void ModificationsEnCours::setTimecode(const std::string& texte) {
    set(edites_.timecode, texte, &ModificationsEnCours::timecodeChanged);
}
void ModificationsEnCours::setFramerate(const std::string& label) {
    set(edites_.framerate, label, &ModificationsEnCours::framerateChanged);
}
void ModificationsEnCours::setModifTableau(bool valeur) {
    set(modifTableau_, valeur, &ModificationsEnCours::modifTableauChanged);
}
void ModificationsEnCours::setModifCues(bool valeur) {
    set(modifCues_, valeur, &ModificationsEnCours::modifCuesChanged);
}

}  // namespace dravik
