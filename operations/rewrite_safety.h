#pragma once

#include <filesystem>

namespace dravik::OperationsAudio {

/// Whether a file's chunks may be carried into a file with other channels. Both throw OperationAudioError with the full
/// sentence, std::filesystem::filesystem_error when the file cannot be read.

/// Before tracks are reordered or deleted: a RIFF/WAVE file (an RF64 or BW64 file is refused: there is no output of
/// that size yet) in which every chunk is whole, pad byte included, and no chunk says which channel is which
/// loudspeaker or object ("axml", "chna").
void checkRewriteSafety(const std::filesystem::path& fichier);

/// Before tracks are split off or merged, of a file that was read as a source: no such chunk, and none that is cut
/// short and would be carried on in part. Recorders leave out the pad byte of the last chunk; that is no damage here,
/// where nothing behind it is looked for.
void checkCarriedChunks(const std::filesystem::path& fichier);

}  // namespace dravik::OperationsAudio
