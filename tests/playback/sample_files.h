#pragma once

#include "base/bytes.h"
#include "platform/media/lazy_sample_decoder.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <memory>

namespace dravik::test {

/// The codec module is loaded once for all tests.
inline const SampleDecoder& codecs() {
    static const std::unique_ptr<SampleDecoder> decoder = makeLazySampleDecoder();
    return *decoder;
}

inline void appendSample(Bytes& out, double value, unsigned bits, bool isFloat) {
    if (isFloat && bits == 64) return appendLE(out, std::bit_cast<std::uint64_t>(value));
    if (isFloat) return appendLE(out, std::bit_cast<std::uint32_t>(static_cast<float>(value)));
    const auto number = static_cast<std::int64_t>(value * std::ldexp(1.0, static_cast<int>(bits) - 1));
    if (bits == 8) return appendLE(out, static_cast<std::uint8_t>(number + 128));
    for (unsigned i = 0; i < bits; i += 8)
        out.push_back(static_cast<std::byte>((static_cast<std::uint64_t>(number) >> i) & 0xFFU));
}

inline Bytes fmtOf(std::uint16_t tag, std::uint16_t channels, std::uint16_t bits, std::uint32_t rate = 48000) {
    Bytes out;
    const auto frame = static_cast<std::uint16_t>(channels * (bits / 8));
    appendLE(out, tag);
    appendLE(out, channels);
    appendLE(out, rate);
    appendLE(out, static_cast<std::uint32_t>(rate * frame));
    appendLE(out, frame);
    appendLE(out, bits);
    return out;
}

/// Multiples of an eighth are exact in every encoding; which one it is tells the frame and the channel.
inline double valueAt(std::int64_t frame, int channel) {
    return static_cast<double>((frame * 5 + channel * 3) % 15 - 7) / 8;
}

}  // namespace dravik::test
