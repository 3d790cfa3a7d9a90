#include "app/update_flow.h"

#include "tests/app/main_window_stage.h"
#include "tests/support/fake_fetcher.h"

#include <QDateTime>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace dravik {
namespace {

using test::FakeFetcher;
using test::ScriptedDialogs;
using testing::ElementsAre;
using testing::IsEmpty;

class OpenedUrls final : public Workspace {
  public:
    QStringList opened;
    QString failure;
    QString open(const QString& url) override {
        opened << url;
        return failure;
    }
    QString reveal(const std::filesystem::path&) override { return {}; }
    QString moveToTrash(const std::filesystem::path&) override { return {}; }
    QString eject(const Volume&) override { return {}; }
    std::vector<Volume> volumes() override { return {}; }
};

class UpdateFlowTest : public testing::Test {
  protected:
    UpdateFlowTest() { publish(150); }

    void publish(int build) {
        fetcher->answer.body = nlohmann::json{
            {"version", "1.5"},
            {"build", build},
            {"releaseDate", "2026-05-14"},
            {"minimumMacOS", "15"},
            {"downloadURL", "https://dravik.example/get"},
            {"releaseNotes",
             {"One.", "Two."}}}.dump();
    }
    [[nodiscard]] std::unique_ptr<UpdateFlow> makeFlow() {
        auto made = std::make_unique<UpdateFlow>(
            UpdateFlow::Services{settings, dialogs, workspace, fetcher, ours, system, [this] { return now; },
                                 "## 1.4\n- Waveforms\n  are drawn.\n\n## 1.3\n- Old.\n"});
        QObject::connect(made.get(), &UpdateFlow::presented, made.get(),
                         [this](const UpdatePresentation& presentation) { presented.push_back(presentation); });
        return made;
    }
    void settle(const UpdateFlow& flow) {
        QTRY_VERIFY2_WITH_TIMEOUT(!flow.isChecking(), "the check did not end", 20'000);
    }
    [[nodiscard]] QString lastCheck() const {
        return settings.stored(QStringLiteral("lastSuccessfulUpdateCheckDate")).toString();
    }

    test::TempFolder folder;
    UserDefaults settings{folder / "settings.ini"};
    ScriptedDialogs dialogs;
    OpenedUrls workspace;
    const std::shared_ptr<FakeFetcher> fetcher = std::make_shared<FakeFetcher>();
    Deployment ours{"https://updates.dravik.example/version.json", "dravik.example", "help@dravik.example",
                    "https://www.dravik.example/", Bundle{"1.4", "140"}};
    RunningSystem system{std::nullopt, QStringLiteral("Plan 9")};
    const UpdateDefaults::Time now = UpdateDefaults::Time(std::chrono::seconds(
        QDateTime::fromString(QStringLiteral("2026-05-20T12:00:00Z"), Qt::ISODate).toSecsSinceEpoch()));
    std::vector<UpdatePresentation> presented;
};

TEST_F(UpdateFlowTest, LooksAtTheStartOnceADayAndSpeaksOfUpdatesAlone) {
    struct Row {
        const char* last;
        const char* automatic;
        int build;
        std::size_t asked, presented;
    };
    const Row rows[] = {{"", "", 150, 1, 1},
                        {"", "true", 140, 1, 0},
                        {"", "false", 150, 0, 0},
                        {"2026-05-19T13:00:00Z", "", 150, 0, 0},
                        {"2026-05-19T12:00:00Z", "", 150, 1, 1},
                        {"2026-05-19T12:00:01.000Z", "", 150, 0, 0},
                        {"last week", "", 150, 1, 1},
                        {"9999-01-01T00:00:00Z", "", 150, 1, 1},
                        {"", "", 0, 1, 0}};
    for (const Row& row : rows) {
        settings.store(QStringLiteral("lastSuccessfulUpdateCheckDate"),
                       *row.last != 0 ? QVariant(QString::fromLatin1(row.last)) : QVariant());
        settings.store(QStringLiteral("verifierMisesAJourAutomatiquement"),
                       *row.automatic != 0 ? QVariant(QString::fromLatin1(row.automatic)) : QVariant());
        publish(row.build);
        presented.clear();
        const std::size_t before = fetcher->asked().size();
        const auto flow = makeFlow();
        flow->start();
        settle(*flow);
        EXPECT_EQ(fetcher->asked().size() - before, row.asked) << row.last << row.automatic;
        EXPECT_EQ(presented.size(), row.presented) << row.last << row.automatic;
        if (row.asked > 0) {
            EXPECT_EQ(lastCheck(), QStringLiteral("2026-05-20T12:00:00.000Z"));
        }
        flow->start();
        settle(*flow);
        EXPECT_EQ(fetcher->asked().size() - before, row.asked) << "not twice a day";
    }
    EXPECT_THAT(dialogs.asked, IsEmpty());
}

TEST_F(UpdateFlowTest, AFailureAtTheStartIsSilentAndTriedAgainTheNextTime) {
    const auto flow = makeFlow();
    for (const char* body : {"", "{}", "<html>"}) {
        fetcher->answer.body = body;
        flow->start();
        settle(*flow);
    }
    fetcher->failure = "No route.";
    flow->start();
    settle(*flow);
    EXPECT_EQ(fetcher->asked().size(), 4U);
    EXPECT_EQ(lastCheck(), QString());
    EXPECT_THAT(dialogs.asked, IsEmpty());
    EXPECT_THAT(presented, IsEmpty());
}

TEST_F(UpdateFlowTest, ABuildWithoutAServerAsksNobodyAndSaysSo) {
    ours.webDomain = "dravik.test";
    const auto flow = makeFlow();
    flow->start();
    settle(*flow);
    EXPECT_THAT(fetcher->asked(), IsEmpty());
    flow->checkForUpdates();
    settle(*flow);
    EXPECT_THAT(fetcher->asked(), IsEmpty());
    ASSERT_EQ(dialogs.asked.size(), 1U);
    EXPECT_EQ(dialogs.asked.front().text, QStringLiteral("This build of Dravik was made without an update server."));
}

TEST_F(UpdateFlowTest, WhoeverAsksIsToldWhateverComesOfIt) {
    settings.store(QStringLiteral("lastSuccessfulUpdateCheckDate"), QStringLiteral("2026-05-20T11:59:59Z"));
    settings.set(settings::verifierMisesAJourAutomatiquement, false);
    const auto flow = makeFlow();
    std::vector<bool> waiting;
    QObject::connect(flow.get(), &UpdateFlow::waitingChanged, flow.get(), [&](bool one) { waiting.push_back(one); });
    flow->checkForUpdates();
    settle(*flow);
    EXPECT_EQ(presented.size(), 1U);
    EXPECT_THAT(dialogs.asked, IsEmpty());
    EXPECT_THAT(waiting, ElementsAre(true, false));

    publish(140);
    flow->checkForUpdates();
    settle(*flow);
    ASSERT_EQ(dialogs.asked.size(), 1U);
    EXPECT_EQ(dialogs.asked[0].title, QStringLiteral("Dravik is up to date"));
    EXPECT_EQ(dialogs.asked[0].text, QStringLiteral("You're running the latest version of Dravik"));

    fetcher->answer.status = 500;
    flow->checkForUpdates();
    settle(*flow);
    ASSERT_EQ(dialogs.asked.size(), 2U);
    EXPECT_EQ(dialogs.asked[1].title, QStringLiteral("Unable to Check for Updates"));
    EXPECT_EQ(dialogs.asked[1].text,
              QStringLiteral("Dravik couldn't connect to the update server. Please check your internet connection and "
                             "try again."));
    EXPECT_EQ(presented.size(), 1U);
}

TEST_F(UpdateFlowTest, OneCheckAnswersToAllWhoAskWhileItRuns) {
    publish(140);
    fetcher->holds = true;
    const auto flow = makeFlow();
    flow->start();
    flow->checkForUpdates();
    flow->checkForUpdates();
    EXPECT_TRUE(flow->isChecking());
    EXPECT_THAT(dialogs.asked, IsEmpty());
    fetcher->holds = false;
    settle(*flow);
    EXPECT_EQ(fetcher->asked().size(), 1U);
    EXPECT_EQ(dialogs.asked.size(), 1U) << "the one at the start is not silent any more";
    flow->start();
    settle(*flow);
    EXPECT_EQ(dialogs.asked.size(), 1U);
}

TEST_F(UpdateFlowTest, TheEndOfTheProgramDoesNotWaitForTheServer) {
    fetcher->holds = true;
    auto flow = makeFlow();
    flow->checkForUpdates();
    QTRY_VERIFY(!fetcher->asked().empty());
    flow.reset();
    EXPECT_THAT(dialogs.asked, IsEmpty());
    EXPECT_EQ(lastCheck(), QString());
}

TEST_F(UpdateFlowTest, AddressesAreOpenedAndFailuresTold) {
    const auto flow = makeFlow();
    flow->download(QStringLiteral("https://dravik.example/get"));
    flow->contactSupport();
    flow->openWebSite();
    EXPECT_THAT(workspace.opened,
                ElementsAre(QStringLiteral("https://dravik.example/get"), QStringLiteral("mailto:help@dravik.example"),
                            QStringLiteral("https://www.dravik.example/")));
    EXPECT_THAT(dialogs.asked, IsEmpty());
    workspace.failure = QStringLiteral("No program for it.");
    flow->download(QStringLiteral("https://dravik.example/get"));
    flow->contactSupport();
    flow->openWebSite();
    ASSERT_EQ(dialogs.asked.size(), 3U);
    for (const Alert& alert : dialogs.asked)
        EXPECT_EQ(alert.text, QStringLiteral("No program for it."));
}

TEST_F(UpdateFlowTest, WhatsNewIsTheNewestSectionOfTheChangeLog) {
    makeFlow()->showWhatsNew();
    ASSERT_EQ(presented.size(), 1U);
    EXPECT_EQ(presented[0].title, QStringLiteral("What's New in Dravik 1.4"));
    EXPECT_THAT(presented[0].information,
                ElementsAre(QStringLiteral("You are currently using version 1.4 (Build 140)")));
    EXPECT_THAT(presented[0].notes, ElementsAre(QStringLiteral("Waveforms are drawn.")));
    EXPECT_FALSE(presented[0].downloadURL);
    EXPECT_EQ(presented[0].closeButton, QStringLiteral("OK"));
    ours.bundle = {};
    makeFlow()->showWhatsNew();
    EXPECT_EQ(presented[1].title, QStringLiteral("What's New in Dravik Unknown"));
    EXPECT_THAT(presented[1].information, IsEmpty());
}

// --- What the sheet says -------------------------------------------------------------------------------------------

const InstalledAppVersion installed{"1.4", 140};
const RunningSystem plan9{std::nullopt, QStringLiteral("Plan 9")};

UpdateInfo release() { return {"1.5", 150, "2026-05-04", "15.1", "https://dravik.example/get", {"One.", "Two."}}; }

TEST(UpdatePresentation, OffersADownloadOfWhatRunsHere) {
    const UpdatePresentation available = presentationOf({release(), true}, installed, plan9);
    EXPECT_EQ(available.title, QStringLiteral("Dravik 1.5 is available"));
    EXPECT_THAT(available.information, ElementsAre(QStringLiteral("You are currently using version 1.4 (Build 140)"),
                                                   QStringLiteral("This computer is currently running Plan 9"),
                                                   QStringLiteral("Released May 4, 2026")));
    EXPECT_THAT(available.notes, ElementsAre(QStringLiteral("One."), QStringLiteral("Two.")));
    EXPECT_EQ(available.downloadURL, QStringLiteral("https://dravik.example/get"));
    EXPECT_EQ(available.downloadButton, QStringLiteral("Download Update"));
    EXPECT_EQ(available.closeButton, QStringLiteral("Later"));

    const RunningSystem mac{OperatingSystemVersion{14, 2, 0}, QStringLiteral("unused")};
    UpdateInfo info = release();
    const UpdatePresentation refused = presentationOf({info, false}, installed, mac);
    EXPECT_EQ(refused.title, QStringLiteral("Dravik 1.5 requires macOS 15.1 or later."));
    EXPECT_EQ(refused.information[1], QStringLiteral("This Mac is currently running macOS 14.2.0"));
    EXPECT_FALSE(refused.downloadURL);
    EXPECT_EQ(refused.closeButton, QStringLiteral("OK"));
    info.minimumMacOS.clear();
    EXPECT_EQ(presentationOf({info, false}, installed, mac).title,
              QStringLiteral("Dravik 1.5 requires macOS the required macOS version or later."));
}

TEST(UpdatePresentation, ADateThatIsNoneIsShownAsItCame) {
    for (const char* date : {"2026-02-30", "soon", "14.05.2026", ""}) {
        UpdateInfo info = release();
        info.releaseDate = date;
        EXPECT_EQ(presentationOf({info, true}, installed, plan9).information[2],
                  QStringLiteral("Released ") + QString::fromLatin1(date));
    }
}

TEST(UpdatePresentation, TextsOfTheDocumentCannotPlayWithTheSheet) {
    UpdateInfo info = release();
    info.version =
        "1.5\n\x1B[0m %1 \xE2\x80\xAE"
        "evil" +
        std::string(500, 'x');
    info.releaseNotes = {"<b>bold</b>\t&amp;\r\n second\xE2\x80\xA8line\x7F", "", " \n ", std::string(100'000, 'n'),
                         "\xF0\x9F\x8E\xA7 audio"};
    const UpdatePresentation shown = presentationOf({info, true}, installed, plan9);
    EXPECT_TRUE(shown.title.startsWith(QStringLiteral("Dravik 1.5 [0m %1 evilxxx"))) << shown.title.toStdString();
    EXPECT_LT(shown.title.size(), 70);
    ASSERT_EQ(shown.notes.size(), 3);
    EXPECT_EQ(shown.notes[0], QStringLiteral("<b>bold</b> &amp; second line"));
    EXPECT_LT(shown.notes[1].size(), 2100);
    EXPECT_EQ(shown.notes[2].toStdString(), "\xF0\x9F\x8E\xA7 audio");
    info.releaseNotes.assign(10'000, "note");
    EXPECT_LT(presentationOf({info, true}, installed, plan9).notes.size(), 200);
}

}  // namespace
}  // namespace dravik
