#include "base/file_handle.h"
#include "base/temp_name.h"
#include "base/text.h"
#include "model/wave/chunk_walk.h"
#include "tests/cli/program.h"
#include "tests/support/files.h"
#include "tests/support/samples.h"
#include "tests/support/wav_builder.h"

#include <sstream>

#include <fmt/format.h>
#include <gmock/gmock.h>

namespace dravik::test {
namespace {

using Json = nlohmann::ordered_json;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

std::vector<std::string> keysOf(const Json& object) {
    std::vector<std::string> keys;
    for (const auto& entry : object.items())
        keys.push_back(entry.key());
    return keys;
}

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> result;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        result.push_back(line);
    return result;
}

/// "SET_T01.WAV" and "SET_T02.WAV" with names of their own, "POLY.wav" with two tracks.
void writeDay(const TempFolder& folder) {
    Ixml first;
    first.tracks = {{1, 1, "Boom &amp; Lav"}};
    Ixml second;
    second.tracks = {{4, 1, "Lav"}};
    second.note = "only here";
    second.circled = "TRUE";
    recorderFile(first).write(folder / "SET_T01.WAV");
    recorderFile(second).write(folder / "SET_T02.WAV");
    Ixml poly;
    poly.tracks = {{1, 1, "L"}, {2, 2, "R"}};
    recorderFile(poly, {.channels = 2}).write(folder / "POLY.wav");
}

TEST(ScanCommand, KeepsTheKeysOfItsJsonDocument) {
    const TempFolder folder;
    writeDay(folder);
    const Json document = run({"scan", "--json", folder.path()}).json();
    EXPECT_THAT(keysOf(document), ElementsAre("version", "folder", "groups"));
    EXPECT_EQ(document["folder"], folder.path().string());
    ASSERT_EQ(document["groups"].size(), 2);
    const Json& set = document["groups"][1];
    EXPECT_THAT(keysOf(set), ElementsAre("name", "poly", "mixed", "project", "scene", "take", "tape", "note", "circled",
                                         "wild", "timecode", "framerate", "recordingDate", "recordingDateStatus",
                                         "missing", "filesWritten", "filesNotThere", "files"));
    EXPECT_THAT(keysOf(set["files"][0]),
                ElementsAre("path", "name", "format", "channels", "sampleRate", "bits", "duration", "size", "project",
                            "scene", "take", "tape", "note", "circled", "wild", "timecode", "framerate",
                            "recordingDate", "trackNames", "trackNumbers", "familyUID", "missingAudioBytes"));
    const Json expected = {{"path", (folder / "SET_T01.WAV").string()},
                           {"name", "SET_T01"},
                           {"format", "WAV"},
                           {"channels", 1},
                           {"sampleRate", 48000},
                           {"bits", 24},
                           {"size", std::filesystem::file_size(folder / "SET_T01.WAV")},
                           {"project", "Film"},
                           {"note", nullptr},
                           {"timecode", "10:00:00:00"},
                           {"framerate", "25"},
                           {"recordingDate", "2024-03-07"},
                           {"trackNames", {{"1", "Boom & Lav"}}},
                           {"trackNumbers", {{"1", 1}}},
                           {"familyUID", nullptr}};
    for (const auto& [key, value] : expected.items())
        EXPECT_EQ(set["files"][0][key], value) << key;
    EXPECT_NEAR(set["files"][0]["duration"].get<double>(), 1000 / 48000.0, 1e-9);
}

TEST(ScanCommand, MakesAFieldNullWhereTheFilesOfATakeDisagree) {
    const TempFolder folder;
    writeDay(folder);
    const Json set = run({"scan", "--json", folder.path()}).json()["groups"][1];
    EXPECT_EQ(set["mixed"], Json({"note", "circled"}));
    EXPECT_TRUE(set["note"].is_null());
    EXPECT_TRUE(set["circled"].is_null());
    EXPECT_EQ(set["scene"], "12A");
    EXPECT_EQ(set["recordingDateStatus"], "consistent");
    EXPECT_THAT(run({"scan", folder.path()}).out, HasSubstr("‹mixed›"));
}

TEST(ScanCommand, GroupsFilesAmongThemselvesUnlessToldNotTo) {
    const TempFolder folder;
    writeDay(folder);
    const std::string first = folder / "SET_T01.WAV";
    const std::string second = folder / "SET_T02.WAV";
    const auto takes = [](const std::vector<std::string>& arguments) {
        const Json document = run(arguments).json();
        EXPECT_TRUE(document["folder"].is_null());
        return document["groups"].size();
    };
    EXPECT_EQ(takes({"scan", "--json", first, second, first}), 1);
    EXPECT_EQ(takes({"scan", "--json", "--no-group", first, second}), 2);
    EXPECT_EQ(takes({"scan", "--json", second}), 1);
    EXPECT_EQ(takes({"scan", "--json", folder.path(), folder.path()}), 4);
}

TEST(ScanCommand, NamesWhatItCannotReadAndGoesOn) {
    const TempFolder folder;
    writeDay(folder);
    writeFile(folder / "broken.wav", "no audio at all");
    const Ran ran = run({"scan", "--json", folder / "absent", folder.path()});
    EXPECT_EQ(ran.exitCode, 1);
    EXPECT_EQ(ran.json()["groups"].size(), 3);
    EXPECT_THAT(ran.err, HasSubstr((folder / "absent").string() + ": No such file or directory"));
    EXPECT_THAT(ran.err, HasSubstr((folder / "broken.wav").string() + ": cannot be read as audio."));
}

TEST(ScanCommand, SaysWhichRecordingsAreCutOffAndWhichSetsLackFiles) {
    const TempFolder folder;
    for (const int track : {1, 2, 4}) {
        Ixml ixml;
        ixml.familyUid = "F";
        ixml.totalFiles = 4;
        ixml.fileSetIndex = track;
        recorderFile(ixml).write(folder / fmt::format("A_T{}.WAV", track));
    }
    Ran ran = run({"scan", folder.path()});
    EXPECT_EQ(ran.exitCode, 0) << ran.err;
    EXPECT_EQ(ran.err, (folder / "A").string() +
                           ": The recorder says that it wrote 4 files of this take, of which 3 are here.\n");
    EXPECT_THAT(ran.out, HasSubstr("3 × WAV"));
    EXPECT_EQ(run({"scan", folder / "A_T1.WAV", folder / "A_T2.WAV"}).err, "") << "the others were not asked for";
    EXPECT_THAT(run({"merge", "--dry-run", folder.path()}).out, HasSubstr("it wrote 4 files of this take, of which 3"));

    const std::filesystem::path cut = folder / "A_T2.WAV";
    std::filesystem::resize_file(cut, std::filesystem::file_size(cut) - 1024);  // 24 bytes stand behind the audio
    ran = run({"scan", folder.path()});
    EXPECT_EQ(ran.exitCode, 1);
    EXPECT_THAT(ran.err, HasSubstr(cut.string() + ": is cut off, 1 KB of its audio is missing.\n"));
    EXPECT_THAT(ran.out, HasSubstr("cut off 0:01"));
    const Json set = run({"scan", "--json", folder.path()}).json()["groups"][0];
    EXPECT_EQ(set["filesWritten"], 4);
    EXPECT_EQ(set["filesNotThere"], 1) << "what is cut off still says which file it is";
    EXPECT_EQ(set["files"][0]["missingAudioBytes"], 0);
    EXPECT_EQ(set["files"][1]["missingAudioBytes"], 1000);
}

TEST(ScanCommand, SaysThatAFolderHoldsNoAudio) {
    const TempFolder folder;
    const Ran ran = run({"scan", folder.path()});
    EXPECT_EQ(ran.exitCode, 0);
    EXPECT_EQ(ran.out, "No audio files here.\n");
}

TEST(ScanCommand, LetsNoFileSendControlCharactersToTheTerminal) {
    const TempFolder folder;
    Ixml ixml;
    ixml.note = "line\nline \x1b[31mred\xc2\x9b";
    recorderFile(ixml).write(folder / "evil\x1b]0;\xff\n.wav");
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"scan", folder.path()},
                                                      {"scan", "--json", folder.path()},
                                                      {"show", folder / "evil\x1b]0;\xff\n.wav"},
                                                      {"set", "--scene", "1", "--dry-run", folder.path()}}) {
        const Ran ran = run(arguments);
        EXPECT_EQ(ran.exitCode, 0) << ran.err;
        EXPECT_TRUE(isValidUtf8(ran.out)) << ran.out;
        EXPECT_THAT(ran.out, Not(HasSubstr("\x1b")));
        if (arguments[1] != "--json") {
            EXPECT_THAT(ran.out, Not(HasSubstr("\xc2\x9b")));
        }
    }
}

