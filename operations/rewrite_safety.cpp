#include "operations/rewrite_safety.h"

#include "operations/operation_audio_error.h"
#include "operations/source_wav.h"

#include <algorithm>

#include <fmt/format.h>

namespace dravik::OperationsAudio {
namespace {

OperationAudioError refusal(const std::filesystem::path& fichier, std::string_view what) {
    return OperationAudioError::groupeIncompatible(aboutFile(fichier, what));
}

enum class PadBytes { needed, mayBeMissing };

/// The chunks in their order, the first fault counts.
void checkChunks(const std::filesystem::path& fichier, const ChunkTable& table, PadBytes padBytes) {
    for (const Chunk& chunk : table.chunks) {
        const bool padMissing = chunk.size % 2 == 1 && !chunk.padInFile;
        if (chunk.truncated() || (padMissing && padBytes == PadBytes::needed)) {
            throw refusal(fichier, " has a malformed WAV chunk.");
        }
        if (chunk.id == FourCC("axml") || chunk.id == FourCC("chna")) {
            throw refusal(fichier, fmt::format(" contains {} metadata that Reorder Tracks cannot safely remap.",
                                               chunk.id.view()));
        }
    }
    // Less than a header, or more chunks than are ever walked: nothing is left behind in silence.
    if (table.bytesBehind() > 0) throw refusal(fichier, " has a malformed WAV chunk.");
}

}  // namespace

void checkRewriteSafety(const std::filesystem::path& fichier) {
    const WalkedSource walked(fichier);
    const std::optional<ChunkTable>& table = walked.table();
    if (!table || table->type != FourCC("WAVE")) throw refusal(fichier, " is not a standard RIFF/WAVE file.");
    if (table->form != FourCC("RIFF")) {
        throw refusal(fichier, " requires RF64/BW64 output, which Reorder Tracks does not support yet.");
    }
    checkChunks(fichier, *table, PadBytes::needed);
}

void checkCarriedChunks(const std::filesystem::path& fichier) {
    const WalkedSource walked(fichier);
    if (!walked.isRiffWave()) throw refusal(fichier, " is not a RIFF/WAVE file.");
    checkChunks(fichier, *walked.table(), PadBytes::mayBeMissing);
}

}  // namespace dravik::OperationsAudio
