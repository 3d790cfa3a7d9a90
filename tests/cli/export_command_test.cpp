#include "tests/cli/program.h"
#include "tests/support/files.h"
#include "tests/support/wav_builder.h"

#include <gmock/gmock.h>

namespace dravik::test {
namespace {

using Json = nlohmann::ordered_json;
using ::testing::HasSubstr;

class ExportCommand : public ::testing::Test {
  protected:
    ExportCommand() {
        std::filesystem::create_directory(folder_ / "day");
        std::filesystem::create_directory(folder_ / "out");
        WavBuilder().bext().ixml().fmt({.channels = 3, .bits = 16}).chunk("data", Bytes(6000)).write(day("poly.wav"));
        WavBuilder().fmt({.bits = 16}).chunk("data", Bytes(2000)).write(day("mono.wav"));
        writeFile(day("notes.mp3"), "no audio");
    }
    [[nodiscard]] std::string day(const std::string& name) const { return (folder_ / "day" / name).string(); }
    [[nodiscard]] std::string out() const { return (folder_ / "out").string(); }
    TempFolder folder_;
};

TEST_F(ExportCommand, NamesTheNewFileAndNeverAnOldOne) {
    struct Case {
        std::vector<std::string> arguments;
        const char* line;
    };
    const Case cases[] = {
        {{"--format", "wav", day("poly.wav")}, "poly: Created poly_export.wav\n"},
        {{"--format", "wav", "--depth", "16", "--route", "mono:1+3@-6", day("poly.wav")},
         "poly: Created poly-1_export.wav\n"},
        {{"--format", "wav", "--rate", "96000", "--dest", out(), day("poly.wav")}, "poly: Created poly.wav\n"},
        {{"--format", "wav", "--depth", "32f", "--dest", out(), day("poly.wav")}, "poly: Created poly-1.wav\n"},
        {{"--format=mp3", "--dest", out(), day("poly.wav")}, "poly: Created poly.mp3\n"},
        {{"--format=mp3", "--name", "Mine.mp3", "--dest", out(), day("mono.wav")}, "mono: Created Mine.mp3\n"},
        {{"--format=aac", "--bitrate=128", "--route", "stereo:3,1", "--dest", out(), day("poly.wav")},
         "poly: Created poly.m4a. BWF/iXML, timecode, cue markers, and mixer automation aren’t carried into M4A.\n"},
    };
    const Bytes before = readFile(day("poly.wav"));
    for (const Case& one : cases) {
        std::vector<std::string> arguments = {"export"};
        arguments.insert(arguments.end(), one.arguments.begin(), one.arguments.end());
        const Ran ran = run(arguments);
        EXPECT_EQ(ran.exitCode, 0) << ran.err;
        EXPECT_EQ(ran.out, one.line);
        EXPECT_EQ(ran.err, "") << "no library speaks on standard error";
    }
    EXPECT_EQ(readFile(day("poly.wav")), before);
}

TEST_F(ExportCommand, RefusesOptionsThatDoNotGoTogether) {
    const std::vector<std::vector<std::string>> cases = {
        {"--format", "ogg"},
        {"--format", "mp3", "--depth", "16"},
        {"--format", "mp3", "--dither-seed", "1"},
        {"--format", "mp3", "--route", "poly"},
        {"--format", "aac", "--rate", "48000"},
        {"--format", "wav", "--bitrate", "128"},
        {"--format", "wav", "--depth", "20"},
        {"--format", "wav", "--rate", "0"},
        {"--format", "wav", "--route", "mono:0"},
        {"--format", "wav", "--route", "mono:1@-3"},
        {"--format", "wav", "--route", "mono:1+2@nan"},
        {"--format", "wav", "--route", "stereo:1"},
        {"--format", "wav", "--name", "a/b"},
        {},
    };
    for (const std::vector<std::string>& options : cases) {
        std::vector<std::string> arguments = {"export", day("poly.wav")};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const Ran ran = run(arguments);
        EXPECT_EQ(ran.exitCode, 2) << ::testing::PrintToString(options);
        EXPECT_NE(ran.err, "");
    }
    EXPECT_EQ(run({"export", "--format", "wav", "--name", "one", (folder_ / "day").string()}).exitCode, 2);
    EXPECT_EQ(namesIn(folder_ / "day"), (std::vector<std::string>{"mono.wav", "notes.mp3", "poly.wav"}));
}

TEST_F(ExportCommand, TellsInJsonWhatADryRunWouldDoAndWhatARunDid) {
    const std::string folder = (folder_ / "day").string();
    const Ran dry = run({"export", "--format", "wav", "--dry-run", "--json", "--dest", out(), folder});
    EXPECT_EQ(dry.exitCode, 0) << dry.err;
    EXPECT_TRUE(namesIn(out()).empty());
    const Ran done = run({"export", "--format", "wav", "--json", "--dest", out(), folder});
    EXPECT_EQ(done.exitCode, 0) << done.err;
    EXPECT_THAT(done.err, HasSubstr("Passed over: notes."));
    const Json planned = Json::parse(dry.out), made = Json::parse(done.out);
    ASSERT_EQ(made["results"].size(), 2U);
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(made["results"][i]["outputs"], planned["results"][i]["outputs"]);
        EXPECT_TRUE(made["results"][i]["ok"]);
        EXPECT_TRUE(std::filesystem::exists(made["results"][i]["outputs"][0].get<std::string>()));
    }
}

TEST_F(ExportCommand, RefusesInADryRunWhatARunWouldRefuse) {
    WavBuilder().chunk("iXML", "<MIXER_SETTINGS>").fmt({.bits = 16}).audio(100).write(day("mixer.wav"));
    WavBuilder().fmt({.channels = 2, .bits = 16}).chunk("data", "").write(day("empty.wav"));
    struct Case {
        std::vector<std::string> options;
        const char* take;
        const char* err;
    };
    const Case cases[] = {
        {{"--format", "wav", "--rate", "1000000000"}, "poly.wav", "poly: The output sample rate is invalid."},
        {{"--format", "wav"}, "mixer.wav", "mixer: The exported iXML still contains mixer automation metadata."},
        {{"--format", "mp3"}, "empty.wav", "empty: The completed MP3 file did not decode with the requested format."},
        {{"--format", "mp3", "--rate", "96000"}, "poly.wav", "poly: Invalid MP3 encoder configuration."},
    };
    for (const Case& one : cases) {
        for (const bool dryRun : {true, false}) {
            std::vector<std::string> arguments = {"export", "--dest", out(), day(one.take)};
            arguments.insert(arguments.end(), one.options.begin(), one.options.end());
            if (dryRun) arguments.emplace_back("--dry-run");
            const Ran ran = run(arguments);
            EXPECT_EQ(ran.exitCode, 3) << one.err;
            EXPECT_THAT(ran.err, HasSubstr(one.err));
            EXPECT_TRUE(namesIn(out()).empty()) << one.err;
        }
    }
}

TEST_F(ExportCommand, GoesOnAfterATakeThatFails) {
    const Ran ran = run({"export", "--format", "wav", "--route", "mono:2", "--json", "--dest", out(), day("mono.wav"),
                         day("poly.wav")});
    EXPECT_EQ(ran.exitCode, 1);
    EXPECT_THAT(ran.err, HasSubstr("mono: The requested track position is unavailable."));
    const Json results = Json::parse(ran.out)["results"];
    EXPECT_FALSE(results[0]["ok"]);
    EXPECT_TRUE(results[1]["ok"]);
    EXPECT_EQ(namesIn(out()), std::vector<std::string>{"poly.wav"});
}

}  // namespace
}  // namespace dravik::test
