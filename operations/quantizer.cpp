#include "operations/quantizer.h"

#include "base/bytes.h"
#include "operations/operation_audio_error.h"

#include <array>
#include <bit>
#include <cmath>

// Compiled without contraction of a product and a sum into one rounding: some machines have it and some do not.

namespace dravik {
namespace {

[[noreturn]] void refuseNonFinite() {
    throw OperationAudioError::groupeIncompatible("The audio contains a non-finite sample.");
}
[[noreturn]] void refuseRange(bool dithered) {
    throw OperationAudioError::groupeIncompatible(
        dithered ? "Dithered quantization exceeds the integer PCM range; no clipped file was created."
                 : "The export exceeds the integer PCM range; no clipped file was created.");
}

template <int bits>
constexpr double scale = static_cast<double>(1 << (bits - 1));

/// Half away from zero. The number is the largest below one half: adding one half itself would round what lies just
/// below it upwards.
inline double rounded(double value) noexcept { return std::trunc(value + std::copysign(0.49999999999999994, value)); }

template <int bits>
inline void put(std::byte* out, std::int32_t value) noexcept {
    const auto pattern = static_cast<std::uint32_t>(value);
    out[0] = static_cast<std::byte>(pattern & 0xFFU);
    out[1] = static_cast<std::byte>(pattern >> 8U & 0xFFU);
    if constexpr (bits == 24) out[2] = static_cast<std::byte>(pattern >> 16U & 0xFFU);
}

/// One sample; false when it cannot be stored, and then something else is.
template <int bits>
inline bool storeSample(float sample, double noise, std::byte* out) noexcept {
    const double value = static_cast<double>(sample) * scale<bits>;
    const double whole = rounded(value + noise);
    // Comparisons with what is no number are false.
    const bool fits = static_cast<int>(value >= -scale<bits>) & static_cast<int>(value < scale<bits>) &
                      static_cast<int>(whole >= -scale<bits>) & static_cast<int>(whole <= scale<bits> - 1);
    put<bits>(out, static_cast<std::int32_t>(fits ? whole : 0.0));
    return fits;
}

/// The reason why these samples cannot be stored, by the first of them in the order of the file.
template <int bits>
[[noreturn]] void refuse(std::span<const float* const> planes, std::size_t frames, DitherGenerator noise,
                         bool dithered) {
    for (std::size_t i = 0; i < frames; ++i) {
        for (const float* const plane : planes) {
            if (!std::isfinite(plane[i])) refuseNonFinite();
            const double value = static_cast<double>(plane[i]) * scale<bits>;
            if (value < -scale<bits> || value >= scale<bits>) refuseRange(false);
            const double whole = rounded(dithered ? value + noise.next() : value);
            if (whole < -scale<bits> || whole > scale<bits> - 1) refuseRange(dithered);
        }
    }
    refuseRange(dithered);
}

void storeFloats(std::span<const float* const> planes, std::size_t frames, std::byte* out) {
    constexpr std::uint32_t exponent = 0x7F800000U;
    for (std::size_t i = 0; i < frames; ++i) {
        for (const float* const plane : planes) {
            const auto pattern = std::bit_cast<std::uint32_t>(plane[i]);
            if ((pattern & exponent) == exponent) refuseNonFinite();
            writeLE(out, pattern);
            out += sizeof pattern;
        }
    }
}

}  // namespace

Quantizer::Quantizer(ExportSampleFormat format, bool dither, std::uint64_t seed) noexcept
    : format_(format), dither_(dither && !format.isFloat), sequence_(seed) {}

template <int bits, bool dithered>
void Quantizer::store(std::span<const float* const> planes, std::size_t frames, std::uint64_t firstFrame,
                      std::byte* out) const {
    // A draw waits for the one before it. Four stretches side by side give the processor something to do meanwhile.
    constexpr std::size_t lanes = 4;
    const std::size_t channels = planes.size();
    const std::size_t stretch = frames / lanes;
    const auto generatorAt = [&](std::size_t frame) {
        return sequence_.at(dithered ? (firstFrame + frame) * channels : 0);
    };
    std::array<DitherGenerator, lanes> noise = {generatorAt(0), generatorAt(stretch), generatorAt(2 * stretch),
                                                generatorAt(3 * stretch)};
    constexpr std::size_t sampleBytes = bits / 8;
    bool fits = true;
    const std::size_t laneBytes = stretch * channels * sampleBytes;
    for (std::size_t i = 0; i < stretch; ++i) {
        std::byte* at = out + i * channels * sampleBytes;
        for (std::size_t c = 0; c < channels; ++c, at += sampleBytes) {
            for (std::size_t lane = 0; lane < lanes; ++lane) {
                const double added = dithered ? noise[lane].next() : 0.0;
                fits &= storeSample<bits>(planes[c][lane * stretch + i], added, at + lane * laneBytes);
            }
        }
    }
    std::byte* at = out + lanes * laneBytes;
    for (std::size_t i = lanes * stretch; i < frames; ++i) {
        for (std::size_t c = 0; c < channels; ++c, at += sampleBytes) {
            // The last lane goes on where the sequence does.
            fits &= storeSample<bits>(planes[c][i], dithered ? noise[lanes - 1].next() : 0.0, at);
        }
    }
    if (!fits) refuse<bits>(planes, frames, generatorAt(0), dithered);
}

void Quantizer::quantize(std::span<const float* const> planes, std::size_t frames, std::uint64_t firstFrame,
                         std::span<std::byte> out) const {
    if (format_.isFloat) return storeFloats(planes, frames, out.data());
    if (format_.bitDepth == 16) {
        return dither_ ? store<16, true>(planes, frames, firstFrame, out.data())
                       : store<16, false>(planes, frames, firstFrame, out.data());
    }
    return dither_ ? store<24, true>(planes, frames, firstFrame, out.data())
                   : store<24, false>(planes, frames, firstFrame, out.data());
}

}  // namespace dravik