TEST(ScanCommand, FitsItsTableToTheTerminal) {
    const TempFolder folder;
    writeDay(folder);
    recorderFile({.scene = "日本語", .note = std::string(300, 'n')}).write(folder / (std::string(60, 'x') + ".wav"));
    for (const int width : {20, 43, 80, 160}) {
        const Ran ran = run({"scan", folder.path()}, {.environment = {{"COLUMNS", std::to_string(width)}}});
        const std::vector<std::string> all = lines(ran.out);
        // The summary behind the table is a sentence, which terminals wrap.
        for (std::size_t i = 0; i + 1 < all.size(); ++i)
            EXPECT_LE(displayWidth(all[i]), width) << all[i];
        EXPECT_THAT(all.front(), HasSubstr("Name"));
    }
    EXPECT_THAT(run({"scan", folder.path()}).out, HasSubstr(std::string(300, 'n')));
}

TEST(ScanCommand, RemovesTheTemporaryFilesOfDeadProcessesAndNothingElse) {
    const TempFolder folder;
    const std::string abandoned = freshTemporaryName(TempKind::metadata, "a.wav");
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"scan"}, {"recover"}, {"set", "--scene", "1"}}) {
        writeDay(folder);
        writeFile(folder / abandoned, "half");
        writeFile(folder / ".metadata-mine.tmp", "the user's");
        std::vector<std::string> arguments = command;
        arguments.push_back(folder.path());
        const Ran ran = run(arguments);
        EXPECT_EQ(ran.exitCode, 0) << ran.err;
        EXPECT_THAT(ran.out + ran.err, HasSubstr("Removed 1 unfinished temporary file"));
        EXPECT_THAT(namesIn(folder.path()),
                    ElementsAre(".metadata-mine.tmp", "POLY.wav", "SET_T01.WAV", "SET_T02.WAV"));
    }
    EXPECT_THAT(run({"recover", folder.path()}).out, HasSubstr("Nothing to recover"));
    EXPECT_EQ(run({"recover", folder / "absent"}).exitCode, 1);
}

