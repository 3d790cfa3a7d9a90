#include "model/groupe_fichiers.h"

#include <algorithm>

namespace dravik {
namespace {

/// The value all files share; where they differ the default, and the field is marked.
template <typename Value>
Value shared(GroupeFichiers& groupe, ChampMetadata champ, Value InfoFichier::*member) {
    const Value& first = groupe.fichiers.front().*member;
    const bool agree = std::all_of(groupe.fichiers.begin(), groupe.fichiers.end(),
                                   [&](const InfoFichier& fichier) { return fichier.*member == first; });
    if (agree) return first;
    groupe.champsMixtes.insert(champ);
    return Value{};
}

}  // namespace

std::string_view champTexte(ChampMetadata champ) noexcept {
    switch (champ) {
        case ChampMetadata::project:
            return "project";
        case ChampMetadata::scene:
            return "scene";
        case ChampMetadata::prise:
            return "take";
        case ChampMetadata::tape:
            return "tape";
        case ChampMetadata::note:
            return "note";
        case ChampMetadata::circled:
            return "circled";
        case ChampMetadata::wild:
            return "wild";
        case ChampMetadata::timecode:
            return "timecode";
        case ChampMetadata::framerate:
            return "framerate";
    }
    return "";
}

std::string_view recordingDateStatusText(GroupeFichiers::RecordingDateStatus status) noexcept {
    switch (status) {
        case GroupeFichiers::RecordingDateStatus::consistent:
            return "consistent";
        case GroupeFichiers::RecordingDateStatus::none:
            return "none";
        case GroupeFichiers::RecordingDateStatus::mixed:
            return "mixed";
    }
    return "";
}

GroupeFichiers::RecordingDateStatus GroupeFichiers::recordingDateStatus() const noexcept {
    std::optional<RecordingDate> found;
    for (const InfoFichier& fichier : fichiers) {
        if (!fichier.recordingDate) continue;
        if (found && *found != *fichier.recordingDate) return RecordingDateStatus::mixed;
        found = fichier.recordingDate;
    }
    return found ? RecordingDateStatus::consistent : RecordingDateStatus::none;
}

std::optional<RecordingDate> GroupeFichiers::recordingDate() const noexcept {
    if (recordingDateStatus() != RecordingDateStatus::consistent) return std::nullopt;
    for (const InfoFichier& fichier : fichiers) {
        if (fichier.recordingDate) return fichier.recordingDate;
    }
    return std::nullopt;
}

std::vector<Piste> pistesDuGroupe(const GroupeFichiers& groupe) {
    std::vector<Piste> pistes;
    const auto add = [&](const std::map<int, std::string>& noms, int cle, std::optional<int> numeroTrack) {
        const auto nom = noms.find(cle);
        pistes.push_back({Uuid::random(), static_cast<int>(pistes.size()) + 1,
                          nom == noms.end() ? std::string() : nomAffiche(nom->second), numeroTrack});
    };
    const auto numero = [](const InfoFichier& fichier, int position) -> std::optional<int> {
        const auto found = fichier.numerosTracks.find(position);
        return found == fichier.numerosTracks.end() ? std::nullopt : std::optional(found->second);
    };
    if (groupe.estEnsembleMono()) {
        // The one track of each file, under whatever number its recorder filed it.
        for (const InfoFichier& fichier : groupe.fichiers) {
            const int cle = fichier.nomsPistes.empty() ? 1 : fichier.nomsPistes.begin()->first;
            const int position = fichier.numerosTracks.empty() ? 1 : fichier.numerosTracks.begin()->first;
            add(fichier.nomsPistes, cle, numero(fichier, position));
        }
        return pistes;
    }
    const InfoFichier& fichier = groupe.fichiers.front();
    // Names that carry numbers beyond the channels (recorders that count inputs) still belong to this file.
    const int last = std::max(fichier.channels, fichier.nomsPistes.empty() ? 0 : fichier.nomsPistes.rbegin()->first);
    if (fichier.channels == 1 && fichier.nomsPistes.size() == 1) {
        add(fichier.nomsPistes, fichier.nomsPistes.begin()->first,
            fichier.numerosTracks.empty() ? std::nullopt : std::optional(fichier.numerosTracks.begin()->second));
        return pistes;
    }
    for (int position = 1; position <= std::min(last, 1024); ++position)
        add(fichier.nomsPistes, position, numero(fichier, position));
    return pistes;
}

void fusionnerMetadonnees(GroupeFichiers& groupe) {
    groupe.champsMixtes.clear();
    groupe.project = shared(groupe, ChampMetadata::project, &InfoFichier::project);
    groupe.scene = shared(groupe, ChampMetadata::scene, &InfoFichier::scene);
    groupe.prise = shared(groupe, ChampMetadata::prise, &InfoFichier::prise);
    groupe.tape = shared(groupe, ChampMetadata::tape, &InfoFichier::tape);
    groupe.notes = shared(groupe, ChampMetadata::note, &InfoFichier::notes);
    groupe.circled = shared(groupe, ChampMetadata::circled, &InfoFichier::circled);
    groupe.wild = shared(groupe, ChampMetadata::wild, &InfoFichier::wild);
    groupe.timecode = shared(groupe, ChampMetadata::timecode, &InfoFichier::timecode);
    groupe.framerate = shared(groupe, ChampMetadata::framerate, &InfoFichier::framerate);
    groupe.forcerSauvegardeMetadata = std::any_of(groupe.fichiers.begin(), groupe.fichiers.end(),
                                                  [](const InfoFichier& f) { return f.forcerSauvegardeMetadata; });
}

}  // namespace dravik
