#include "editing/cue_writer.h"
#include "editing/metadata_writer.h"
#include "model/probe.h"
#include "model/wave/bext.h"
#include "model/wave/ixml_document.h"
#include "tests/support/faulty_file_ops.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wav_builder.h"

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

namespace dravik {
namespace {

using test::Call;
using test::FaultyFileOps;
using test::namesIn;
using test::readFile;
using test::TempFolder;
using test::WavBuilder;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Pad = WavBuilder::Pad;
using Reason = ErreurSauvegarde::Reason;

MetadataValues scene(const std::string& text) {
    MetadataValues values;
    values.scene = text;
    values.sampleRate = 48000;
    return values;
}

/// What a writer makes of a file.
struct Written {
    Bytes bytes;
    std::optional<ChunkTable> table;

    explicit Written(const std::filesystem::path& path)
        : bytes(readFile(path)), table(walkChunks(MemorySource(bytes))) {}

    [[nodiscard]] std::vector<std::string> ids() const {
        std::vector<std::string> out;
        for (const Chunk& chunk : table->chunks)
            out.emplace_back(chunk.id.view());
        return out;
    }
    [[nodiscard]] ByteSpan payload(const char (&id)[5]) const {
        const Chunk* chunk = table->first(id);
        return chunk == nullptr ? ByteSpan() : ByteSpan(bytes).subspan(chunk->payload(), chunk->size);
    }
    [[nodiscard]] ByteSpan last() const {
        const Chunk& chunk = table->chunks.back();
        return ByteSpan(bytes).subspan(chunk.payload(), chunk.size);
    }
    [[nodiscard]] bool riffSizeFits() const { return readLE<std::uint32_t>(bytes.data() + 4) == bytes.size() - 8; }
};

class Writers : public testing::Test {
  protected:
    void save(const std::filesystem::path& path, const MetadataValues& values) {
        SauvegardeMetadata(ops).ecrire(path, values, {}, folders);
    }
    void saveCues(const std::filesystem::path& path, const std::vector<CueMarker>& cues) {
        CueWriter(ops).ecrireCues(path, cues, {}, folders);
    }
    Written saved(const WavBuilder& builder, const MetadataValues& values = scene("13")) {
        const auto path = builder.write(folder / "a.wav");
        save(path, values);
        return Written(path);
    }
    Written savedCues(const WavBuilder& builder, const std::vector<CueMarker>& cues) {
        const auto path = builder.write(folder / "a.wav");
        saveCues(path, cues);
        return Written(path);
    }
    /// Does the writer refuse, and leave the file and the folder alone?
    template <typename Refusal>
    std::string refusal(const Bytes& before, const std::function<void(const std::filesystem::path&)>& work) {
        test::writeFile(folder / "a.wav", before);
        std::string text = "not refused";
        try {
            work(folder / "a.wav");
        } catch (const Refusal& error) {
            text = error.what();
        }
        EXPECT_EQ(readFile(folder / "a.wav"), before);
        EXPECT_THAT(namesIn(folder.path()), ElementsAre("a.wav"));
        return text;
    }

