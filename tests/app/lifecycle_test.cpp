#include "app/external_file_open_router.h"
#include "app/single_instance.h"
#include "app/single_main_window_coordinator.h"

#include <QSignalSpy>
#include <QTest>
#include <filesystem>
#include <thread>

#include <gmock/gmock.h>

namespace dravik {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Urls = ExternalFileOpenRouter::Urls;

class Window final : public MainWindowHandle {
  public:
    bool visible = true;
    int presented = 0;
    bool isVisible() const override { return visible; }
    void present() override {
        visible = true;
        ++presented;
    }
    std::string description() const override { return "window"; }
};

class Routing : public testing::Test {
  protected:
    ExternalFileOpenRouter::Handler into(std::vector<Urls>& deliveries) {
        return [&deliveries](const Urls& urls) { deliveries.push_back(urls); };
    }
    SingleMainWindowCoordinator windows;
    ExternalFileOpenRouter router{windows};
    std::vector<Urls> first, second;
    const Uuid one = Uuid::random(), two = Uuid::random();
};

TEST_F(Routing, KeepsFilesUntilAWindowTakesThemAllAtOnce) {
    router.route({"/day/a.wav", "/day/b.wav"});
    router.route({"/day/B.WAV", "/day/./a.wav"});
    router.route({"/day/c.wav", "/day/c.wav"});
    router.registerConsumer(one, into(first));
    EXPECT_THAT(first, ElementsAre(Urls{"/day/a.wav", "/day/b.wav", "/day/c.wav"}));
    EXPECT_THAT(router.pending(), IsEmpty());
    router.route({"/day/a.wav"});
    EXPECT_EQ(first.size(), 2U) << "delivered before, and asked for again";
}

TEST_F(Routing, AWindowThatClosesLateDoesNotUnregisterItsSuccessor) {
    router.registerConsumer(one, into(first));
    router.registerConsumer(two, into(second));
    router.clear(one);
    router.route({"/day/a.wav"});
    EXPECT_THAT(second, ElementsAre(Urls{"/day/a.wav"}));
    router.clear(two);
    router.route({"/day/b.wav"});
    EXPECT_THAT(router.pending(), ElementsAre("/day/b.wav"));
}

TEST_F(Routing, OpensOneWindowForFilesThatComeWithoutOne) {
    int opened = 0;
    Window window;
    router.route({"/day/a.wav"});  // before anything can open a window
    windows.setOpener([&] {
        ++opened;
        windows.setMainWindow(&window);
        router.registerConsumer(one, into(first));
    });
    EXPECT_EQ(opened, 1);
    EXPECT_THAT(first, ElementsAre(Urls{"/day/a.wav"}));
    windows.presentMainWindow();
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(window.presented, 1);
    window.visible = false;
    windows.presentMainWindow();
    EXPECT_EQ(opened, 1) << "a hidden window is shown, not doubled";
    EXPECT_TRUE(window.visible);
}

TEST(SingleInstanceTest, ASecondStartHandsItsFilesToTheFirst) {
    const QString name = QStringLiteral("dravik-test-%1").arg(QCoreApplication::applicationPid());
    SingleInstance running(name);
    std::vector<Urls> received;
    QObject::connect(&running, &SingleInstance::received, &running,
                     [&](const Urls& files) { received.push_back(files); });
    const auto start = [&](const Urls& files) {
        bool handedOver = false;
        std::atomic<bool> ended = false;
        std::thread other([&] {
            handedOver = SingleInstance(name).handOver(files);
            ended = true;
        });
        EXPECT_TRUE(QTest::qWaitFor([&] { return ended.load(); }, 5000));
        other.join();
        return handedOver;
    };
    EXPECT_FALSE(start({"/day/a.wav"})) << "nobody listens yet";
    ASSERT_TRUE(running.listen());
    EXPECT_TRUE(start({"/day/a.wav", "here.wav", "/day/caf\xC3\xA9.wav"}));
    EXPECT_TRUE(start({}));
    EXPECT_THAT(
        received,
        ElementsAre(Urls{"/day/a.wav", std::filesystem::current_path() / "here.wav", "/day/caf\xC3\xA9.wav"}, Urls{}));
}

}  // namespace
}  // namespace dravik
