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
#include <sys/stat.h>

namespace dravik {
namespace {

using test::Call;
using test::FaultyFileOps;
using test::namesIn;
using test::readFile;
using test::TempFolder;
using test::WavBuilder;
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

TEST_F(MetadataWriter, PutsTheEditWhereTheIxmlWasAndKeepsTheRest) {
    const auto builder = [](std::string_view middle) {
        WavBuilder file;
        return file.chunk("JUNK", "odd")
            .bext()
            .ixml({.note = std::string(middle)})
            .fmt()
            .audio(333)
            .chunk("abcd", "12345");
    };
    const Written after = saved(builder("wind"));
    EXPECT_THAT(after.ids(), ElementsAre("JUNK", "bext", "iXML", "fmt ", "data", "abcd"));
    EXPECT_TRUE(after.riffSizeFits());
    EXPECT_EQ(after.table->bytesBehind(), 0U);
    const Bytes audio = test::audioBytes(999);
    EXPECT_TRUE(std::equal(audio.begin(), audio.end(), after.payload("data").begin(), after.payload("data").end()));
    EXPECT_EQ(asText(after.payload("abcd")), "12345");
    EXPECT_THAT(std::string(asText(after.payload("iXML"))), HasSubstr("<SCENE>13</SCENE>"));
    EXPECT_THAT(std::string(asText(after.payload("iXML"))), HasSubstr("<NOTE>wind</NOTE>"));
    EXPECT_THAT(std::string(descriptionText(after.payload("bext"))), HasSubstr("sSCENE=13"));
    EXPECT_THAT(namesIn(folder.path()), ElementsAre("a.wav"));
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
        const Chunk& second = after.table->chunks.back();
        EXPECT_EQ(valeurTag("SCENE", asText(ByteSpan(after.bytes).subspan(second.payload(), second.size))), "13");
    }
}

TEST_F(MetadataWriter, TakesTheFlagsOfTheDescriptionIntoANewIxml) {
    const struct {
        std::string description;
        std::optional<bool> edited;
        std::string circled, wild;
    } cases[] = {
        {"sCIRCLED=TRUE\r\nsWILD_TRACK=TRUE\r\n", std::nullopt, "TRUE", "TRUE"},
        {"sCIRCLED=TRUE\r\n", false, "FALSE", "none"},
        {"sSCENE=1\r\n", std::nullopt, "FALSE", "none"},
    };
    for (const auto& [description, circled, expectedCircled, expectedWild] : cases) {
        MetadataValues values = scene("13");
        values.circled = circled;
        const Written after = saved(WavBuilder().bext({.description = description}).fmt().audio(1), values);
        const std::string_view ixml = asText(after.payload("iXML"));
        EXPECT_EQ(valeurTag("CIRCLED", ixml), expectedCircled) << description;
        EXPECT_EQ(valeurTag("WILD_TRACK", ixml).value_or("none"), expectedWild) << description;
    }
}

TEST_F(MetadataWriter, ReadsLatin1AndWritesUtf8) {
    const Written after = saved(WavBuilder().ixml({.note = "caf\xE9"}));
    EXPECT_THAT(std::string(asText(after.payload("iXML"))), HasSubstr("<NOTE>café</NOTE>"));
}

TEST_F(MetadataWriter, TouchesOnlyTheBextThatIsLongEnough) {
    MetadataValues values = scene("13");
    values.timecode = "10:00:01:00";
    values.framerate = "25";
    for (const std::size_t bytes :
         {std::size_t{100}, std::size_t{255}, std::size_t{256}, std::size_t{345}, std::size_t{346}, std::size_t{602}}) {
        const Bytes before = test::bextPayload({.timeReference = 5, .bytes = bytes});
        const Written after = saved(WavBuilder().chunk("bext", before).fmt().audio(1), values);
        const ByteSpan payload = after.payload("bext");
        ASSERT_EQ(payload.size(), bytes);
        Bytes expected = before;
        if (bytes >= 256) {
            EXPECT_TRUE(descriptionText(payload).starts_with("sSCENE=13\r\n")) << bytes;
            std::copy(payload.begin(), payload.begin() + 256, expected.begin());
        }
        if (bytes >= 346) writeLE(expected.data() + 338, std::uint64_t{48'000} * 36'001);
        EXPECT_EQ(asText(payload), asText(expected)) << bytes;
    }
}

TEST_F(MetadataWriter, LeavesAudioAtItsPlaceWhereThePaddingTakesTheDifference) {
    const std::string padded = test::ixmlText({}) + std::string(2000, '\0');
    const WavBuilder file = WavBuilder().chunk("iXML", padded).fmt().audio(5000);
    const Bytes before = file.bytes();
    const Written after = saved(file, scene("a scene with a much longer name than before"));
    ASSERT_EQ(after.bytes.size(), before.size());
    EXPECT_EQ(after.table->first("data")->offset, walkChunks(MemorySource(before))->first("data")->offset);
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
    EXPECT_THAT(refusal<ErreurSauvegarde>(toBytes("RIFF and"), [&](const auto& path) { save(path, scene("13")); }),
                HasSubstr("is not a RIFF/WAVE file."));
    EXPECT_THAT(
        refusal<ErreurSauvegarde>(WavBuilder().ixml().bytes(), [&](const auto& path) { save(path, scene("\xFF")); }),
        HasSubstr("cannot take these values"));
}

TEST_F(MetadataWriter, StillWritesTheIxmlInFrontOfAnInterruptedRecording) {
    const Bytes audio = test::audioBytes(50);
    const Written after = saved(WavBuilder().ixml().fmt().chunkClaiming("data", audio, 1'000'000));
    EXPECT_TRUE(after.table->first("data")->truncated());
    EXPECT_EQ(asText(after.payload("data")), asText(audio));
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

TEST_F(MetadataWriter, KeepsModeOfTheFileAndLeavesLookAlikesAlone) {
    test::writeFile(folder / ".metadata-mine.tmp", "my own");
    const auto path = test::recorderFile().write(folder / "a.wav");
    ASSERT_EQ(::chmod(path.c_str(), 0604), 0);
    save(path, scene("13"));
    EXPECT_EQ(static_cast<unsigned>(std::filesystem::status(path).permissions()), 0604U);
    EXPECT_EQ(readFile(folder / ".metadata-mine.tmp"), toBytes("my own"));
    EXPECT_EQ(namesIn(folder.path()).size(), 2U);
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

TEST_F(MetadataWriter, StopsWhenItIsCancelledAndLeavesTheFileAlone) {
    const Bytes before = test::recorderFile({}, {}, 50'000).bytes();
    for (int stopAt = 1; stopAt <= 3; ++stopAt) {
        const std::string text = refusal<Cancelled>(before, [&](const std::filesystem::path& path) {
            CancellationToken token;
            int reports = 0;
            TaskContext task;
            task.token = &token;
            task.report = [&](const Progress&) {
                if (++reports == stopAt) token.cancel();
            };
            SauvegardeMetadata(ops).ecrire(path, scene("13"), task, folders);
        });
        EXPECT_NE(text, "not refused") << stopAt;
    }
}

TEST_F(CueWriting, WritesMarkersInOrderOfTheirFramesAndReadsThemBack) {
    const std::vector<CueMarker> markers = {
        {{}, 5000, "Böom"}, {{}, 100, std::nullopt}, {{}, -7, "ab"}, {{}, 5000, ""}};
    const Written after = savedCues(test::recorderFile(), markers);
    EXPECT_THAT(after.ids(), ElementsAre("bext", "iXML", "fmt ", "data", "LIST", "cue ", "LIST"));
    EXPECT_TRUE(after.riffSizeFits());
    EXPECT_EQ(asText(after.payload("cue ")),
              asText(test::cuePayload({{1, 0, {}}, {2, 100, {}}, {3, 5000, {}}, {4, 5000, {}}})));
    const Chunk& labels = after.table->chunks.back();
    EXPECT_EQ(asText(ByteSpan(after.bytes).subspan(labels.payload(), labels.size)),
              asText(test::adtlPayload({{1, 0, "ab"}, {3, 0, "Böom"}})));

    const std::vector<CueMarker> read = lireCues(folder / "a.wav");
    ASSERT_EQ(read.size(), 4U);
    EXPECT_EQ(read[0].label, "ab");
    EXPECT_EQ(read[1].frame, 100);
    EXPECT_FALSE(read[1].label);
    EXPECT_EQ(read[2].label, "Böom");
    EXPECT_FALSE(read[3].label);
}

TEST_F(CueWriting, ReplacesWhatThereWasAndKeepsOtherLists) {
    WavBuilder file;
    file.cues({{7, 10, "old"}}).fmt().audio(100).chunk("list", test::adtlPayload({{7, 0, "older"}}));
    file.chunk("LIST", "INFOinfo").chunk("cue ", test::cuePayload({}));
    const Written after = savedCues(file, {{{}, 50, std::nullopt}});
    EXPECT_THAT(after.ids(), ElementsAre("fmt ", "data", "LIST", "cue "));
    EXPECT_EQ(asText(after.payload("LIST")), "INFOinfo");
    const Written cleared = savedCues(file, {});
    EXPECT_THAT(cleared.ids(), ElementsAre("fmt ", "data", "LIST"));
    EXPECT_TRUE(cleared.riffSizeFits());
}

TEST_F(CueWriting, LeavesAFileWithoutMarkersAloneWhenThereAreNoneToWrite) {
    const auto path = test::recorderFile().write(folder / "a.wav");
    struct stat before {};
    ASSERT_EQ(::stat(path.c_str(), &before), 0);
    saveCues(path, {});
    struct stat after {};
    ASSERT_EQ(::stat(path.c_str(), &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino);
    EXPECT_EQ(ops.calls(Call::create), 0);
}

TEST_F(CueWriting, RefusesWhatItCannotWriteWhole) {
    const Bytes audio = test::audioBytes(50);
    const std::vector<CueMarker> one = {{{}, 1, "x"}};
    const struct {
        std::string rule;
        WavBuilder file;
        std::vector<CueMarker> markers;
        int code;
    } cases[] = {
        {"RF64", WavBuilder("RF64").ds64(50).fmt().chunk("data", audio), one, CueError::notRiffWave},
        {"another type", WavBuilder("RIFF", "AVI ").fmt(), one, CueError::notRiffWave},
        {"behind a truncated chunk", WavBuilder().fmt().chunkClaiming("data", audio, 500), one, CueError::notWritable},
        {"more chunks than are walked", WavBuilder().fmt().raw(Bytes(10'000)), one, CueError::notWritable},
        {"room for one chunk, not for two", WavBuilder().raw(Bytes((maxChunks - 1) * 8)), one, CueError::notWritable},
        {"more markers than are read", WavBuilder().fmt(), std::vector<CueMarker>(70'000), CueError::notWritable},
        {"a truncated marker chunk that would have to go",
         WavBuilder().fmt().chunkClaiming("cue ", test::cuePayload({{1, 2, {}}}), 500),
         {},
         CueError::notWritable},
    };
    for (const auto& [rule, file, markers, code] : cases) {
        int found = 0;
        const std::string text =
            refusal<CueError>(file.bytes(), [&, &toWrite = markers](const std::filesystem::path& path) {
                try {
                    saveCues(path, toWrite);
                } catch (const CueError& error) {
                    found = error.code();
                    throw;
                }
            });
        EXPECT_EQ(found, code) << rule;
        EXPECT_TRUE(text.starts_with("a.wav ")) << text;
    }
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