    TempFolder folder;
    FaultyFileOps ops;
    FolderSyncs folders;
};

class MetadataWriter : public Writers {};
class CueWriting : public Writers {};

TEST_F(MetadataWriter, PutsTheEditInUtf8WhereTheIxmlWasSoThatNothingMoves) {
    const std::string padded = test::ixmlText({.note = "caf\xE9"}) + std::string(500, ' ');
    const WavBuilder file = WavBuilder().bext().chunk("iXML", padded).fmt().audio(333).chunk("abcd", "12345");
    const Written after = saved(file, scene("a scene with a much longer name than before"));
    EXPECT_THAT(after.ids(), ElementsAre("bext", "iXML", "fmt ", "data", "abcd"));
    EXPECT_EQ(after.bytes.size(), file.bytes().size());
    EXPECT_THAT(std::string(asText(after.payload("iXML"))),
                AllOf(HasSubstr("<SCENE>a scene with"), HasSubstr("<NOTE>café</NOTE>")));
    EXPECT_THAT(std::string(descriptionText(after.payload("bext"))), HasSubstr("sSCENE=a scene with"));
}

TEST_F(MetadataWriter, AddsAnIxmlBehindTheLastChunkWhereThereIsNone) {
    const struct {
        std::string rule;
        WavBuilder file;
        std::vector<std::string> ids;
        std::uint64_t behind;
    } cases[] = {
        {"behind odd audio without pad byte",
         WavBuilder().fmt().chunk("data", "123", Pad::missing),
         {"fmt ", "data", "iXML"},
         0},
        {"in front of bytes that are no chunk", WavBuilder().fmt().raw("1234567"), {"fmt ", "iXML"}, 7},
        {"into a header without chunks", WavBuilder(), {"iXML"}, 0},
        {"into less than a chunk", WavBuilder().raw("1234567"), {"iXML"}, 7},
    };
    for (const auto& [rule, file, ids, behind] : cases) {
        const Written after = saved(file);
        EXPECT_EQ(after.ids(), ids) << rule;
        EXPECT_EQ(after.table->bytesBehind(), behind) << rule;
        EXPECT_TRUE(after.riffSizeFits()) << rule;
        EXPECT_TRUE(asText(after.payload("iXML")).starts_with("<BWFXML>\n<PROJECT></PROJECT>\n<SCENE>13</SCENE>"))
            << rule;
    }
}

TEST_F(MetadataWriter, UpdatesAFirstIxmlThatHoldsNothingAndEveryFurtherOne) {
    for (const std::string& empty : {std::string(), std::string(500, ' '), std::string(500, '\0')}) {
        const Written after = saved(WavBuilder().chunk("iXML", empty).fmt().audio(2).ixml());
        EXPECT_THAT(after.ids(), ElementsAre("iXML", "fmt ", "data", "iXML"));
        EXPECT_THAT(std::string(asText(after.payload("iXML"))), HasSubstr("<SCENE>13</SCENE>"));
        EXPECT_EQ(valeurTag("SCENE", asText(after.last())), "13");
    }
}

TEST_F(MetadataWriter, TakesTheFlagsOfTheDescriptionIntoANewIxmlAndKeepsThemInEverySave) {
    const struct {
        std::string description;
        std::optional<bool> edited;
        std::string circled, wild, lines;
    } cases[] = {
        {"sCIRCLED=TRUE\r\nsWILD_TRACK=TRUE\r\n", {}, "TRUE", "TRUE", "sCIRCLED=TRUE\r\nsWILD_TRACK=TRUE\r\n"},
        {"sCIRCLED=TRUE\r\n", false, "FALSE", "none", "sCIRCLED=FALSE\r\n"},
        {"sCIRCLE=1\r\n", {}, "TRUE", "none", "sCIRCLED=TRUE\r\n"},
        {"CIRCLED=circled\r\n", {}, "TRUE", "none", "CIRCLED=TRUE\r\n"},
        {"gTAKE_TYPE= CIRCLED\r\n", {}, "TRUE", "none", "sCIRCLED=TRUE\r\n"},
        {"TAKE_TYPE=WILD\r\n", true, "TRUE", "TRUE", "sCIRCLED=TRUE\r\nsWILD_TRACK=TRUE\r\n"},
        {"sCIRCLED=0\r\nsTAKE_TYPE=CIRCLED\r\n", {}, "FALSE", "none", "sCIRCLED=FALSE\r\n"},
        {"free text\r\n", {}, "FALSE", "none", "free text\r\nsCIRCLED=FALSE\r\n"},
    };
    for (const auto& [description, circled, expectedCircled, expectedWild, lines] : cases) {
        MetadataValues values;
        values.circled = circled;
        const auto path = WavBuilder().bext({.description = description}).fmt().audio(1).write(folder / "a.wav");
        for (const char* which : {"first", "second"}) {
            save(path, values);
            const Written after(path);
            const std::string_view ixml = asText(after.payload("iXML"));
            EXPECT_EQ(valeurTag("CIRCLED", ixml), expectedCircled) << which << " save of " << description;
            EXPECT_EQ(valeurTag("WILD_TRACK", ixml).value_or("none"), expectedWild) << description;
            values.circled.reset();
        }
        EXPECT_EQ(descriptionText(Written(path).payload("bext")), lines) << description;
    }
}

TEST_F(MetadataWriter, RefusesWhatItCannotWriteWhole) {
    const Bytes audio = test::audioBytes(50);
    const Bytes longBext = test::bextPayload({});
    const std::string ixml = test::ixmlText({});
    const struct {
        std::string rule;
        WavBuilder file;
        std::string reason;
    } cases[] = {
        {"RF64", WavBuilder("RF64").ds64(50).fmt().chunk("data", audio), "is not a RIFF/WAVE file."},
        {"BW64", WavBuilder("BW64").ds64(50).fmt().chunk("data", audio), "is not a RIFF/WAVE file."},
        {"another type", WavBuilder("RIFF", "AVI ").fmt().chunk("data", audio), "is not a RIFF/WAVE file."},
        {"a new chunk behind a truncated one would be hidden", WavBuilder().fmt().chunkClaiming("data", audio, 500),
         "has a damaged last chunk"},
        {"half an iXML", WavBuilder().fmt().chunkClaiming("iXML", asBytes(ixml), 100'000), "ends inside its metadata"},
        {"half a bext", WavBuilder().ixml().chunkClaiming("bext", longBext, 100'000), "ends inside its metadata"},
        {"more chunks than are walked", WavBuilder().fmt().raw(Bytes(10'000)), "has too many chunks"},
        {"an iXML beyond any size", WavBuilder().chunk("iXML", Bytes(maxIxmlBytes + 2)), "too large"},
    };
    for (const auto& [rule, file, reason] : cases) {
        const std::string text = refusal<ErreurSauvegarde>(
            file.bytes(), [&](const std::filesystem::path& path) { save(path, scene("13")); });
        EXPECT_THAT(text, HasSubstr(reason)) << rule;
        EXPECT_TRUE(text.starts_with("a.wav ")) << text;
    }
    EXPECT_THAT(
        refusal<ErreurSauvegarde>(WavBuilder().ixml().bytes(), [&](const auto& path) { save(path, scene("\xFF")); }),
        HasSubstr("cannot take these values"));
}

TEST_F(MetadataWriter, WritesThroughALinkIntoTheFileBehindIt) {
    std::filesystem::create_directory(folder / "real");
    const auto real = test::recorderFile().write(folder / "real/a.wav");
    std::filesystem::create_symlink("real/a.wav", folder / "link.wav");
    save(folder / "link.wav", scene("13"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.wav"));
    EXPECT_THAT(std::string(asText(Written(real).payload("iXML"))), HasSubstr("<SCENE>13</SCENE>"));
    EXPECT_THAT(namesIn(folder / "real"), ElementsAre("a.wav"));
}

TEST_F(MetadataWriter, GivesUpWhenAnotherProgramWritesMeanwhile) {
    const auto path = folder / "a.wav";
    const std::function<void()> others[] = {
        [&] { test::appendToFile(path, "more audio"); },
        [&] {
            test::writeFile(folder / "new", readFile(path));
            std::filesystem::rename(folder / "new", path);  // same bytes, another file
        },
        [&] { std::filesystem::remove(path); },
    };
    for (const Call moment : {Call::write, Call::sync}) {
        for (const auto& other : others) {
            test::recorderFile().write(path);
            bool done = false;
            ops.before([&](Call call, int) {
                if (call == moment && !std::exchange(done, true)) other();
            });
            EXPECT_THROW(save(path, scene("13")), ErreurSauvegarde);
            ops.before({});
            if (std::filesystem::exists(path)) {
                EXPECT_EQ(valeurTag("SCENE", lireChunkIXML(path).value_or("")), "12A");
                EXPECT_THAT(namesIn(folder.path()), ElementsAre("a.wav"));
            } else {
                EXPECT_THAT(namesIn(folder.path()), IsEmpty());
            }
        }
    }
}

TEST_F(CueWriting, KeepsWhatTheListsHoldForTheMarkersThatRemain) {
    const auto list = [](const std::vector<test::Cue>& labels, std::string_view entries) {
        Bytes payload = test::adtlPayload(labels);
        append(payload, entries);
        return payload;
    };
    using namespace std::string_view_literals;
    const WavBuilder file = WavBuilder()
                                .cues({{7, 10, "a"}})
                                .chunk("LIST", list({{8, 0, "b"}},
                                                    "note\6\0\0\0\7\0\0\0hi"
                                                    "ltxt\5\0\0\0\10\0\0\0x\0"
                                                    "note\4\0\0\0\11\0\0\0"
                                                    "what\2\0\0\0??"sv))
                                .chunk("cue ", test::cuePayload({{8, 20, {}}, {9, 30, {}}}))
                                .chunk("LIST", "INFOinfo")
                                .chunk("list", list({{9, 0, "c"}}, ""))
                                .fmt();
    std::vector<CueMarker> markers = lireCues(file.write(folder / "a.wav"));
    ASSERT_EQ(markers.size(), 3U);
    markers[0].frame = 25;
    markers[1].label = "renamed";
    markers[2] = {{}, 5, "new"};
    const Written after = savedCues(file, markers);
    EXPECT_THAT(after.ids(), ElementsAre("LIST", "fmt ", "cue ", "LIST"));
    EXPECT_EQ(asText(after.payload("LIST")), "INFOinfo");
    EXPECT_EQ(asText(after.last()), asText(list({{1, 0, "new"}, {2, 0, "renamed"}, {3, 0, "a"}},
                                                "ltxt\5\0\0\0\2\0\0\0x\0"
                                                "note\6\0\0\0\3\0\0\0hi"
                                                "what\2\0\0\0??"sv)));
    saveCues(folder / "a.wav", markers);
    EXPECT_EQ(readFile(folder / "a.wav"), after.bytes) << "the same markers, not read anew";
    saveCues(folder / "a.wav", {});
    EXPECT_THAT(Written(folder / "a.wav").ids(), ElementsAre("LIST", "fmt "));
    const int created = ops.calls(Call::create);
    saveCues(folder / "a.wav", {});
    EXPECT_EQ(ops.calls(Call::create), created) << "nothing there, nothing to write";
}

TEST_F(CueWriting, RefusesWhatItCannotWriteWhole) {
    const Bytes audio = test::audioBytes(50);
    const std::vector<CueMarker> none, one = {{{}, 1, "x"}};
    const Bytes longList = toBytes("adtl" + std::string(16U * 1024U * 1024U, ' '));
    WavBuilder allButOne;
    for (std::size_t i = 1; i < maxChunks; ++i)
        allButOne.chunk("JUNK", "");
    const std::string noWave = "is not a RIFF/WAVE file.", tooMany = "cannot hold that many markers.";
    const struct {
        std::string rule;
        WavBuilder file;
        std::vector<CueMarker> markers;
        std::string reason;
    } cases[] = {
        {"RF64", WavBuilder("RF64").ds64(50).fmt().chunk("data", audio), one, noWave},
        {"another type", WavBuilder("RIFF", "AVI ").fmt(), one, noWave},
        {"behind a truncated chunk", WavBuilder().fmt().chunkClaiming("data", audio, 500), one, "damaged last chunk"},
        {"room for one chunk, not for two", allButOne, one, "reads back whole"},
        {"more markers than are read", WavBuilder().fmt(), std::vector<CueMarker>(70'000), tooMany},
        {"labels that would not be read", WavBuilder().fmt(), {{{}, 1, std::string(longList.size(), 'x')}}, tooMany},
        {"holding more points than are read", WavBuilder().cues(std::vector<test::Cue>(70'000)), none, "holds more"},
        {"holding a longer list than is read", WavBuilder().chunk("LIST", longList), none, "holds more"},
        {"a truncated marker chunk that would have to go",
         WavBuilder().fmt().chunkClaiming("cue ", test::cuePayload({{1, 2, {}}}), 500), none, "inside its markers"},
        {"a pad byte that the next chunk but one would be read together with",
         WavBuilder().raw(std::string_view("abcd\3\0\0\0xyzL", 12)).cues({{1, 2, {}}}).chunk("ISTx", "1234"), none,
         "reads back whole"},
    };
    for (const auto& [rule, file, markers, reason] : cases) {
        int code = 0;
        const std::string text =
            refusal<CueError>(file.bytes(), [&, &toWrite = markers](const std::filesystem::path& path) {
                try {
                    saveCues(path, toWrite);
                } catch (const CueError& error) {
                    code = error.code();
                    throw;
                }
            });
        EXPECT_THAT(text, HasSubstr(reason)) << rule;
        EXPECT_EQ(code, reason == noWave ? CueError::notRiffWave : CueError::notWritable) << rule;
    }
}

TEST_F(Writers, RefuseAFileThatWouldGrowBeyondItsSizeField) {
    constexpr std::uint64_t largest = 0xFFFFFFFFULL + chunkHeaderBytes;
    const auto path = folder / "a.wav";
    WavBuilder file;
    const std::uint64_t audioAt = file.ixml().fmt().bytes().size() + chunkHeaderBytes;
    file.chunkClaiming("data", {}, static_cast<std::uint32_t>(largest - audioAt) - 1).riffSize(0xFFFFFFFE).write(path);
    std::filesystem::resize_file(path, largest - 1);  // sparse: takes next to no room
    const auto stamp = ops.stampAt(path);
    const auto textOf = [&](const std::function<void()>& work) -> std::string {
        try {
            work();
        } catch (const Error& error) {
            return error.what();
        }
        return "not refused";
    };
    EXPECT_THAT(textOf([&] { save(path, scene("a longer one")); }), HasSubstr("beyond the 4 GiB"));
    EXPECT_THAT(textOf([&] { saveCues(path, {{{}, 1, {}}}); }), HasSubstr("beyond the 4 GiB"));
    EXPECT_EQ(ops.stampAt(path), stamp);
    EXPECT_EQ(ops.calls(Call::create), 0);
}

TEST(CueReader, ReadsAnyFormAndStandsWhatIsNone) {
    const TempFolder folder;
    const auto cuesOf = [&](const WavBuilder& file) { return lireCues(file.write(folder / "a.wav")); };
    EXPECT_EQ(cuesOf(WavBuilder("RF64").ds64(2).fmt().chunk("data", "12").cues({{1, 9, "x"}})).size(), 1U);
    EXPECT_THAT(cuesOf(WavBuilder().fmt().audio(2)), IsEmpty());
    EXPECT_EQ(cuesOf(WavBuilder().chunkClaiming("cue ", test::cuePayload({{1, 9, {}}}), 100'000)).size(), 1U);
    EXPECT_THAT(lireCues(folder / "missing"), IsEmpty());
    EXPECT_THAT(lireCues(folder.path()), IsEmpty());
}

}  // namespace
}  // namespace dravik
