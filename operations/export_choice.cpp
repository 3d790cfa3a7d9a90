#include "operations/export_choice.h"

#include "base/paths.h"
#include "operations/export_destination.h"
#include "operations/track_eligibility.h"

#include <utility>

namespace dravik::OperationsAudio {

std::string_view extensionOf(ExportAudioFormat format) noexcept {
    switch (format) {
        case ExportAudioFormat::wav:
            return ".wav";
        case ExportAudioFormat::mp3:
            return ".mp3";
        case ExportAudioFormat::aac:
            break;
    }
    return ".m4a";
}

OperationAudioExportRouting standardRoute(ExportAudioFormat format, const GroupeFichiers& groupe) {
    if (format == ExportAudioFormat::wav) return routing::Poly{};
    if (trackCount(groupe) >= 2) return routing::Stereo{};
    return routing::Mono{};
}

AnyExportConfiguration configurationOf(const ExportChoice& choice, const GroupeFichiers& groupe,
                                       std::string destinationName) {
    const OperationAudioExportRouting route =
        choice.route ? choice.route(groupe) : standardRoute(choice.format, groupe);
    switch (choice.format) {
        case ExportAudioFormat::mp3:
            return OperationAudioMP3ExportConfiguration{groupe, std::move(destinationName), route, choice.bitRate,
                                                        choice.sampleRate};
        case ExportAudioFormat::aac:
            return OperationAudioAACExportConfiguration{groupe, std::move(destinationName), route, choice.bitRate};
        case ExportAudioFormat::wav:
            break;
    }
    return OperationAudioExportConfiguration{
        groupe,           std::move(destinationName), route, choice.bitDepth, choice.isFloat, choice.sampleRate,
        choice.ditherSeed};
}

std::vector<ExportJob> exportJobs(const std::vector<GroupeFichiers>& groupes, const ExportChoice& choice,
                                  const std::optional<std::filesystem::path>& folder,
                                  const std::optional<std::string>& name) {
    const std::vector<std::filesystem::path> destinations =
        exportDestinations(groupes, extensionOf(choice.format), folder, name);
    std::vector<ExportJob> jobs;
    for (std::size_t at = 0; at < groupes.size(); ++at) {
        jobs.push_back(
            {configurationOf(choice, groupes[at], fileNameText(destinations[at])), folderOf(destinations[at])});
    }
    return jobs;
}

}  // namespace dravik::OperationsAudio
