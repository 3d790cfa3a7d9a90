#pragma once

#include "model/groupe_fichiers.h"
#include "operations/export_pcm_reader.h"
#include "operations/riff_chunk.h"
#include "operations/track_metadata.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace dravik {

/// What an export changes of what the chunks of its source say.
struct ExportAdaptation {
    std::uint32_t inputRate = 48000, outputRate = 48000;  ///< Hz
    int bitDepth = 24;
    std::vector<OutputTrack> tracks;
    std::size_t source = 0;        ///< the file of the group that the chunks are of
    std::vector<SourceTrack> own;  ///< all tracks of that file
    std::string outputName;        ///< file name of the export
};

namespace OperationsAudio {

/// The tracks of one file of the group, all its channels.
[[nodiscard]] std::vector<SourceTrack> tracksOfFile(const GroupeFichiers& groupe, std::size_t source);

/// The tracks of an export. They keep the recorder's numbers, unless two would have the same: then 1, 2 ... An average
/// of two has the number of the first and both names.
[[nodiscard]] std::vector<OutputTrack> exportTracks(const GroupeFichiers& groupe, const ExportPCMReader& reader);

/// A sample position at another rate, rounded half away from zero; exact, and as large as fits.
[[nodiscard]] std::uint64_t rescaledSamples(std::uint64_t samples, std::uint32_t inputRate,
                                            std::uint32_t outputRate) noexcept;

/// The metadata of the source for the new file, in its order: positions in time at the new rate, tracks as routed, the
/// format as it will be, no mixer automation. A `ds64` chunk, which only belongs into larger files, is left out. Chunks
/// that nothing is known about stay as they are. Throws OperationAudioError for iXML that cannot be read.
[[nodiscard]] std::vector<RIFFChunk> adaptedForExport(const std::vector<RIFFChunk>& chunks,
                                                      const ExportAdaptation& adaptation);

}  // namespace OperationsAudio
}  // namespace dravik
