#include "model/probe.h"

#include "platform/media/lazy_media_reader.h"
#include "tests/support/child.h"
#include "tests/support/fake_codecs.h"
#include "tests/support/files.h"
#include "tests/support/samples.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wav_builder.h"

#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

namespace dravik {
namespace {

using test::FakeCodecs;
using test::Ixml;
using test::TempFolder;
using test::WavBuilder;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

InfoFichier probe(const WavBuilder& builder) {
    const TempFolder folder;
    return analyserFichier(builder.write(folder / "T.wav"), FakeCodecs());
}

/// A record filled from an iXML text alone.
InfoFichier fromIxml(const std::string& text, double sampleRate = 48000) {
    InfoFichier info;
    info.sampleRate = sampleRate;
    fillFromIxml(info, text);
    return info;
}

TEST(Probe, FillsTheWholeRecordOfARecordersFile) {
    const TempFolder folder;
    const Ixml ixml{.note = "wind",
                    .circled = "TRUE",
                    .wild = "1",
                    .familyUid = "F1",
                    .tracks = {{1, 1, "Boom &amp; Lav"}, {7, 2, "Lav"}}};
    const auto path = test::recorderFile(ixml, {.channels = 2}, 24'000).write(folder / "Sc 12.v2.Wav");
    const InfoFichier info = analyserFichier(path, FakeCodecs());
    EXPECT_EQ(info.url, path);
    EXPECT_EQ(info.nom, "Sc 12.v2");
    EXPECT_EQ(info.format, "WAV");
    EXPECT_EQ(info.taille, std::filesystem::file_size(path));
    EXPECT_EQ(info.channels, 2);
    EXPECT_EQ(info.sampleRate, 48000);
    EXPECT_EQ(info.bits, 24);
    EXPECT_DOUBLE_EQ(info.dureeSecondes, 0.5);
    EXPECT_EQ(info.recordingDate, (RecordingDate{2024, 3, 7}));
    EXPECT_EQ(info.project, "Film");
    EXPECT_EQ(info.scene, "12A");
    EXPECT_EQ(info.prise, "3");
    EXPECT_EQ(info.tape, "R001");
    EXPECT_EQ(info.notes, "wind");
    EXPECT_TRUE(info.circled);
    EXPECT_TRUE(info.wild);
    EXPECT_EQ(info.framerate, "25");
    EXPECT_EQ(info.timecode, "10:00:00:00");
    EXPECT_EQ(info.familleUID, "F1");
    EXPECT_THAT(info.nomsPistes, ElementsAre(Pair(1, "Boom &amp; Lav"), Pair(2, "Lav")));
    EXPECT_THAT(info.numerosTracks, ElementsAre(Pair(1, 1), Pair(2, 7)));
    EXPECT_EQ(displayName(info.nomsPistes.at(1)), "Boom & Lav");
    EXPECT_NE(info.id, analyserFichier(path, FakeCodecs()).id);
}

TEST(Probe, ReadsTheDateOfTheFirstBextThatCanHoldOne) {
    const auto dateOf = [](const WavBuilder& builder) { return probe(builder).recordingDate; };
    const RecordingDate day{2024, 3, 7};
    EXPECT_EQ(dateOf(WavBuilder().bext({.bytes = 330}).fmt().audio(1)), day);
    EXPECT_EQ(dateOf(WavBuilder().bext({.date = "2020-01-01", .bytes = 329}).bext().fmt().audio(1)), day);
    EXPECT_EQ(dateOf(WavBuilder().chunk("LIST", "thirteen byte").fmt().audio(1).bext()), day) << "behind an odd chunk";
    EXPECT_EQ(dateOf(WavBuilder("RF64").ds64(0).bext().fmt().audio(1)), day);
    EXPECT_FALSE(dateOf(WavBuilder("BW64").ds64(0).bext().fmt().audio(1)));
    EXPECT_FALSE(dateOf(WavBuilder().bext({.date = "2024-3-7"}).bext())) << "the first decides, also when it has none";
    EXPECT_FALSE(dateOf(WavBuilder().fmt().chunkClaiming("bext", test::bextPayload({.bytes = 325}), 602)));
}

TEST(Probe, FindsTheIxmlWhereverTheWalkReaches) {
    const auto sceneOf = [](const WavBuilder& builder) { return probe(builder).scene.value_or("none"); };
    const Ixml other{.scene = "second"};
    EXPECT_EQ(sceneOf(WavBuilder().fmt().audio(10).ixml()), "12A");
    EXPECT_EQ(sceneOf(WavBuilder().ixml().fmt().audio(10).ixml(other)), "12A") << "the first";
    EXPECT_EQ(sceneOf(WavBuilder().chunk("iXML", "").ixml(other)), "none") << "also when it is empty";
    EXPECT_EQ(sceneOf(WavBuilder().ixml(other).fmt().chunkClaiming("data", test::audioBytes(9), 0xFFFFFFFF)), "second");
    EXPECT_EQ(sceneOf(WavBuilder("RF64").ds64(9).ixml(other).chunkClaiming("data", test::audioBytes(9), 0xFFFFFFFF)),
              "second");
    EXPECT_EQ(sceneOf(WavBuilder("RF64").ds64(10).chunkClaiming("data", test::audioBytes(10), 0xFFFFFFFF).ixml()),
              "none")
        << "metadata behind audio of a 64-bit size is not looked for";
    EXPECT_EQ(sceneOf(WavBuilder("BW64").ds64(0).ixml()), "none");
    const std::string cut = test::ixmlText(other).substr(0, 200);
    for (const std::uint32_t claim : {100'000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(sceneOf(WavBuilder().chunkClaiming("iXML", asBytes(cut), claim)), "second")
            << "what is there is read";
    }
    const auto latin1 = probe(WavBuilder().ixml({.scene = "caf\xE9"}));
    EXPECT_EQ(latin1.scene, "café");
}

TEST(Probe, KeepsEmptyTextsButNoEmptyNote) {
    const InfoFichier info =
        fromIxml(test::ixmlText({.project = std::nullopt, .scene = "", .take = " 3 ", .note = ""}));
    EXPECT_FALSE(info.project);
    EXPECT_EQ(info.scene, "");
    EXPECT_EQ(info.prise, " 3 ") << "not trimmed";
    EXPECT_FALSE(info.notes);
    EXPECT_FALSE(fromIxml("<FAMILY_UID> </FAMILY_UID>").familleUID);
}

TEST(Probe, LabelsRatesAndCountsTimecodesFromTheFilesOwnSampleRate) {
    constexpr std::uint64_t tenHours = 1'728'000'000;
    const struct {
        std::string rate;
        std::optional<std::string> flag;
        std::uint64_t samples;
        double sampleRate;
        std::string label, timecode;
    } cases[] = {
        {"25/1", "NDF", tenHours, 48000, "25", "10:00:00:00"},
        {"25", std::nullopt, tenHours, 0, "25", "10:00:00:00"},
        {"25/1", "NDF", tenHours, 96000, "25", "05:00:00:00"},
        {"25/1", "NDF", tenHours * 5 / 2, 48000, "25", "25:00:00:00"},
        {"30000/1001", "df", 0, 48000, "29.97 DF", "00:00:00:00"},
        {"24000/1001", "NDF", 2'190'940'753, 48000, "23.976", "12:39:59:00"},
        {"48", "", 48'000, 48000, "48.0", "00:00:01:00"},
        {"fast", "NDF", 48'000, 48000, "25", "00:00:01:00"},
    };
    for (const auto& [rate, flag, samples, sampleRate, label, timecode] : cases) {
        const InfoFichier info = fromIxml(test::ixmlText({.rate = rate, .flag = flag, .samples = samples}), sampleRate);
        EXPECT_EQ(info.framerate, label) << rate;
        EXPECT_EQ(info.timecode, timecode) << rate;
    }
    EXPECT_FALSE(fromIxml(test::ixmlText({.rate = std::nullopt})).timecode) << "no rate, no timecode";
    const InfoFichier noStamp = fromIxml(test::ixmlText({.samples = std::nullopt}));
    EXPECT_EQ(noStamp.framerate, "25");
    EXPECT_FALSE(noStamp.timecode);
    EXPECT_FALSE(fromIxml("<TIMECODE_RATE>1e300</TIMECODE_RATE><TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO>9"
                          "</TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO>")
                     .timecode);
}

TEST(Probe, AsksTheCodecsOnlyForWhatIsNoLinearWave) {
    const TempFolder folder;
    const FakeCodecs codecs(AudioFormat{2, 44100, 0, 44100});
    EXPECT_EQ(analyserFichier(test::recorderFile().write(folder / "a.wav"), codecs).channels, 1);
    EXPECT_EQ(codecs.asked, 0);

    Bytes compressed = test::fmtPayload({});
    writeLE(compressed.data(), std::uint16_t{0x55});
    test::writeFile(folder / "b.mp3", "ID3 and so on");
    for (const auto& path :
         {folder / "b.mp3", WavBuilder().chunk("fmt ", compressed).audio(9).write(folder / "c.wav")}) {
        const InfoFichier info = analyserFichier(path, codecs);
        EXPECT_EQ(info.channels, 2) << path;
        EXPECT_DOUBLE_EQ(info.dureeSecondes, 1) << path;
    }
    EXPECT_EQ(codecs.asked, 2);
}

TEST(Probe, StandsWhatCannotBeRead) {
    const TempFolder folder;
    test::writeFile(folder / "empty.wav", "");
    ASSERT_EQ(::mkfifo((folder / "pipe.wav").c_str(), 0666), 0);
    const FakeCodecs codecs(AudioFormat{1, 48000, 16, 48000});
    for (const char* name : {"missing.wav", "empty.wav", "pipe.wav"}) {
        const InfoFichier info = analyserFichier(folder / name, codecs);
        EXPECT_EQ(info.format, "WAV") << name;
        EXPECT_EQ(info.channels, 0) << name;
        EXPECT_FALSE(info.scene) << name;
    }
    EXPECT_EQ(codecs.asked, 0) << "a codec library would wait for a pipe's writer";
    // A header without audio, and audio whose recorder lost power: what is there counts.
    EXPECT_EQ(probe(WavBuilder().fmt()).channels, 0);
    EXPECT_DOUBLE_EQ(probe(WavBuilder().fmt().chunkClaiming("data", test::audioBytes(144'000), 999'999)).dureeSecondes,
                     1);
    EXPECT_DOUBLE_EQ(probe(WavBuilder().fmt({.rate = 0}).audio(10)).dureeSecondes, 0);
}

TEST(Probe, TellsTheSizeOfAFileItMayNotOpen) {
    const TempFolder folder;
    const auto path = test::recorderFile().write(folder / "a.wav");
    ASSERT_EQ(::chmod(path.c_str(), 0), 0);
    ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
    const auto size = static_cast<int>(std::filesystem::file_size(path));
    EXPECT_EQ(test::inChildWithoutRights([&] {
                  const InfoFichier info = analyserFichier(path, FakeCodecs());
                  return info.channels == 0 && info.taille == static_cast<std::uint64_t>(size) ? 0 : 1;
              }),
              0);
}

TEST(Probe, ReadsAtMost32KiBOfAFileOfAnyLength) {
    const TempFolder folder;
    const auto reads = [](const std::filesystem::path& path) {
        const FileHandle handle = FileHandle::openForReading(path);
        const FileSource source(handle);
        const auto table = walkChunks(source);
        if (table) {
            static_cast<void>(recordingDateIn(source, *table));
            static_cast<void>(linearFormatIn(source, *table));
            static_cast<void>(ixmlTextIn(source, *table));
        }
        return source.bytesRead();
    };
    // A long recording, its metadata behind the audio.
    WavBuilder longTake;
    constexpr std::uint32_t audio = 300'000'000;
    const auto path = longTake.bext().fmt().chunkClaiming("data", {}, audio).write(folder / "long.wav");
    const auto begin = std::filesystem::file_size(path);
    std::filesystem::resize_file(path, begin + audio);
    const Bytes tail = WavBuilder().ixml().bytes();
    test::appendToFile(path, asText(ByteSpan(tail).subspan(12)));
    EXPECT_EQ(analyserFichier(path, FakeCodecs()).scene, "12A");
    EXPECT_LE(reads(path), 32U * 1024U);
    // As many chunks as are ever walked, of odd sizes, far apart.
    const auto scattered = folder / "scattered.wav";
    test::writeFile(scattered, WavBuilder().bytes());
    for (std::size_t i = 0; i < maxChunks; ++i) {
        const auto at = std::filesystem::file_size(scattered);
        test::appendToFile(scattered,
                           asText(ByteSpan(WavBuilder().chunkClaiming("abcd", {}, 99'999).bytes()).subspan(12)));
        std::filesystem::resize_file(scattered, at + 8 + 100'000);
    }
    EXPECT_LE(reads(scattered), 32U * 1024U);
    for (const std::filesystem::path& sample : test::samplesOf(".wav"))
        EXPECT_LE(reads(sample), 32U * 1024U) << sample;
}

TEST(Probe, ReadsTheRealOnes) {
    DRAVIK_NEEDS_SAMPLES();
    const auto codecs = makeLazyMediaReader([](const std::string& complaint) { ADD_FAILURE() << complaint; });
    const struct {
        const char* path;
        int channels;
        double sampleRate;
        int bits;
        double seconds;
        std::string scene, take, timecode, framerate, date, firstTrack;
    } cases[] = {
        {"recorder_a_poly_mono/A101_1.WAV", 2, 48000, 24, 1441434 / 288000.0, "A101", "1", "12:39:59:00", "23.976",
         "2018-12-31", "MKH516 A"},
        {"recorder_a_poly_mono/A101_1_2.WAV", 1, 48000, 24, 240239 / 48000.0, "A101", "1", "12:39:59:00", "23.976",
         "2018-12-31", "Boom"},
        {"recorder_b_mono_set/Sr001-2C-01_02.WAV", 1, 48000, 24, 7, "2C", "01", "-", "25", "-", "Lav Georgie"},
        {"recorder_c_mono_set/Scene_1_2AG-T001_Tr2.WAV", 1, 48000, 24, 11, "Scene_1_2AG", "001", "22:40:10:00", "25",
         "2019-02-13", "MID"},
        {"quirks/ixml_odd_size_without_pad.wav", 1, 48000, 16, 105077 / 48000.0, "21", "33", "07:07:35:01", "23.976",
         "-", "Mid"},
        {"quirks/rf64_small.wav", 2, 96000, 32, 17943 / 96000.0, "-", "-", "-", "-", "-", "-"},
        {"quirks/riff_size_8_too_large.wav", 1, 48000, 24, 45859 / 48000.0, "-", "-", "-", "-", "-", "-"},
        {"quirks/rifx_big_endian.wav", 0, 0, 0, 0, "-", "-", "-", "-", "-", "-"},
        {"quirks/id3_before_riff.wav", 1, 44100, 16, 2228 / 44100.0, "-", "-", "-", "-", "-", "-"},
        {"daw/Test_ADM_ProTools.wav", 14, 48000, 24, 48048 / 48000.0, "-", "-", "-", "-", "-", "-"},
        {"daw/umid.wav", 1, 44100, 24, 1, "-", "-", "-", "-", "2020-01-05", "-"},
        {"daw/wavinfo Test Project - Audio - 5.1.wav", 6, 48000, 24, 1, "-", "-", "-", "-", "2022-12-02", "-"},
        {"other_formats/aifc_tagged.aif", 2, 8000, 0, 23493 / 8000.0, "-", "-", "-", "-", "-", "-"},
        {"other_formats/aiff_empty.aif", 2, 8000, 32, 23493 / 8000.0, "-", "-", "-", "-", "-", "-"},
        {"other_formats/caf.caf", 2, 11025, 8, 35662 / 11025.0, "-", "-", "-", "-", "-", "-"},
    };
    for (const auto& [path, channels, sampleRate, bits, seconds, scene, take, timecode, framerate, date, track] :
         cases) {
        const InfoFichier info = analyserFichier(*test::sampleFolder() / path, *codecs);
        EXPECT_EQ(info.channels, channels) << path;
        EXPECT_EQ(info.sampleRate, sampleRate) << path;
        EXPECT_EQ(info.bits, bits) << path;
        EXPECT_NEAR(info.dureeSecondes, seconds, 1e-9) << path;
        EXPECT_EQ(info.scene.value_or("-"), scene) << path;
        EXPECT_EQ(info.prise.value_or("-"), take) << path;
        EXPECT_EQ(info.timecode.value_or("-"), timecode) << path;
        EXPECT_EQ(info.framerate.value_or("-"), framerate) << path;
        EXPECT_EQ(info.recordingDate ? formatRecordingDate(*info.recordingDate) : "-", date) << path;
        EXPECT_EQ(info.nomsPistes.empty() ? "-" : info.nomsPistes.begin()->second, track) << path;
    }
}

}  // namespace
}  // namespace dravik
