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

/// Half away from zero; by a cast, which drops what is behind the point. The number is the largest below one half:
/// adding one half itself would round what lies just below it upwards.
inline std::int32_t rounded(double value) noexcept {
    return static_cast<std::int32_t>(value + std::copysign(0.49999999999999994, value));
}

template <int bits>
inline void put(std::byte* out, std::int32_t value) noexcept {
    const auto pattern = static_cast<std::uint32_t>(value);
    out[0] = static_cast<std::byte>(pattern & 0xFFU);
    out[1] = static_cast<std::byte>(pattern >> 8U & 0xFFU);
    if constexpr (bits == 24) out[2] = static_cast<std::byte>(pattern >> 16U & 0xFFU);
}

/// One sample of [-1, 1). What comes back has bits above the format's when it does not fit, and something else was
/// stored.
template <int bits>
inline std::uint32_t storeSample(float sample, double noise, std::byte* out) noexcept {
    // The noise is below one step, so the cast is safe for each of them.
    const std::int32_t whole = rounded(static_cast<double>(sample) * scale<bits> + noise);
    put<bits>(out, whole);
    return static_cast<std::uint32_t>(whole) + (std::uint32_t{1} << (bits - 1));
}

/// Numbers of [-1, 1)? In a loop without an exit, which the compiler turns into vector code. What is no number compares
/// as false.
bool areInRange(const float* samples, std::size_t count) noexcept {
    int outside = 0;
    for (std::size_t i = 0; i < count; ++i)
        outside |= (samples[i] >= -1.0F ? 0 : 1) | (samples[i] < 1.0F ? 0 : 1);
    return outside == 0;
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
            const std::int32_t whole = rounded(dithered ? value + noise.next() : value);
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
    for (const float* const plane : planes) {
        if (!areInRange(plane, frames)) refuse<bits>(planes, frames, generatorAt(0), dithered);
    }
    std::uint32_t stored = 0;
    const std::size_t laneBytes = stretch * channels * sampleBytes;
    for (std::size_t i = 0; i < stretch; ++i) {
        std::byte* at = out + i * channels * sampleBytes;
        for (std::size_t c = 0; c < channels; ++c, at += sampleBytes) {
            for (std::size_t lane = 0; lane < lanes; ++lane) {
                const double added = dithered ? noise[lane].next() : 0.0;
                stored |= storeSample<bits>(planes[c][lane * stretch + i], added, at + lane * laneBytes);
            }
        }
    }
    std::byte* at = out + lanes * laneBytes;
    for (std::size_t i = lanes * stretch; i < frames; ++i) {
        for (std::size_t c = 0; c < channels; ++c, at += sampleBytes) {
            // The last lane goes on where the sequence does.
            stored |= storeSample<bits>(planes[c][i], dithered ? noise[lanes - 1].next() : 0.0, at);
        }
    }
    if (stored >> static_cast<unsigned>(bits) != 0) refuse<bits>(planes, frames, generatorAt(0), dithered);
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
