#include "operations/poly_take.h"

#include "base/paths.h"
#include "base/text.h"
#include "operations/operation_audio_error.h"
#include "operations/rewrite_safety.h"
#include "operations/wave_layout.h"

#include <fmt/format.h>

namespace dravik::OperationsAudio {

PolyTake::PolyTake(FileOps& ops, const GroupeFichiers& groupe, Chunks chunks)
    : fileName_(fileNameText(groupe.fichiers.front().url)) {
    const InfoFichier& fichier = groupe.fichiers.front();
    stamp_ = stampBefore(ops, fichier.url);
    if (chunks == Chunks::strictly) checkRewriteSafety(fichier.url);
    poly_ = readPolySource(fichier.url);
    if (chunks == Chunks::carried) checkCarriedChunks(fichier.url);
    chunks_ = metadataChunks(fichier.url);
    tracks_ = tracksOfPoly(fichier);
    // The file may have become another since it was listed.
    tracks_.resize(std::min<std::size_t>(tracks_.size(), poly_.channels));
    while (tracks_.size() < poly_.channels)
        tracks_.push_back({static_cast<int>(tracks_.size()) + 1, {}});
}

OutputTrack PolyTake::outputTrack(int canal, int numero) const {
    const SourceTrack& from = track(canal);
    return {.canal = static_cast<std::size_t>(canal), .numeroSource = from.numero, .numero = numero, .nom = from.nom};
}

void PolyTake::checkChannels(std::span<const int> canaux) const {
    for (const int canal : canaux) {
        if (canal >= 0 && canal < channels()) continue;
        throw OperationAudioError::groupeIncompatible(
            fmt::format("{} has no track {}: it has {}.", fileName_, canal + 1, channels()));
    }
}

OperationPlan PolyTake::plan(const GroupeFichiers& groupe) const {
    OperationPlan plan;
    plan.sourceName = groupe.nom;
    plan.sources.push_back({static_cast<const SourceWAV&>(poly_), stamp_});
    plan.bytesParSample = poly_.bytesParSample;
    plan.frames = poly_.nombreFrames;
    return plan;
}

PlannedOutput PolyTake::output(std::filesystem::path destination, std::vector<OutputTrack> tracks) const {
    PlannedOutput output;
    output.destination = std::move(destination);
    output.dataSize = static_cast<std::uint64_t>(poly_.nombreFrames) * poly_.bytesParSample * tracks.size();
    const Bytes fmt = tracks.size() == poly_.channels
                          ? poly_.fmtPayload
                          : fmtForChannels(poly_.fmtPayload, tracks.size(), poly_.bytesParSample, fileName_);
    const std::vector<RIFFChunk> extra = adapted(chunks_, trackMetadataAdapter(tracks, tracks_));
    checkOutputSize(fmt, extra, output.dataSize, fileName_);
    output.setHead(waveHead(fmt, extra, output.dataSize));
    output.tracks = std::move(tracks);
    return output;
}

FileStamp stampBefore(FileOps& ops, const std::filesystem::path& fichier) {
    return ops.stampOf(FileHandle::openForReading(fichier), fichier);
}

std::filesystem::path destinationFolder(const GroupeFichiers& groupe,
                                        const std::optional<std::filesystem::path>& dossier) {
    return dossier ? *dossier : groupe.fichiers.front().url.parent_path();
}

std::string outputBase(const GroupeFichiers& groupe, std::string_view whenEmpty) {
    const std::string_view base = trimmed(groupe.nom);
    return std::string(base.empty() ? whenEmpty : base);
}

}  // namespace dravik::OperationsAudio
