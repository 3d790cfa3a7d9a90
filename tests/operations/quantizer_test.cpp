#include "operations/quantizer.h"

#include "base/bytes.h"
#include "base/checksum.h"
#include "operations/operation_audio_error.h"

#include <cmath>
#include <limits>
#include <numbers>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace dravik {
namespace {

using Planes = std::vector<std::vector<float>>;

Bytes stored(const Quantizer& quantizer, const Planes& planes, std::size_t from, std::size_t frames) {
    std::vector<const float*> rows;
    rows.reserve(planes.size());
    for (const std::vector<float>& plane : planes)
        rows.push_back(plane.data() + from);
    Bytes out(frames * planes.size() * quantizer.format().sampleBytes());
    quantizer.quantize(rows, frames, from, out);
    return out;
}
Bytes stored(const Quantizer& quantizer, const Planes& planes) {
    return stored(quantizer, planes, 0, planes.front().size());
}

Planes tones(std::size_t channels, std::size_t frames) {
    Planes planes(channels);
    for (std::size_t c = 0; c < channels; ++c) {
        for (std::size_t i = 0; i < frames; ++i) {
            planes[c].push_back(static_cast<float>(
                0.9 * std::sin(static_cast<double>(i) * 0.01 * static_cast<double>(c + 1)) * std::numbers::inv_sqrt3));
        }
    }
    return planes;
}

/// The same rule, written down sample by sample.
Bytes reference(const Planes& planes, int bits, std::uint64_t state) {
    Bytes out;
    const auto uniform = [&] {
        state ^= state << 13U;
        state ^= state >> 7U;
        state ^= state << 17U;
        return static_cast<double>(state >> 11U) * 0x1p-53;
    };
    for (std::size_t i = 0; i < planes.front().size(); ++i) {
        for (const std::vector<float>& plane : planes) {
            double value = static_cast<double>(plane[i]) * std::ldexp(1.0, bits - 1);
            const double first = uniform();
            value += first - uniform();
            const auto whole = static_cast<std::int32_t>(value + (value < 0 ? -1 : 1) * 0.49999999999999994);
            for (int byte = 0; byte < bits / 8; ++byte)
                out.push_back(static_cast<std::byte>(static_cast<std::uint32_t>(whole) >> (8 * byte) & 0xFFU));
        }
    }
    return out;
}

TEST(Quantizer, DithersAsTheRuleSaysHoweverTheAudioIsCut) {
    for (const int bits : {16, 24}) {
        for (const std::size_t channels : {1U, 2U, 7U}) {
            const Planes planes = tones(channels, 1003);
            const Quantizer quantizer({bits, false}, true, 12345);
            const Bytes expected = reference(planes, bits, 12345);
            EXPECT_EQ(stored(quantizer, planes), expected) << bits << " bits, " << channels << " channels";
            Bytes pieces;
            for (std::size_t from = 0; from < 1003; from += 100)
                append(pieces, stored(quantizer, planes, from, std::min<std::size_t>(100, 1003 - from)));
            EXPECT_EQ(pieces, expected) << bits << " bits, " << channels << " channels, in pieces";
        }
    }
}

TEST(Quantizer, GivesTheSameBytesForASeedOnEveryMachine) {
    const Bytes out = stored(Quantizer({24, false}, true, 42), tones(2, 5000));
    EXPECT_EQ(crc32(asText(out)), 1179642582U) << "the bytes of a seeded export are a promise";
}

TEST(Quantizer, TakesASeedOfZeroForAnother) {
    const Planes planes = tones(1, 100);
    EXPECT_EQ(stored(Quantizer({16, false}, true, 0), planes), reference(planes, 16, 0x9E3779B97F4A7C15U));
}

TEST(Quantizer, RoundsHalfAwayFromZeroWithoutDither) {
    constexpr float step = 0x1p-15F;
    const Planes planes = {{0.5F * step, -0.5F * step, 1.5F * step, -2.5F * step, 0.49F * step, -1.0F, 32767.0F * step,
                            0x1.FFFFFEp-2F * step}};
    const Bytes out = stored(Quantizer({16, false}, false, 1), planes);
    const std::int16_t expected[] = {1, -1, 2, -3, 0, -32768, 32767, 0};
    for (std::size_t i = 0; i < std::size(expected); ++i)
        EXPECT_EQ(static_cast<std::int16_t>(readLE<std::uint16_t>(out.data() + 2 * i)), expected[i]) << i;
}

TEST(Quantizer, RefusesWhatItWouldHaveToClip) {
    const char* const range = "The export exceeds the integer PCM range; no clipped file was created.";
    const char* const dithered = "Dithered quantization exceeds the integer PCM range; no clipped file was created.";
    const char* const number = "The audio contains a non-finite sample.";
    const float top16 = 32767.9F / 32768.0F;
    struct {
        const char* what;
        ExportSampleFormat format;
        bool dither;
        float sample;
        const char* message;  ///< absent: it passes
    } const cases[] = {
        {"full scale to 24 bits", {24, false}, false, 1.0F, range},
        {"full scale to 24 bits, dithered", {24, false}, true, 1.0F, range},
        {"full scale to float", {32, true}, false, 1.0F, nullptr},
        {"above full scale to float", {32, true}, true, 7.5F, nullptr},
        {"the lowest to 16 bits", {16, false}, false, -1.0F, nullptr},
        {"just below full scale to 16 bits", {16, false}, false, top16, range},
        {"just below full scale to 16 bits, dithered", {16, false}, true, top16, dithered},
        {"no number to 24 bits", {24, false}, true, std::numeric_limits<float>::quiet_NaN(), number},
        {"infinite to float", {32, true}, false, std::numeric_limits<float>::infinity(), number},
        {"infinite to 16 bits", {16, false}, false, -std::numeric_limits<float>::infinity(), number},
    };
    for (const auto& c : cases) {
        // Many of them, so that the noise is on either side.
        Planes planes = {std::vector<float>(64, 0.0F)};
        std::fill(planes[0].begin() + 17, planes[0].end(), c.sample);
        std::string said;
        try {
            static_cast<void>(stored(Quantizer(c.format, c.dither, 99), planes));
        } catch (const OperationAudioError& error) {
            said = error.what();
        }
        EXPECT_EQ(said, c.message == nullptr ? "" : c.message) << c.what;
    }
}

TEST(Quantizer, NamesTheFirstFaultInTheOrderOfTheFile) {
    Planes planes = {std::vector<float>(64, 0.0F), std::vector<float>(64, 0.0F)};
    planes[0][40] = 2.0F;
    planes[1][39] = std::numeric_limits<float>::quiet_NaN();
    try {
        static_cast<void>(stored(Quantizer({24, false}, false, 1), planes));
        FAIL();
    } catch (const OperationAudioError& error) {
        EXPECT_STREQ(error.what(), "The audio contains a non-finite sample.");
    }
}

}  // namespace
}  // namespace dravik
