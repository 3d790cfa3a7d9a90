#pragma once

#include "report/report_document.h"

#include <string>
#include <vector>

namespace dravik::test {

/// A file as a recorder's would be probed: 1 h 00 at 25 frames, ten seconds, 24 bits at 48 kHz.
[[nodiscard]] inline InfoFichier recorded(const std::string& name) {
    InfoFichier file;
    file.url = "/card/Day 3/" + name;
    file.nom = file.url.stem();
    file.format = "WAV";
    file.channels = 2;
    file.bits = 24;
    file.sampleRate = 48000;
    file.dureeSecondes = 10;
    file.timecode = "01:00:00:00";
    file.framerate = "25";
    file.taille = 2'880'000;
    return file;
}

inline constexpr RecordingDate someDay{2024, 3, 7};

}  // namespace dravik::test
