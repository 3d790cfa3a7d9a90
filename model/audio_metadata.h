#pragma once

#include "model/groupe_fichiers.h"

#include <optional>
#include <string>

namespace dravik {

/// The summary of the selected take, as shown: display strings, nothing that the probe did not read.
struct AudioMetadata {
    std::string nom;
    std::string format;
    std::string duree;       ///< "00:04:12.345"
    double dureeExacte = 0;  ///< seconds
    std::string sampleRate;  ///< "48 kHz", "44.1 kHz"
    std::string bitDepth;    ///< "24 bit"; empty for compressed formats
    std::string nbPistes;
    std::optional<std::string> project, scene, tape, prise, note;
    bool circled = false, wild = false;
    std::optional<std::string> timecode, framerate;
};

/// Seconds above which a length is no length but a damaged header: thirty years. Shown as none.
inline constexpr double longestDuration = 1e9;

[[nodiscard]] AudioMetadata summary(const GroupeFichiers& groupe);

/// "HH:MM:SS.mmm" of a length in seconds; not negative.
[[nodiscard]] std::string durationText(double secondes);
/// "48 kHz", "44.1 kHz"; empty for 0.
[[nodiscard]] std::string sampleRateText(double hertz);
/// Decimal units with one digit: "731 KB", "1.4 MB", "2.3 GB".
[[nodiscard]] std::string sizeText(std::uint64_t octets);

}  // namespace dravik
