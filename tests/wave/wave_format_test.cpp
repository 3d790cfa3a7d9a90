#include "model/wave/wave_format.h"

#include "tests/support/wav_builder.h"

#include <gtest/gtest.h>

namespace dravik {
namespace {

TEST(WaveFormat, ReadsTheEncodingThroughTheExtensibleForm) {
    for (const bool extensible : {false, true}) {
        for (const test::Pcm& pcm :
             {test::Pcm{2, 96000, 16}, test::Pcm{12, 48000, 24}, test::Pcm{1, 44100, 32, true}}) {
            test::Pcm stored = pcm;
            stored.extensible = extensible;
            const auto format = parseWaveFormat(test::fmtPayload(stored));
            ASSERT_TRUE(format);
            EXPECT_EQ(format->encoding, pcm.isFloat ? WaveFormat::ieeeFloat : WaveFormat::pcm);
            EXPECT_EQ(format->tag == WaveFormat::extensible, extensible);
            EXPECT_EQ(format->channels, pcm.channels);
            EXPECT_EQ(format->sampleRate, pcm.rate);
            EXPECT_EQ(format->bits, pcm.bits);
            EXPECT_EQ(format->blockAlign, pcm.frameBytes());
            EXPECT_TRUE(format->isLinear());
        }
    }
}

TEST(WaveFormat, IsLinearOnlyWhenFramesCanBeCounted) {
    Bytes payload = test::fmtPayload({.channels = 2});
    EXPECT_FALSE(parseWaveFormat(ByteSpan(payload).first(15)));
    const auto with = [&](std::size_t at, std::uint16_t value) {
        Bytes changed = payload;
        writeLE(changed.data() + at, value);
        return parseWaveFormat(changed)->isLinear();
    };
    EXPECT_TRUE(with(14, 20)) << "20 bits in 3 bytes";
    EXPECT_FALSE(with(0, 0x55)) << "a compressed format";
    EXPECT_FALSE(with(0, 0xFFFE)) << "extensible, and too short to say what";
    EXPECT_FALSE(with(2, 0)) << "no channels";
    EXPECT_FALSE(with(12, 0)) << "frames of no bytes";
}

}  // namespace
}  // namespace dravik
