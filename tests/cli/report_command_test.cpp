#include "tests/cli/program.h"
#include "tests/support/files.h"
#include "tests/support/wav_builder.h"

#include <gmock/gmock.h>

namespace dravik::test {
namespace {

using Json = nlohmann::ordered_json;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class ReportCommand : public ::testing::Test {
  protected:
    ReportCommand() {
        std::filesystem::create_directory(folder_ / "Day 3");
        std::filesystem::create_directory(folder_ / "out");
        recorderFile().write(folder_ / "Day 3" / "b.wav");
        WavBuilder().fmt({.channels = 2}).audio(48000).write(folder_ / "Day 3" / "a.wav");
    }
    [[nodiscard]] Ran report(std::vector<std::string> options, const std::string& locale = "C") const {
        std::vector<std::string> arguments = {"report", day(), "--dest", out()};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return run(arguments, {.environment = {{"LC_ALL", locale}, {"DISPLAY", ":no such display"}}});
    }
    [[nodiscard]] std::string day() const { return (folder_ / "Day 3").string(); }
    [[nodiscard]] std::string out() const { return (folder_ / "out").string(); }
    [[nodiscard]] std::string written(const std::string& name) const {
        return std::string(asText(readFile(folder_ / "out" / name)));
    }
    TempFolder folder_;
};

TEST_F(ReportCommand, WritesBothFilesUnderTheFoldersNameAndNeverOverOthers) {
    for (const std::string number : {"", "-1", "-2"}) {
        const Ran ran = report({});
        EXPECT_EQ(ran.exitCode, 0) << ran.err;
        EXPECT_EQ(ran.err, "") << "no library speaks on standard error";
        const std::string base = out() + "/Day 3" + number + "_SoundReport";
        EXPECT_EQ(ran.out, base + ".pdf: PDF report created\n" + base + ".csv: CSV report created\n");
        EXPECT_THAT(written("Day 3" + number + "_SoundReport.pdf"), StartsWith("%PDF-"));
    }
    EXPECT_EQ(namesIn(folder_ / "out").size(), 6U);
    EXPECT_EQ(namesIn(folder_ / "Day 3").size(), 2U);
}

TEST_F(ReportCommand, PutsTheOptionsIntoTheCsvAndTakesTheRestFromTheFiles) {
    const Ran ran =
        report({"--csv", "--work-title", "The \"Tide\"", "--director=M. O.", "--sound-mixer", "A. Weir", "--reference",
                "-20 dBFS", "--notes", "None, really", "--columns", "duration,channel,scene"});
    ASSERT_EQ(ran.exitCode, 0) << ran.err;
    const std::string csv = written("Day 3_SoundReport.csv");
    EXPECT_THAT(csv, HasSubstr("\"Production\",\"Film\"\n\"Work Title\",\"The \"\"Tide\"\"\"\n\"Director\",\"M. O.\"\n"
                               "\"Sound Mixer\",\"A. Weir\"\n\n\"Reference\",\"-20 dBFS\"\n\"Frame Rate\",\"25\"\n"
                               "\"Sample Rate / Bit Depth\",\"48 kHz / 24 bit\"\n\"File Type\",\"B-WAV\"\n"
                               "\"Report Notes\",\"None, really\"\n\n\"File Name\",\"Scene\",\"Channel\",\"Duration\"\n"
                               "\"a.wav\",\"\",\"2\",\"00:00:01:00\"\n\"b.wav\",\"12A\",\"1\",\"00:00:00:01\"\n"));
    EXPECT_EQ(namesIn(folder_ / "out"), std::vector<std::string>{"Day 3_SoundReport.csv"});
}

TEST_F(ReportCommand, ChoosesThePaperByTheLocale) {
    ASSERT_EQ(report({"--pdf"}, "en_US.UTF-8").exitCode, 0);
    EXPECT_THAT(written("Day 3_SoundReport.pdf"), HasSubstr("/MediaBox [0 0 792"));
    ASSERT_EQ(report({"--pdf", "--columns", "take"}, "de_DE.UTF-8").exitCode, 0);
    EXPECT_THAT(written("Day 3-1_SoundReport.pdf"), HasSubstr("/MediaBox [0 0 595"));
}

TEST_F(ReportCommand, TellsInJsonWhatADryRunWouldDoAndWhatARunDid) {
    const Ran dry = report({"--json", "--dry-run"});
    EXPECT_EQ(dry.exitCode, 0) << dry.err;
    EXPECT_TRUE(namesIn(folder_ / "out").empty());
    const Json planned = dry.json()["results"], made = report({"--json"}).json()["results"];
    ASSERT_EQ(made.size(), 2U);
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(made[i]["source"], day());
        EXPECT_EQ(made[i]["outputs"], planned[i]["outputs"]);
        EXPECT_TRUE(made[i]["ok"]);
    }
    EXPECT_EQ(made[0]["message"], "PDF report created");
    EXPECT_EQ(made[1]["message"], "CSV report created");
}

TEST_F(ReportCommand, MakesNothingWithoutAFont) {
    writeFile(folder_ / "fonts.conf",
              "<fontconfig><cachedir>" + (folder_ / "cache").string() + "</cachedir></fontconfig>");
    const Ran ran = run({"report", day(), "--dest", out(), "--json"},
                        {.environment = {{"FONTCONFIG_FILE", (folder_ / "fonts.conf").string()}}});
    EXPECT_EQ(ran.exitCode, 1);
    EXPECT_THAT(ran.err,
                HasSubstr("Sound Report Failed. The PDF cannot be made: no font is installed. No files were made."));
    EXPECT_FALSE(ran.json()["results"][0]["ok"]);
    EXPECT_TRUE(namesIn(folder_ / "out").empty());
}

TEST_F(ReportCommand, RefusesWhatCannotBeDoneAndNamesWhatCannotBeRead) {
    EXPECT_EQ(report({"--columns", "scene,colour"}).exitCode, 2);
    EXPECT_EQ(run({"report", day()}).exitCode, 2);
    const Ran noFiles = run({"report", out(), "--dest", out()});
    EXPECT_EQ(noFiles.exitCode, 3);
    EXPECT_THAT(noFiles.err, HasSubstr("No Files Available for Sound Report"));
    EXPECT_EQ(run({"report", day(), "--dest", out() + "/none"}).exitCode, 3);
    writeFile(folder_ / "Day 3" / "c.wav", "no audio");
    const Ran unreadable = report({"--csv"});
    EXPECT_EQ(unreadable.exitCode, 1);
    EXPECT_THAT(unreadable.err, HasSubstr("c.wav: cannot be read as audio"));
    EXPECT_THAT(written("Day 3_SoundReport.csv"), HasSubstr("\n\"c.wav\",\"\""));
}

}  // namespace
}  // namespace dravik::test
