// The manual page and the completions against the help, and what shells and man make of them.
#include "tests/cli/program.h"
#include "tests/support/files.h"
#include "tests/support/shell.h"

#include <sstream>

#include <gmock/gmock.h>

namespace dravik::test {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

/// First words of the lines below a heading of the help: "scan", "-h,--help".
std::vector<std::string> listed(const std::string& help, const std::string& heading) {
    std::vector<std::string> words;
    bool below = false;
    for (const std::string& line : linesOf(help)) {
        if (!line.starts_with("  ")) below = line == heading;
        if (!below || !line.starts_with("  ") || line[2] == ' ') continue;
        words.push_back(line.substr(2, line.find(' ', 2) - 2));
    }
    return words;
}

std::vector<std::string> optionsOf(const std::string& help) {
    std::vector<std::string> options;
    for (const std::string& names : listed(help, "Options:")) {
        std::istringstream stream(names);
        for (std::string name; std::getline(stream, name, ',');)
            options.push_back(name);
    }
    return options;
}

class Documents : public ::testing::Test {
  protected:
    void SetUp() override {
        for (const char* shell : {"bash", "zsh", "fish"})
            texts_[shell] = run({"completions", shell}).out;
        texts_["dravik-cli.1"] = run({"man-page"}).out;
        for (const auto& [name, text] : texts_)
            writeFile(scripts_ / name, text);
    }
    /// What a Tab in bash offers behind these words.
    [[nodiscard]] std::vector<std::string> bashOffers(const std::vector<std::string>& words) const {
        std::string line = "source " + quoted(scripts_ / "bash") + "; COMP_WORDS=(dravik-cli";
        for (const std::string& word : words)
            line += " '" + word + "'";
        line += "); COMP_CWORD=" + std::to_string(words.size()) + R"(; _dravik_cli; printf '%s\n' "${COMPREPLY[@]}")";
        writeFile(scripts_ / "asked", line);
        return linesOf(said("bash " + quoted(scripts_ / "asked")));
    }
    std::map<std::string, std::string> texts_;
    TempFolder scripts_;  ///< the same as files
};

TEST_F(Documents, NameEveryCommandAndEveryOptionOfTheHelp) {
    const std::vector<std::string> commands = listed(run({"--help"}).out, "Commands:");
    ASSERT_THAT(commands, IsSupersetOf({"scan", "export", "completions"}));
    EXPECT_EQ(bashOffers({""}), commands);
    for (const std::string& command : commands) {
        const std::vector<std::string> options = optionsOf(run({command, "--help"}).out);
        ASSERT_THAT(options, Contains("--help"));
        EXPECT_THAT(bashOffers({command, "-"}), IsSupersetOf(options)) << command;
        const auto section = [&](const std::string& all, const std::string& begin, const std::string& end) {
            const std::size_t at = all.find(begin);
            EXPECT_NE(at, std::string::npos) << begin;
            return at == std::string::npos ? std::string() : all.substr(at, all.find(end, at + begin.size()) - at);
        };
        std::string dashed = command;
        if (const std::size_t dash = dashed.find('-'); dash != std::string::npos) dashed.insert(dash, "\\");
        const std::string inPage = section(texts_["dravik-cli.1"], ".SS \"dravik\\-cli " + dashed + "\"", ".SS");
        const std::string inZsh = section(texts_["zsh"], "                " + command + ")\n", ";;");
        for (const std::string& option : options) {
            std::string escaped = option;
            for (std::size_t at = 0; (at = escaped.find('-', at)) != std::string::npos; at += 2)
                escaped.insert(at, "\\");
            EXPECT_THAT(inPage, HasSubstr("\\fB" + escaped + "\\fR")) << command;
            EXPECT_THAT(inZsh, HasSubstr(option)) << command;
            const std::string name = option.starts_with("--") ? " -l " + option.substr(2) : " -s " + option.substr(1);
            EXPECT_THAT(texts_["fish"], ::testing::ContainsRegex("from " + command + "'.*" + name + " ")) << command;
        }
    }
}

TEST_F(Documents, OfferTheValuesThatAnOptionTakes) {
    const struct {
        std::vector<std::string> words, offered;
    } cases[] = {
        {{"ex"}, {"export"}},
        {{"export", "--format", ""}, {"wav", "aac", "mp3"}},
        {{"export", "--depth", "=", "3"}, {"32f"}},
        {{"export", "--depth", "="}, {"16", "24", "32f"}},
        {{"set", "--framerate", "29"}, {"29.97", "29.97\\ DF"}},
        {{"report", "--columns", "scene,ta"}, {"scene,take", "scene,tape"}},
        {{"completions", ""}, {"bash", "zsh", "fish"}},
        {{"report", "--notes", "--p"}, {""}},  // a text of the user's own
        {{"scan", "--", "--j"}, {""}},         // a file that is called so
        {{"split", "export", "--st"}, {"--stereo-1-2"}},
    };
    for (const auto& one : cases)
        EXPECT_THAT(bashOffers(one.words), ::testing::UnorderedElementsAreArray(one.offered)) << one.words.back();
    if (!isInstalled("fish")) GTEST_SKIP() << "fish is not installed: scripts/deps.sh checks";
    const std::string source = "source " + quoted(scripts_ / "fish") + "; complete -C ";
    const std::string fish = "HOME=" + quoted(scripts_.path()) + " fish -c \"" + source;
    EXPECT_THAT(linesOf(said(fish + "'dravik-cli report --columns scene,ta'\"")),
                ::testing::ElementsAre(::testing::StartsWith("scene,take\t"), ::testing::StartsWith("scene,tape\t")));
}

TEST_F(Documents, AreReadWithoutComplaint) {
    int read = 0;
    const auto judge = [&](const std::string& program, const std::string& command) {
        if (!isInstalled(program)) return;
        ++read;
        EXPECT_THAT(said("{ " + command + "; } 2>&1"), IsEmpty()) << command;
    };
    for (const char* shell : {"bash", "zsh", "fish"})
        judge(shell, std::string(shell) + " -n " + quoted(scripts_ / shell));
    judge("groff", "groff -ww -man -Tutf8 -Kutf8 " + quoted(scripts_ / "dravik-cli.1") + " >/dev/null");
    judge("man", "LC_ALL=C.UTF-8 man --warnings -l " + quoted(scripts_ / "dravik-cli.1") + " >/dev/null");
    if (read < 5) GTEST_SKIP() << "Some of bash, zsh, fish, groff and man are not installed: scripts/deps.sh checks";
}

}  // namespace
}  // namespace dravik::test
