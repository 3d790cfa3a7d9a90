#include "model/groupe_fichiers.h"

#include <algorithm>

#include <fmt/format.h>

namespace dravik {
namespace {

/// Tracks shown of one file: more than any recorder has, and few enough to list when a damaged number claims millions.
constexpr int maxTracksShown = 1024;

/// The value all files share; where they differ the default, and the field is marked.
template <typename Value>
Value shared(GroupeFichiers& groupe, MetadataField field, Value InfoFichier::*member) {
    const Value& first = groupe.fichiers.front().*member;
    const bool agree = std::all_of(groupe.fichiers.begin(), groupe.fichiers.end(),
                                   [&](const InfoFichier& fichier) { return fichier.*member == first; });
    if (agree) return first;
    groupe.mixedFields.insert(field);
    return Value{};
}

}  // namespace

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

std::string lackingFilesText(const GroupeFichiers& groupe) {
    if (groupe.filesNotThere == 0) return {};
    const int here = groupe.filesWritten - groupe.filesNotThere;
    return fmt::format("The recorder says that it wrote {} files of this take, of which {} {} here.",
                       groupe.filesWritten, here, here == 1 ? "is" : "are");
}

std::vector<Piste> tracksOfGroup(const GroupeFichiers& groupe) {
    std::vector<Piste> pistes;
    const auto add = [&](const std::map<int, std::string>& noms, int cle, std::optional<int> numeroTrack) {
        const auto nom = noms.find(cle);
        pistes.push_back({Uuid::random(), static_cast<int>(pistes.size()) + 1,
                          nom == noms.end() ? std::string() : displayName(nom->second), numeroTrack});
    };
    const auto numero = [](const InfoFichier& fichier, int position) -> std::optional<int> {
        const auto found = fichier.numerosTracks.find(position);
        return found == fichier.numerosTracks.end() ? std::nullopt : std::optional(found->second);
    };
    if (groupe.isMonoSet()) {
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
    if (fichier.channels == 1 && fichier.nomsPistes.size() <= 1) {
        add(fichier.nomsPistes, fichier.nomsPistes.empty() ? 1 : fichier.nomsPistes.begin()->first,
            fichier.numerosTracks.empty() ? std::nullopt : std::optional(fichier.numerosTracks.begin()->second));
        return pistes;
    }
    for (int position = 1; position <= std::min(last, maxTracksShown); ++position)
        add(fichier.nomsPistes, position, numero(fichier, position));
    return pistes;
}

void mergeMetadata(GroupeFichiers& groupe) {
    groupe.mixedFields.clear();
    groupe.project = shared(groupe, MetadataField::project, &InfoFichier::project);
    groupe.scene = shared(groupe, MetadataField::scene, &InfoFichier::scene);
    groupe.prise = shared(groupe, MetadataField::prise, &InfoFichier::prise);
    groupe.tape = shared(groupe, MetadataField::tape, &InfoFichier::tape);
    groupe.notes = shared(groupe, MetadataField::note, &InfoFichier::notes);
    groupe.circled = shared(groupe, MetadataField::circled, &InfoFichier::circled);
    groupe.wild = shared(groupe, MetadataField::wild, &InfoFichier::wild);
    groupe.timecode = shared(groupe, MetadataField::timecode, &InfoFichier::timecode);
    groupe.framerate = shared(groupe, MetadataField::framerate, &InfoFichier::framerate);
    groupe.forcerSauvegardeMetadata = std::any_of(groupe.fichiers.begin(), groupe.fichiers.end(),
                                                  [](const InfoFichier& f) { return f.forcerSauvegardeMetadata; });
}

}  // namespace dravik
