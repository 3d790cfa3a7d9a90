#include "playback/peak_file.h"

#include "base/checksum.h"

#include <bit>
#include <cmath>

namespace dravik {
namespace {

static_assert(std::endian::native == std::endian::little && sizeof(PeakValue) == 4,
              "values are written and read as they lie in memory");

constexpr std::string_view magic = "DrvPeaks";
constexpr std::uint32_t version = 1;
/// What the first checksum covers begins behind it.
constexpr std::size_t checkedFrom = 16;
constexpr std::size_t fixedBytes = 72;
/// Longer than any system's longest path.
constexpr std::uint32_t maximumPathBytes = 64U * 1024U;
/// What a WAV file can announce; more than any decoder gives.
constexpr std::uint32_t maximumChannels = 65535;

/// Finest bins of all channels, when the numbers are such as this version writes.
std::optional<std::uint64_t> valueCount(std::uint32_t channels, std::uint64_t frames, std::uint64_t framesPerBin) {
    if (channels == 0 || channels > maximumChannels) return std::nullopt;
    if (frames > static_cast<std::uint64_t>(maximumPeakFrames)) return std::nullopt;
    if (!std::has_single_bit(framesPerBin) || framesPerBin < static_cast<std::uint64_t>(finestPeakFrames) ||
        framesPerBin > static_cast<std::uint64_t>(maximumPeakFrames)) {
        return std::nullopt;
    }
    const std::uint64_t bins = binsFor(static_cast<std::int64_t>(frames), static_cast<std::int64_t>(framesPerBin));
    if (bins > static_cast<std::uint64_t>(maximumPeakBins)) return std::nullopt;
    if (bins * channels > static_cast<std::uint64_t>(maximumPeakValues)) return std::nullopt;
    return bins * channels;
}

}  // namespace

Bytes peakFileHead(const PeakKey& key, const FilePeaks& peaks) {
    Bytes checked;
    appendLE(checked, crc32(asText(peakFileValues(peaks))));
    appendLE(checked, static_cast<std::uint32_t>(key.path.size()));
    appendLE(checked, key.size);
    appendLE(checked, key.modifiedSeconds);
    appendLE(checked, static_cast<std::uint32_t>(key.modifiedNanoseconds));
    appendLE(checked, static_cast<std::uint32_t>(peaks.channels));
    appendLE(checked, peaks.frames);
    appendLE(checked, std::bit_cast<std::uint64_t>(peaks.sampleRate));
    appendLE(checked, peaks.donneesAudioUHR.framesPerBin);
    append(checked, key.path);
    Bytes head = toBytes(magic);
    appendLE(head, version);
    appendLE(head, crc32(asText(checked)));
    append(head, checked);
    return head;
}

ByteSpan peakFileValues(const FilePeaks& peaks) noexcept {
    return std::as_bytes(std::span(peaks.donneesAudioUHR.values));
}

std::optional<PeakFile> readPeakFile(const ByteSource& source, const PeakKey* wanted) {
    const Bytes fixed = source.read(0, fixedBytes);
    if (fixed.size() < fixedBytes || asText(fixed).substr(0, magic.size()) != magic) return std::nullopt;
    const std::byte* at = fixed.data();
    if (readLE<std::uint32_t>(at + 8) != version) return std::nullopt;
    const auto headChecksum = readLE<std::uint32_t>(at + 12);
    const auto valuesChecksum = readLE<std::uint32_t>(at + 16);
    const auto pathBytes = readLE<std::uint32_t>(at + 20);
    if (pathBytes > maximumPathBytes) return std::nullopt;
    PeakFile file;
    file.key.size = readLE<std::uint64_t>(at + 24);
    file.key.modifiedSeconds = static_cast<std::int64_t>(readLE<std::uint64_t>(at + 32));
    file.key.modifiedNanoseconds = readLE<std::uint32_t>(at + 40);
    const auto channels = readLE<std::uint32_t>(at + 44);
    const auto frames = readLE<std::uint64_t>(at + 48);
    const double sampleRate = std::bit_cast<double>(readLE<std::uint64_t>(at + 56));
    const auto framesPerBin = readLE<std::uint64_t>(at + 64);
    const std::optional<std::uint64_t> values = valueCount(channels, frames, framesPerBin);
    if (!values || !std::isfinite(sampleRate) || sampleRate <= 0) return std::nullopt;
    // The length is checked before anything of that size is allocated.
    const std::uint64_t rest = source.size() - fixedBytes;
    if (rest < pathBytes || rest - pathBytes != *values * sizeof(PeakValue)) return std::nullopt;

    const Bytes head = source.read(checkedFrom, fixedBytes - checkedFrom + pathBytes);
    if (head.size() != fixedBytes - checkedFrom + pathBytes || crc32(asText(head)) != headChecksum) return std::nullopt;
    file.key.path = asText(head).substr(fixedBytes - checkedFrom);
    if (wanted != nullptr && file.key != *wanted) return std::nullopt;

    FilePeaks& peaks = file.peaks;
    peaks.channels = static_cast<int>(channels);
    peaks.frames = static_cast<std::int64_t>(frames);
    peaks.sampleRate = sampleRate;
    PeakLevel& level = peaks.donneesAudioUHR;
    level.framesPerBin = static_cast<std::int64_t>(framesPerBin);
    level.bins = binsFor(peaks.frames, level.framesPerBin);
    level.values.resize(static_cast<std::size_t>(*values));
    const auto into = std::as_writable_bytes(std::span(level.values));
    if (source.readAt(fixedBytes + pathBytes, into) != into.size()) return std::nullopt;
    if (crc32(asText(into)) != valuesChecksum) return std::nullopt;
    peaks.deriveCoarser();
    return file;
}

}  // namespace dravik
