#include "model/probe.h"
#include "platform/native_file_ops.h"
#include "tests/cli/program.h"
#include "tests/support/fake_codecs.h"
#include "tests/support/files.h"
#include "tests/support/samples.h"
#include "tests/support/wav_builder.h"

#include <chrono>
#include <csignal>
#include <thread>

#include <gmock/gmock.h>

namespace dravik::test {
namespace {

using Json = nlohmann::ordered_json;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// Fields of files without any codec: all fixtures here are plain WAV.
InfoFichier probed(const std::filesystem::path& file) { return analyserFichier(file, FakeCodecs()); }

Bytes audioOf(const std::filesystem::path& file) {
    const FileHandle handle = FileHandle::openForReading(file);
    const FileSource source(handle);
    const std::optional<ChunkTable> table = walkChunks(source);
    const Chunk* data = table.value().first("data");
    return source.read(data->payload(), data->size);
}

class SetCommand : public ::testing::Test {
  protected:
    /// A mono set of two in folder().
    void writeSet(const Ixml& first = {}, const Ixml& second = {}) const {
        recorderFile(first, {}, 1000, 1).write(file(1));
        recorderFile(second, {}, 1000, 2).write(file(2));
    }
    [[nodiscard]] std::filesystem::path file(int track) const {
        return folder_ / ("SC12_T0" + std::to_string(track) + ".wav");
    }
    [[nodiscard]] Ran set(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "set");
        return run(arguments);
    }
    TempFolder folder_;
};

TEST_F(SetCommand, EditsTheWholeSetThroughOneOfItsFilesAndLeavesTheAudioAlone) {
    writeSet();
    const Bytes audio[] = {audioOf(file(1)), audioOf(file(2))};
    const Ran ran = set({"--scene", "13", "--take=7", "--tape", "R2", "--note", "-6 dB & fine", "--project", "Film 2",
                         "--circled", "--wild", "--timecode", "11223324", file(2)});
    EXPECT_EQ(ran.exitCode, 0) << ran.err;
    EXPECT_EQ(ran.out, "Saved 2 files\n");
    for (const int track : {1, 2}) {
        const InfoFichier info = probed(file(track));
        EXPECT_EQ(info.scene, "13");
        EXPECT_EQ(info.prise, "7");
        EXPECT_EQ(info.tape, "R2");
        EXPECT_EQ(info.notes, "-6 dB & fine");
        EXPECT_EQ(info.project, "Film 2");
        EXPECT_TRUE(info.circled && info.wild);
        EXPECT_EQ(info.timecode, "11:22:33:24");
        EXPECT_TRUE(audioOf(file(track)) == audio[track - 1]);
    }
}

TEST_F(SetCommand, EditsOnlyTheFileNamedWhenToldNotToGroup) {
    writeSet();
    const auto before = stateOf(folder_.path());
    EXPECT_EQ(set({"--no-group", "--note", "one", file(2)}).out, "Saved\n");
    const auto after = stateOf(folder_.path());
    EXPECT_EQ(before.at("SC12_T01.wav"), after.at("SC12_T01.wav"));
    EXPECT_EQ(probed(file(2)).notes, "one");
}

TEST_F(SetCommand, NamesTheFilesOfATakeThatItDoesNotTouch) {
    writeSet();
    writeFile(file(3), "no audio at all");
    const Ran ran = set({"--scene", "13", file(1)});
    EXPECT_EQ(ran.exitCode, 0);
    EXPECT_EQ(ran.out, "Saved 2 files\n");
    EXPECT_THAT(ran.err, HasSubstr("SC12_T03.wav: cannot be read as audio. It is not touched with the take SC12."));
    EXPECT_EQ(run({"scan", "--json", folder_.path()}).json()["groups"][0]["missing"], Json({3}));
}

TEST_F(SetCommand, TakesEachTakeOnceHoweverItIsNamed) {
    writeSet();
    const Json document = set({"--json", "--scene", "9", file(1), folder_.path().string() + "/", file(2)}).json();
    EXPECT_EQ(document["saved"], 2);
    ASSERT_EQ(document["results"].size(), 2);
    EXPECT_EQ(document["results"][0],
              Json({{"path", file(1).string()}, {"newPath", file(1).string()}, {"ok", true}, {"message", "Saved"}}));
    // From inside the folder the files keep the names they are called by.
    const Ran inside = run({"set", "--json", "--name", "New", "SC12_T02.wav"}, {.workingFolder = folder_.path()});
    EXPECT_EQ(inside.json()["results"][1]["path"], "SC12_T02.wav");
    EXPECT_EQ(inside.json()["results"][1]["newPath"], "New_T02.wav");
}

TEST_F(SetCommand, WritesNothingInADryRunAndSaysWhatItWould) {
    writeSet();
    const auto before = stateOf(folder_.path());
    const Ran text = set({"--dry-run", "--scene", "13", "--track", "2=Lav & Co", "--name", "SC13", file(1)});
    EXPECT_EQ(text.exitCode, 0);
    for (const char* line :
         {"scene: \"12A\" -> \"13\"", "track name: \"Boom\" -> \"Lav & Co\"", "file name: \"SC12_T02\" -> \"SC13_T02\"",
          "2 files would be saved. No files were changed."}) {
        EXPECT_THAT(text.out, HasSubstr(line));
    }
    const Json json = set({"--dry-run", "--json", "--name", "SC13", "--circled", file(1)}).json();
    EXPECT_EQ(json["saved"], 0);
    EXPECT_EQ(json["results"][0]["newPath"], (folder_ / "SC13_T01.wav").string());
    EXPECT_THAT(json["results"][0]["message"].get<std::string>(), HasSubstr("circled: no -> yes"));
    EXPECT_EQ(stateOf(folder_.path()), before);
}

TEST_F(SetCommand, LeavesFilesAloneThatHaveTheValuesAlready) {
    writeSet();
    const auto before = stateOf(folder_.path());
    const Ran ran = set({"--scene", "12A", "--note=", "--timecode", "10000000", "--framerate", "25", "--track",
                         "1=Boom", "--no-wild", "--name", "SC12", file(1)});
    EXPECT_EQ(ran.exitCode, 0) << ran.err;
    EXPECT_THAT(ran.out, HasSubstr("Nothing to write"));
    EXPECT_EQ(stateOf(folder_.path()), before);
}

TEST_F(SetCommand, SettlesAFieldOnWhichTheFilesDisagreeAlsoToItsDefault) {
    writeSet({}, {.note = "only here", .circled = "TRUE"});
    EXPECT_EQ(set({"--no-circled", "--note", "", file(1)}).exitCode, 0);
    const InfoFichier info = probed(file(2));
    EXPECT_FALSE(info.circled);
    EXPECT_EQ(info.notes, std::nullopt);
}

TEST_F(SetCommand, NamesTheTrackOfTheFileItLiesIn) {
    writeSet();
    EXPECT_EQ(set({"--track", "1=Boom", "--track", "2=Lav & Co = fine", folder_.path()}).out, "Saved\n");
    EXPECT_EQ(probed(file(1)).nomsPistes.at(1), "Boom");
    EXPECT_EQ(probed(file(2)).nomsPistes.at(1), "Lav &amp; Co = fine");
}

TEST_F(SetCommand, RefusesWrongValuesBeforeItTouchesAFile) {
    writeSet();
    const std::string plain = WavBuilder().fmt().audio(100).write(folder_ / "plain.wav");
    const std::string longSuffix = recorderFile().write(folder_ / ("L_T1_" + std::string(60, 's') + ".wav"));
    recorderFile().write(folder_ / "L_T2.wav");
    recorderFile({.familyUid = "F"}).write(folder_ / "TK_1.wav");
    const std::string tk = recorderFile({.familyUid = "F"}).write(folder_ / "TK_2.wav");
    struct Case {
        std::vector<std::string> arguments;
        int exitCode;
        std::string says;
    };
    const std::string set1 = file(1);
    const std::vector<Case> cases = {
        {{set1}, 2, "nothing to set"},
        {{"--timecode", "10:00:00:25", set1}, 2, "Invalid Timecode"},
        {{"--timecode", "10:00:60:00", set1}, 2, "Invalid Timecode"},
        {{"--timecode", "", set1}, 2, "Invalid Timecode"},
        {{"--timecode", "10:00:00:24", "--framerate", "24", set1}, 2, "Invalid Timecode"},
        {{"--timecode", "10:00:00:00", plain}, 2, "give --framerate"},
        {{"--framerate", "59.94", set1}, 2, "not a frame rate"},
        {{"--framerate", "0", set1}, 2, "not a frame rate"},
        {{"--track", "3=X", set1}, 2, "There is no track 3"},
        {{"--track", "0=X", set1}, 2, "--track"},
        {{"--track", "X", set1}, 2, "--track"},
        {{"--channel", "3=1", set1}, 2, "There is no track 3"},
        {{"--channel", "1=1000", set1}, 2, "from 1 to 999"},
        {{"--channel", "1=0", set1}, 2, "from 1 to 999"},
        {{"--channel", "1=x", set1}, 2, "from 1 to 999"},
        {{"--channel", "1", set1}, 2, "from 1 to 999"},
        {{"--channel", "1=4", "--channel", "2=4", set1}, 2, "cannot both have the recorder number 4"},
        {{"--channel", "1=5", "--channel", "1=6", set1}, 2, "track 1 is given twice"},
        {{"--track", "2=A", "--track", "2=A", set1}, 2, "track 2 is given twice"},
        {{"--circled", "--no-circled", set1}, 2, "excludes"},
        {{"--name", "a/b", set1}, 2, "cannot be the name"},
        {{"--name", "b.wav", set1}, 2, "without the extension"},
        {{"--scene", "\xff", set1}, 2, "not UTF-8"},
        {{"--note", "a\x01", set1}, 2, "control character"},
        {{"--track", "1=\x1b[m", set1}, 2, "control character"},
        {{"--name", "NEW", "--note", "</NOTE>", set1}, 3, "SC12_T02.wav cannot take these values"},
        {{"--name", "12A_T001", tk}, 3, "would no longer be one take"},
        {{"--name", "L", set1}, 3, "a part of another take, L."},
        {{"--name", "plain", "--no-group", file(1)}, 3, "already exists"},
        {{"--name", std::string(220, 'n'), longSuffix}, 3, "A file cannot be named"},
        {{"--name", "X", "--no-group", folder_.path()}, 2, "one take at a time"},
        {{"--scene", "<CIRCLED>", "--name", "X", folder_.path()}, 2, "one take at a time"},
        {{"--scene", "1", set1, folder_ / "absent.wav"}, 3, "absent.wav: No such file or directory"},
    };
    for (const Case& one : cases) {
        const auto before = stateOf(folder_.path());
        for (const bool dryRun : {false, true}) {
            std::vector<std::string> arguments = one.arguments;
            if (dryRun) arguments.insert(arguments.begin(), "--dry-run");
            const Ran ran = set(arguments);
            EXPECT_EQ(ran.exitCode, one.exitCode) << one.says;
            EXPECT_THAT(ran.err, HasSubstr(one.says));
            EXPECT_EQ(stateOf(folder_.path()), before);
        }
    }
}

TEST_F(SetCommand, UnderstandsFrameRatesAsPeopleTypeThem) {
    writeSet();
    const std::pair<const char*, const char*> cases[] = {{"23.976", "23.976"},     {"29.97df", "29.97 DF"},
                                                         {"29.97 DF", "29.97 DF"}, {"30", "30"},
                                                         {"48", "48.0"},           {"25.0", "25"}};
    for (const auto& [typed, label] : cases) {
        EXPECT_EQ(set({"--framerate", typed, file(1)}).exitCode, 0);
        EXPECT_EQ(probed(file(2)).framerate, label);
        EXPECT_EQ(probed(file(2)).timecode, "10:00:00:00") << "the text stays at a new rate";
    }
}

TEST_F(SetCommand, RefusesTheWholeCommandForAReadOnlyFormat) {
    writeSet();
    writeFile(folder_ / "song.mp3", "not looked at");
    WavBuilder("RF64").ds64(300).fmt().chunkClaiming("data", audioBytes(300), 0xFFFFFFFF).write(folder_ / "large.wav");
    const auto before = stateOf(folder_.path());
    const Ran ran = set({"--json", "--scene", "1", folder_.path()});
    EXPECT_EQ(ran.exitCode, 3);
    EXPECT_THAT(ran.err, HasSubstr("song.mp3 is read-only"));
    EXPECT_THAT(ran.err, HasSubstr("large.wav is read-only"));
    EXPECT_THAT(ran.err, HasSubstr("No files were changed."));
    const Json document = ran.json();
    EXPECT_EQ(document["saved"], 0);
    for (const Json& result : document["results"]) {
        EXPECT_FALSE(result["ok"]);
    }
    EXPECT_EQ(stateOf(folder_.path()), before);
}

TEST_F(SetCommand, RefusesTheWholeCommandForOneFileThatCannotTakeIt) {
    writeSet();
    // New metadata would be lost behind a chunk that claims more than is there.
    const std::string damaged =
        WavBuilder().fmt().audio(10).chunkClaiming("tail", asBytes("xy"), 500).write(folder_ / "damaged.wav");
    const auto before = stateOf(folder_.path());
    for (const char* how : {"--json", "--dry-run"}) {
        const Ran ran = set({"--json", how, "--scene", "1", folder_.path()});
        EXPECT_EQ(ran.exitCode, 3);
        EXPECT_THAT(ran.err, HasSubstr("damaged.wav has a damaged last chunk"));
        EXPECT_EQ(ran.json()["saved"], 0);
        EXPECT_THAT(ran.json()["results"][0]["message"].get<std::string>(), HasSubstr("damaged.wav has"));
        EXPECT_EQ(ran.json()["results"][1]["message"], "No files were changed.");
        EXPECT_EQ(run({"cues", "--add", "1", damaged, std::string(how)}).exitCode, 3);
        EXPECT_EQ(stateOf(folder_.path()), before);
    }
}

TEST_F(SetCommand, SavesTheOthersWhenOneFileFailsAndNamesIt) {
    writeSet();
    const auto other = makeNativeFileOps();
    const FileHandle busy = FileHandle::openForReading(file(1));
    ASSERT_EQ(other->tryLock(busy), FileOps::Lock::taken);
    const Ran ran = set({"--json", "--scene", "1", folder_.path()});
    EXPECT_EQ(ran.exitCode, 1);
    EXPECT_THAT(ran.err, HasSubstr("SC12_T01.wav was written to by another program"));
    EXPECT_EQ(ran.json()["saved"], 1);
    EXPECT_EQ(ran.json()["results"][0]["ok"], false);
    EXPECT_EQ(probed(file(2)).scene, "1");
}

TEST_F(SetCommand, SaysThatNamesWhichDifferInCaseAreOne) {
    writeSet();
    const Ran ran = set({"--name", "sc12", file(1)});
    EXPECT_EQ(ran.exitCode, 0);
    EXPECT_EQ(ran.out, "Nothing to write.\n");
    EXPECT_EQ(ran.err, "SC12 keeps its name: names that differ only in letter case are one name.\n");
}

TEST_F(SetCommand, RenamesAnUnreadableFileWithItsSetAndSaysSo) {
    writeSet();
    writeFile(file(3), "no audio at all");
    const Ran ran = set({"--name", "SC13", "--json", file(1)});
    EXPECT_EQ(ran.exitCode, 0);
    EXPECT_THAT(ran.err, HasSubstr("SC12_T03.wav: cannot be read as audio. It is renamed, but no more, with the take"));
    EXPECT_EQ(ran.json()["results"][2]["newPath"], (folder_ / "SC13_T03.wav").string());
    EXPECT_THAT(namesIn(folder_.path()), ElementsAre("SC13_T01.wav", "SC13_T02.wav", "SC13_T03.wav"));
}

TEST_F(SetCommand, RenamesASetAndKeepsItsTrackSuffixes) {
    writeSet();
    const Ran ran = set({"--name", "SC13", "--scene", "13", file(2)});
    EXPECT_EQ(ran.exitCode, 0) << ran.err;
    EXPECT_THAT(ran.out, HasSubstr("SC13_T02.wav\nSaved 2 files\n"));
    EXPECT_THAT(namesIn(folder_.path()), ElementsAre("SC13_T01.wav", "SC13_T02.wav"));
    EXPECT_EQ(probed(folder_ / "SC13_T02.wav").scene, "13");
}

TEST_F(SetCommand, EditsARecordersSetThroughOneOfItsFiles) {
    DRAVIK_NEEDS_SAMPLES();
    for (const auto& entry : std::filesystem::directory_iterator(*sampleFolder() / "recorder_b_mono_set")) {
        std::filesystem::copy_file(entry.path(), folder_ / entry.path().filename().string());
    }
    const std::string one = folder_ / "Sr001-2C-01_04.WAV";
    EXPECT_THAT(set({"--dry-run", "--channel", "1=2", "--channel", "2=1", one}).out, HasSubstr("channel: 2 -> 1"));
    EXPECT_THAT(set({"--channel", "1=2", one}).err, HasSubstr("Tracks 1 and 2 of "));
    const Ran ran =
        set({"--json", "--scene", "44", "--track", "2=Boom & Lav", "--channel", "1=2", "--channel", "2=1", one});
    EXPECT_EQ(ran.json()["saved"], 5);
    const Json take = run({"scan", "--json", folder_.path()}).json()["groups"][0];
    EXPECT_EQ(take["scene"], "44");
    EXPECT_EQ(take["tape"], "Sr001");
    EXPECT_EQ(take["files"][1]["trackNames"], Json({{"1", "Boom & Lav"}}));
    EXPECT_EQ(take["files"][0]["trackNames"], Json({{"1", "Boom"}}));
    EXPECT_EQ(take["files"][0]["trackNumbers"], Json({{"1", 2}}));
    EXPECT_EQ(take["files"][1]["trackNumbers"], Json({{"1", 1}}));
    EXPECT_EQ(take["files"][2]["trackNumbers"], Json({{"1", 3}}));
}

TEST_F(SetCommand, LeavesEveryFileWholeWhenItIsInterrupted) {
    for (const int number : {SIGINT, SIGTERM}) {
        const TempFolder folder;
        constexpr int files = 400;
        for (int i = 0; i < files; ++i) {
            recorderFile({}, {.channels = 2}, 4000).write(folder / ("take" + std::to_string(i) + ".wav"));
        }
        const Bytes before = readFile(folder / "take0.wav");
        const auto written = std::filesystem::last_write_time(folder / "take0.wav");
        Program program({"set", "--json", "--scene", "interrupted", folder.path()});
        // Until the first file is saved.
        for (int i = 0; i < 20'000 && std::filesystem::last_write_time(folder / "take0.wav") == written; ++i) {
            std::this_thread::sleep_for(std::chrono::microseconds(200));
        }
        program.signal(number);
        const Ran ran = program.wait();
        if (ran.exitCode == 0) GTEST_SKIP() << "The disk was faster than the signal.";
        EXPECT_EQ(ran.exitCode, 130);
        EXPECT_THAT(ran.err, HasSubstr("Cancelled."));
        EXPECT_EQ(namesIn(folder.path()).size(), files) << "nothing hidden stays behind";
        const Json document = ran.json();
        int saved = 0;
        for (const Json& result : document["results"]) {
            const bool isNew = probed(result["path"].get<std::string>()).scene == "interrupted";
            EXPECT_EQ(result["ok"], isNew) << result["path"];
            if (!isNew) {
                EXPECT_TRUE(readFile(result["path"].get<std::string>()) == before);
            }
            saved += isNew ? 1 : 0;
        }
        EXPECT_EQ(document["saved"], saved);
        EXPECT_LT(saved, files);
    }
}

}  // namespace
}  // namespace dravik::test
