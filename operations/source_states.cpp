#include "operations/source_states.h"

#include "operations/operation_audio_error.h"
#include "operations/source_wav.h"

namespace dravik::OperationsAudio {

SourceStates::SourceStates(FileOps& ops, const GroupeFichiers& groupe) : ops_(ops) {
    for (const InfoFichier& fichier : groupe.fichiers)
        states_.emplace_back(fichier.url, ops.stampAt(fichier.url));
}

void SourceStates::checkUnchanged() const {
    for (const auto& [url, state] : states_) {
        if (ops_.stampAt(url) == state) continue;
        throw OperationAudioError::donneesAudioInaccessibles(
            aboutFile(url, " was changed by another program meanwhile."));
    }
}

}  // namespace dravik::OperationsAudio
