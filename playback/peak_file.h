#pragma once

#include "base/byte_source.h"
#include "base/bytes.h"
#include "playback/peaks.h"

#include <cstdint>
#include <optional>
#include <string>

namespace dravik {

/// Which recording, in which state, some peaks belong to: any write to the file gives another key.
struct PeakKey {
    std::string path;  ///< absolute, as bytes
    std::uint64_t size = 0;
    std::int64_t modifiedSeconds = 0, modifiedNanoseconds = 0;
    friend bool operator==(const PeakKey&, const PeakKey&) = default;
};

/// A file of the peak cache (docs/format-peak-cache.md): a head, and the finest resolution, from which the two others
/// follow.
struct PeakFile {
    PeakKey key;
    FilePeaks peaks;
};

/// The bytes before the values.
[[nodiscard]] Bytes peakFileHead(const PeakKey& key, const FilePeaks& peaks);
/// The bytes behind them: a view of the finest resolution.
[[nodiscard]] ByteSpan peakFileValues(const FilePeaks& peaks) noexcept;
/// Absent for anything that is not wholly as it was written by this version. Reads everything only when the head fits
/// to the length of the source; then, where `wanted` is given, only when the keys are the same.
[[nodiscard]] std::optional<PeakFile> readPeakFile(const ByteSource& source, const PeakKey* wanted = nullptr);

}  // namespace dravik
