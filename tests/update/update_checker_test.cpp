#include "update/update_checker.h"

#include "tests/support/fake_fetcher.h"
#include "update/update_check_error.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace dravik {
namespace {

using Case = UpdateCheckError::Case;
using std::chrono::hours;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::Pair;

class Kept final : public UpdateDefaults {
  public:
    std::optional<bool> automatic;
    std::optional<Time> last;
    [[nodiscard]] std::optional<bool> automaticCheck() const override { return automatic; }
    [[nodiscard]] std::optional<Time> lastSuccessfulCheck() const override { return last; }
    void setLastSuccessfulCheck(Time time) override { last = time; }
};

class UpdateCheckerTest : public testing::Test {
  protected:
    const UpdateDefaults::Time now{hours(500'000)};
    const std::shared_ptr<test::FakeFetcher> fetcher = std::make_shared<test::FakeFetcher>();
    const std::shared_ptr<Kept> kept = std::make_shared<Kept>();
    std::optional<OperatingSystemVersion> system = OperatingSystemVersion{14, 0, 0};
    Bundle bundle{"1.4", "140"};
    nlohmann::json document{{"version", "1.5"},
                            {"build", 150},
                            {"releaseDate", "2026-05-14"},
                            {"minimumMacOS", "14.0"},
                            {"downloadURL", "https://dravik.test/get"},
                            {"releaseNotes", {"One.", "Two."}}};

    [[nodiscard]] UpdateChecker checker() const {
        return UpdateChecker({"https://updates.dravik.test/version.json", "dravik.test", fetcher, bundle, kept,
                              [this] { return now; }, system});
    }
    UpdateAvailability check() {
        fetcher->answer.body = document.dump();
        return checker().check(CancellationToken());
    }
    /// Which case the check fails with; absent when it does not.
    std::optional<Case> failure(const std::string& body) {
        fetcher->answer.body = body;
        try {
            static_cast<void>(checker().check(CancellationToken()));
        } catch (const UpdateCheckError& error) {
            return error.reason();
        }
        return std::nullopt;
    }
    std::optional<Case> failureOf(const char* key, const nlohmann::json& value) {
        nlohmann::json changed = document;
        changed[key] = value;
        return failure(changed.dump());
    }
};

TEST_F(UpdateCheckerTest, AsksForAFreshDocumentWithinHalfAMinute) {
    static_cast<void>(check());
    ASSERT_EQ(fetcher->asked().size(), 1U);
    const HttpRequest asked = fetcher->asked().front();
    EXPECT_EQ(asked.url, "https://updates.dravik.test/version.json");
    EXPECT_THAT(asked.headers, ElementsAre(Pair("Cache-Control", "no-cache"), Pair("Pragma", "no-cache")));
    EXPECT_EQ(asked.timeOut, seconds(30));
    EXPECT_EQ(asked.mostBytes, 1024U * 1024U);
}

TEST_F(UpdateCheckerTest, LooksByItselfOnceADayUnlessSwitchedOff) {
    struct Row {
        std::optional<bool> automatic;
        std::optional<std::chrono::seconds> ago;
        bool looks;
    };
    const Row rows[] = {
        {std::nullopt, std::nullopt, true},     {true, std::nullopt, true},
        {false, std::nullopt, false},           {false, hours(48), false},
        {std::nullopt, hours(23), false},       {true, hours(24), true},
        {std::nullopt, seconds(86'399), false}, {true, seconds(86'400), true},
    };
    for (const Row& row : rows) {
        kept->automatic = row.automatic;
        kept->last = row.ago ? std::optional(now - *row.ago) : std::nullopt;
        EXPECT_EQ(checker().shouldCheckAutomatically(), row.looks) << row.ago.value_or(seconds(-1)).count() << " s ago";
    }
}

TEST_F(UpdateCheckerTest, OnlyASuccessfulStatusIsAnAnswer) {
    for (const int status : {100, 199, 300, 301, 304, 404, 500, 0}) {
        fetcher->answer.status = status;
        EXPECT_EQ(failure(document.dump()), Case::invalidResponse) << status;
    }
    for (const int status : {200, 204, 299}) {
        fetcher->answer.status = status;
        EXPECT_EQ(failure(document.dump()), std::nullopt) << status;
        EXPECT_EQ(failure(""), Case::invalidData) << status;
    }
}

TEST_F(UpdateCheckerTest, TheBuildAloneDecides) {
    struct Row {
        const char* installed;
        std::int64_t newest;
        bool available;
    };
    const Row rows[] = {{"140", 141, true},  {"140", 140, false},
                        {"140", 139, false}, {"-1", 0, true},
                        {"+7", 8, true},     {"9223372036854775806", 9'223'372'036'854'775'807, true},
                        {"140", -5, false}};
    document["version"] = "0.1 and older by its name";
    for (const Row& row : rows) {
        bundle.build = row.installed;
        document["build"] = row.newest;
        EXPECT_EQ(std::holds_alternative<UpdateAvailable>(check()), row.available) << row.installed << row.newest;
    }
    for (const char* build : {"", "1.4", "14a", " 14", "9223372036854775808"}) {
        bundle.build = build;
        EXPECT_EQ(failure(document.dump()), Case::invalidLocalBuild) << build;
    }
    bundle.build.reset();
    EXPECT_EQ(failure(document.dump()), Case::invalidLocalBuild);
    EXPECT_EQ(installedAppVersion({std::nullopt, "3"}).version, "Unknown");
}

TEST_F(UpdateCheckerTest, AMinimumForMacOSIsComparedThereAndValidatedEverywhere) {
    struct Row {
        const char* minimum;
        OperatingSystemVersion running;
        bool compatible;
    };
    const Row rows[] = {{"14", {14, 0, 0}, true},     {"14.0.0", {14, 0, 0}, true}, {"14", {13, 9, 9}, false},
                        {"14.2", {14, 1, 9}, false},  {"14.2", {14, 2, 0}, true},   {"14.2.1", {14, 2, 0}, false},
                        {"14.2.1", {15, 0, 0}, true}, {"+13.-1", {13, 0, 0}, true}, {"10.15", {10, 9, 0}, false}};
    for (const Row& row : rows) {
        document["minimumMacOS"] = row.minimum;
        system = row.running;
        EXPECT_EQ(std::get<UpdateAvailable>(check()).isCompatibleWithCurrentMac, row.compatible) << row.minimum;
        system.reset();
        EXPECT_TRUE(std::get<UpdateAvailable>(check()).isCompatibleWithCurrentMac) << "on another system";
    }
    for (const char* minimum :
         {"", "14.2.1.5", "14.x", "14.", ".14", "14..2", " 14", "macOS 14", "14,2", "0x0E", "99999999999999999999"}) {
        EXPECT_EQ(failureOf("minimumMacOS", minimum), Case::invalidMinimumMacOS) << minimum;
    }
}

TEST_F(UpdateCheckerTest, ReleasesComeFromTheProgramsOwnSiteAlone) {
    for (const char* url : {"https://dravik.test", "https://dravik.test/", "https://www.dravik.test/get?os=mac#top",
                            "HTTPS://WWW.Dravik.TEST/get", "https://dravik.test?x", "https://dravik.test/%20/@:8080",
                            "https://dravik.test#"}) {
        EXPECT_EQ(failureOf("downloadURL", url), std::nullopt) << url;
    }
    for (const std::string& url : std::vector<std::string>{"",
                                                           "https:",
                                                           "https://",
                                                           "https:///get",
                                                           "http://dravik.test/get",
                                                           "ftp://dravik.test/",
                                                           "dravik.test/get",
                                                           "//dravik.test/get",
                                                           "javascript:alert(1)",
                                                           "file:///etc/passwd",
                                                           "https:dravik.test",
                                                           "https:/dravik.test",
                                                           "https://evil.example/",
                                                           "https://dravik.test.evil.example/",
                                                           "https://evildravik.test/",
                                                           "https://get.dravik.test/",
                                                           "https://www.www.dravik.test/",
                                                           "https://www./",
                                                           "https://dravik.test./",
                                                           "https://dravik.test@evil.example/",
                                                           "https://dravik.test:x@evil.example/",
                                                           "https://evil@dravik.test/",
                                                           "https://dravik.test:443/",
                                                           "https://dravik.test:8443/",
                                                           "https://dravik.test:/",
                                                           "https://evil.example\\@dravik.test/",
                                                           "https://dravik.test\\.evil.example/",
                                                           "https://dravik.test/\\",
                                                           " https://dravik.test/",
                                                           "https://dravik.test/ x",
                                                           "https://dravik.test/\n",
                                                           "https://dravik.test/\x7F",
                                                           "https://dravik.test/\t",
                                                           std::string("https://dravik.test/\0", 21),
                                                           "https://dr\xC3\xA4vik.test/",
                                                           "https://dravik%2Etest/",
                                                           "https://dravik.test/%2",
                                                           "https://dravik.test/%zz",
                                                           "https://[dravik.test]/",
                                                           "https://dravik.test/<script>",
                                                           "https://dravik.test/" + std::string(4000, 'a')}) {
        EXPECT_EQ(failureOf("downloadURL", url), Case::invalidDownloadURL) << url;
    }
}

TEST_F(UpdateCheckerTest, ADocumentOfAnotherFormIsRefused) {
    const std::string good = document.dump();
    document["somethingElse"] = {{"nested", {1, 2}}};
    EXPECT_EQ(failure(document.dump()), std::nullopt) << "unknown keys are passed over";
    for (const char* key : {"version", "build", "releaseDate", "minimumMacOS", "downloadURL", "releaseNotes"}) {
        nlohmann::json without = document;
        without.erase(key);
        EXPECT_EQ(failure(without.dump()), Case::invalidData) << "without " << key;
        for (const nlohmann::json& value : {nlohmann::json(nullptr), nlohmann::json(true), nlohmann::json(1.5),
                                            nlohmann::json({{"a", 1}}), nlohmann::json::array({"a", 1})}) {
            EXPECT_EQ(failureOf(key, value), Case::invalidData) << key << " is " << value;
        }
    }
    EXPECT_EQ(failureOf("build", "150"), Case::invalidData);
    EXPECT_EQ(failureOf("releaseNotes", "One."), Case::invalidData);
    const auto withBuild = [&](const std::string& digits) {
        std::string changed = good;
        return changed.replace(changed.find("150"), 3, digits);
    };
    EXPECT_EQ(failure(withBuild("9223372036854775807")), std::nullopt);
    for (const char* digits : {"9223372036854775808", "18446744073709551616", "-9223372036854775809", "1e400", "150.0",
                               "0150", "+150", "NaN"})
        EXPECT_EQ(failure(withBuild(digits)), Case::invalidData) << digits;

    std::string notUtf8 = good;
    notUtf8.replace(notUtf8.find("One."), 4, "On\xE9.");
    std::string loneSurrogate = good;
    loneSurrogate.replace(loneSurrogate.find("One."), 4, "\\ud800");
    constexpr std::size_t deep = 500'000;
    std::string nested = good;
    nested.replace(nested.size() - 1, 1, ",\"x\":" + std::string(deep, '[') + std::string(deep, ']') + "}");
    for (const std::string& body :
         {std::string(), std::string("null"), std::string("[]"), std::string("\"text\""), std::string("{"), good + "x",
          good.substr(0, good.size() / 2), std::string("<html>Sign in</html>"), notUtf8, loneSurrogate,
          std::string(deep, '['), std::string(1000, '\0')}) {
        EXPECT_EQ(failure(body), Case::invalidData) << body.substr(0, 40);
    }
    EXPECT_EQ(failure(nested), std::nullopt) << "depth needs no stack";
}

TEST_F(UpdateCheckerTest, OnlyACheckWithAResultIsRemembered) {
    const UpdateDefaults::Time before = now - hours(30);
    kept->last = before;
    EXPECT_NE(failure("{}"), std::nullopt);
    EXPECT_NE(failureOf("minimumMacOS", "x"), std::nullopt);
    EXPECT_NE(failureOf("downloadURL", "x"), std::nullopt);
    fetcher->failure = "No route.";
    EXPECT_THROW(static_cast<void>(check()), TransportError);
    EXPECT_EQ(kept->last, before);

    fetcher->failure.reset();
    static_cast<void>(check());
    EXPECT_EQ(kept->last, now);
    kept->last.reset();
    document["build"] = 1;
    static_cast<void>(check());
    EXPECT_EQ(kept->last, now) << "nothing new is a result, too";
}

TEST(Deployment, PlaceholdersAreThoseOfTheReservedDomain) {
    for (const auto& [domain, are] : std::vector<std::pair<const char*, bool>>{{"dravik.test", true},
                                                                               {"DRAVIK.TEST", true},
                                                                               {"", true},
                                                                               {"dravik.example", false},
                                                                               {"test.example", false}}) {
        EXPECT_EQ((Deployment{"", domain, "", "", {}}.hasPlaceholders()), are) << domain;
    }
}

}  // namespace
}  // namespace dravik
