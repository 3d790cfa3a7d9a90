// What other programs make of the files: none of them was written here.
#include "tests/operations/proofs/judges.h"

#include "tests/operations/operation_stage.h"
#include "tests/support/samples.h"

#include <string>

#include <gmock/gmock.h>

namespace dravik {
namespace {

using test::OperationStage;
using test::payloadOf;
using test::quoted;
using test::readFile;
using test::said;
using test::WavBuilder;
using ::testing::HasSubstr;

/// The samples as another program decodes them, interleaved.
std::string decodedByFfmpeg(const std::filesystem::path& file) {
    return said("ffmpeg -v error -i " + quoted(file) + " -f s24le -c:a pcm_s24le -");
}
std::string decodedBySox(const std::filesystem::path& file) {
    return said("sox " + quoted(file) + " -t raw -e signed -b 24 -L -");
}

void expectSeenAs(const std::filesystem::path& file, int channels, std::size_t frames) {
    SCOPED_TRACE(file);
    const std::string count = std::to_string(channels);
    EXPECT_EQ(said("ffprobe -v error -show_entries stream=codec_name,sample_rate,channels,duration_ts -of csv=p=0 " +
                   quoted(file)),
              "pcm_s24le,48000," + count + "," + std::to_string(frames) + "\n");
    EXPECT_EQ(said("soxi -c " + quoted(file)) + said("soxi -s " + quoted(file)) + said("soxi -b " + quoted(file)),
              count + "\n" + std::to_string(frames) + "\n24\n");
    const std::string info = said("sndfile-info " + quoted(file));
    EXPECT_THAT(info, HasSubstr("Channels    : " + count + "\n"));
    EXPECT_THAT(info, HasSubstr("Frames      : " + std::to_string(frames) + "\n"));
    EXPECT_EQ(said("mediainfo --Inform='Audio;%Format% %Channel(s)% %SamplingRate% %BitDepth%' " + quoted(file)),
              "PCM " + count + " 48000 24\n");
}

TEST(Judges, ReadTheFilesAsWhatTheyAre) {
    DRAVIK_NEEDS_JUDGES();
    OperationStage stage;
    constexpr std::size_t frames = 24'001;
    test::Ixml ixml;
    ixml.tracks = {{1, 1, "Boom"}, {2, 2, "Lav"}, {3, 3, "Mix"}, {4, 4, "Room"}};
    for (const bool extensible : {false, true}) {
        const auto source = WavBuilder()
                                .bext({.description = "sTRK1=Boom\r\nsTRK2=Lav\r\n", .timeReference = 48000})
                                .ixml(ixml)
                                .fmt({.channels = 4, .extensible = extensible})
                                .audio(frames)
                                .write(stage.folder / (extensible ? "ext.wav" : "plain.wav"));
        const std::string name = source.stem().native();
        const std::string audio = payloadOf(source, "data");
        const auto sample = [&](std::size_t channel) { return test::channelOf(audio, 4, 3, channel); };

        const auto order = *stage.runOne(name, stage.reorder({3, 2, 1, 0})).destinationURL;
        expectSeenAs(order, 4, frames);
        const std::string reordered = decodedByFfmpeg(order);
        EXPECT_TRUE(reordered == decodedBySox(order));
        for (const std::size_t channel : {0U, 1U, 2U, 3U})
            EXPECT_TRUE(test::channelOf(reordered, 4, 3, channel) == sample(3 - channel));

        const auto without = *stage.runOne(name, stage.deleteTracks({1})).destinationURL;
        expectSeenAs(without, 3, frames);
        EXPECT_TRUE(test::channelOf(decodedByFfmpeg(without), 3, 3, 1) == sample(2));

        const auto split = stage.runOne(name, stage.split({0, 1, 2, 3}, true));
        ASSERT_EQ(split.destinationURLs.size(), 5U);
        for (std::size_t channel = 0; channel < 4; ++channel) {
            expectSeenAs(split.destinationURLs[channel], 1, frames);
            EXPECT_TRUE(decodedBySox(split.destinationURLs[channel]) == sample(channel));
        }
        expectSeenAs(split.destinationURLs[4], 2, frames);
        std::filesystem::remove(split.destinationURLs[4]);

        const auto merged = *stage.runOne(name + "_split", stage.merge()).destinationURL;
        expectSeenAs(merged, 4, frames);
        EXPECT_TRUE(decodedByFfmpeg(merged) == audio);
        // Metadata, by the programs that read some of it.
        const std::string tags = said("ffprobe -v error -show_format " + quoted(merged));
        EXPECT_THAT(tags, HasSubstr("TAG:time_reference=48000"));
        EXPECT_THAT(tags, HasSubstr("sTRK1=Boom\r\nsTRK2=Lav\r\nsTRK3=Mix\r\nsTRK4=Room"));
    }
}

/// Chunks that no operation has any business with, by their order.
std::vector<test::PlainChunk> others(const Bytes& file) {
    std::vector<test::PlainChunk> chunks = test::chunksOf(file);
    std::erase_if(chunks, [](const test::PlainChunk& chunk) {
        return chunk.id == "fmt " || chunk.id == "data" || chunk.id == "iXML" || chunk.id == "bext";
    });
    return chunks;
}

/// An iXML document without its list of tracks.
std::string withoutTracks(std::string ixml) {
    const std::size_t begin = ixml.find("<TRACK_LIST");
    const std::size_t end = ixml.find("</TRACK_LIST>");
    if (begin != std::string::npos && end != std::string::npos) ixml.erase(begin, end + 13 - begin);
    return ixml;
}

TEST(RealRecordings, KeepTheirAudioAndEveryUntouchedChunkThroughAllOperations) {
    DRAVIK_NEEDS_SAMPLES();
    std::size_t made = 0;
    for (const char* folder : {"daw", "quirks", "recorder_a_poly_mono", "recorder_b_mono_set", "recorder_c_mono_set"}) {
        OperationStage stage;
        for (const auto& entry : std::filesystem::directory_iterator(*test::sampleFolder() / folder)) {
            if (entry.is_regular_file())
                test::writeFile(stage.folder / entry.path().filename().native(), readFile(entry.path()));
        }
        const auto takes = scanFolder(stage.folder.path(), test::FakeCodecs(), true, {});
        for (const GroupeFichiers& take : takes) {
            SCOPED_TRACE(take.nom);
            const InfoFichier& first = take.fichiers.front();
            const bool poly = take.estPoly;
            if (first.nom == "Test_ADM_ProTools" || !first.estRiff || (!poly && !take.isMonoSet())) continue;
            const Bytes before = readFile(first.url);
            const auto expectCarried = [&](const std::filesystem::path& output, const Bytes& source) {
                const Bytes file = readFile(output);
                EXPECT_EQ(others(file), others(source));
                EXPECT_EQ(withoutTracks(payloadOf(file, "iXML")), withoutTracks(payloadOf(source, "iXML")));
                const std::string oldBext = payloadOf(source, "bext");
                const std::string newBext = payloadOf(file, "bext");
                ASSERT_EQ(newBext.size(), oldBext.size());
                if (oldBext.size() > 256) {
                    EXPECT_EQ(newBext.substr(256), oldBext.substr(256));
                }
                EXPECT_EQ(readLE<std::uint32_t>(file.data() + 4), file.size() - 8);
                ++made;
            };
            if (!poly) {
                const OperationAudioResult merged = stage.run({take}, stage.merge()).results.at(0);
                ASSERT_TRUE(merged.success) << merged.message;
                EXPECT_THAT(merged.message, HasSubstr("Audio data preserved"));
                expectCarried(*merged.destinationURL, before);
                const std::string audio = payloadOf(*merged.destinationURL, "data");
                for (std::size_t at = 0; at < take.fichiers.size(); ++at) {
                    EXPECT_TRUE(test::channelOf(audio, take.fichiers.size(), 3, at) ==
                                payloadOf(take.fichiers[at].url, "data"));
                }
                continue;
            }
            std::vector<int> backwards;
            std::set<int> all;
            for (int canal = first.channels; canal-- > 0;) {
                backwards.push_back(canal);
                all.insert(canal);
            }
            const std::string audio = payloadOf(before, "data");
            const auto order = stage.run({take}, stage.reorder(backwards)).results.at(0);
            ASSERT_TRUE(order.success) << order.message;
            expectCarried(*order.destinationURL, before);
            const auto again = stage.runOne(order.destinationURL->stem().native(), stage.reorder(backwards));
            EXPECT_TRUE(payloadOf(*again.destinationURL, "data") == audio);
            const auto split = stage.run({take}, stage.split(all)).results.at(0);
            ASSERT_TRUE(split.success) << split.message;
            const std::size_t channels = all.size();
            const auto sampleBytes = static_cast<std::size_t>(first.bits) / 8;
            for (std::size_t at = 0; at < channels; ++at) {
                expectCarried(split.destinationURLs[at], before);
                EXPECT_TRUE(payloadOf(split.destinationURLs[at], "data") ==
                            test::channelOf(audio, channels, sampleBytes, at));
            }
            EXPECT_EQ(readFile(first.url), before);
        }
    }
    EXPECT_GT(made, 30U);
}

}  // namespace
}  // namespace dravik
