#include "tests/cli/program.h"
#include "tests/support/files.h"
#include "tests/support/wav_builder.h"

#include <set>

#include <gmock/gmock.h>

namespace dravik::test {
namespace {

using Json = nlohmann::ordered_json;
using ::testing::HasSubstr;

class CuesCommand : public ::testing::Test {
  protected:
    CuesCommand() {
        recorderFile({}, {}, 5000).cues({{1, 1000, "Slate"}, {2, 2000, {}}, {3, 3000, "Cut"}}).write(file_);
    }
    [[nodiscard]] Ran cues(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"cues", "--json", file_});
        return run(arguments);
    }
    /// "frame=label" of each, as the file holds them.
    [[nodiscard]] std::vector<std::string> stored() const {
        std::vector<std::string> list;
        const Json document = run({"show", "--json", file_}).json();
        for (const Json& cue : document["cues"]) {
            list.push_back(cue["frame"].dump() + "=" + (cue["label"].is_null() ? "" : cue["label"].get<std::string>()));
        }
        return list;
    }
    TempFolder folder_;
    std::string file_ = folder_ / "a.wav";
};

TEST_F(CuesCommand, NumbersAnEditByTheListBeforeIt) {
    using List = std::vector<std::string>;
    const List start = {"1000=Slate", "2000=", "3000=Cut"};
    const std::pair<List, List> cases[] = {
        {{}, start},
        {{"--add", "500=Über", "--add", "5000"}, {"500=Über", "1000=Slate", "2000=", "3000=Cut", "5000="}},
        {{"--remove", "1", "--rename", "3=End"}, {"2000=", "3000=End"}},
        {{"--rename", "1=", "--rename", "2=A=B"}, {"1000=", "2000=A=B", "3000=Cut"}},
        {{"--add", "1=x", "--remove", "1", "--remove", "3"}, {"1=x", "2000="}},
        {{"--clear", "--add", "7"}, {"7="}},
        {{"--clear"}, {}},
    };
    const Bytes original = readFile(file_);
    for (const auto& [arguments, expected] : cases) {
        writeFile(file_, original);
        const Ran ran = cues(arguments);
        EXPECT_EQ(ran.exitCode, 0) << ran.err;
        EXPECT_EQ(stored(), expected);
        const Json document = ran.json();
        EXPECT_EQ(document["ok"], true);
        EXPECT_EQ(document["path"], file_);
        EXPECT_EQ(document["message"], arguments.empty() ? Json(nullptr) : Json("Saved"));
        EXPECT_EQ(document["cues"], run({"show", "--json", file_}).json()["cues"]);
    }
}

TEST_F(CuesCommand, ChangesNothingWhenItIsWrongRefusedOrRehearsed) {
    const std::string readOnly = WavBuilder("RF64").ds64(6).fmt().audio(2).write(folder_ / "large.wav");
    struct Case {
        std::vector<std::string> arguments;
        int exitCode;
        std::string says;
    };
    const std::vector<Case> cases = {
        {{file_, "--remove", "4"}, 2, "There is no marker 4"},
        {{file_, "--rename", "9=x"}, 2, "There is no marker 9"},
        {{file_, "--add", "5001"}, 2, "behind the end"},
        {{file_, "--add", "-1"}, 2, "--add"},
        {{file_, "--add", "ten"}, 2, "--add"},
        {{file_, "--rename", "1"}, 2, "NUMBER=NAME"},
        {{file_, "--clear", "--remove", "1"}, 2, "excludes"},
        {{file_, "--rename", "1=\xff"}, 2, "UTF-8"},
        {{readOnly, "--add", "1"}, 3, "is read-only"},
        {{folder_ / "absent.wav", "--clear"}, 1, "No such file"},
        {{file_, "--rename", "1=Slate", "--rename", "2="}, 0, "Nothing to write"},
        {{file_, "--clear", "--dry-run"}, 0, "Would save 0 markers"},
    };
    const auto before = stateOf(folder_.path());
    for (const Case& one : cases) {
        std::vector<std::string> arguments = one.arguments;
        arguments.insert(arguments.begin(), "cues");
        const Ran ran = run(arguments);
        EXPECT_EQ(ran.exitCode, one.exitCode) << one.says << ran.err;
        EXPECT_THAT(ran.out + ran.err, HasSubstr(one.says));
        EXPECT_EQ(stateOf(folder_.path()), before);
    }
}

TEST(DemoCommand, WritesTheSameDayForTheSameSeedAndReplacesNothing) {
    const TempFolder folder;
    const auto day = [&](const char* name, const char* seed) {
        const Ran ran = run({"demo", "--takes", "9", "--seed", seed, folder / name});
        EXPECT_EQ(ran.exitCode, 0) << ran.err;
        std::map<std::string, std::string> contents;
        for (const std::string& file : namesIn(folder / name))
            contents[file] = asText(readFile(folder / name / file));
        return contents;
    };
    const auto first = day("a", "5");
    EXPECT_EQ(day("b", "5"), first);
    EXPECT_NE(day("c", "6"), first);

    const std::filesystem::path kept = folder / "a" / first.begin()->first;
    writeFile(kept, "mine");
    const auto before = stateOf(folder / "a");
    const Ran again = run({"demo", "--takes", "9", "--seed", "5", folder / "a"});
    EXPECT_EQ(again.exitCode, 3);
    EXPECT_THAT(again.err, HasSubstr("No files were written."));
    EXPECT_EQ(stateOf(folder / "a"), before);
}

TEST(DemoCommand, MakesADayOnWhichEveryKindOfTakeOccurs) {
    const TempFolder folder;
    ASSERT_EQ(run({"demo", folder / "day"}).exitCode, 0);
    const Ran scan = run({"scan", "--json", folder / "day"});
    EXPECT_EQ(scan.exitCode, 0) << scan.err;
    const Json groups = scan.json()["groups"];
    EXPECT_EQ(groups.size(), 24);
    std::set<std::string> rates;
    std::set<std::string> mixed;
    std::size_t poly = 0, sets = 0, circled = 0, wild = 0, notes = 0, markers = 0;
    std::uintmax_t bytes = 0;
    for (const Json& group : groups) {
        rates.insert(group["framerate"].get<std::string>());
        for (const Json& field : group["mixed"])
            mixed.insert(field.get<std::string>());
        poly += group["poly"] == true ? 1U : 0U;
        sets += group["files"].size() > 1 ? 1U : 0U;
        circled += group["circled"] == true ? 1U : 0U;
        wild += group["wild"] == true ? 1U : 0U;
        notes += group["note"].is_string() ? 1U : 0U;
        EXPECT_TRUE(group["timecode"].is_string() && group["project"].is_string() && group["tape"].is_string());
        for (const Json& file : group["files"]) {
            bytes += file["size"].get<std::uintmax_t>();
            EXPECT_EQ(file["trackNames"].size(), file["channels"].get<std::size_t>());
            markers += run({"show", "--json", file["path"]}).json()["cues"].size();
        }
    }
    EXPECT_THAT(rates, ::testing::ElementsAre("23.976", "25", "29.97 DF"));
    EXPECT_THAT(mixed, ::testing::ElementsAre("note"));
    for (const std::size_t count : {poly, sets, circled, wild, notes, markers})
        EXPECT_GT(count, 1U);
    EXPECT_LT(bytes, 60'000'000U);
}

}  // namespace
}  // namespace dravik::test
