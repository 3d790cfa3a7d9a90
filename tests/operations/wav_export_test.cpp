#include "operations/wav_export.h"

#include "base/checksum.h"
#include "base/paths.h"
#include "base/temp_name.h"
#include "operations/export_run.h"
#include "operations/operation_audio_error.h"
#include "platform/native_file_ops.h"
#include "tests/operations/export_stage.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace dravik {
namespace {

using namespace OperationsAudio;
using test::asWav;
using test::ExportStage;

std::vector<float> floatsOf(std::string_view payload) {
    std::vector<float> samples(payload.size() / sizeof(float));
    std::memcpy(samples.data(), payload.data(), samples.size() * sizeof(float));
    return samples;
}

TEST(WavExport, KeepsEveryByteOfAudioThatStaysAsItIs) {
    for (const std::uint16_t bits : {std::uint16_t{16}, std::uint16_t{24}}) {
        for (const std::size_t frames : {0U, 1U, 1001U, 50000U}) {
            ExportStage stage;
            test::recorderFile({}, {.channels = 3, .bits = bits}, frames).write(stage.source() / "take.wav");
            EXPECT_EQ(stage.run(asWav(stage.take(), bits)), "Created out.wav");
            EXPECT_EQ(test::payloadOf(stage.out() / "out.wav", "data"),
                      test::payloadOf(stage.source() / "take.wav", "data"))
                << bits << " bits, " << frames << " frames";
            EXPECT_EQ(test::namesIn(stage.out()), std::vector<std::string>{"out.wav"});
        }
    }
}

TEST(WavExport, RoutesTracksOfPolyFilesAndOfMonoSets) {
    const std::vector<float> a = test::sine(100, 48000, 20000, 0.3), b = test::sine(230, 48000, 20000, 0.2);
    const auto sum = [&](double dB) {
        std::vector<float> out;
        const double gain = std::pow(10, dB / 20);
        for (std::size_t i = 0; i < a.size(); ++i) {
            out.push_back(static_cast<float>(static_cast<double>(a[i]) * gain + static_cast<double>(b[i]) * gain));
        }
        return out;
    };
    const auto woven = [](const std::vector<float>& x, const std::vector<float>& y) {
        std::vector<float> out;
        for (std::size_t i = 0; i < x.size(); ++i) {
            out.push_back(x[i]);
            out.push_back(y[i]);
        }
        return out;
    };
    struct {
        const char* what;
        OperationAudioExportRouting routing;
        std::vector<float> expected;
    } const cases[] = {
        {"one track", routing::Mono{1, {}, -3}, b},
        {"two at -3 dB", routing::Mono{0, 1, -3}, sum(-3)},
        {"two at -6 dB", routing::Mono{1, 0, -6}, sum(-6)},
        {"a pair, exchanged", routing::Stereo{1, 0}, woven(b, a)},
        {"one track twice", routing::Stereo{0, 0}, woven(a, a)},
        {"all", routing::Poly{}, woven(a, b)},
    };
    for (const bool poly : {true, false}) {
        ExportStage stage;
        if (poly) {
            test::writeFloats(stage.source() / "take.wav", woven(a, b), 2);
        } else {
            test::writeFloats(stage.source() / "take_T01.wav", a);
            test::writeFloats(stage.source() / "take_T02.wav", b);
        }
        for (const auto& c : cases) {
            OperationAudioExportConfiguration configuration = asWav(stage.take(), 32);
            configuration.routing = c.routing;
            std::filesystem::remove(stage.out() / "out.wav");
            static_cast<void>(stage.run(configuration));
            EXPECT_EQ(floatsOf(test::payloadOf(stage.out() / "out.wav", "data")), c.expected)
                << c.what << (poly ? " of a poly file" : " of a mono set");
        }
    }
}

TEST(WavExport, IsTheSameFileForASeedInEveryRun) {
    ExportStage stage;
    test::writeFloats(stage.source() / "take.wav", test::sine(997, 48000, 60000, 0.7, 3), 3);
    OperationAudioExportConfiguration configuration = asWav(stage.take(), 24);
    configuration.sampleRate = 44100;
    static_cast<void>(stage.run(configuration));
    const Bytes first = test::readFile(stage.out() / "out.wav");
    std::filesystem::remove(stage.out() / "out.wav");
    static_cast<void>(stage.run(configuration));
    EXPECT_EQ(test::readFile(stage.out() / "out.wav"), first);
    configuration.ditherSeed = 8;
    std::filesystem::remove(stage.out() / "out.wav");
    static_cast<void>(stage.run(configuration));
    EXPECT_NE(test::readFile(stage.out() / "out.wav"), first);
}

TEST(WavExport, DithersOnlyWhereBitsAreLost) {
    // Silence shows it: without dither it stays silence.
    struct {
        std::uint16_t from;
        bool fromFloat;
        int to;
        bool otherRate, dithered;
    } const cases[] = {{24, false, 24, false, false}, {16, false, 24, false, false}, {24, false, 16, false, true},
                       {32, true, 24, false, true},   {16, false, 16, true, true},   {32, true, 32, true, false},
                       {32, false, 24, false, true}};
    for (const auto& c : cases) {
        ExportStage stage;
        test::WavBuilder()
            .fmt({.channels = 2, .bits = c.from, .isFloat = c.fromFloat})
            .chunk("data", Bytes(1000UL * 2 * c.from / 8))
            .write(stage.source() / "take.wav");
        OperationAudioExportConfiguration configuration = asWav(stage.take(), c.to);
        // A route that is no copy of whole frames.
        configuration.routing = routing::Stereo{1, 0};
        if (c.otherRate) configuration.sampleRate = 96000;
        static_cast<void>(stage.run(configuration));
        const std::string data = test::payloadOf(stage.out() / "out.wav", "data");
        const bool silent = std::all_of(data.begin(), data.end(), [](char byte) { return byte == 0; });
        EXPECT_EQ(!silent, c.dithered) << c.from << " to " << c.to;
    }
}

TEST(WavExport, RefusesWithTheReasonAndLeavesNothing) {
    using Configuration = OperationAudioExportConfiguration;
    const auto poly = [](ExportStage& stage) {
        test::recorderFile({}, {.channels = 2}, 1000).write(stage.source() / "take.wav");
    };
    const auto set = [](std::uint64_t secondStart, std::size_t secondFrames, std::uint32_t secondRate) {
        return [=](ExportStage& stage) {
            test::WavBuilder().bext({.timeReference = 5}).fmt().audio(1000).write(stage.source() / "t_T01.wav");
            test::WavBuilder()
                .bext({.timeReference = secondStart})
                .fmt({.rate = secondRate})
                .audio(secondFrames)
                .write(stage.source() / "t_T02.wav");
        };
    };
    const auto floats = [](float sample) {
        return [=](ExportStage& stage) {
            std::vector<float> samples(100, 0.1F);
            samples[50] = sample;
            test::writeFloats(stage.source() / "take.wav", samples);
        };
    };
    const auto ixml = [](const char* document) {
        return [=](ExportStage& stage) {
            test::WavBuilder().chunk("iXML", document).fmt().audio(1000).write(stage.source() / "take.wav");
        };
    };
    struct {
        const char* what;
        std::function<void(ExportStage&)> prepare;
        std::function<void(Configuration&)> change;
        const char* message;
    } const cases[] = {
        {"a track that is not there", poly,
         [](Configuration& c) {
             c.routing = routing::Mono{2, {}, -3};
         },
         "The requested track position is unavailable."},
        {"a track below the first", poly,
         [](Configuration& c) {
             c.routing = routing::Stereo{0, -1};
         },
         "The requested track position is unavailable."},
        {"no rate", poly, [](Configuration& c) { c.sampleRate = 0; }, "The output sample rate is invalid."},
        {"no number for a rate", poly, [](Configuration& c) { c.sampleRate = std::nan(""); },
         "The output sample rate is invalid."},
        {"a rate that no converter makes", poly, [](Configuration& c) { c.sampleRate = 768001; },
         "The output sample rate is invalid."},
        {"a name that no folder takes", poly, [](Configuration& c) { c.destinationName = std::string(256, 'x'); },
         "the name is longer than the 255 bytes"},
        {"mixer automation without an end",
         ixml("<MIXER_SETTINGS>"),
         {},
         "The exported iXML still contains mixer automation metadata."},
        {"a depth in tags",
         ixml("<AUDIO_BIT_DEPTH>16<X/></AUDIO_BIT_DEPTH>"),
         {},
         "The exported iXML AUDIO_BIT_DEPTH does not match the WAV audio format."},
        {"a depth that no file has", poly, [](Configuration& c) { c.bitDepth = 20; },
         "The requested WAV sample format is unavailable."},
        {"other starts", set(6, 1000, 48000), {}, "Mono sources do not share the same start alignment."},
        {"other lengths", set(5, 999, 48000), {}, "Mono sources must have identical sample rates and durations."},
        {"full scale", floats(1.0F), {}, "The export exceeds the integer PCM range; no clipped file was created."},
        {"no number", floats(std::numeric_limits<float>::quiet_NaN()), {}, "The audio contains a non-finite sample."},
        {"no number, as float", floats(std::numeric_limits<float>::infinity()),
         [](Configuration& c) { c.bitDepth = 32, c.isFloat = true; }, "The audio contains a non-finite sample."},
        {"no number, converted", floats(std::numeric_limits<float>::quiet_NaN()),
         [](Configuration& c) { c.bitDepth = 32, c.isFloat = true, c.sampleRate = 44100; },
         "The audio contains a non-finite sample."},
        {"coded audio",
         [](ExportStage& stage) {
             Bytes fmt = test::fmtPayload({.bits = 16});
             fmt[0] = std::byte{0x11};
             test::WavBuilder().chunk("fmt ", fmt).chunk("data", Bytes(100)).write(stage.source() / "take.wav");
         },
         {},
         "Only linear PCM WAV sources are supported."},
        {"a file that is gone",
         [](ExportStage& stage) {
             test::WavBuilder().fmt({.channels = 2}).audio(100).write(stage.source() / "take.wav");
         },
         [](Configuration& c) { c.groupe.fichiers.edit([](auto& files) { files[0].url += "x"; }); },
         "Source file does not exist: "},
    };
    for (const auto& c : cases) {
        ExportStage stage;
        c.prepare(stage);
        const auto before = test::stateOf(stage.source());
        OperationAudioExportConfiguration configuration = asWav(stage.take());
        if (configuration.groupe.fichiers.size() == 1 && std::string_view(c.what).starts_with("other")) {
            // The scan itself does not take them for one take: as a list that was made before one of them changed.
            GroupeFichiers& groupe = configuration.groupe;
            groupe.fichiers.edit([&](std::vector<InfoFichier>& files) {
                files.resize(2);
                files[0].url = stage.source() / "t_T01.wav";
                files[1].url = stage.source() / "t_T02.wav";
            });
            groupe.estPoly = false;
        }
        if (c.change) c.change(configuration);
        const std::string said = stage.refusal(configuration);
        EXPECT_NE(said.find(c.message), std::string::npos) << c.what << ": " << said;
        const bool isInTheAudio = std::string_view(c.message).starts_with("The audio contains") ||
                                  std::string_view(c.message).starts_with("The export exceeds");
        EXPECT_EQ(stage.ops.calls(test::Call::create), isInTheAudio ? 1 : 0)
            << c.what << ": whatever can be known before the audio is read refuses before a file is made";
        EXPECT_TRUE(test::namesIn(stage.out()).empty()) << c.what;
        EXPECT_EQ(test::stateOf(stage.source()), before) << c.what;
    }
}

TEST(WavExport, NeverWritesOverAnything) {
    ExportStage stage;
    const std::filesystem::path take = stage.source() / "Take.wav";
    test::recorderFile().write(take);
    const Bytes before = test::readFile(take);
    OperationAudioExportConfiguration configuration = asWav(stage.take());
    configuration.destinationName = "TAKE.WAV";
    EXPECT_THROW(static_cast<void>(exportWAV(configuration, stage.source(), stage.services(), stage.context({}))),
                 OperationAudioError)
        << "on volumes without case that is the source itself";
    EXPECT_EQ(test::readFile(take), before);

    configuration.destinationName = "out.wav";
    test::writeFile(stage.out() / "out.wav", "mine");
    EXPECT_NE(stage.refusal(configuration).find("exists already"), std::string::npos);
    std::filesystem::remove(stage.out() / "out.wav");
    // Another program is faster.
    stage.ops.before([&](test::Call call, int) {
        if (call == test::Call::renameNoReplace) test::writeFile(stage.out() / "out.wav", "theirs");
    });
    EXPECT_FALSE(stage.refusal(configuration).starts_with("(Created"));
    EXPECT_EQ(asText(test::readFile(stage.out() / "out.wav")), "theirs");
    EXPECT_EQ(test::namesIn(stage.out()).size(), 1U);
}

TEST(WavExport, OfARecordingThatWasCutOffHasAllThatThereIsAndSaysSo) {
    ExportStage stage;
    test::WavBuilder()
        .fmt({.channels = 2, .bits = 24})
        .chunkClaiming("data", Bytes(600), 600000)
        .write(stage.source() / "take.wav");
    const std::string line = stage.run(asWav(stage.take()));
    EXPECT_NE(line.find("shorter than its header says"), std::string::npos) << line;
    EXPECT_EQ(std::filesystem::file_size(stage.completed.at(0)) % 600, 44U);
}

TEST(WavExport, LeavesNothingWhereverItIsStopped) {
    for (const bool converts : {false, true}) {
        ExportStage stage;
        test::writeFloats(stage.source() / "take.wav", test::sine(500, 48000, 200000, 0.4, 2), 2);
        const auto before = test::stateOf(stage.source());
        OperationAudioExportConfiguration configuration = asWav(stage.take());
        if (converts) configuration.sampleRate = 44100;
        for (int nth = 1; nth < 100; ++nth) {
            stage.ops.failAt({.nth = nth, .errorNumber = nth % 2 == 0 ? EIO : ENOSPC});
            const std::string said = stage.refusal(configuration);
            if (stage.ops.failures() == 0) break;
            // A clean-up that fails is no failure of an export that was made.
            EXPECT_EQ(said.starts_with("(Created"), std::filesystem::exists(stage.out() / "out.wav")) << said;
            EXPECT_TRUE(said.find(nth % 2 == 0 ? "Input/output error" : "No space left") != std::string::npos) << said;
            // Removing the hidden file may be the very call that fails.
            if (!test::namesIn(stage.out()).empty()) {
                for (const std::string& name : test::namesIn(stage.out()))
                    EXPECT_TRUE(isTemporaryName(name)) << name << " at call " << nth;
                std::filesystem::remove_all(stage.out());
                std::filesystem::create_directory(stage.out());
            }
            EXPECT_EQ(test::stateOf(stage.source()), before);
            std::filesystem::remove(stage.out() / "out.wav");
        }
        stage.ops.failAt({.nth = 1000000});
        stage.ops.free = 1000;
        std::filesystem::remove(stage.out() / "out.wav");
        EXPECT_NE(stage.refusal(configuration).find("No space left on device"), std::string::npos);
        EXPECT_TRUE(test::namesIn(stage.out()).empty());
        stage.ops.free.reset();

        for (int reports = 0; reports < 12; reports += 3) {
            CancellationToken token;
            int seen = 0;
            const TaskContext task{&token, [&](const Progress&) {
                                       if (seen++ == reports) token.cancel();
                                   }};
            EXPECT_THROW(static_cast<void>(stage.run(configuration, task)), Cancelled) << reports;
            EXPECT_TRUE(test::namesIn(stage.out()).empty()) << reports;
        }
    }
}

TEST(WavExport, ChecksTheSizeBeforeAnythingIsCreated) {
    ExportStage stage;
    test::WavBuilder()
        .fmt({.channels = 2, .rate = 1000, .bits = 16})
        .chunk("data", Bytes(4000000))
        .write(stage.source() / "take.wav");
    OperationAudioExportConfiguration configuration = asWav(stage.take(), 32);
    configuration.sampleRate = mostExportSampleRate;
    EXPECT_EQ(stage.refusal(configuration), "out.wav is too large for standard RIFF/WAVE output.");
    EXPECT_EQ(stage.ops.calls(test::Call::create), 0);
}

TEST(ExportRun, KeepsTheOrderOfTheJobsAndGoesOnAfterAFailure) {
    ExportStage stage;
    std::vector<ExportJob> jobs;
    for (const char* name : {"a", "b", "c", "d"}) {
        test::writeFloats(stage.source() / (std::string(name) + ".wav"),
                          test::sine(300, 48000, 30000, name[0] == 'b' ? 1.5 : 0.5));
    }
    for (const GroupeFichiers& groupe : scanFolder(stage.source(), test::FakeCodecs(), true, {})) {
        OperationAudioMP3ExportConfiguration mp3;
        mp3.groupe = groupe;
        mp3.destinationName = groupe.nom + ".mp3";
        mp3.routing = routing::Mono{0, {}, -3};
        jobs.push_back({mp3, stage.out()});
    }
    std::unique_ptr<FileOps> native = makeNativeFileOps();
    const ExportServices services{*native, *stage.converters, *stage.aac, *stage.mp3, *stage.decoder};
    std::uint64_t last = 0;
    const RunOutcome outcome = runExports(jobs, services, {nullptr, [&](const Progress& progress) {
                                                               EXPECT_GE(progress.doneBytes, last);
                                                               EXPECT_LE(progress.doneBytes, progress.allBytes);
                                                               last = progress.doneBytes;
                                                           }});
    ASSERT_EQ(outcome.results.size(), 4U);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(outcome.results[i].sourceName, std::string(1, static_cast<char>('a' + i)));
        EXPECT_EQ(outcome.results[i].success, i != 1) << outcome.results[i].message;
    }
    EXPECT_EQ(test::namesIn(stage.out()), (std::vector<std::string>{"a.mp3", "c.mp3", "d.mp3"}));
}

}  // namespace
}  // namespace dravik
