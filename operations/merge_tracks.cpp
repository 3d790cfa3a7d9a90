#include "operations/merge_tracks.h"

#include "base/paths.h"
#include "operations/operation_audio_error.h"
#include "operations/poly_take.h"
#include "operations/rewrite_safety.h"
#include "operations/start_alignment.h"
#include "operations/wave_layout.h"

#include <set>

#include <fmt/format.h>

namespace dravik::OperationsAudio {
namespace {

OperationAudioError refusal(std::string message) { return OperationAudioError::groupeIncompatible(std::move(message)); }

bool isSameFormat(const SourceWAV& a, const SourceWAV& b) noexcept {
    return a.audioFormat == b.audioFormat && a.encoding == b.encoding && a.sampleRate == b.sampleRate &&
           a.bits == b.bits && a.blockAlign == b.blockAlign;
}

}  // namespace

OperationPlan planMerge(FileOps& ops, const GroupeFichiers& groupe, const std::vector<std::filesystem::path>& exclus,
                        const std::optional<std::filesystem::path>& dossier, DestinationNames& names) {
    constexpr const char* needsSet = "Merge requires a mono group with at least two files.";
    if (!groupe.isMonoSet()) throw refusal(needsSet);
    std::set<std::string> leftOut;
    for (const std::filesystem::path& exclu : exclus)
        leftOut.insert(normalisedPath(exclu));
    const std::vector<SourceTrack> own = tracksOfMonoSet(groupe);
    std::vector<std::size_t> included;
    for (std::size_t at = 0; at < own.size(); ++at) {
        if (!leftOut.contains(normalisedPath(groupe.fichiers[at].url))) included.push_back(at);
    }
    for (const UnreadableTrack& track : groupe.unreadableTracks) {
        // A file without one of the take's tracks would pass for the whole take.
        if (!leftOut.contains(normalisedPath(track.url)))
            throw refusal(aboutFile(track.url, " cannot be read: the take is not whole."));
    }
    if (included.empty()) throw refusal("No source files to merge.");
    if (included.size() < 2) throw refusal(needsSet);

    OperationPlan plan;
    plan.sourceName = groupe.nom;
    PlannedOutput output;
    StartAlignment together;
    bool startsTogether = true;
    for (const std::size_t at : included) {
        const std::filesystem::path& url = groupe.fichiers[at].url;
        const FileStamp stamp = stampBefore(ops, url);
        const SourceWAVMono mono = readMonoSource(url);
        const int position = static_cast<int>(output.tracks.size()) + 1;
        // A line of the first file's own stands under the recorder's number; a track without a name is called by the
        // new one, since recorders that write mono files call them all 1.
        output.tracks.push_back({.source = output.tracks.size(),
                                 .numeroSource = position == 1 ? own[at].numero : position,
                                 .numero = position,
                                 .nom = own[at].nom});
        plan.sources.push_back({static_cast<const SourceWAV&>(mono), stamp});
        const WalkedSource walked(url);
        startsTogether =
            walked.table() && together.accepts(recordedStart(walked.source(), *walked.table())) && startsTogether;
        if (!isSameFormat(mono, plan.sources.front().wav)) {
            throw refusal(aboutFile(url, " does not have the same PCM format."));
        }
    }
    const SourceWAV& first = plan.sources.front().wav;
    for (const PlannedSource& source : plan.sources) {
        if (source.wav.nombreFrames != first.nombreFrames) {
            throw refusal(aboutFile(source.wav.fichier, " does not have the same duration."));
        }
    }
    checkCarriedChunks(first.fichier);
    plan.bytesParSample = first.blockAlign;
    plan.frames = first.nombreFrames;
    output.dataSize = static_cast<std::uint64_t>(plan.frames) * first.blockAlign * included.size();
    const Bytes fmt = fmtForChannels(first.fmtPayload, included.size(), first.blockAlign, groupe.nom);
    const std::vector<RIFFChunk> extra =
        metadataChunks(first.fichier, trackMetadataAdapter(output.tracks, {own[included.front()]}));
    checkOutputSize(fmt, extra, output.dataSize, groupe.nom);
    output.setHead(waveHead(fmt, extra, output.dataSize));
    output.destination =
        names.plan(destinationFolder(groupe, dossier), outputBase(groupe, "Merged"), {"_merge.wav"}).front();
    plan.message = fmt::format("Created {}. ", output.destination.filename().native());
    plan.verifiesDataSize = true;
    if (!startsTogether) {
        plan.note = "Mono sources do not share the same start alignment: the new file has the start of the first.";
    }
    if (const std::string lacking = lackingFilesText(groupe); !lacking.empty()) {
        plan.note += (plan.note.empty() ? "" : " ") + lacking;
    }
    plan.add(std::move(output));
    return plan;
}

}  // namespace dravik::OperationsAudio
