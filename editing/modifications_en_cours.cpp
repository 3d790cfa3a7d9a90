#include "editing/modifications_en_cours.h"

#include <utility>

namespace dravik {

template <typename Value>
void ModificationsEnCours::set(Value& field, const Value& valeur, void (ModificationsEnCours::*changed)()) {
    if (field == valeur) return;
    field = valeur;
    emit(this->*changed)();
    recalculer();
}

void ModificationsEnCours::charger(const AudioMetadata& metadata, const std::vector<Piste>& pistes, double sampleRate) {
    EditedFields fields;
    fields.project = metadata.project.value_or("");
    fields.scene = metadata.scene.value_or("");
    fields.tape = metadata.tape.value_or("");
    fields.prise = metadata.prise.value_or("");
    fields.note = metadata.note.value_or("");
    fields.circled = metadata.circled;
    fields.wild = metadata.wild;
    fields.timecode = metadata.timecode.value_or("");
    fields.framerate = metadata.framerate.value_or("");
    for (const Piste& piste : pistes) {
        fields.nomsPistes[piste.numero] = piste.nom;
        if (piste.numeroTrack) fields.numerosPistes[piste.numero] = *piste.numeroTrack;
    }
    sampleRate_ = sampleRate;
    originals_ = fields;
    remplacer(std::move(fields));
}

void ModificationsEnCours::recalculer() {
    const bool changed = edited_ != originals_ || modifTableau_ || modifCues_;
    if (changed == aDesModifications_) return;
    aDesModifications_ = changed;
    emit aDesModificationsChanged();
}

void ModificationsEnCours::annuler() { remplacer(originals_); }

void ModificationsEnCours::valider() {
    originals_ = edited_;
    remplacer(edited_);
}

void ModificationsEnCours::remplacer(EditedFields fields) {
    // All values first: nobody who is told of one may find the others of another take, or edits where there are none.
    std::swap(edited_, fields);
    const bool wasTableau = std::exchange(modifTableau_, false);
    const bool wasCues = std::exchange(modifCues_, false);
    const EditedFields& avant = fields;
    const std::pair<bool, void (ModificationsEnCours::*)()> changes[] = {
        {avant.project != edited_.project, &ModificationsEnCours::projectChanged},
        {avant.scene != edited_.scene, &ModificationsEnCours::sceneChanged},
        {avant.tape != edited_.tape, &ModificationsEnCours::tapeChanged},
        {avant.prise != edited_.prise, &ModificationsEnCours::priseChanged},
        {avant.note != edited_.note, &ModificationsEnCours::noteChanged},
        {avant.circled != edited_.circled, &ModificationsEnCours::circledChanged},
        {avant.wild != edited_.wild, &ModificationsEnCours::wildChanged},
        {avant.nomsPistes != edited_.nomsPistes, &ModificationsEnCours::nomsPistesChanged},
        {avant.numerosPistes != edited_.numerosPistes, &ModificationsEnCours::numerosPistesChanged},
        {avant.timecode != edited_.timecode, &ModificationsEnCours::timecodeChanged},
        {avant.framerate != edited_.framerate, &ModificationsEnCours::framerateChanged},
        {wasTableau, &ModificationsEnCours::modifTableauChanged},
        {wasCues, &ModificationsEnCours::modifCuesChanged},
        {std::exchange(aDesModifications_, false), &ModificationsEnCours::aDesModificationsChanged},
    };
    for (const auto& [changed, signal] : changes) {
        if (changed) emit(this->*signal)();
    }
}

void ModificationsEnCours::setProject(const std::string& texte) {
    set(edited_.project, texte, &ModificationsEnCours::projectChanged);
}
void ModificationsEnCours::setScene(const std::string& texte) {
    set(edited_.scene, texte, &ModificationsEnCours::sceneChanged);
}
void ModificationsEnCours::setTape(const std::string& texte) {
    set(edited_.tape, texte, &ModificationsEnCours::tapeChanged);
}
void ModificationsEnCours::setPrise(const std::string& texte) {
    set(edited_.prise, texte, &ModificationsEnCours::priseChanged);
}
void ModificationsEnCours::setNote(const std::string& texte) {
    set(edited_.note, texte, &ModificationsEnCours::noteChanged);
}
void ModificationsEnCours::setCircled(bool valeur) {
    set(edited_.circled, valeur, &ModificationsEnCours::circledChanged);
}
void ModificationsEnCours::setWild(bool valeur) { set(edited_.wild, valeur, &ModificationsEnCours::wildChanged); }
void ModificationsEnCours::setTrackName(int piste, const std::string& nom) {
    std::map<int, std::string> noms = edited_.nomsPistes;
    noms[piste] = nom;
    set(edited_.nomsPistes, noms, &ModificationsEnCours::nomsPistesChanged);
}
void ModificationsEnCours::setTrackNumbers(const std::map<int, int>& numeros) {
    std::map<int, int> tous = numeros;
    tous.insert(edited_.numerosPistes.begin(), edited_.numerosPistes.end());
    set(edited_.numerosPistes, tous, &ModificationsEnCours::numerosPistesChanged);
}
void ModificationsEnCours::setTimecode(const std::string& texte) {
    set(edited_.timecode, texte, &ModificationsEnCours::timecodeChanged);
}
void ModificationsEnCours::setFramerate(const std::string& label) {
    set(edited_.framerate, label, &ModificationsEnCours::framerateChanged);
}
void ModificationsEnCours::setModifTableau(bool valeur) {
    set(modifTableau_, valeur, &ModificationsEnCours::modifTableauChanged);
}
void ModificationsEnCours::setModifCues(bool valeur) {
    set(modifCues_, valeur, &ModificationsEnCours::modifCuesChanged);
}

}  // namespace dravik
