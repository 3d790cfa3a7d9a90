#include "model/wave/walked_file.h"
#include "tests/support/samples.h"
#include "tests/support/wav_builder.h"

#include <limits>
#include <map>
#include <string>

#include <gtest/gtest.h>

namespace dravik {
namespace {

using test::audioBytes;
using test::WavBuilder;

using Pad = WavBuilder::Pad;

std::optional<ChunkTable> walk(const Bytes& bytes) { return walkChunks(MemorySource(bytes)); }

/// "fmt =16 data=5-": id, bytes really there, "-" for an odd chunk without its pad byte, "!" for a truncated one.
std::string picture(const Bytes& bytes) {
    const auto table = walk(bytes);
    if (!table) return "none";
    std::string text;
    for (const Chunk& chunk : table->chunks) {
        text += (text.empty() ? "" : " ") + std::string(chunk.id.view()) + "=" + std::to_string(chunk.size);
        if (chunk.truncated()) text += "!";
        if (!chunk.truncated() && chunk.size % 2 == 1 && !chunk.padInFile) text += "-";
    }
    if (table->bytesBehind() > 0) text += " +" + std::to_string(table->bytesBehind());
    return text;
}

std::string ids(const ChunkTable& table) {
    std::string text;
    for (const Chunk& chunk : table.chunks)
        text.append(text.empty() ? "" : " ").append(chunk.id.view());
    return text;
}

/// A chunk's header alone.
Bytes header(std::string_view id, std::uint32_t size) {
    Bytes out = toBytes(id);
    appendLE(out, size);
    return out;
}

TEST(ChunkWalk, FindsTheChunksOfEveryFormThatIsLittleEndian) {
    for (const char* form : {"RIFF", "RF64", "BW64"}) {
        const Bytes file = WavBuilder(form, "any ").chunk("LIST", "thirteen byte").chunk("data", "12").bytes();
        EXPECT_EQ(picture(file), "LIST=13 data=2") << form;
        EXPECT_EQ(walk(file)->form.view(), form);
        EXPECT_EQ(walk(file)->chunks.at(1).offset, 12U + 8 + 14) << "a pad byte follows the odd size";
    }
    for (const char* form : {"RIFX", "FORM", "riff", "ID3\x04"}) {
        EXPECT_EQ(picture(WavBuilder(form).chunk("data", "12").bytes()), "none") << form;
    }
}

TEST(ChunkWalk, TakesWhatIsThereAndNoMore) {
    const auto whole = [] { return WavBuilder().chunk("fmt ", "0123456789abcdef"); };
    const struct {
        std::string rule;
        Bytes file;
        std::string expected;
    } cases[] = {
        {"an empty file is none", {}, "none"},
        {"less than a form header is none", toBytes("RIFF1234WAV"), "none"},
        {"a form header alone has no chunks", WavBuilder().bytes(), ""},
        {"a header at the very end is an empty chunk", WavBuilder().raw(header("data", 0)).bytes(), "data=0"},
        {"the last chunk may be odd without pad byte", whole().chunk("data", "123", Pad::missing).bytes(),
         "fmt =16 data=3-"},
        {"the pad byte may hold anything", whole().chunk("abcd", "123", Pad::notZero).chunk("data", "12").bytes(),
         "fmt =16 abcd=3 data=2"},
        {"bytes too few for a header belong to nobody", whole().raw("1234567").bytes(), "fmt =16 +7"},
        {"behind an odd chunk the first of them is its pad",
         whole().chunk("data", "123", Pad::missing).raw("12345").bytes(), "fmt =16 data=3 +4"},
        {"a size beyond the end ends the walk", whole().chunkClaiming("data", audioBytes(10), 11).bytes(),
         "fmt =16 data=10!"},
        {"also when nothing is there", whole().raw(header("iXML", 5)).bytes(), "fmt =16 iXML=0!"},
        {"the form size is not believed", whole().riffSize(0).bytes(), "fmt =16"},
    };
    for (const auto& [rule, file, expected] : cases)
        EXPECT_EQ(picture(file), expected) << rule;
}

TEST(ChunkWalk, RecognisesAnOddChunkThatWasWrittenWithoutItsPad) {
    const auto odd = [](std::string_view id) { return WavBuilder().chunk(id, "12345", Pad::missing); };
    const auto padded = [](std::string_view id, Pad pad) { return WavBuilder().chunk(id, "12345", pad); };
    const struct {
        std::string rule;
        Bytes file;
        std::string expected;
    } cases[] = {
        {"a common chunk stands in the pad's place", odd("iXML").chunk("iXTC", "12").bytes(), "iXML=5- iXTC=2"},
        {"an unknown one with a fitting size does, too", odd("iXML").chunk("qrst", "12").bytes(), "iXML=5- qrst=2"},
        {"also when it is empty and the last", odd("iXML").chunk("data", "").bytes(), "iXML=5- data=0"},
        {"a common one even when its size does not fit", odd("iXML").chunkClaiming("data", audioBytes(4), 100).bytes(),
         "iXML=5- data=4!"},
        {"the audio of an RF64 file",
         WavBuilder("RF64")
             .ds64(4)
             .chunk("iXML", "12345", Pad::missing)
             .chunkClaiming("data", audioBytes(4), sizeInDs64)
             .bytes(),
         "ds64=28 iXML=5- data=4"},
        {"an unknown one whose size does not fit is none: padded",
         odd("iXML").chunkClaiming("qrst", asBytes("1234"), 100).bytes(), "iXML=5 rstd=3!"},
        {"a pad byte that could begin a name does not", padded("iXML", Pad::notZero).chunk("data", "12").bytes(),
         "iXML=5 data=2"},
        {"zeros in the pad's place are a pad", WavBuilder().chunk("iXML", "12345", Pad::missing).raw(Bytes(9)).bytes(),
         std::string("iXML=5 ") + std::string(4, '\0') + "=0"},
    };
    for (const auto& [rule, file, expected] : cases) {
        EXPECT_EQ(picture(file), expected) << rule;
    }
}

TEST(ChunkWalk, TakesLargeSizesFromDs64OnlyWhereTheFormHasThem) {
    const Bytes audio = audioBytes(20);
    const auto rf64 = [&](std::uint64_t size) {
        return WavBuilder("RF64").ds64(size, {{"big ", 6}}).chunkClaiming("big ", audioBytes(6), sizeInDs64);
    };
    EXPECT_EQ(picture(rf64(20).chunkClaiming("data", audio, sizeInDs64).chunk("iXML", "12").bytes()),
              "ds64=40 big =6 data=20 iXML=2");
    EXPECT_EQ(picture(rf64(4).chunk("data", audio).bytes()), "ds64=40 big =6 data=20") << "no placeholder, no ds64";
    EXPECT_EQ(picture(WavBuilder().ds64(4).chunkClaiming("data", audio, sizeInDs64).bytes()), "ds64=28 data=20!");
    EXPECT_EQ(picture(WavBuilder("RF64").chunkClaiming("data", audio, sizeInDs64).bytes()), "data=20!") << "no ds64";
    for (const std::uint64_t hostile : {std::numeric_limits<std::uint64_t>::max(), std::uint64_t{1} << 63U,
                                        std::numeric_limits<std::uint64_t>::max() - 100}) {
        EXPECT_EQ(picture(rf64(hostile).chunkClaiming("data", audio, sizeInDs64).bytes()), "ds64=40 big =6 data=20!");
    }
    // A table that claims more entries than its chunk holds, and a chunk too short for its fixed part.
    Bytes entries(28);
    writeLE(entries.data() + 24, 0xFFFFFFFFU);
    EXPECT_EQ(picture(WavBuilder("BW64").chunk("ds64", entries).chunk("data", "12").bytes()), "ds64=28 data=2");
    EXPECT_EQ(picture(WavBuilder("BW64").chunk("ds64", Bytes(15)).chunkClaiming("data", audio, sizeInDs64).bytes()),
              "ds64=15 data=20!");
}

TEST(ChunkWalk, EndsInARegionOfZeros) {
    const auto table = walk(WavBuilder().fmt().raw(Bytes(100'000)).bytes());
    EXPECT_EQ(table->chunks.size(), maxChunks);
    EXPECT_EQ(table->end + table->bytesBehind(), table->fileSize);
}

TEST(ChunkWalk, ReadsTheRealOnes) {
    DRAVIK_NEEDS_SAMPLES();
    const std::map<std::string, std::string> expected = {
        {"quirks/ixml_odd_size_without_pad.wav", "bext fmt  data iXML iXTC"},
        {"quirks/riff_size_8_too_large.wav", "JUNK fmt  data umid minf ovwf ID3  LIST"},
        {"quirks/rf64_small.wav", "ds64 fmt  data"},
        {"quirks/STE-000.wav", "bext fmt  data cue  list"},
        {"recorder_b_mono_set/Sr001-2C-01_01.WAV", "bext fmt  data iXML iXTC"},
        {"recorder_c_mono_set/Scene_1_2AG-T001_Tr1.WAV", "bext iXML fmt  PAD  data"},
        {"daw/umid.wav", "JUNK bext fmt  minf elm1 data FLLR regn umid DGDA"},
        {"quirks/rifx_big_endian.wav", "none"},
        {"quirks/id3_before_riff.wav", "none"},
    };
    std::size_t known = 0;
    for (const std::filesystem::path& path : test::samplesOf(".wav")) {
        SCOPED_TRACE(path);
        const WalkedFile file(FileHandle::openForReading(path));
        const std::optional<ChunkTable>& table = file.table();
        const auto found = expected.find(path.lexically_relative(*test::sampleFolder()).generic_string());
        if (found != expected.end()) {
            ++known;
            EXPECT_EQ(table ? ids(*table) : "none", found->second);
        }
        if (!table) continue;
        EXPECT_EQ(table->bytesBehind(), 0U) << "every byte of these files belongs to a chunk";
        for (const Chunk& chunk : table->chunks)
            EXPECT_FALSE(chunk.truncated()) << chunk.id.view();
    }
    EXPECT_EQ(known, expected.size());
}

}  // namespace
}  // namespace dravik
