#include "operations/metadata_chunks.h"

#include "operations/operation_audio_error.h"
#include "operations/source_wav.h"

namespace dravik::OperationsAudio {

std::vector<RIFFChunk> metadataChunks(const std::filesystem::path& fichier) {
    const WalkedSource walked(fichier);
    std::vector<RIFFChunk> chunks;
    if (!walked.table()) return chunks;
    std::uint64_t carried = 0;
    for (const Chunk& chunk : walked.table()->chunks) {
        if (chunk.truncated() || chunk.id == FourCC("fmt ") || chunk.id == FourCC("data")) continue;
        // Zeros that fill a file up read as a row of empty chunks without a name. In front of the audio they would keep
        // other programs from finding it.
        if (chunk.size == 0 && chunk.id == FourCC()) continue;
        if (chunk.size > maxCarriedBytes - carried) {
            throw OperationAudioError::groupeIncompatible(
                aboutFile(fichier, " has more metadata than can be carried over."));
        }
        carried += chunk.size;
        chunks.push_back({chunk.id, walked.payload(chunk)});
    }
    return chunks;
}

std::vector<RIFFChunk> adapted(const std::vector<RIFFChunk>& chunks, const ChunkAdapter& adapter) {
    std::vector<RIFFChunk> out;
    out.reserve(chunks.size());
    for (const RIFFChunk& chunk : chunks) {
        if (std::optional<Bytes> payload = adapter(chunk.id, chunk.payload)) {
            out.push_back({chunk.id, std::move(*payload)});
        }
    }
    return out;
}

std::vector<RIFFChunk> metadataChunks(const std::filesystem::path& fichier, const ChunkAdapter& adapter) {
    return adapted(metadataChunks(fichier), adapter);
}

}  // namespace dravik::OperationsAudio
