#pragma once

#include "operations/dither.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace dravik {

/// How the samples of an export are stored: integers of 16 or 24 bits, or floats of 32.
struct ExportSampleFormat {
    int bitDepth = 24;
    bool isFloat = false;

    [[nodiscard]] std::size_t sampleBytes() const noexcept { return static_cast<std::size_t>(bitDepth) / 8; }
    friend bool operator==(const ExportSampleFormat&, const ExportSampleFormat&) = default;
};

/// Float samples into the bytes of a WAV file. Never clips: a sample that is out of range, or no number, ends the
/// export. Immutable; any thread; the same bytes on every machine, however the audio is cut into blocks.
class Quantizer {
  public:
    /// Float output is never dithered, whatever `dither` says.
    Quantizer(ExportSampleFormat format, bool dither, std::uint64_t seed) noexcept;

    [[nodiscard]] ExportSampleFormat format() const noexcept { return format_; }
    /// Stores `frames` frames, interleaved and little-endian. `planes` has one row of samples a channel, full scale at
    /// 1; `firstFrame` is their place in the export. `out` takes exactly as many bytes. Throws OperationAudioError.
    void quantize(std::span<const float* const> planes, std::size_t frames, std::uint64_t firstFrame,
                  std::span<std::byte> out) const;

  private:
    template <int bits, bool dithered>
    void store(std::span<const float* const> planes, std::size_t frames, std::uint64_t firstFrame,
               std::byte* out) const;

    ExportSampleFormat format_;
    bool dither_;
    DitherSequence sequence_;
};

}  // namespace dravik
