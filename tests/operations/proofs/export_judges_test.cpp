// What other programs make of exports.
#include "tests/operations/export_stage.h"
#include "tests/operations/proofs/judges.h"

#include <string>

namespace dravik {
namespace {

using test::asAac;
using test::asMp3;
using test::asWav;
using test::ExportStage;
using test::said;

/// Frames that another program decodes from the file.
std::size_t decodedFrames(const std::filesystem::path& file, std::size_t channels) {
    return said("ffmpeg -v error -i " + file.native() + " -f s16le -").size() / 2 / channels;
}

TEST(ExportJudges, FindListeningCopiesAsLongAsTheirSources) {
    DRAVIK_NEEDS_JUDGES();
    for (const std::size_t frames : {1U, 700U, 1024U, 4801U, 100003U}) {
        for (const bool stereo : {false, true}) {
            ExportStage stage;
            test::writeFloats(stage.source() / "take.wav", test::sine(440, 48000, frames, 0.5, 2), 2);
            OperationAudioAACExportConfiguration aac = asAac(stage.take());
            OperationAudioMP3ExportConfiguration mp3 = asMp3(stage.take());
            if (!stereo) aac.routing = mp3.routing = routing::Mono{1, {}, -3};
            aac.bitRate = mp3.bitRate = 192;
            EXPECT_EQ(stage.run(aac),
                      "Created out.m4a. BWF/iXML, timecode, cue markers, and mixer automation aren’t "
                      "carried into M4A.");
            EXPECT_EQ(stage.run(mp3), "Created out.mp3");
            EXPECT_EQ(test::namesIn(stage.out()), (std::vector<std::string>{"out.m4a", "out.mp3"}));
            const std::size_t channels = stereo ? 2 : 1;
            EXPECT_EQ(decodedFrames(stage.out() / "out.mp3", channels), frames);
            // It leaves the padding of the last block in place; the length that the container states is the exact one.
            EXPECT_EQ(said("ffprobe -v error -show_entries stream=codec_name,sample_rate,channels,duration_ts "
                           "-of csv=p=0 " +
                           (stage.out() / "out.m4a").native()),
                      "aac,48000," + std::to_string(channels) + "," + std::to_string(frames) + "\n");
        }
    }
}

TEST(ExportJudges, FindMp3AtTheRateAskedForAndOfItsFirstLayer) {
    DRAVIK_NEEDS_JUDGES();
    ExportStage stage;
    test::writeFloats(stage.source() / "take.wav", test::sine(440, 96000, 96000), 1, 96000);
    OperationAudioMP3ExportConfiguration mp3 = asMp3(stage.take());
    mp3.routing = routing::Mono{0, {}, -3};
    EXPECT_EQ(stage.refusal(mp3), "Invalid MP3 encoder configuration.") << "96 kHz";
    mp3.sampleRate = 44100;
    mp3.bitRate = 160;
    EXPECT_EQ(stage.refusal(mp3), "Invalid MP3 encoder configuration.") << "160 kbit/s";
    for (const int bitRate : {128, 192, 256, 320}) {
        mp3.bitRate = bitRate;
        std::filesystem::remove(stage.out() / "out.mp3");
        EXPECT_EQ(stage.run(mp3), "Created out.mp3");
        EXPECT_EQ(said("mediainfo --Inform='Audio;%Format% %Format_Version% %Format_Profile% %Channels% "
                       "%SamplingRate% %BitRate%' " +
                       (stage.out() / "out.mp3").native()),
                  "MPEG Audio Version 1 Layer 3 1 44100 " + std::to_string(bitRate) + "000\n");
    }
}

TEST(ExportJudges, FindTheTakesNameInTheM4A) {
    DRAVIK_NEEDS_JUDGES();
    ExportStage stage;
    test::recorderFile({.project = "Long &amp; Tide", .scene = "12A", .take = "3"}, {.channels = 2}, 4800)
        .write(stage.source() / "take.wav");
    static_cast<void>(stage.run(asAac(stage.take())));
    EXPECT_EQ(said("ffprobe -v error -show_entries format_tags=title,comment -of csv=p=0 " +
                   (stage.out() / "out.m4a").native()),
              "take,\"Project: Long & Tide, Scene: 12A, Take: 3\"\n");
}

TEST(ExportJudges, ReadWavFilesAsWhatTheySay) {
    DRAVIK_NEEDS_JUDGES();
    ExportStage stage;
    test::writeFloats(stage.source() / "take.wav", test::sine(1000, 48000, 48000, 0.5, 2), 2);
    struct {
        int bits;
        std::optional<double> rate;
        const char* expected;  ///< codec, rate, channels
        const char* frames;
    } const cases[] = {{16, {}, "pcm_s16le,48000,2", "48000"},
                       {24, 44100, "pcm_s24le,44100,2", "44100"},
                       {24, 96000, "pcm_s24le,96000,2", "96000"},
                       {32, 192000, "pcm_f32le,192000,2", "192000"}};
    for (const auto& c : cases) {
        OperationAudioExportConfiguration configuration = asWav(stage.take(), c.bits);
        configuration.sampleRate = c.rate;
        const std::filesystem::path file = stage.out() / "out.wav";
        std::filesystem::remove(file);
        static_cast<void>(stage.run(configuration));
        EXPECT_EQ(said("ffprobe -v error -show_entries stream=codec_name,sample_rate,channels,duration_ts "
                       "-of csv=p=0 " +
                       file.native()),
                  std::string(c.expected) + "," + c.frames + "\n");
        EXPECT_EQ(said("sox --i -s " + file.native()), std::string(c.frames) + "\n");
        EXPECT_NE(said("sndfile-info " + file.native()).find(std::string("Frames      : ") + c.frames),
                  std::string::npos);
        // The tone is where it was: no more is left of the difference than rounding.
        EXPECT_EQ(said("sox " + file.native() + " -n stat 2>&1 | grep -c 'Maximum amplitude:     0.50'"), "1\n")
            << c.expected;
    }
}

}  // namespace
}  // namespace dravik
