#include "operations/track_eligibility.h"

#include <algorithm>
#include <iterator>

namespace dravik {

int trackCount(const GroupeFichiers& groupe) noexcept {
    return groupe.estPoly ? std::max(0, groupe.fichiers.front().channels) : static_cast<int>(groupe.fichiers.size());
}

namespace OperationsAudio {
namespace {

bool isWave(const InfoFichier& fichier) noexcept { return isEditable(fichier.url) && fichier.estRiff; }

bool isMonoWaveSet(const GroupeFichiers& groupe) noexcept {
    return groupe.isMonoSet() && std::all_of(groupe.fichiers.begin(), groupe.fichiers.end(), isWave);
}

}  // namespace

bool isPolyWave(const GroupeFichiers& groupe) noexcept {
    return groupe.estPoly && isWave(groupe.fichiers.front()) && groupe.fichiers.front().channels >= 2;
}

bool isMergeable(const GroupeFichiers& groupe) noexcept {
    if (!isMonoWaveSet(groupe)) return false;
    const auto fits = [](const InfoFichier& a, const InfoFichier& b) {
        return a.sampleRate == b.sampleRate && a.bits == b.bits && a.dureeSecondes == b.dureeSecondes;
    };
    // Members that do not fit can be left out.
    for (auto one = groupe.fichiers.begin(); one != groupe.fichiers.end(); ++one) {
        if (std::any_of(std::next(one), groupe.fichiers.end(),
                        [&](const InfoFichier& other) { return fits(*one, other); }))
            return true;
    }
    return false;
}

bool isReorderable(const GroupeFichiers& groupe) noexcept { return isPolyWave(groupe) || isMonoWaveSet(groupe); }

bool isExportable(const GroupeFichiers& groupe) noexcept {
    return std::all_of(groupe.fichiers.begin(), groupe.fichiers.end(), [](const InfoFichier& fichier) {
        const bool wave = fichier.format == "WAV" || fichier.format == "BWF" || fichier.format == "RF64";
        return wave && fichier.channels > 0 && fichier.sampleRate > 0;
    });
}

}  // namespace OperationsAudio
}  // namespace dravik
