#include "operations/wave_layout.h"

#include "operations/destination_names.h"
#include "operations/export_destination.h"
#include "operations/merge_verification.h"
#include "operations/operation_audio_error.h"
#include "operations/weave.h"
#include "tests/operations/operation_stage.h"

#include <gtest/gtest.h>

namespace dravik {
namespace {

using namespace OperationsAudio;
using test::audioBytes;
using test::TempFolder;
using test::WavBuilder;

TEST(WaveLayout, PutsAPadByteBehindEveryOddPayloadAndCountsIt) {
    const std::vector<RIFFChunk> extra = {{"bext", toBytes("123")}, {"iXML", toBytes("1234")}, {"abcd", {}}};
    const Bytes audio = audioBytes(7);
    Bytes file = waveHead(test::fmtPayload({.bits = 16}), extra, audio.size());
    append(file, audio);
    file.push_back(std::byte{0});
    EXPECT_EQ(file, WavBuilder()
                        .fmt({.bits = 16})
                        .chunk("bext", "123")
                        .chunk("iXML", "1234")
                        .chunk("abcd", "")
                        .chunk("data", audio)
                        .bytes());
    EXPECT_EQ(riffSizeOf(test::fmtPayload({}), extra, 7), file.size() - 8);
}

TEST(WaveLayout, TakesTheLargestSizeThatThirtyTwoBitsHoldAndNoByteMore) {
    const Bytes fmt(16);
    const std::vector<RIFFChunk> none;
    const std::uint64_t around = 4 + 24 + 8;
    const std::uint64_t most = 0xFFFFFFFF - around;  // odd: its pad byte is one too many
    const auto accepts = [&](const std::vector<RIFFChunk>& extra, std::uint64_t dataSize) {
        try {
            checkOutputSize(fmt, extra, dataSize, "take.wav");
            return true;
        } catch (const OperationAudioError& error) {
            EXPECT_STREQ(error.what(), "take.wav is too large for standard RIFF/WAVE output.");
            EXPECT_EQ(error.errorCase(), OperationAudioError::Case::groupeIncompatible);
            return false;
        }
    };
    EXPECT_TRUE(accepts(none, most - 1));
    EXPECT_FALSE(accepts(none, most));
    EXPECT_TRUE(accepts({{"abcd", Bytes(1)}}, most - 11));
    EXPECT_FALSE(accepts({{"abcd", Bytes(3)}}, most - 11));
    EXPECT_FALSE(accepts(none, 0x1'0000'0000));
    EXPECT_FALSE(accepts(none, 0x7FFF'FFFF'FFFF'FFFF));
}

TEST(WaveLayout, GivesAFormatForOtherChannelsWithoutTheOldSpeakers) {
    Bytes stereo = test::fmtPayload({.channels = 2, .extensible = true});
    writeLE(stereo.data() + 20, std::uint32_t{3});
    EXPECT_EQ(fmtForChannels(stereo, 5, 3, ""), test::fmtPayload({.channels = 5, .extensible = true}));
    EXPECT_EQ(fmtForChannels(stereo, 2, 3, ""), stereo);
    EXPECT_EQ(fmtForChannels(test::fmtPayload({.channels = 8}), 1, 3, ""), test::fmtPayload({.channels = 1}));
    EXPECT_THROW(static_cast<void>(fmtForChannels(stereo, 21846, 3, "")), OperationAudioError);
}

TEST(Weave, MovesEverySampleToItsPlaceAndNoByteBeyond) {
    for (const std::size_t sampleBytes : {1U, 2U, 3U, 4U, 5U, 8U}) {
        for (std::size_t channels = 1; channels <= 19; ++channels) {
            for (const std::size_t frames : {0U, 1U, 2U, 33U}) {
                SCOPED_TRACE(testing::Message() << sampleBytes << " bytes, " << channels << " channels, " << frames);
                // Exactly as large as it must be: a read beyond is seen by the sanitizer.
                const Bytes audio = audioBytes(frames * channels * sampleBytes);
                std::vector<Bytes> monos;
                std::vector<const std::byte*> strands;
                for (std::size_t channel = 0; channel < channels; ++channel) {
                    Bytes& mono = monos.emplace_back(frames * sampleBytes + 1, std::byte{0xEE});
                    const std::byte* from = audio.data() + (frames == 0 ? 0 : channel * sampleBytes);
                    weave({&from, 1}, channels * sampleBytes, sampleBytes, frames, mono.data());
                    EXPECT_EQ(mono.back(), std::byte{0xEE});
                    mono.pop_back();
                    EXPECT_EQ(asText(mono), test::channelOf(asText(audio), channels, sampleBytes, channel));
                    strands.push_back(mono.data());
                }
                Bytes again(audio.size() + 1, std::byte{0xEE});
                weave(strands, sampleBytes, sampleBytes, frames, again.data());
                EXPECT_EQ(again.back(), std::byte{0xEE});
                again.pop_back();
                EXPECT_EQ(again, audio);
            }
        }
    }
}

TEST(DestinationNames, GiveAllFilesOfATakeTheSameFreeNumber) {
    const TempFolder folder;
    test::writeFile(folder / "TAKE_b.WAV", "");
    test::writeFile(folder / "take-1_a.wav", "");
    DestinationNames names;
    using Paths = std::vector<std::filesystem::path>;
    EXPECT_EQ(names.plan(folder.path(), "take", {"_a.wav", "_b.wav"}),
              (Paths{folder / "take-2_a.wav", folder / "take-2_b.wav"}));
    EXPECT_EQ(names.plan(folder.path(), "Take", {"_b.wav"}), Paths{folder / "Take-1_b.wav"}) << "taken on disk";
    EXPECT_EQ(names.plan(folder.path(), "TAKE", {"_B.wav"}), Paths{folder / "TAKE-3_B.wav"}) << "planned before";
    EXPECT_EQ(names.plan("", "bare", {".wav"}), Paths{"bare.wav"});
}

TEST(DestinationNames, OfExportsTellThemApartFromTheirTakesInOneFolderOnly) {
    const TempFolder folder;
    std::filesystem::create_directory(folder / "out");
    test::writeFile(folder / "out" / "B.WAV", "");
    const auto take = [&](const std::string& nom) {
        InfoFichier fichier;
        fichier.url = folder / (nom + ".wav");
        GroupeFichiers groupe;
        groupe.nom = nom;
        groupe.fichiers = Fichiers(std::vector<InfoFichier>{fichier});
        return groupe;
    };
    using Paths = std::vector<std::filesystem::path>;
    const std::vector<GroupeFichiers> takes = {take("a"), take("b"), take("A")};
    EXPECT_EQ(exportDestinations(takes, ".wav", {}),
              (Paths{folder / "a_export.wav", folder / "b_export.wav", folder / "A-1_export.wav"}));
    EXPECT_EQ(exportDestinations(takes, ".wav", folder / "out"),
              (Paths{folder / "out/a.wav", folder / "out/b-1.wav", folder / "out/A-1.wav"}));
    EXPECT_EQ(exportDestinations({take("a")}, ".mp3", folder / "out/..", "x.MP3"), Paths{folder / "out/../x.mp3"});
    EXPECT_EQ(exportDestinations({take("a")}, ".mp3", folder / "out", "x.wav"), Paths{folder / "out/x.wav.mp3"});
}

TEST(MergeVerification, ComparesTheAudioAndNeverFails) {
    const TempFolder folder;
    std::vector<std::filesystem::path> sources;
    for (const char* name : {"1.wav", "2.wav", "3.wav", "4.wav"})
        sources.push_back(WavBuilder().fmt({.bits = 16}).chunk("data", audioBytes(1000)).write(folder / name));
    const auto poly = [&](std::size_t bytes) {
        return WavBuilder().fmt({.channels = 4, .bits = 16}).chunk("data", audioBytes(bytes)).write(folder / "p.wav");
    };
    EXPECT_EQ(mergeVerification(sources, 2, poly(4000)), "Audio data preserved: 4 KB.");
    EXPECT_EQ(mergeVerification(sources, 2, poly(2000)), "Warning: audio data mismatch. Sources: 4 KB, poly: 2 KB.");
    EXPECT_EQ(mergeVerification(sources, 3, poly(3996)), "Audio data preserved: 4 KB.") << "odd bytes are no audio";
    EXPECT_EQ(mergeVerification(sources, 2, folder / "none.wav"), "Audio data verification unavailable.");
    EXPECT_EQ(mergeVerification(sources, 2, WavBuilder().fmt().write(folder / "p.wav")),
              "Audio data verification unavailable.");
}

}  // namespace
}  // namespace dravik
