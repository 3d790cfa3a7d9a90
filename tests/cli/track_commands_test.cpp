#include "tests/cli/program.h"
#include "tests/support/files.h"
#include "tests/support/wav_builder.h"

#include <csignal>

#include <gmock/gmock.h>
#include <unistd.h>

namespace dravik::test {
namespace {

using Json = nlohmann::ordered_json;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

class TrackCommands : public ::testing::Test {
  protected:
    TrackCommands() {
        Ixml ixml;
        ixml.tracks = {{1, 1, "Boom"}, {2, 2, "Lav"}, {3, 3, "Mix"}};
        WavBuilder().bext().ixml(ixml).fmt({.channels = 3}).audio(2000).write(folder_ / "poly.wav");
        for (const int number : {1, 2})
            recorderFile({}, {}, 1000, static_cast<unsigned>(number)).write(mono(number));
    }
    [[nodiscard]] std::filesystem::path mono(int number) const {
        return folder_ / ("set_T0" + std::to_string(number) + ".wav");
    }
    [[nodiscard]] std::string path(const char* name) const { return (folder_ / name).string(); }
    TempFolder folder_;
};

TEST_F(TrackCommands, WriteNewFilesAndSayWhich) {
    struct Case {
        std::vector<std::string> arguments;
        std::string out;
        std::vector<const char*> files;
    };
    const Case cases[] = {
        {{"reorder", "--order", "3,1,2", path("poly.wav")}, "poly: Created poly_order.wav\n", {"poly_order.wav"}},
        {{"reorder", "--order=2,1", "--preserve-track-numbers", path("set_T02.wav")},
         "set: Created set_order_01.wav, set_order_02.wav\n",
         {"set_order_01.wav", "set_order_02.wav"}},
        {{"delete-tracks", "--tracks", "1,3", path("poly.wav")}, "poly: Created poly_del.wav\n", {"poly_del.wav"}},
        {{"split", "--tracks", "1", "--stereo-1-2", path("poly.wav")},
         "poly: Created 2 split files: poly_split_T01_Boom.wav, poly_split_T01-T02.wav\n",
         {"poly_split_T01_Boom.wav", "poly_split_T01-T02.wav"}},
        {{"split", "--tracks", "none", "--stereo-1-2", path("poly.wav")},
         "poly: Created 1 split files: poly-1_split_T01-T02.wav\n",
         {"poly-1_split_T01-T02.wav"}},
        {{"merge", path("set_T01.wav")},
         "set: Created set_merge.wav. Audio data preserved: 6 KB.\n",
         {"set_merge.wav"}},
    };
    const auto before = stateOf(folder_.path());
    for (const Case& one : cases) {
        const Ran ran = run(one.arguments);
        EXPECT_EQ(ran.exitCode, 0) << ran.err;
        EXPECT_EQ(ran.out, one.out);
        for (const char* file : one.files)
            EXPECT_TRUE(std::filesystem::exists(folder_ / file)) << file;
    }
    const auto after = stateOf(folder_.path());
    for (const auto& [name, state] : before)
        EXPECT_EQ(after.at(name), state) << name;
}

TEST_F(TrackCommands, TellMachinesWhatCameOfEachTake) {
    std::filesystem::create_directory(folder_ / "out");
    const Ran ran = run({"split", "--json", "--dest", path("out"), folder_.path()});
    EXPECT_EQ(ran.exitCode, 0) << ran.err;
    const Json document = ran.json();
    EXPECT_TRUE(document["version"].is_string());
    ASSERT_EQ(document["results"].size(), 1U) << "the set is passed over";
    EXPECT_THAT(ran.err, HasSubstr("Passed over: set."));
    const Json& result = document["results"][0];
    EXPECT_EQ(result["source"], path("poly.wav"));
    EXPECT_EQ(result["outputs"], Json({path("out/poly_split_T01_Boom.wav"), path("out/poly_split_T02_Lav.wav"),
                                       path("out/poly_split_T03_Mix.wav")}));
    EXPECT_EQ(result["ok"], true);
    const Json merged = run({"merge", "--json", path("set_T02.wav")}).json();
    EXPECT_EQ(merged["results"][0]["source"], path("set"));
}

TEST_F(TrackCommands, WriteNothingInADryRunAndSayWhatTheyWould) {
    const auto before = stateOf(folder_.path());
    const Ran text = run({"delete-tracks", "--dry-run", "--tracks", "2", path("poly.wav")});
    EXPECT_EQ(text.exitCode, 0);
    EXPECT_THAT(text.out, HasSubstr("poly_del.wav  13 KB, 2 tracks: Boom, Mix\n"));
    EXPECT_THAT(text.out, HasSubstr("Dry run: 1 file would be made. No files were made."));
    const Json json = run({"merge", "--dry-run", "--json", folder_.path()}).json();
    EXPECT_EQ(json["results"][0]["message"], "Would create set_merge.wav");
    EXPECT_EQ(json["results"][0]["outputs"], Json({path("set_merge.wav")}));
    EXPECT_EQ(run({"reorder", "--dry-run", "--order", "2,1", path("poly.wav")}).exitCode, 3);
    EXPECT_EQ(stateOf(folder_.path()), before);

    const std::string longest = std::string(251, 'x') + ".wav";
    WavBuilder().fmt({.channels = 2}).audio(10).write(folder_ / longest);
    for (const bool dryRun : {true, false}) {
        std::vector<std::string> arguments = {"delete-tracks", "--tracks", "2", path(longest.c_str())};
        if (dryRun) arguments.emplace_back("--dry-run");
        const Ran ran = run(arguments);
        EXPECT_EQ(ran.exitCode, 3);
        EXPECT_THAT(ran.err, HasSubstr("the name is longer than the 255 bytes that a file name may have"));
    }
    WavBuilder().bext({.timeReference = 1}).fmt().audio(10).write(folder_ / "late_T01.wav");
    WavBuilder().bext({.timeReference = 2}).fmt().audio(10).write(folder_ / "late_T02.wav");
    EXPECT_THAT(run({"merge", "--dry-run", path("late_T01.wav")}).out, HasSubstr("do not share the same start"));
}

TEST_F(TrackCommands, RefuseWhatMakesNoSense) {
    const auto before = stateOf(folder_.path());
    struct Case {
        std::vector<std::string> arguments;
        int exitCode;
        const char* err;
    };
    const Case cases[] = {
        {{"reorder", path("poly.wav")}, 2, "--order"},
        {{"reorder", "--order", "1,0", path("poly.wav")}, 2, "\"0\" is not a track's number"},
        {{"reorder", "--order", "1,,2", path("poly.wav")}, 2, "\"\" is not a track's number"},
        {{"delete-tracks", "--tracks", "2-3", path("poly.wav")}, 2, "\"2-3\" is not a track's number"},
        {{"merge", "--exclude", path("poly.wav"), path("set_T01.wav")}, 2, "is not a file of these takes"},
        {{"split", path("none.wav"), path("poly.wav")}, 3, "No files were made."},
        {{"split", "--dest", path("none"), path("poly.wav")}, 3, "No files were made."},
        {{"split", path("set_T01.wav")}, 3, "set: Split requires a poly file with at least two channels."},
        {{"split", "--tracks", "4", path("poly.wav")}, 3, "poly.wav has no track 4: it has 3."},
        {{"reorder", "--order", "2,1", path("poly.wav")}, 3, "must include all 3 channels."},
        {{"delete-tracks", "--tracks", "1,2,3", path("poly.wav")}, 3, "At least one track must remain."},
        {{"merge", "--exclude", path("set_T01.wav"), path("set_T02.wav")}, 3, "at least two files."},
    };
    for (const Case& one : cases) {
        const Ran ran = run(one.arguments);
        EXPECT_EQ(ran.exitCode, one.exitCode) << ran.err;
        EXPECT_THAT(ran.err, HasSubstr(one.err));
    }
    EXPECT_EQ(stateOf(folder_.path()), before);
}

TEST_F(TrackCommands, MergeNoSetOfWhichAFileCannotBeReadUnlessItIsLeftOutOnPurpose) {
    recorderFile({}, {}, 1000, 3).write(mono(3));
    std::filesystem::resize_file(mono(3), 20);
    const Ran refused = run({"merge", path("set_T01.wav")});
    EXPECT_EQ(refused.exitCode, 3);
    EXPECT_THAT(refused.err, HasSubstr("set_T03.wav cannot be read: the take is not whole."));
    EXPECT_FALSE(std::filesystem::exists(folder_ / "set_merge.wav"));
    const Ran done = run({"merge", "--exclude", path("set_T03.wav"), path("set_T01.wav")});
    EXPECT_EQ(done.exitCode, 0) << done.err;
    EXPECT_TRUE(std::filesystem::exists(folder_ / "set_merge.wav"));
}

TEST_F(TrackCommands, NameTheTakesThatFailAndDoTheOthers) {
    WavBuilder().fmt({.channels = 2}).audio(10).write(folder_ / "two.wav");
    const Ran ran = run({"reorder", "--json", "--order", "2,1", folder_.path()});
    EXPECT_EQ(ran.exitCode, 1);
    EXPECT_THAT(ran.err, HasSubstr("poly: poly.wav reorder mapping must include all 3 channels."));
    const Json results = ran.json()["results"];
    ASSERT_EQ(results.size(), 3U);
    EXPECT_EQ(results[0]["ok"], false);
    EXPECT_EQ(results[0]["outputs"], Json::array());
    EXPECT_EQ(results[1]["ok"], true);
    EXPECT_EQ(results[2]["outputs"], Json({path("two_order.wav")}));
}

TEST_F(TrackCommands, LeaveWholeFilesOnlyWhenInterrupted) {
    WavBuilder().fmt({.channels = 8}).audio(8'000'000).write(folder_ / "large.wav");
    Program program({"split", "--json", path("large.wav")});
    for (int wait = 0; wait < 2000 && namesIn(folder_.path()).size() < 5; ++wait)
        ::usleep(1000);
    program.signal(SIGINT);
    const Ran ran = program.wait();
    if (ran.exitCode == 0) GTEST_SKIP() << "The disk was faster than the signal.";
    EXPECT_EQ(ran.exitCode, 130);
    EXPECT_THAT(ran.err, HasSubstr("nothing is half-written"));
    EXPECT_THAT(namesIn(folder_.path()), ElementsAre("large.wav", "poly.wav", "set_T01.wav", "set_T02.wav"));
    EXPECT_EQ(ran.json()["results"], Json::array());
}

}  // namespace
}  // namespace dravik::test
