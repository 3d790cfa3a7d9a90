#include "app/take_audio.h"

#include "editing/folder_actions.h"

#include <algorithm>

namespace dravik {

TakeAudio TakeAudio::of(const GroupeFichiers& groupe) {
    TakeAudio audio;
    for (const InfoFichier& fichier : groupe.fichiers)
        audio.files.push_back({fichier.url, fichier.dureeSecondes, fichier.channels, fichier.sampleRate});
    return audio;
}

void TakeAudio::follow(const FileMoves& moved) {
    for (File& file : files) {
        if (const auto found = moved.find(file.url); found != moved.end()) file.url = found->second;
    }
}

bool TakeAudio::isUnder(const std::filesystem::path& root) const {
    return std::any_of(files.begin(), files.end(), [&](const File& file) { return isWithin(file.url, root); });
}

std::vector<std::filesystem::path> TakeAudio::urls() const {
    std::vector<std::filesystem::path> all;
    for (const File& file : files)
        all.push_back(file.url);
    return all;
}

}  // namespace dravik
