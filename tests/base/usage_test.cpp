#include "base/completions.h"
#include "base/man_page.h"
#include "tests/support/files.h"
#include "tests/support/shell.h"
#include "tests/support/temp_folder.h"

#include <gmock/gmock.h>

namespace dravik::test {
namespace {

using ::testing::HasSubstr;

/// A program whose texts hold what shells and roff would read as their own.
Usage awkward() {
    Usage usage{"odd-tool", "Doesn't harm $HOME.",
                "First `odd-tool -x` here.\n.so is no request\n\n  a'b  -- \\n ~^`\n  .PP"};
    usage.options = {{{"--it"}, {}, "It's [50%]: \"a\\b\" `c` $(exit 3) *"},
                     {{"-x", "--list"}, UsageValue{"A:B", ValueKind::text, {"one two", "it"}, false}, "'quoted'"}};
    usage.arguments = {{UsageValue{"PATH", ValueKind::path}, true, true}};
    return usage;
}

TEST(Completions, KeepTheirShellsFromReadingWhatIsInTheTexts) {
    const TempFolder folder;
    std::string missing;
    for (const auto& [name, shell] : {std::pair("bash", Shell::bash), {"zsh", Shell::zsh}, {"fish", Shell::fish}}) {
        if (!isInstalled(name)) {
            missing += std::string(" ") + name;
            continue;
        }
        const auto script = folder / name;
        writeFile(script, completions(awkward(), shell));
        const std::string known = shell == Shell::zsh ? "compdef() { :; }; " : "";
        const std::string command = "HOME=" + quoted(folder.path()) + " " + name + " -c '" + known + "source " +
                                    script.native() + " && echo went well' 2>&1";
        EXPECT_EQ(said(command), "went well\n") << name;
    }
    writeFile(folder / "ask",
              "source " + quoted(folder / "bash") +
                  "; COMP_WORDS=(odd-tool --list o); COMP_CWORD=2; _odd_tool; echo \"${COMPREPLY[@]}\"");
    EXPECT_EQ(said("bash " + quoted(folder / "ask")), "one\\ two\n");
    if (!missing.empty()) GTEST_SKIP() << "Not installed, scripts/deps.sh checks:" << missing;
}

TEST(ManPage, ShowsTextsAsTheyAreTyped) {
    if (!isInstalled("man")) GTEST_SKIP() << "man is not installed: scripts/deps.sh checks";
    const TempFolder folder;
    writeFile(folder / "odd-tool.1", manPage(awkward(), "1.0", {"other-tool"}));
    const std::string shown =
        said("LC_ALL=C.UTF-8 MANWIDTH=100 man --warnings -l " + quoted(folder / "odd-tool.1") + " 2>&1 | col -bx");
    for (const char* text : {"odd-tool - doesn't harm $HOME", "odd-tool [options] [PATH...]", "First odd-tool -x here.",
                             ".so is no request", "a'b  -- \\n ~^`", ".PP", "It's [50%]: \"a\\b\" c $(exit 3) *",
                             "-x, --list A:B", "other-tool(1)"}) {
        EXPECT_THAT(shown, HasSubstr(text));
    }
    EXPECT_THAT(shown, ::testing::Not(HasSubstr("warning")));
}

}  // namespace
}  // namespace dravik::test
