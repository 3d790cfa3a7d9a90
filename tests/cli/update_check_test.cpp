#include "cli/update_report.h"
#include "tests/cli/program.h"

#include <gmock/gmock.h>

namespace dravik {
namespace {

using testing::HasSubstr;
using testing::Not;

UpdateInfo release() { return {"1.5", 150, "2026-05-14", "15", "https://dravik.test/get", {"One \x1B[31mred", "Two"}}; }
const InstalledAppVersion installed{"1.4", 140};

TEST(UpdateReport, SaysWhatThereIsToDo) {
    EXPECT_EQ(updateText(UpToDate{release()}, installed), "Dravik is up to date.\nInstalled: 1.4 (build 140)\n");
    EXPECT_EQ(updateText(UpdateAvailable{release(), true}, installed),
              "Dravik 1.5 is available.\nInstalled: 1.4 (build 140)\nReleased:  2026-05-14\n"
              "Download:  https://dravik.test/get\n\n- One \xEF\xBF\xBD[31mred\n- Two\n");
    const std::string tooNew = updateText(UpdateAvailable{release(), false}, installed);
    EXPECT_THAT(tooNew, HasSubstr("Dravik 1.5 requires macOS 15 or later.\n"));
    EXPECT_THAT(tooNew, Not(HasSubstr("Download:"))) << "it would be of no use";
}

TEST(UpdateReport, ItsDocumentTellsNothingNewFromNoAnswer) {
    const Bundle bundle{"1.4", "140"};
    const auto json = [&](const std::optional<UpdateAvailability>& found, const std::optional<std::string>& message) {
        return nlohmann::json::parse(updateJson(found, bundle, message));
    };
    const nlohmann::json available = json(UpdateAvailable{release(), true}, std::nullopt);
    EXPECT_EQ(available["updateAvailable"], true);
    EXPECT_EQ(available["compatible"], true);
    EXPECT_EQ(available["installed"], (nlohmann::json{{"version", "1.4"}, {"build", 140}}));
    EXPECT_EQ(available["latest"]["releaseNotes"][1], "Two");
    const nlohmann::json nothing = json(UpToDate{release()}, std::nullopt);
    EXPECT_EQ(nothing["updateAvailable"], false);
    EXPECT_EQ(nothing["compatible"], nullptr);
    EXPECT_EQ(nothing["latest"]["build"], 150);
    const nlohmann::json failed = json(std::nullopt, "No route.");
    EXPECT_EQ(failed["ok"], false);
    EXPECT_EQ(failed["message"], "No route.");
    EXPECT_EQ(failed["updateAvailable"], nullptr);
}

TEST(UpdateCheckCommand, SaysThatABuildWithoutAServerHasNone) {
    if (!deployment().hasPlaceholders()) GTEST_SKIP() << "This build has an update server, which tests do not ask.";
    const test::Ran ran = test::run({"update-check"});
    EXPECT_EQ(ran.exitCode, 1);
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(ran.err, "This build of Dravik was made without an update server.\n");
    const nlohmann::json document = test::run({"update-check", "--json"}).json();
    EXPECT_EQ(document["ok"], false);
    EXPECT_EQ(document["message"], "This build of Dravik was made without an update server.");
}

}  // namespace
}  // namespace dravik
