#include "operations/delete_tracks.h"

#include "operations/operation_audio_error.h"
#include "operations/poly_take.h"

#include <fmt/format.h>

namespace dravik::OperationsAudio {

OperationPlan planDeleteTracks(FileOps& ops, const GroupeFichiers& groupe, const std::set<int>& canaux,
                               const std::optional<std::filesystem::path>& dossier, DestinationNames& names) {
    if (!groupe.estPoly) throw OperationAudioError::groupeIncompatible("Delete tracks requires a poly file.");
    if (canaux.empty()) throw OperationAudioError::groupeIncompatible("Select at least one track to remove.");
    const PolyTake take(ops, groupe, PolyTake::Chunks::strictly);
    take.checkChannels(std::vector<int>(canaux.begin(), canaux.end()));
    std::vector<OutputTrack> tracks;
    for (int canal = 0; canal < take.channels(); ++canal) {
        if (!canaux.contains(canal)) tracks.push_back(take.outputTrack(canal, take.track(canal).numero));
    }
    if (tracks.empty()) throw OperationAudioError::groupeIncompatible("At least one track must remain.");
    OperationPlan plan = take.plan(groupe);
    plan.add(take.output({}, std::move(tracks)));
    std::filesystem::path& destination = plan.outputs.front().destination;
    destination = names.plan(destinationFolder(groupe, dossier), outputBase(groupe, "Reordered"), {"_del.wav"}).front();
    plan.message = fmt::format("Created {}", destination.filename().native());
    return plan;
}

}  // namespace dravik::OperationsAudio
