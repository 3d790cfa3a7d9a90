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
        environment.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
        server_.setProcessEnvironment(environment);
        server_.setProcessChannelMode(QProcess::MergedChannels);
        server_.start(
            QStringLiteral("pulseaudio"),
            {"-n", "--daemonize=no", "--exit-idle-time=-1", "--disable-shm=yes", "--use-pid-file=no", "--realtime=no",
             "--high-priority=no", "-L", "module-null-sink sink_name=dravik format=float32le rate=48000 channels=2",
             "-L", QString::fromStdString("module-native-protocol-unix auth-anonymous=1 socket=" + socket())});
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

    /// Its socket is there a moment before it listens to it.
    [[nodiscard]] static bool answers() {
        QProcess question;
        question.start(QStringLiteral("pactl"), {QStringLiteral("stat")});
        return question.waitForFinished(5000) && question.exitStatus() == QProcess::NormalExit &&
               question.exitCode() == 0;
    }
    /// Writes what it plays into the file from now on.
    void listen(const std::filesystem::path& file) {
        listener_.setStandardOutputFile(QString::fromStdString(file.native()));
        listener_.start(QStringLiteral("parec"), {"-d", "dravik.monitor", "--format=float32le", "--rate=48000",
                                                  "--channels=2", "--raw", "--latency-msec=20"});
    }
    [[nodiscard]] std::string said() { return (server_.readAll() + listener_.readAllStandardError()).toStdString(); }

  private:
    [[nodiscard]] std::string socket() const { return (folder_ / "socket").native(); }

    TempFolder folder_;
    QProcess server_, listener_;
};

using Stereo = std::array<float, 2>;

std::vector<Stereo> framesOf(const std::filesystem::path& file) {
    const Bytes bytes = readFile(file);
    std::vector<Stereo> frames(bytes.size() / sizeof(Stereo));
    std::memcpy(frames.data(), bytes.data(), frames.size() * sizeof(Stereo));
    return frames;
}

/// Whether a piece of the mix is in what came out. A busy machine starves the server, or who listens to it, for
/// moments: a piece of our sound proves it, wherever it stands.
bool holdsAPieceOf(const std::vector<std::array<double, 2>>& mix, const std::vector<Stereo>& out) {
    constexpr std::size_t compared = 256;
    const auto isAt = [&](std::size_t heard, std::size_t played) {
        for (std::size_t i = 0; i < compared; ++i) {
            for (const std::size_t side : {0U, 1U}) {
                if (std::abs(double{out[heard + i][side]} - mix[played + i][side]) > 2e-5) return false;
            }
        }
        return true;
    };
    for (std::size_t heard = 0; heard + compared <= out.size(); heard += compared / 2) {
        if (out[heard][0] == 0) continue;
        for (std::size_t played = 0; played + compared <= mix.size(); ++played) {
            if (isAt(heard, played)) return true;
        }
    }
    return false;
}

TEST(SoundServer, ATakeIsHeardThroughItToItsEnd) {
    if (QStandardPaths::findExecutable(QStringLiteral("pulseaudio")).isEmpty()) GTEST_SKIP() << "no sound server here";
    const TempFolder folder;
    const std::filesystem::path written = folder / "out.raw";
    SoundServer server;
    if (!comes([] { return SoundServer::answers(); })) GTEST_SKIP() << "no sound server starts here: " << server.said();
    server.listen(written);
    if (!comes([&] { return std::filesystem::exists(written) && std::filesystem::file_size(written) > 0; }))
        GTEST_SKIP() << "nothing can be recorded from the sound server: " << server.said();

    qputenv("SDL_AUDIODRIVER", "pulseaudio");
    const auto channels = noise(4, 48000);
    FakeSettings settings;
    const std::unique_ptr<SampleDecoder> decoder = makeLazySampleDecoder();
    LecteurCoreAudio player(settings, *decoder, {}, sdlAudioOutputs());
    QSignalSpy failed(&player, &LecteurCoreAudio::loadFailed);
    player.load(takeOfFiles({writeFloats(folder / "take.wav", channels)}));
    ASSERT_TRUE(comes([&] { return player.pret() || failed.count() > 0; }));
    ASSERT_EQ(failed.count(), 0) << failed[0][0].value<std::string>();
    player.setFader(2, -9);
    const std::vector<std::array<double, 2>> mix = referenceMix(player.mixer(), channels);
    player.play();
    EXPECT_TRUE(comes([&] { return !player.enLecture(); })) << server.said();
    // The server plays what it was given, and the listener writes it, in their own time.
    EXPECT_TRUE(comes([&] { return holdsAPieceOf(mix, framesOf(written)); }))
        << framesOf(written).size() << " frames came out; " << server.said();
}

}  // namespace
}  // namespace dravik::test
