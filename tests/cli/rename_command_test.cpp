#include "tests/cli/program.h"
#include "tests/support/files.h"
#include "tests/support/wav_builder.h"

#include <gmock/gmock.h>

namespace dravik::test {
namespace {

using Json = nlohmann::ordered_json;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// Two takes of one scene, a mono set, and a file that is no audio.
class RenameCommand : public ::testing::Test {
  protected:
    RenameCommand() {
        std::filesystem::create_directory(folder_ / "day");
        for (const std::string take : {"1", "2"}) {
            WavBuilder()
                .ixml({.take = take, .tracks = {}})
                .fmt({.channels = 2, .bits = 16})
                .chunk("data", Bytes(400))
                .write(path("take" + take + ".wav"));
        }
        for (const auto& [number, track] : {std::pair("1", "Boom"), std::pair("2", "Lav")}) {
            WavBuilder()
                .ixml({.scene = "7", .tracks = {{1, 1, track}}})
                .fmt({.bits = 16})
                .chunk("data", Bytes(200))
                .write(path(std::string("S7_T0") + number + ".wav"));
        }
        writeFile(path("notes.mp3"), "no audio");
    }
    [[nodiscard]] std::string day() const { return (folder_ / "day").string(); }
    [[nodiscard]] std::string path(const std::string& name) const { return (folder_ / "day" / name).string(); }
    Ran rename(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "rename");
        return run(arguments, {.workingFolder = day()});
    }
    TempFolder folder_;
};

TEST_F(RenameCommand, ShowsThePlanAndThenDoesIt) {
    const auto before = stateOf(day());
    const std::vector<std::string> arguments = {"--pattern", "{scene}_{take}_{trackName}", "."};
    std::vector<std::string> dryArguments = arguments;
    dryArguments.push_back("--dry-run");
    const Ran dry = rename(dryArguments);
    EXPECT_EQ(dry.exitCode, 0) << dry.err;
    EXPECT_EQ(dry.out,
              "./S7_T01.wav -> 7_3_Boom.wav\n./S7_T02.wav -> 7_3_Lav.wav\n./take1.wav -> 12A_1.wav\n./take2.wav -> "
              "12A_2.wav\n\nDry run: 4 files will be renamed. No files were changed.\n");
    EXPECT_EQ(stateOf(day()), before);
    const Ran ran = rename(arguments);
    EXPECT_EQ(ran.exitCode, 0) << ran.err;
    EXPECT_THAT(ran.out, HasSubstr("./take1.wav: Renamed to 12A_1.wav\n"));
    EXPECT_THAT(ran.out, ::testing::EndsWith("\n4 renamed successfully.\n"));
    EXPECT_EQ(ran.err, "Passed over: notes.mp3. They cannot be read as audio.\n");
    EXPECT_THAT(namesIn(day()), ElementsAre("12A_1.wav", "12A_2.wav", "7_3_Boom.wav", "7_3_Lav.wav", "notes.mp3"));
    EXPECT_THAT(rename(arguments).out, HasSubstr("./12A_1.wav: Unchanged\n"));
}

TEST_F(RenameCommand, RefusesTheRunForConflictsAndNumbersThemWhenAsked) {
    const auto before = stateOf(day());
    const Ran refused = rename({"--pattern", "{scene}", "take1.wav", "take2.wav"});
    EXPECT_EQ(refused.exitCode, 3);
    EXPECT_EQ(refused.out, "");
    EXPECT_EQ(refused.err,
              "take1.wav: Duplicate filename: 12A.wav\ntake2.wav: Duplicate filename: 12A.wav\n"
              "2 filename conflicts: the run is refused. --keep-both numbers names that collide.\n"
              "No files were changed.\n");
    EXPECT_EQ(stateOf(day()), before);
    const Ran dry = rename({"--pattern", "S7_T01{text:}", "--dry-run", "--json", "take1.wav"});
    EXPECT_EQ(dry.exitCode, 3);
    EXPECT_EQ(dry.json()["results"][0]["message"], "A file with this name already exists.");
    EXPECT_FALSE(dry.json()["results"][0]["ok"]);
    EXPECT_EQ(rename({"--pattern", "{scene}/{take}", "take1.wav"}).exitCode, 3);
    EXPECT_EQ(stateOf(day()), before);
    const Ran kept = rename({"--pattern", "{scene}", "--keep-both", "--json", "take1.wav", "take2.wav"});
    EXPECT_EQ(kept.exitCode, 0) << kept.err;
    EXPECT_EQ(kept.json()["results"][1]["outputs"][0], "12A_1.wav");
    EXPECT_EQ(kept.json()["results"][1]["message"], "Renamed to 12A_1.wav");
}

TEST_F(RenameCommand, CopiesIntoAFolderThatItMakes) {
    const auto before = stateOf(day());
    const std::vector<std::string> arguments = {"--pattern", "{take}-{originalName}", "--copy-to", "out/deep", "--json",
                                                "take1.wav"};
    std::vector<std::string> dryArguments = arguments;
    dryArguments.push_back("--dry-run");
    const Ran dry = rename(dryArguments);
    EXPECT_EQ(dry.exitCode, 0) << dry.err;
    EXPECT_FALSE(std::filesystem::exists(path("out")));
    const Ran ran = rename(arguments);
    EXPECT_EQ(ran.exitCode, 0) << ran.err;
    EXPECT_EQ(ran.json()["results"][0]["outputs"], dry.json()["results"][0]["outputs"]);
    EXPECT_EQ(ran.json()["results"][0]["message"], "Created 1-take1.wav");
    EXPECT_EQ(readFile(path("out/deep/1-take1.wav")), readFile(path("take1.wav")));
    EXPECT_EQ(rename(arguments).exitCode, 3) << "it is there now";
    std::filesystem::remove_all(path("out"));
    EXPECT_EQ(stateOf(day()), before);
    EXPECT_EQ(rename({"--pattern", "{take}", "--copy-to", "notes.mp3", "take1.wav"}).exitCode, 3);
    EXPECT_EQ(rename({"--pattern", "{take}", "gone.wav"}).exitCode, 3);
}

TEST_F(RenameCommand, TakesTheWholeMonoSetUnlessToldNotTo) {
    EXPECT_EQ(rename({"--pattern", "{trackName}_{circled}_{take}", "S7_T02.wav", "--dry-run", "--json"})
                  .json()["results"]
                  .size(),
              2U);
    const Ran one =
        rename({"--pattern", "{trackName}_{circled}_{take}", "--keep-separators", "--no-group", "S7_T02.wav"});
    EXPECT_EQ(one.out, "S7_T02.wav: Renamed to Lav__3.wav\n1 renamed successfully.\n");
}

TEST_F(RenameCommand, ExplainsAPatternThatItCannotRead) {
    for (const auto& [pattern, reason] : std::vector<std::pair<std::string, std::string>>{
             {"{scenes}", "There is no token \"scenes\"; there are originalName, project,"},
             {"{scene", "without its \"}\""},
             {"", "it is empty"}}) {
        const Ran ran = rename({"--pattern=" + pattern, "take1.wav"});
        EXPECT_EQ(ran.exitCode, 2);
        EXPECT_THAT(ran.err, HasSubstr(reason));
    }
    EXPECT_EQ(rename({"take1.wav"}).exitCode, 2);
    EXPECT_EQ(rename({"--pattern", "{take}", "--copy-to=", "take1.wav"}).exitCode, 2);
}

}  // namespace
}  // namespace dravik::test
