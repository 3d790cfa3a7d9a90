#pragma once

#include "operations/export_run.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dravik {

enum class ExportAudioFormat { wav, mp3, aac };

/// Which tracks of a take become the channels of its new file.
using ExportRouteRule = std::function<OperationAudioExportRouting(const GroupeFichiers&)>;

/// What was chosen for a run of exports, whoever asked for it; what a format has no use for is passed over. A value.
struct ExportChoice {
    ExportAudioFormat format = ExportAudioFormat::wav;
    ExportRouteRule route = {};  ///< absent: standardRoute
    int bitDepth = 24;           ///< WAV: 16 or 24; 32 with isFloat
    bool isFloat = false;
    std::optional<double> sampleRate = {};         ///< Hz; absent: the source's; AAC keeps that
    int bitRate = defaultExportBitRate;            ///< kbit/s; MP3 and AAC
    std::optional<std::uint64_t> ditherSeed = {};  ///< WAV; absent: another one in each run
};

namespace OperationsAudio {

[[nodiscard]] std::string_view extensionOf(ExportAudioFormat format) noexcept;  ///< ".m4a"

/// Every track of a WAV; of a listening copy the first two, or the only one.
[[nodiscard]] OperationAudioExportRouting standardRoute(ExportAudioFormat format, const GroupeFichiers& groupe);

[[nodiscard]] AnyExportConfiguration configurationOf(const ExportChoice& choice, const GroupeFichiers& groupe,
                                                     std::string destinationName);

/// The jobs of a run, one a take and in their order. Their files have the names that `exportDestinations` gives.
[[nodiscard]] std::vector<ExportJob> exportJobs(const std::vector<GroupeFichiers>& groupes, const ExportChoice& choice,
                                                const std::optional<std::filesystem::path>& folder,
                                                const std::optional<std::string>& name = {});

}  // namespace OperationsAudio
}  // namespace dravik
