#include "model/probe.h"

#include "model/wave/walked_file.h"
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

#include <fmt/format.h>
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
    EXPECT_EQ(sceneOf(WavBuilder("RF64").ds64(10).chunkClaiming("data", test::audioBytes(10), 0xFFFFFFFF).ixml()),
              "none")
        << "metadata behind audio of a 64-bit size is not looked for";
    EXPECT_EQ(sceneOf(WavBuilder("BW64").ds64(0).ixml()), "none");
    const std::string cut = test::ixmlText(other).substr(0, 200);
    for (const std::uint32_t claim : {100'000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(sceneOf(WavBuilder().chunkClaiming("iXML", asBytes(cut), claim)), "second")
            << "what is there is read";
    }
    EXPECT_EQ(sceneOf(WavBuilder().ixml({.scene = "caf\xE9"})), "café");
    EXPECT_EQ(sceneOf(WavBuilder().ixml({.scene = "Café", .note = "\xE9"})), "Café") << "a stray byte elsewhere";
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

TEST(Probe, CountsTimecodesByTheFilesOwnSampleRate) {
    const auto timecodeOf = [](const test::Ixml& ixml, double sampleRate) {
        const InfoFichier info = fromIxml(test::ixmlText(ixml), sampleRate);
        return info.framerate.value_or("-") + " " + info.timecode.value_or("-");
    };
    constexpr std::uint64_t tenHours = 1'728'000'000;
    EXPECT_EQ(timecodeOf({.samples = tenHours}, 96000), "25 05:00:00:00");
    EXPECT_EQ(timecodeOf({.samples = tenHours}, 0), "25 10:00:00:00") << "an unknown rate counts as 48 kHz";
    EXPECT_EQ(timecodeOf({.samples = tenHours * 5 / 2}, 48000), "25 25:00:00:00") << "above 32 bits, above a day";
    EXPECT_EQ(timecodeOf({.rate = "30000/1001", .flag = "df", .samples = 0}, 48000), "29.97 DF 00:00:00:00");
    EXPECT_EQ(timecodeOf({.rate = std::nullopt}, 48000), "- -") << "no rate, no timecode";
    EXPECT_EQ(timecodeOf({.samples = std::nullopt}, 48000), "25 -");
    EXPECT_FALSE(fromIxml(test::ixmlText({.rate = "1e300"})).timecode);
}

TEST(Probe, CountsTheAudioThatIsMissingButNotWhereItsLengthIsUnknown) {
    const auto missing = [](std::uint32_t claimed, std::size_t bytes) {
        return probe(WavBuilder().fmt().chunkClaiming("data", test::audioBytes(bytes), claimed)).missingAudioBytes;
    };
    EXPECT_EQ(missing(3000, 3000), 0U);
    EXPECT_EQ(missing(3003, 3000), 3U);
    EXPECT_EQ(missing(3002, 3000), 0U) << "no frame is missing, of three bytes each";
    EXPECT_EQ(missing(0xFFFF0000, 3000), 0xFFFF0000U - 3000U);
    EXPECT_EQ(missing(0, 3000), 0U) << "never filled in";
    for (const std::uint32_t piped : {0xFFFFFFFFU, 0xFFFFFFFFU - 100, 0x80000000U, 0x7FFFFFFFU, 0x7FFFF000U})
        EXPECT_EQ(missing(piped, 3000), 0U) << piped;
    EXPECT_EQ(probe(WavBuilder().chunkClaiming("data", test::audioBytes(3000), 6000)).missingAudioBytes, 0U)
        << "without a format it is no audio";
}

TEST(Probe, ReadsHowManyFilesARecorderWroteUnlessTheNumberIsDamaged) {
    const auto files = [](const std::string& text) {
        return fromIxml("<TOTAL_FILES>" + text + "</TOTAL_FILES>").filesOfFamily;
    };
    EXPECT_EQ(files("9"), 9);
    EXPECT_EQ(files(" 256\n"), 256);
    for (const char* damaged : {"", "-1", "257", "4294967299", "nine"})
        EXPECT_EQ(files(damaged), std::nullopt) << damaged;
    EXPECT_EQ(fromIxml("<FILE_SET_INDEX> A </FILE_SET_INDEX>").indexInFamily, "A");
    EXPECT_EQ(fromIxml("<FILE_SET_INDEX> </FILE_SET_INDEX>").indexInFamily, std::nullopt);
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

TEST(Probe, ReadsADamagedMp3WithoutAWordOnStderr) {
    const auto codecs = makeLazyMediaReader([](const std::string& complaint) { ADD_FAILURE() << complaint; });
    // Silent mono frames of 128 kbit/s at 44.1 kHz; behind the tenth, bytes that are none.
    std::string frame = "\xFF\xFB\x90\xC4";
    frame.resize(417);
    std::string bytes;
    for (int i = 0; i < 40; ++i)
        bytes += i == 10 ? std::string(3000, 'x') : frame;
    const TempFolder folder;
    test::writeFile(folder / "a.mp3", bytes);
    testing::internal::CaptureStderr();
    const InfoFichier info = analyserFichier(folder / "a.mp3", *codecs);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(info.channels, 1);
    EXPECT_EQ(info.sampleRate, 44100);
    EXPECT_GT(info.dureeSecondes, 0.5);
}

/// So many silent mono frames of 44.1 kHz, without a header that tells how many: 128 or 64 kbit/s.
std::string mp3Frames(std::size_t count, bool small) {
    std::string frame = small ? "\xFF\xFB\x50\xC4" : "\xFF\xFB\x90\xC4";
    frame.resize(small ? 208 : 417);
    std::string frames;
    frames.reserve(count * frame.size());
    for (std::size_t i = 0; i < count; ++i)
        frames += frame;
    return frames;
}

TEST(Probe, TellsTheLengthOfAnMp3WhoseBitRateVaries) {
    const auto codecs = makeLazyMediaReader([](const std::string& complaint) { ADD_FAILURE() << complaint; });
    const TempFolder folder;
    constexpr double frameSeconds = 1152.0 / 44100;
    test::writeFile(folder / "a.mp3", mp3Frames(100, false) + mp3Frames(900, true));
    EXPECT_NEAR(analyserFichier(folder / "a.mp3", *codecs).dureeSecondes, 1000 * frameSeconds, 2 * frameSeconds);
    // One too large to be walked is estimated.
    test::writeFile(folder / "b.mp3", mp3Frames(60'000, false) + mp3Frames(240'000, true));
    EXPECT_NEAR(analyserFichier(folder / "b.mp3", *codecs).dureeSecondes, 300'000 * frameSeconds, 6'000 * frameSeconds);
}

/// An MP4 file of half a second of silent 16-bit stereo at 48 kHz.
std::string m4aBytes() {
    const auto be32 = [](std::initializer_list<std::uint32_t> values) {
        std::string out;
        for (const std::uint32_t value : values) {
            for (const unsigned shift : {24U, 16U, 8U, 0U})
                out.push_back(static_cast<char>(value >> shift));
        }
        return out;
    };
    const auto box = [&](const char* type, const std::string& content) {
        return be32({static_cast<std::uint32_t>(content.size()) + 8}) + type + content;
    };
    const std::string entry = box("sowt", be32({0, 1, 0, 0, 2U << 16U | 16U, 0, 48000U << 16U}));
    const std::string samples = box("stsd", be32({0, 1}) + entry) + box("stts", be32({0, 1, 24000, 1})) +
                                box("stsc", be32({0, 1, 1, 24000, 1})) + box("stsz", be32({0, 4, 24000})) +
                                box("stco", be32({0, 1, 28}));
    const std::string media = box("mdhd", be32({0, 0, 0, 48000, 24000, 0})) +
                              box("hdlr", be32({0, 0}) + "soun" + be32({0, 0, 0, 0})) +
                              box("minf", box("stbl", samples));
    return box("ftyp", "M4A " + be32({0})) + box("mdat", std::string(96'000, '\0')) +
           box("moov", box("trak", box("mdia", media)));
}

TEST(Probe, AFileIsWhatItsNameSaysAndLeadsToNoOther) {
    const auto codecs = makeLazyMediaReader([](const std::string& complaint) { ADD_FAILURE() << complaint; });
    const TempFolder folder;
    const struct WorkingFolder {
        explicit WorkingFolder(const std::filesystem::path& path) { std::filesystem::current_path(path); }
        ~WorkingFolder() { std::filesystem::current_path(before); }
        std::filesystem::path before = std::filesystem::current_path();
    } inside(folder.path());
    for (const char* name : {"real.m4a", "T1:2.m4a", "pipe:.m4a", "http:x.M4A"}) {
        test::writeFile(folder / name, m4aBytes());
        const InfoFichier info = analyserFichier(name, *codecs);
        EXPECT_EQ(info.channels, 2) << name;
        EXPECT_EQ(info.sampleRate, 48000) << name;
        EXPECT_DOUBLE_EQ(info.dureeSecondes, 0.5) << name;
    }
    // Text that a library may take for a list of other files; the second goes on for as long as one waits.
    for (const char* text : {"ffconcat version 1.0\nfile real.m4a\n",
                             "#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\nreal.m4a\n"}) {
        for (const char* name : {"list.m4a", "list.wav", "list.mp3", "list.aif"}) {
            test::writeFile(folder / name, text);
            EXPECT_EQ(analyserFichier(name, *codecs).channels, 0) << name << ": " << text;
        }
    }
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
    EXPECT_EQ(test::inChildWithoutRights([&] {
                  const InfoFichier info = analyserFichier(path, FakeCodecs());
                  return info.channels == 0 && info.taille == std::filesystem::file_size(path) ? 0 : 1;
              }),
              0);
}

TEST(Probe, ReadsAtMost32KiBOfAFileOfAnyLength) {
    const TempFolder folder;
    const auto reads = [](const std::filesystem::path& path) {
        const WalkedFile file(FileHandle::openForReading(path));
        if (file.table()) {
            static_cast<void>(recordingDateIn(file.source(), *file.table()));
            static_cast<void>(linearFormatIn(file.source(), *file.table()));
            static_cast<void>(ixmlTextIn(file.source(), *file.table()));
        }
        return file.source().bytesRead();
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
    const auto text = [](const InfoFichier& info) {
        return fmt::format("{} x {}/{} {:.6f} s, {} take {}, {} at {}, {}, {}", info.channels, info.sampleRate,
                           info.bits, info.dureeSecondes, info.scene.value_or("-"), info.prise.value_or("-"),
                           info.timecode.value_or("-"), info.framerate.value_or("-"),
                           info.recordingDate ? formatRecordingDate(*info.recordingDate) : "-",
                           info.nomsPistes.empty() ? "-" : info.nomsPistes.begin()->second);
    };
    const struct {
        const char* path;
        const char* expected;
    } cases[] = {
        {"recorder_a_poly_mono/A101_1.WAV",
         "2 x 48000/24 5.004979 s, A101 take 1, 12:39:59:00 at 23.976, 2018-12-31, MKH516 A"},
        {"recorder_c_mono_set/Scene_1_2AG-T001_Tr2.WAV",
         "1 x 48000/24 11.000000 s, Scene_1_2AG take 001, 22:40:10:00 at 25, 2019-02-13, MID"},
        {"quirks/ixml_odd_size_without_pad.wav", "1 x 48000/16 2.189104 s, 21 take 33, 07:07:35:01 at 23.976, -, Mid"},
        {"quirks/rf64_small.wav", "2 x 96000/32 0.186906 s, - take -, - at -, -, -"},
        {"quirks/riff_size_8_too_large.wav", "1 x 48000/24 0.955396 s, - take -, - at -, -, -"},
        {"quirks/rifx_big_endian.wav", "0 x 0/0 0.000000 s, - take -, - at -, -, -"},
        {"quirks/id3_before_riff.wav", "1 x 44100/16 0.050522 s, - take -, - at -, -, -"},
        {"daw/Test_ADM_ProTools.wav", "14 x 48000/24 1.001000 s, - take -, - at -, -, -"},
        {"daw/umid.wav", "1 x 44100/24 1.000000 s, - take -, - at -, 2020-01-05, -"},
        {"other_formats/aifc_tagged.aif", "2 x 8000/0 2.936625 s, - take -, - at -, -, -"},
        {"other_formats/caf.caf", "2 x 11025/8 3.234649 s, - take -, - at -, -, -"},
    };
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(text(analyserFichier(*test::sampleFolder() / path, *codecs)), expected) << path;
}

}  // namespace
}  // namespace dravik