TEST(ShowCommand, ListsChunksAndMarkersAsTheyLieInTheFile) {
    const TempFolder folder;
    const std::string file = WavBuilder()
                                 .fmt()
                                 .chunk("od\x01\\", "abc")
                                 .audio(100)
                                 .cues({{7, 50, "Slate"}, {9, 20, {}}})
                                 .chunkClaiming("tail", asBytes("xy"), 500)
                                 .write(folder / "a.wav");
    const Ran ran = run({"show", "--json", file});
    EXPECT_EQ(ran.exitCode, 0) << ran.err;
    const Json document = ran.json();
    const auto chunk = [](const char* id, int offset, int size) {
        return Json{{"id", id}, {"offset", offset}, {"size", size}};
    };
    EXPECT_EQ(document["chunks"], Json({chunk("fmt ", 12, 16), chunk("od\\x01\\x5C", 36, 3), chunk("data", 48, 300),
                                        chunk("cue ", 356, 52), chunk("LIST", 416, 22), chunk("tail", 446, 2)}));
    EXPECT_EQ(document["cues"], Json({{{"number", 1}, {"frame", 20}, {"label", nullptr}},
                                      {{"number", 2}, {"frame", 50}, {"label", "Slate"}}}));
    EXPECT_EQ(document["bits"], 24);
    EXPECT_THAT(run({"show", file}).out, HasSubstr("cut off: claims 500"));
}

