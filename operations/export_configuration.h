#pragma once

#include "model/groupe_fichiers.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>

namespace dravik {

/// What is to be exported, and as what. Values; tracks are positions in the group, from 0.

/// Which tracks of the group become which channels of the new file.
namespace routing {
/// One track, or two added up, each scaled by the gain. There is no further halving: the gain alone sets the level.
struct Mono {
    int first = 0;
    std::optional<int> second;
    double averageGainDB = -3.0;
};
struct Stereo {
    int left = 0, right = 1;
};
/// Every track, in order.
struct Poly {};
}  // namespace routing
using OperationAudioExportRouting = std::variant<routing::Mono, routing::Stereo, routing::Poly>;

/// Of a listening copy when none is asked for.
inline constexpr int defaultExportBitRate = 256;  ///< kbit/s

/// A new WAV file.
struct OperationAudioExportConfiguration {
    GroupeFichiers groupe;
    std::string destinationName;  ///< file name without folder
    OperationAudioExportRouting routing = routing::Poly{};
    int bitDepth = 24;                             ///< 16 or 24; 32 with isFloat
    bool isFloat = false;                          ///< only with 32
    std::optional<double> sampleRate = {};         ///< Hz; absent: the source's
    std::optional<std::uint64_t> ditherSeed = {};  ///< absent: another one in each run
};

/// A listening copy in M4A.
struct OperationAudioAACExportConfiguration {
    GroupeFichiers groupe;
    std::string destinationName;  ///< ends in ".m4a"
    OperationAudioExportRouting routing = routing::Stereo{};
    int bitRate = defaultExportBitRate;  ///< kbit/s
};

/// A listening copy in MP3.
struct OperationAudioMP3ExportConfiguration {
    GroupeFichiers groupe;
    std::string destinationName;  ///< ends in ".mp3"
    OperationAudioExportRouting routing = routing::Stereo{};
    int bitRate = defaultExportBitRate;     ///< kbit/s
    std::optional<double> sampleRate = {};  ///< Hz; absent: the source's
};

/// No converter makes audio of a higher rate, and a rate beyond it is a slip: it would fill the disk before it is seen.
inline constexpr double mostExportSampleRate = 768000;  ///< Hz

/// What is offered to choose from; "as the source" is always offered beside the rates.
inline constexpr std::array fixedExportSampleRates = {44100, 48000, 88200, 96000, 192000};  ///< Hz
inline constexpr std::array aacExportBitRates = {96, 128, 160, 192, 256, 320};              ///< kbit/s
inline constexpr std::array mp3ExportBitRates = {128, 192, 256, 320};                       ///< kbit/s
inline constexpr std::array mp3ExportSampleRates = {44100, 48000};                          ///< Hz; MP3 takes no other

}  // namespace dravik
