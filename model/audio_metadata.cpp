#include "model/audio_metadata.h"

#include <array>
#include <cmath>

#include <fmt/format.h>

namespace dravik {

std::string durationText(double secondes) {
    if (!(secondes > 0) || secondes > longestDuration) secondes = 0;
    const auto millis = static_cast<std::int64_t>(std::llround(secondes * 1000));
    return fmt::format("{:02}:{:02}:{:02}.{:03}", millis / 3'600'000, millis / 60'000 % 60, millis / 1000 % 60,
                       millis % 1000);
}

std::string sampleRateText(double hertz) { return hertz > 0 ? fmt::format("{:g} kHz", hertz / 1000) : std::string(); }

std::string sizeText(std::uint64_t octets) {
    static constexpr std::array units = {"KB", "MB", "GB", "TB"};
    if (octets < 1000) return fmt::format("{} B", octets);
    double value = static_cast<double>(octets) / 1000;
    std::size_t unit = 0;
    const auto printsAsThousand = [&] { return value >= (unit == 0 ? 999.5 : 999.95); };
    while (printsAsThousand() && unit + 1 < units.size()) {
        value /= 1000;
        ++unit;
    }
    return unit == 0 ? fmt::format("{:.0f} {}", value, units[unit]) : fmt::format("{:.1f} {}", value, units[unit]);
}

AudioMetadata summary(const GroupeFichiers& groupe) {
    const InfoFichier& premier = groupe.fichiers.front();
    AudioMetadata metadata;
    metadata.nom = groupe.nom;
    metadata.format = premier.format;
    metadata.dureeExacte = premier.dureeSecondes;
    metadata.duree = durationText(premier.dureeSecondes);
    metadata.sampleRate = sampleRateText(premier.sampleRate);
    if (premier.bits > 0) metadata.bitDepth = fmt::format("{} bit", premier.bits);
    metadata.nbPistes = fmt::format("{}", tracksOfGroup(groupe).size());
    metadata.project = groupe.project;
    metadata.scene = groupe.scene;
    metadata.tape = groupe.tape;
    metadata.prise = groupe.prise;
    metadata.note = groupe.notes;
    metadata.circled = groupe.circled;
    metadata.wild = groupe.wild;
    metadata.timecode = groupe.timecode;
    metadata.framerate = groupe.framerate;
    return metadata;
}

}  // namespace dravik
