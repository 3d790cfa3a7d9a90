#include "operations/source_wav.h"

#include "operations/operation_audio_error.h"
#include "operations/rewrite_safety.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wav_builder.h"

#include <functional>
#include <string>

#include <gtest/gtest.h>

namespace dravik {
namespace {

using namespace OperationsAudio;
using test::audioBytes;
using test::Pcm;
using test::TempFolder;
using test::WavBuilder;
using Pad = WavBuilder::Pad;

std::string complaint(const std::function<void()>& work) {
    try {
        work();
        return "";
    } catch (const OperationAudioError& error) {
        return error.what();
    }
}

Bytes fmtSaying(std::uint16_t tag, std::uint16_t channels, std::uint16_t blockAlign) {
    Bytes fmt = test::fmtPayload({.channels = 2});
    writeLE(fmt.data(), tag);
    writeLE(fmt.data() + 2, channels);
    writeLE(fmt.data() + 12, blockAlign);
    return fmt;
}

TEST(SourceWAV, IsRefusedForItsFirstFault) {
    const Bytes audio = audioBytes(60);
    const Bytes stereo = test::fmtPayload({.channels = 2});
    const auto rf64 = WavBuilder("RF64").ds64(60).chunk("fmt ", stereo).chunk("data", audio);
    struct Case {
        const char* what;
        Bytes bytes;
        std::string poly, mono;
    };
    const std::string notWave = "a.wav is not a RIFF/WAVE file.";
    const std::string cut = "a.wav: Unexpected end of audio data.";
    const Case cases[] = {
        {"too short", toBytes("RIFF1234WAV"), notWave, notWave},
        {"other form", WavBuilder("RIFX").chunk("fmt ", stereo).chunk("data", audio).bytes(), notWave, notWave},
        {"other type", WavBuilder("RIFF", "AVI ").chunk("fmt ", stereo).chunk("data", audio).bytes(), notWave, notWave},
        {"RF64", rf64.bytes(), notWave, notWave},
        {"no fmt", WavBuilder().chunk("data", audio).bytes(), "a.wav has no readable fmt chunk.",
         "a.wav has no readable fmt chunk."},
        {"short fmt", WavBuilder().chunk("fmt ", "123456789012345").chunk("data", audio).bytes(),
         "a.wav has no readable fmt chunk.", "a.wav has no readable fmt chunk."},
        {"no data", WavBuilder().chunk("fmt ", stereo).bytes(), "a.wav has no readable audio data.",
         "a.wav has no readable audio data."},
        {"data cut short", WavBuilder().chunk("fmt ", stereo).chunkClaiming("data", audio, 61).bytes(), cut, cut},
        {"channels before format", WavBuilder().chunk("fmt ", fmtSaying(85, 1, 0)).chunk("data", audio).bytes(),
         "a.wav is not poly.", "a.wav is not linear PCM."},
        {"no channels", WavBuilder().chunk("fmt ", fmtSaying(1, 0, 6)).chunk("data", audio).bytes(),
         "a.wav is not poly.", "a.wav is not mono."},
        {"coded", WavBuilder().chunk("fmt ", fmtSaying(85, 2, 0)).chunk("data", audio).bytes(),
         "a.wav is not linear PCM.", "a.wav is not mono."},
        {"no frame size", WavBuilder().chunk("fmt ", fmtSaying(1, 2, 0)).chunk("data", audio).bytes(),
         "a.wav has invalid audio block alignment.", "a.wav is not mono."},
        {"part of a sample", WavBuilder().chunk("fmt ", fmtSaying(1, 2, 7)).chunk("data", audio).bytes(),
         "a.wav has invalid audio block alignment.", "a.wav is not mono."},
        {"stereo", WavBuilder().chunk("fmt ", stereo).chunk("data", audio).bytes(), "", "a.wav is not mono."},
        {"mono float", WavBuilder().fmt({.bits = 32, .isFloat = true}).chunk("data", audio).bytes(),
         "a.wav is not poly.", ""},
        {"extensible", WavBuilder().fmt({.channels = 2, .extensible = true}).chunk("data", audio).bytes(), "",
         "a.wav is not mono."},
    };
    const TempFolder folder;
    for (const Case& one : cases) {
        SCOPED_TRACE(one.what);
        test::writeFile(folder / "a.wav", one.bytes);
        EXPECT_EQ(complaint([&] { static_cast<void>(readPolySource(folder / "a.wav")); }), one.poly);
        EXPECT_EQ(complaint([&] { static_cast<void>(readMonoSource(folder / "a.wav")); }), one.mono);
    }
}

TEST(SourceWAV, KeepsWhereTheAudioLiesAndCountsWholeFramesOnly) {
    const TempFolder folder;
    const auto file = WavBuilder().chunk("abcd", "123").fmt({.channels = 2, .bits = 16}).chunk("data", audioBytes(11));
    const SourceWAVPoly source = readPolySource(file.write(folder / "a.wav"));
    EXPECT_EQ(source.channels, 2);
    EXPECT_EQ(source.bytesParSample, 2U);
    EXPECT_EQ(source.dataOffset, 12U + 12 + 24 + 8);
    EXPECT_EQ(source.dataSize, 11);
    EXPECT_EQ(source.nombreFrames, 2);
}

TEST(RewriteSafety, RefusesWhatCannotBeCarriedOverWhole) {
    const Bytes audio = audioBytes(61);
    const auto file = [&] { return WavBuilder().fmt({.channels = 2}).chunk("data", audio); };
    const std::string malformed = "a.wav has a malformed WAV chunk.";
    const std::string large = "a.wav requires RF64/BW64 output, which Reorder Tracks does not support yet.";
    const std::string strange = "a.wav is not a standard RIFF/WAVE file.";
    struct Case {
        const char* what;
        Bytes bytes;
        std::string strictly, carried;
    };
    const std::string chna = "a.wav contains chna metadata that Reorder Tracks cannot safely remap.";
    const std::string axml = "a.wav contains axml metadata that Reorder Tracks cannot safely remap.";
    const std::string notWave = "a.wav is not a RIFF/WAVE file.";
    const Case cases[] = {
        {"good", file().chunk("LIST", "abc").bytes(), "", ""},
        {"short", toBytes("RIFF"), strange, notWave},
        {"no form", WavBuilder("FORM").bytes(), strange, notWave},
        {"RF64", WavBuilder("RF64").ds64(61).fmt().chunk("data", audio).bytes(), large, notWave},
        {"BW64", WavBuilder("BW64").ds64(61).fmt().chunk("data", audio).bytes(), large, notWave},
        {"one byte too few", file().chunkClaiming("LIST", asBytes("abcd"), 5).bytes(), malformed, malformed},
        {"no pad byte at the end", file().chunk("LIST", "abc", Pad::missing).bytes(), malformed, ""},
        {"a part of a header", file().raw("LIST").bytes(), malformed, malformed},
        {"chna", file().chunk("chna", "1234").bytes(), chna, chna},
        {"axml", file().chunk("axml", "1234").bytes(), axml, axml},
        {"capitals are another chunk", file().chunk("AXML", "1234").bytes(), "", ""},
    };
    const TempFolder folder;
    for (const Case& one : cases) {
        SCOPED_TRACE(one.what);
        test::writeFile(folder / "a.wav", one.bytes);
        EXPECT_EQ(complaint([&] { checkRewriteSafety(folder / "a.wav"); }), one.strictly);
        EXPECT_EQ(complaint([&] { checkCarriedChunks(folder / "a.wav"); }), one.carried);
    }
}

}  // namespace
}  // namespace dravik
