#pragma once

#include "operations/riff_chunk.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace dravik::OperationsAudio {

/// The payload that a chunk has in the output; absent drops the chunk.
using ChunkAdapter = std::function<std::optional<Bytes>(FourCC id, Bytes payload)>;

/// Chunks that are carried are held in memory: metadata has kilobytes, and no memory is spent on a file that claims
/// more than this in all.
inline constexpr std::uint64_t maxCarriedBytes = 32U * 1024U * 1024U;

/// All whole chunks of a RIFF/WAVE file but "fmt " and "data", in file order. Throws OperationAudioError when they are
/// larger than the limit above, std::filesystem::filesystem_error when the file cannot be read.
[[nodiscard]] std::vector<RIFFChunk> metadataChunks(const std::filesystem::path& fichier);

/// The chunks as the adapter gives them, in the same order.
[[nodiscard]] std::vector<RIFFChunk> adapted(const std::vector<RIFFChunk>& chunks, const ChunkAdapter& adapter);

/// Both steps: the metadata of one source for one output.
[[nodiscard]] std::vector<RIFFChunk> metadataChunks(const std::filesystem::path& fichier, const ChunkAdapter& adapter);

}  // namespace dravik::OperationsAudio