TEST(ShowCommand, PrintsTheIxmlChunkToTheByte) {
    const TempFolder folder;
    const std::string ixml = ixmlText({}) + std::string("\r\n\x00\xff  ", 6) + std::string(1'500'000, ' ');
    const std::string file = WavBuilder().fmt().chunk("iXML", ixml).audio(3).write(folder / "a.wav");
    const Ran ran = run({"show", "--ixml", file});
    EXPECT_EQ(ran.exitCode, 0);
    EXPECT_TRUE(ran.out == ixml);
    const std::string plain = WavBuilder().fmt().audio(3).write(folder / "b.wav");
    const Ran none = run({"show", "--ixml", plain});
    EXPECT_EQ(none.exitCode, 1);
    EXPECT_EQ(none.out, "");
    EXPECT_THAT(none.err, HasSubstr("b.wav: has no iXML chunk."));
}

TEST(ShowCommand, AgreesWithTheChunkWalkOnEverySample) {
    DRAVIK_NEEDS_SAMPLES();
    for (const std::filesystem::path& sample : samplesOf(".wav")) {
        SCOPED_TRACE(sample);
        const Json document = run({"show", "--json", sample}).json();
        const FileHandle handle = FileHandle::openForReading(sample);
        const FileSource source(handle);
        const std::optional<ChunkTable> table = walkChunks(source);
        EXPECT_EQ(document["chunks"].size(), table ? table->chunks.size() : 0);
        const Chunk* ixml = table ? table->first("iXML") : nullptr;
        if (ixml == nullptr) continue;
        EXPECT_TRUE(run({"show", "--ixml", sample}).out == asText(source.read(ixml->payload(), ixml->size)));
    }
}

TEST(Program, TellsScriptsWhatIsWrongByItsExitCode) {
    const TempFolder folder;
    const std::string file = recorderFile().write(folder / "a.wav");
    struct Case {
        std::vector<std::string> arguments;
        int exitCode;
        std::string says;
    };
    const std::vector<Case> cases = {
        {{}, 2, "A command is required"},
        {{"bogus"}, 2, "There is no command \"bogus\""},
        {{"scan"}, 2, "usage: dravik-cli scan"},
        {{"scan", "--bogus", file}, 2, "--bogus"},
        {{"show", "--json", "--ixml", file}, 2, "excludes"},
        {{"show", folder / "absent.wav"}, 1, "absent.wav: No such file"},
        {{"show", folder.path()}, 1, "is not a file"},
        {{"recover", file}, 1, "is not a folder"},
        {{"demo", folder / "d", "--takes", "0"}, 2, "--takes"},
    };
    for (const Case& one : cases) {
        const Ran ran = run(one.arguments);
        EXPECT_EQ(ran.exitCode, one.exitCode) << one.says;
        EXPECT_EQ(ran.out, "");
        EXPECT_THAT(ran.err, HasSubstr(one.says));
    }
    EXPECT_THAT(run({"--help"}).out, HasSubstr("130  interrupted"));
    for (const char* command : {"scan", "show", "set", "cues", "demo", "recover", "update-check"}) {
        const Ran help = run({command, "--help"});
        EXPECT_EQ(help.exitCode, 0);
        EXPECT_THAT(help.out, HasSubstr(std::string("  dravik-cli ") + command)) << "an example";
    }
}

TEST(Program, SaysSoWhenItsResultsCannotBeWritten) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "This system has no /dev/full.";
    const TempFolder folder;
    const Ran ran = run({"scan", folder.path()}, {.standardOutput = "/dev/full"});
    EXPECT_EQ(ran.exitCode, 1);
    EXPECT_THAT(ran.err, HasSubstr("No space left on device"));
}

}  // namespace
}  // namespace dravik::test
