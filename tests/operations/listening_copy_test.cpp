#include "tests/operations/export_stage.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace dravik {
namespace {

using namespace OperationsAudio;
using test::asAac;
using test::asMp3;
using test::ExportStage;

TEST(ListeningCopy, HoldsTheToneWhereItWas) {
    ExportStage stage;
    constexpr std::size_t frames = 48000;
    test::writeFloats(stage.source() / "take.wav", test::sine(440, 48000, frames, 0.5, 2), 2);
    static_cast<void>(stage.run(asAac(stage.take())));
    static_cast<void>(stage.run(asMp3(stage.take())));
    const std::vector<float> source = test::sine(440, 48000, frames, 0.5, 2);
    for (const char* name : {"out.m4a", "out.mp3"}) {
        const auto stream = stage.decoder->open(stage.out() / name);
        std::vector<float> decoded(2 * frames);
        std::size_t got = 0;
        while (const std::size_t more = stream->read(std::span(decoded).subspan(2 * got)))
            got += more;
        ASSERT_EQ(got, frames) << name;
        double worst = 0;
        for (std::size_t i = 8000; i < 2 * frames - 8000; ++i)
            worst = std::max(worst, std::fabs(static_cast<double>(decoded[i] - source[i])));
        EXPECT_LT(worst, 0.01) << name;
    }
}

TEST(ListeningCopy, RefusesWithTheReasonAndLeavesNothing) {
    using Aac = OperationAudioAACExportConfiguration;
    using Mp3 = OperationAudioMP3ExportConfiguration;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    struct {
        const char* what;
        float sample;
        std::uint32_t rate;
        std::function<void(Aac&)> aac;
        std::function<void(Mp3&)> mp3;
        const char* message;
    } const cases[] = {
        {"all tracks",
         0,
         48000,
         [](Aac& c) { c.routing = routing::Poly{}; },
         {},
         "AAC export supports Mono or Stereo only."},
        {"all tracks",
         0,
         48000,
         {},
         [](Mp3& c) { c.routing = routing::Poly{}; },
         "MP3 export supports Mono or Stereo only."},
        {"another ending",
         0,
         48000,
         [](Aac& c) { c.destinationName = "out.mp4"; },
         {},
         "AAC exports must use the .m4a extension."},
        {"another ending",
         0,
         48000,
         {},
         [](Mp3& c) { c.destinationName = "out.wav"; },
         "MP3 exports must use the .mp3 extension."},
        {"no files", 0, 48000, {}, [](Mp3& c) { c.groupe.fichiers = {}; }, "No source files to merge."},
        {"a rate that AAC has not",
         0,
         192000,
         [](Aac&) {},
         {},
         "The Apple AAC encoder is unavailable for 2 channel(s) at 192000 Hz for this export."},
        {"too many bits for so few samples",
         0,
         8000,
         [](Aac& c) { c.bitRate = 320; },
         {},
         "The Apple AAC encoder doesn’t support 320 kbit/s for this export."},
        {"no bits",
         0,
         48000,
         [](Aac& c) { c.bitRate = 0; },
         {},
         "The Apple AAC encoder doesn’t support 0 kbit/s for this export."},
        {"no number", nan, 48000, [](Aac&) {}, {}, "The audio contains a non-finite sample."},
        {"no number", nan, 48000, {}, [](Mp3&) {}, "The audio contains a non-finite sample."},
        {"above full scale",
         1.001F,
         48000,
         [](Aac&) {},
         {},
         "The audio exceeds full scale; no clipped file was created."},
        {"at full scale",
         1.0F,
         48000,
         {},
         [](Mp3&) {},
         "The export exceeds the integer PCM range; no clipped file was created."},
    };
    for (const auto& c : cases) {
        ExportStage stage;
        std::vector<float> samples(2000, 0.25F);
        samples[999] = c.sample;
        test::writeFloats(stage.source() / "take.wav", samples, 2, c.rate);
        Aac aac = asAac(stage.take());
        Mp3 mp3 = asMp3(stage.take());
        if (c.aac) {
            c.aac(aac);
            EXPECT_EQ(stage.refusal(aac), c.message) << c.what;
        } else {
            c.mp3(mp3);
            EXPECT_EQ(stage.refusal(mp3), c.message) << c.what;
        }
        EXPECT_TRUE(test::namesIn(stage.out()).empty()) << c.what;
    }
}

TEST(ListeningCopy, IsPlannedOnlyWhereItCanBeMade) {
    ExportStage stage;
    test::writeFloats(stage.source() / "take.wav", {0.25F}, 1, 192000);
    OperationAudioMP3ExportConfiguration mp3 = asMp3(stage.take());
    mp3.routing = routing::Mono{0, {}, -3};
    const auto planned = [&] {
        std::string error;
        try {
            static_cast<void>(planExport({mp3, stage.out()}, stage.services()));
        } catch (const std::exception& refusal) {
            error = userText(refusal);
        }
        EXPECT_EQ(stage.refusal(mp3), error);
        return error;
    };
    EXPECT_EQ(planned(), "Invalid MP3 encoder configuration.");
    mp3.sampleRate = 48000;
    EXPECT_EQ(planned(), "The completed MP3 file did not decode with the requested format.") << "no frame is left";
    stage.ops.readOnlyFolders = true;
    EXPECT_EQ(planned(), "out.mp3: Permission denied");
}

TEST(ListeningCopy, TakesASampleJustBelowFullScale) {
    ExportStage stage;
    test::writeFloats(stage.source() / "take.wav", std::vector<float>(4000, 0x1.FFFFFEp-1F), 2);
    EXPECT_EQ(stage.run(asMp3(stage.take())), "Created out.mp3");
}

TEST(ListeningCopy, LeavesNothingWhereverItIsStopped) {
    ExportStage stage;
    test::writeFloats(stage.source() / "take.wav", test::sine(500, 48000, 100000, 0.4, 2), 2);
    const auto stops = [&](const auto& configuration) {
        for (int nth = 1; nth < 60; ++nth) {
            stage.ops.failAt(
                {.kinds = {test::Call::create, test::Call::write, test::Call::renameNoReplace, test::Call::sync},
                 .nth = nth,
                 .errorNumber = ENOSPC});
            const std::string said = stage.refusal(configuration);
            if (stage.ops.failures() == 0) break;
            EXPECT_NE(said.find("No space left on device"), std::string::npos) << said << " at call " << nth;
            EXPECT_TRUE(test::namesIn(stage.out()).empty()) << nth;
        }
        std::filesystem::remove_all(stage.out());
        std::filesystem::create_directory(stage.out());
        stage.ops.failAt({.nth = 1000000});
        CancellationToken token;
        EXPECT_THROW(static_cast<void>(stage.run(configuration, {&token,
                                                                 [&](const Progress& progress) {
                                                                     if (progress.doneBytes > 0) token.cancel();
                                                                 }})),
                     Cancelled);
        EXPECT_TRUE(test::namesIn(stage.out()).empty());
    };
    stops(asAac(stage.take()));
    stops(asMp3(stage.take()));
}

TEST(Mp3Encoder, EncodesOnlyBetweenInitialisationAndFlush) {
    const auto encoder = makeLameEncoders()->make();
    const std::vector<std::int16_t> samples(1152);
    EXPECT_THROW(static_cast<void>(encoder->encode(samples, 1152)), MP3EncoderError);
    EXPECT_THROW(encoder->initialise({44100, 3, 128}), MP3EncoderError);
    EXPECT_THROW(encoder->initialise({32000, 1, 128}), MP3EncoderError);
    encoder->initialise({44100, 1, 128});
    static_cast<void>(encoder->encode(samples, 1152));
    EXPECT_FALSE(encoder->flush().empty());
    EXPECT_THROW(static_cast<void>(encoder->encode(samples, 1152)), MP3EncoderError);
}

}  // namespace
}  // namespace dravik
