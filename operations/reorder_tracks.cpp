#include "operations/reorder_tracks.h"

#include "operations/operation_audio_error.h"
#include "operations/poly_take.h"
#include "operations/rewrite_safety.h"
#include "operations/wave_layout.h"

#include <algorithm>
#include <set>

#include <fmt/format.h>

namespace dravik::OperationsAudio {
namespace {

/// A mono set is known by two digits behind each name.
constexpr std::size_t mostMonoFiles = 99;
constexpr std::string_view unnamed = "Reordered";

/// What is wrong with the mapping; empty when it names every channel once.
std::string mappingProblem(std::string_view name, const ChannelMapping& mapping, int channels) {
    if (mapping.size() != static_cast<std::size_t>(channels)) {
        return fmt::format("{} reorder mapping must include all {} channels.", name, channels);
    }
    if (std::any_of(mapping.begin(), mapping.end(), [&](int canal) { return canal < 0 || canal >= channels; })) {
        return fmt::format("{} reorder mapping contains an out-of-range channel.", name);
    }
    if (std::set<int>(mapping.begin(), mapping.end()).size() < mapping.size()) {
        return fmt::format("{} reorder mapping contains duplicate or missing channels.", name);
    }
    return {};
}

void checkMapping(std::string_view name, const ChannelMapping& mapping, int channels) {
    std::string problem = mappingProblem(name, mapping, channels);
    if (!problem.empty()) throw OperationAudioError::groupeIncompatible(std::move(problem));
}

/// A permutation that is in order is 0, 1, and so on.
bool isIdentity(const ChannelMapping& mapping) { return std::is_sorted(mapping.begin(), mapping.end()); }

std::vector<std::string> monoSuffixes(std::size_t files) {
    std::vector<std::string> suffixes;
    for (std::size_t number = 1; number <= files; ++number)
        suffixes.push_back(fmt::format("_order_{:02}.wav", number));
    return suffixes;
}

std::string createdLine(const OperationPlan& plan) {
    std::string line = "Created ";
    for (const PlannedOutput& output : plan.outputs)
        line.append(&output == &plan.outputs.front() ? "" : ", ").append(output.destination.filename().native());
    return line;
}

OperationPlan withoutChange(OperationPlan plan) {
    plan.message = "Identity mapping — no output created.";
    return plan;
}

OperationPlan planPoly(FileOps& ops, const GroupeFichiers& groupe, const ChannelMapping& mapping,
                       const std::filesystem::path& dossier, bool preserveTrackNumbers, DestinationNames& names) {
    const InfoFichier& fichier = groupe.fichiers.front();
    checkMapping(fichier.url.filename().native(), mapping, fichier.channels);
    if (isIdentity(mapping)) {
        OperationPlan nothing;
        nothing.sourceName = groupe.nom;
        return withoutChange(std::move(nothing));
    }
    const PolyTake take(ops, groupe, PolyTake::Chunks::strictly);
    checkMapping(take.fileName(), mapping, take.channels());  // the file may be another than the folder showed
    OperationPlan plan = take.plan(groupe);
    std::vector<OutputTrack> tracks;
    for (const int canal : mapping) {
        const int position = static_cast<int>(tracks.size()) + 1;
        tracks.push_back(take.outputTrack(canal, preserveTrackNumbers ? take.track(canal).numero : position));
    }
    PlannedOutput output = take.output({}, std::move(tracks));
    output.destination = names.plan(dossier, outputBase(groupe, unnamed), {"_order.wav"}).front();
    plan.add(std::move(output));
    plan.message = createdLine(plan);
    return plan;
}

OperationPlan planMono(FileOps& ops, const GroupeFichiers& groupe, const ChannelMapping& mapping,
                       const std::filesystem::path& dossier, bool preserveTrackNumbers, DestinationNames& names) {
    if (groupe.fichiers.size() > mostMonoFiles) {
        throw OperationAudioError::groupeIncompatible(
            "Mono Reorder supports up to 99 files with the current mono grouping parser.");
    }
    checkMapping(groupe.nom, mapping, static_cast<int>(groupe.fichiers.size()));
    OperationPlan plan;
    plan.sourceName = groupe.nom;
    if (isIdentity(mapping)) return withoutChange(std::move(plan));
    const std::vector<SourceTrack> own = tracksOfMonoSet(groupe);
    for (std::size_t at = 0; at < mapping.size(); ++at) {
        const auto source = static_cast<std::size_t>(mapping[at]);
        const std::filesystem::path& url = groupe.fichiers[source].url;
        const FileStamp stamp = stampBefore(ops, url);
        checkRewriteSafety(url);
        const SourceWAVMono mono = readMonoSource(url);
        PlannedOutput output;
        output.dataSize = static_cast<std::uint64_t>(mono.dataSize);
        output.tracks.push_back({.source = at,
                                 .numeroSource = own[source].numero,
                                 .numero = preserveTrackNumbers ? own[source].numero : static_cast<int>(at) + 1,
                                 .nom = own[source].nom});
        const std::vector<RIFFChunk> extra =
            metadataChunks(url, trackMetadataAdapter(output.tracks, {own[source]}, at));
        checkOutputSize(mono.fmtPayload, extra, output.dataSize, url.filename().native());
        output.setHead(waveHead(mono.fmtPayload, extra, output.dataSize));
        plan.sources.push_back({static_cast<const SourceWAV&>(mono), stamp});
        plan.add(std::move(output));
    }
    const auto paths = names.plan(dossier, outputBase(groupe, unnamed), monoSuffixes(mapping.size()));
    for (std::size_t at = 0; at < paths.size(); ++at)
        plan.outputs[at].destination = paths[at];
    plan.message = createdLine(plan);
    return plan;
}

}  // namespace

OperationPlan planReorder(FileOps& ops, const GroupeFichiers& groupe, const ChannelMapping& mapping,
                          const std::optional<std::filesystem::path>& dossier, bool preserveTrackNumbers,
                          DestinationNames& names) {
    const std::filesystem::path folder = destinationFolder(groupe, dossier);
    if (groupe.estPoly) return planPoly(ops, groupe, mapping, folder, preserveTrackNumbers, names);
    if (groupe.isMonoSet()) return planMono(ops, groupe, mapping, folder, preserveTrackNumbers, names);
    throw OperationAudioError::groupeIncompatible("Reorder Tracks requires a poly file or a mono group.");
}

std::vector<std::filesystem::path> reorderPreview(const GroupeFichiers& groupe, const ChannelMapping& mapping,
                                                  const std::optional<std::filesystem::path>& dossier) {
    const std::size_t files = groupe.fichiers.size();
    if (!groupe.isMonoSet() || files > mostMonoFiles) return {};
    if (!mappingProblem(groupe.nom, mapping, static_cast<int>(files)).empty() || isIdentity(mapping)) return {};
    return DestinationNames().plan(destinationFolder(groupe, dossier), outputBase(groupe, unnamed),
                                   monoSuffixes(files));
}

}  // namespace dravik::OperationsAudio
