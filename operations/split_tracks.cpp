#include "operations/split_tracks.h"

#include "base/text.h"
#include "operations/name_characters.h"
#include "operations/operation_audio_error.h"
#include "operations/poly_take.h"

#include <fmt/format.h>

namespace dravik {
namespace OperationsAudio {
namespace {

constexpr std::string_view stereoSuffix = "_split_T01-T02.wav";
constexpr std::string_view unnamed = "Split";
/// File names have room for 255 bytes, of which the take's name and the number need theirs.
constexpr std::size_t longestNameInFileName = 120;

std::string monoSuffix(const SourceTrack& track) {
    std::string nom = track.nom ? cleanedTrackName(*track.nom) : std::string();
    nom.resize(truncatedUtf8(nom, longestNameInFileName).size());
    return fmt::format("_split_T{:02}{}{}.wav", track.numero, nom.empty() ? "" : "_", nom);
}

/// White space beyond ASCII: what people paste into a name.
bool isWhiteSpace(std::int32_t codepoint) noexcept {
    return (codepoint >= 0 && codepoint < 0x80 && isAsciiSpace(static_cast<char>(codepoint))) || codepoint == 0x85 ||
           codepoint == 0xA0 || codepoint == 0x1680 || (codepoint >= 0x2000 && codepoint <= 0x200A) ||
           codepoint == 0x2028 || codepoint == 0x2029 || codepoint == 0x202F || codepoint == 0x205F ||
           codepoint == 0x3000;
}

}  // namespace

std::string cleanedTrackName(std::string_view nom) {
    std::string out;
    bool apart = false;
    while (!nom.empty()) {
        const Utf8Character character = firstCharacter(nom);
        if (isForbiddenInNames(character) || isWhiteSpace(character.codepoint)) {
            apart = true;
        } else {
            if (apart && !out.empty()) out.push_back('_');
            apart = false;
            out.append(nom.substr(0, character.bytes));
        }
        nom.remove_prefix(character.bytes);
    }
    return out;
}

OperationPlan planSplit(FileOps& ops, const OperationAudioSplitConfiguration& configuration,
                        const std::optional<std::filesystem::path>& dossier, DestinationNames& names) {
    const GroupeFichiers& groupe = configuration.groupe;
    if (!groupe.estPoly || groupe.fichiers.front().channels < 2) {
        throw OperationAudioError::groupeIncompatible("Split requires a poly file with at least two channels.");
    }
    if (configuration.monoCanaux.empty() && !configuration.stereoTracks12) {
        throw OperationAudioError::groupeIncompatible("Select at least one split output.");
    }
    const PolyTake take(ops, groupe, PolyTake::Chunks::carried);
    take.checkChannels(std::vector<int>(configuration.monoCanaux.begin(), configuration.monoCanaux.end()));
    OperationPlan plan = take.plan(groupe);
    std::vector<std::string> suffixes;
    for (const int canal : configuration.monoCanaux) {
        plan.add(take.output({}, {take.outputTrack(canal, take.track(canal).numero)}));
        suffixes.push_back(monoSuffix(take.track(canal)));
    }
    if (configuration.stereoTracks12) {
        plan.add(
            take.output({}, {take.outputTrack(0, take.track(0).numero), take.outputTrack(1, take.track(1).numero)}));
        suffixes.emplace_back(stereoSuffix);
    }
    const auto paths = names.plan(destinationFolder(groupe, dossier), outputBase(groupe, unnamed), suffixes);
    plan.message = fmt::format("Created {} split files: ", paths.size());
    for (std::size_t at = 0; at < paths.size(); ++at) {
        plan.outputs[at].destination = paths[at];
        plan.message.append(at == 0 ? "" : ", ").append(paths[at].filename().native());
    }
    return plan;
}

std::vector<OperationAudioSplitPreviewItem> splitPreview(const GroupeFichiers& groupe) {
    if (!groupe.estPoly || groupe.fichiers.front().channels < 2) return {};
    const std::vector<SourceTrack> tracks = tracksOfPoly(groupe.fichiers.front());
    std::vector<OperationAudioSplitPreviewItem> items;
    std::vector<std::string> suffixes;
    for (const SourceTrack& track : tracks) {
        items.push_back({OperationAudioSplitOutput::mono(static_cast<int>(items.size())), {}, track.nom});
        suffixes.push_back(monoSuffix(track));
    }
    items.push_back({OperationAudioSplitOutput::stereoTracks12(), {}, {}});
    suffixes.emplace_back(stereoSuffix);
    const auto paths = DestinationNames().plan(destinationFolder(groupe, {}), outputBase(groupe, unnamed), suffixes);
    for (std::size_t at = 0; at < items.size(); ++at)
        items[at].fileName = paths[at].filename().native();
    return items;
}

}  // namespace OperationsAudio

std::string OperationAudioSplitPreviewItem::id() const {
    if (output.kind == OperationAudioSplitOutput::Kind::stereoTracks12) return "stereo-1-2";
    return fmt::format("mono-{}", output.canal);
}

}  // namespace dravik
