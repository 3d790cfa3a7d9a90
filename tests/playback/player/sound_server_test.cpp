#include "platform/sdl/sdl_audio_output.h"
#include "tests/playback/fake_take.h"
#include "tests/playback/player/player_stage.h"
#include "tests/playback/reference_mix.h"
#include "tests/support/files.h"

#include <QProcess>
#include <QStandardPaths>
#include <array>
#include <cmath>
#include <cstring>

#include <gtest/gtest.h>

namespace dravik::test {
namespace {

/// A sound server of its own, whose only output goes nowhere but to who listens to it.
class SoundServer {
  public:
    SoundServer() {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* home : {"HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME"})
            environment.insert(QString::fromLatin1(home), QString::fromStdString(folder_.path().native()));
        server_.setProcessEnvironment(environment);
        server_.setStandardErrorFile(QProcess::nullDevice());
        server_.start(QStringLiteral("pulseaudio"),
                      {"-n", "--daemonize=no", "--exit-idle-time=-1", "--disable-shm=yes", "--use-pid-file=no", "-L",
                       "module-null-sink sink_name=dravik format=float32le rate=48000 channels=2", "-L",
                       QString::fromStdString("module-native-protocol-unix auth-anonymous=1 socket=" + socket())});
        qputenv("PULSE_SERVER", QByteArray::fromStdString("unix:" + socket()));
    }
    ~SoundServer() {
        for (QProcess* process : {&listener_, &server_}) {
            process->kill();
            process->waitForFinished();
        }
        qunsetenv("PULSE_SERVER");
    }
    SoundServer(const SoundServer&) = delete;
    SoundServer& operator=(const SoundServer&) = delete;

    [[nodiscard]] bool isUp() const { return std::filesystem::exists(socket()); }
    /// Writes what it plays into the file from now on.
    void listen(const std::filesystem::path& file) {
        listener_.setStandardOutputFile(QString::fromStdString(file.native()));
        listener_.start(QStringLiteral("parec"), {"-d", "dravik.monitor", "--format=float32le", "--rate=48000",
                                                  "--channels=2", "--raw", "--latency-msec=20"});
    }

  private:
    [[nodiscard]] std::string socket() const { return (folder_ / "socket").native(); }

    TempFolder folder_;
    QProcess server_, listener_;
};

TEST(SoundServer, ATakeIsHeardThroughItToItsEnd) {
    if (QStandardPaths::findExecutable(QStringLiteral("pulseaudio")).isEmpty()) GTEST_SKIP() << "no sound server here";
    const TempFolder folder;
    const std::filesystem::path written = folder / "out.raw";
    SoundServer server;
    ASSERT_TRUE(comes([&] { return server.isUp(); }));
    server.listen(written);
    ASSERT_TRUE(comes([&] { return std::filesystem::exists(written) && std::filesystem::file_size(written) > 0; }));
    qputenv("SDL_AUDIODRIVER", "pulseaudio");
    const auto channels = noise(4, 48000);
    std::vector<std::array<double, 2>> wanted;
    {
        FakeSettings settings;
        const std::unique_ptr<SampleDecoder> decoder = makeLazySampleDecoder();
        LecteurCoreAudio player(settings, *decoder, {}, sdlAudioOutputs());
        QSignalSpy failed(&player, &LecteurCoreAudio::loadFailed);
        player.load(takeOfFiles({writeFloats(folder / "take.wav", channels)}));
        ASSERT_TRUE(comes([&] { return player.pret() || failed.count() > 0; }));
        ASSERT_EQ(failed.count(), 0) << failed[0][0].value<std::string>();
        player.setFader(2, -9);
        wanted = referenceMix(player.mixer(), channels);
        player.play();
        ASSERT_TRUE(comes([&] { return !player.enLecture(); }));
        QTest::qWait(500);  // the server plays what it was given
    }
    const Bytes bytes = readFile(written);
    std::vector<std::array<float, 2>> out(bytes.size() / sizeof(std::array<float, 2>));
    std::memcpy(out.data(), bytes.data(), out.size() * sizeof(out[0]));
    // A busy machine starves the server, or who listens to it, for moments: pieces of our sound prove it, wherever they
    // stand.
    const auto isAt = [&](std::size_t heard, std::size_t played) {
        constexpr std::size_t compared = 256;
        if (heard + compared > out.size() || played + compared > wanted.size()) return false;
        for (std::size_t i = 0; i < compared; ++i) {
            for (const std::size_t side : {0U, 1U}) {
                if (std::abs(double{out[heard + i][side]} - wanted[played + i][side]) > 2e-5) return false;
            }
        }
        return true;
    };
    bool found = false;
    for (std::size_t heard = 0; heard < out.size() && !found; heard += 128) {
        if (out[heard][0] == 0) continue;
        for (std::size_t played = 0; played < wanted.size() && !found; ++played)
            found = isAt(heard, played);
    }
    EXPECT_TRUE(found) << out.size() << " frames came out";
}

}  // namespace
}  // namespace dravik::test
