#include "base/paths.h"
#include "operations/aac_export.h"
#include "operations/mp3_export.h"
#include "operations/operation_audio_error.h"
#include "tests/operations/export_stage.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace dravik {
namespace {

using namespace OperationsAudio;
using test::ExportStage;

OperationAudioMP3ExportConfiguration asMp3(const GroupeFichiers& groupe) {
    OperationAudioMP3ExportConfiguration configuration;
    configuration.groupe = groupe;
    configuration.destinationName = "out.mp3";
    return configuration;
}
OperationAudioAACExportConfiguration asAac(const GroupeFichiers& groupe) {
    OperationAudioAACExportConfiguration configuration;
    configuration.groupe = groupe;
    configuration.destinationName = "out.m4a";
    return configuration;
}

std::string run(ExportStage& stage, const OperationAudioMP3ExportConfiguration& mp3, const TaskContext& task = {}) {
    return exportMP3(mp3, stage.out(), stage.services(), stage.context(task));
}
std::string run(ExportStage& stage, const OperationAudioAACExportConfiguration& aac, const TaskContext& task = {}) {
    return exportAAC(aac, stage.out(), stage.services(), stage.context(task));
}
template <typename Configuration>
std::string refusal(ExportStage& stage, const Configuration& configuration) {
    try {
        return "(" + run(stage, configuration) + ")";
    } catch (const std::exception& error) {
        return userText(error);
    }
}

/// Frames that another program decodes from the file.
std::size_t decodedFrames(const std::filesystem::path& file, std::size_t channels) {
    return test::outputOf("ffmpeg -v error -i " + file.string() + " -f s16le -").size() / 2 / channels;
}

TEST(ListeningCopy, IsAsLongAsItsSource) {
    for (const std::size_t frames : {1U, 700U, 1024U, 4801U, 100003U}) {
        for (const bool stereo : {false, true}) {
            ExportStage stage;
            test::writeFloats(stage.source() / "take.wav", test::sine(440, 48000, frames, 0.5, 2), 2);
            OperationAudioAACExportConfiguration aac = asAac(stage.take());
            OperationAudioMP3ExportConfiguration mp3 = asMp3(stage.take());
            if (!stereo) aac.routing = mp3.routing = routing::Mono{1, {}, -3};
            aac.bitRate = mp3.bitRate = 192;
            EXPECT_EQ(run(stage, aac),
                      "Created out.m4a. BWF/iXML, timecode, cue markers, and mixer automation aren’t "
                      "carried into M4A.");
            EXPECT_EQ(run(stage, mp3), "Created out.mp3");
            EXPECT_EQ(test::namesIn(stage.out()), (std::vector<std::string>{"out.m4a", "out.mp3"}));
            const std::size_t channels = stereo ? 2 : 1;
            if (test::outputOf("which ffmpeg").empty()) continue;
            EXPECT_EQ(decodedFrames(stage.out() / "out.mp3", channels), frames);
            // It leaves the padding of the last block in place; the length that the container states is the exact one.
            EXPECT_EQ(
                test::outputOf("ffprobe -v error -show_entries stream=codec_name,sample_rate,channels,duration_ts "
                               "-of csv=p=0 " +
                               (stage.out() / "out.m4a").string()),
                "aac,48000," + std::to_string(channels) + "," + std::to_string(frames) + "\n");
        }
    }
}

TEST(ListeningCopy, HoldsTheToneWhereItWas) {
    ExportStage stage;
    constexpr std::size_t frames = 48000;
    test::writeFloats(stage.source() / "take.wav", test::sine(440, 48000, frames, 0.5, 2), 2);
    static_cast<void>(run(stage, asAac(stage.take())));
    static_cast<void>(run(stage, asMp3(stage.take())));
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

TEST(ListeningCopy, ConvertsToARateOfMp3AndWritesItsFirstLayer) {
    ExportStage stage;
    test::writeFloats(stage.source() / "take.wav", test::sine(440, 96000, 96000), 1, 96000);
    OperationAudioMP3ExportConfiguration mp3 = asMp3(stage.take());
    mp3.routing = routing::Mono{0, {}, -3};
    EXPECT_EQ(refusal(stage, mp3), "Invalid MP3 encoder configuration.") << "96 kHz";
    mp3.sampleRate = 44100;
    mp3.bitRate = 160;
    EXPECT_EQ(refusal(stage, mp3), "Invalid MP3 encoder configuration.") << "160 kbit/s";
    for (const int bitRate : {128, 192, 256, 320}) {
        mp3.bitRate = bitRate;
        std::filesystem::remove(stage.out() / "out.mp3");
        EXPECT_EQ(run(stage, mp3), "Created out.mp3");
        if (test::outputOf("which mediainfo").empty()) continue;
        EXPECT_EQ(test::outputOf("mediainfo --Inform='Audio;%Format% %Format_Version% %Format_Profile% %Channels% "
                                 "%SamplingRate% %BitRate%' " +
                                 (stage.out() / "out.mp3").string()),
                  "MPEG Audio Version 1 Layer 3 1 44100 " + std::to_string(bitRate) + "000\n");
    }
}

TEST(ListeningCopy, CarriesTheTakesNameInTheM4A) {
    if (test::outputOf("which ffprobe").empty()) GTEST_SKIP() << "the judging programs are not here";
    ExportStage stage;
    test::recorderFile({.project = "Long &amp; Tide", .scene = "12A", .take = "3"}, {.channels = 2}, 4800)
        .write(stage.source() / "take.wav");
    static_cast<void>(run(stage, asAac(stage.take())));
    EXPECT_EQ(test::outputOf("ffprobe -v error -show_entries format_tags=title,comment -of csv=p=0 " +
                             (stage.out() / "out.m4a").string()),
              "take,\"Project: Long & Tide, Scene: 12A, Take: 3\"\n");
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
            EXPECT_EQ(refusal(stage, aac), c.message) << c.what;
        } else {
            c.mp3(mp3);
            EXPECT_EQ(refusal(stage, mp3), c.message) << c.what;
        }
        EXPECT_TRUE(test::namesIn(stage.out()).empty()) << c.what;
    }
}

TEST(ListeningCopy, TakesASampleJustBelowFullScale) {
    ExportStage stage;
    test::writeFloats(stage.source() / "take.wav", std::vector<float>(4000, 0x1.FFFFFEp-1F), 2);
    EXPECT_EQ(run(stage, asMp3(stage.take())), "Created out.mp3");
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
            const std::string said = refusal(stage, configuration);
            if (stage.ops.failures() == 0) break;
            EXPECT_NE(said.find("No space left on device"), std::string::npos) << said << " at call " << nth;
            EXPECT_TRUE(test::namesIn(stage.out()).empty()) << nth;
        }
        std::filesystem::remove_all(stage.out());
        std::filesystem::create_directory(stage.out());
        stage.ops.failAt({.nth = 1000000});
        CancellationToken token;
        EXPECT_THROW(static_cast<void>(run(stage, configuration,
                                           {&token,
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
