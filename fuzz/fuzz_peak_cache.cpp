// The reader of the peak cache: a whole file. Checksums are set right before it is read, so that what stands behind
// them is reached; an odd last byte leaves them as they are.
#include "base/checksum.h"
#include "fuzz/require.h"
#include "playback/peak_file.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

using namespace dravik;

namespace {

void setChecksums(Bytes& file) {
    if (file.size() < 72) return;
    const std::size_t head = std::min<std::size_t>(file.size(), std::size_t{72} + readLE<std::uint32_t>(&file[20]));
    writeLE(&file[16], crc32(asText(ByteSpan(file).subspan(head))));
    writeLE(&file[12], crc32(asText(ByteSpan(file).first(head).subspan(16))));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ByteSpan input(reinterpret_cast<const std::byte*>(data), size);
    Bytes bytes(input.begin(), input.end());
    if (size > 0 && data[size - 1] % 2 == 0) setChecksums(bytes);
    std::optional<PeakFile> file = readPeakFile(MemorySource(bytes));
    if (!file) return 0;

    const FilePeaks& peaks = file->peaks;
    const PeakLevel& fine = peaks.donneesAudioUHR;
    require(peaks.channels > 0 && peaks.frames >= 0 && peaks.sampleRate > 0);
    require(fine.values.size() == fine.bins * static_cast<std::size_t>(peaks.channels));
    require(fine.values.size() * sizeof(PeakValue) <= bytes.size());
    require(static_cast<std::int64_t>(peaks.donneesAudio.bins) <= maximumCoarseColumns);
    // Exactly what it was made from, and nothing else.
    Bytes again = peakFileHead(file->key, peaks);
    append(again, peakFileValues(peaks));
    require(again == bytes);
    PeakKey other = file->key;
    require(readPeakFile(MemorySource(bytes), &other).has_value());
    ++other.size;
    require(!readPeakFile(MemorySource(bytes), &other));

    TakePeaks take;
    take.files.push_back(std::move(file->peaks));
    std::array<PeakColumn, 16> columns;
    const std::int64_t frames = take.frameTotal();
    for (const double zoom : {0.5, 1000.0, static_cast<double>(frames) / 8 + 1, 1e15}) {
        for (const int canal : {0, take.nbCanaux() - 1}) {
            take.columns(canal, frames / 2 - 100, zoom, columns);
            require(std::all_of(columns.begin(), columns.end(), [](const PeakColumn& column) {
                return column.lowest >= -1 && column.highest <= 1 && column.lowest <= column.highest;
            }));
        }
    }
    return 0;
}
