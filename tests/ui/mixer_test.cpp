#include "app/playback_preferences.h"
#include "app/take_playback.h"
#include "platform/media/lazy_sample_decoder.h"
#include "tests/app/main_window_stage.h"
#include "tests/playback/offline_output.h"
#include "ui/meters_view.h"
#include "ui/mixer_view.h"
#include "ui/transport_bar.h"

#include <QApplication>
#include <QTest>
#include <QWheelEvent>

#include <gmock/gmock.h>

namespace dravik {
namespace {

using test::MainWindowStage;
using test::recorderFile;

/// A take of four tracks in the mixer, as loaded and with an output that plays when it is told to.
class MixerTest : public testing::Test, public MainWindowStage {
  protected:
    MixerTest() {
        recorderFile({.tracks = {{1, 1, "Boom"}, {2, 2, "Mid"}, {3, 3, "Side"}, {4, 4, "Lav"}}}, {.channels = 4}, 48000)
            .write(folder / "A.wav");
        open();
        EXPECT_TRUE(QTest::qWaitFor([this] { return player.pret(); }, 20'000));
        mixer.resize(500, 420);
        mixer.show();
        mixer.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&mixer));
    }
    template <typename Widget>
    [[nodiscard]] Widget& named(const QWidget& in, const QString& name) const {
        for (Widget* widget : in.findChildren<Widget*>()) {
            if (widget->accessibleName() == name) return *widget;
        }
        throw std::runtime_error("no widget is called " + name.toStdString());
    }
    void click(const QString& name, Qt::KeyboardModifiers keys = {}) {
        // The modifiers are asked of the application, as with a real mouse.
        auto& button = named<QToolButton>(mixer, name);
        const Qt::Key held = keys.testFlag(Qt::AltModifier) ? Qt::Key_Alt : Qt::Key_Shift;
        if (keys != Qt::NoModifier) QTest::keyPress(&button, held, keys);
        QTest::mouseClick(&button, Qt::LeftButton, keys);
        if (keys != Qt::NoModifier) QTest::keyRelease(&button, held, Qt::NoModifier);
    }

    PlaybackPreferences preferences{settings};
    std::unique_ptr<SampleDecoder> decoder = makeLazySampleDecoder();
    test::OfflineOutputs outputs;
    LecteurCoreAudio player{preferences, *decoder, [] { return std::nullopt; }, outputs.outputs()};
    TakePlayback playback{*content, player, settings};
    Theme theme{settings};
    MixerView mixer{*content, playback, settings, theme, MixerView::Scale::asSet};
};

TEST(Fader, ItsTravelLeadsToEachValueAndBack) {
    EXPECT_DOUBLE_EQ(Fader::placeOf(-96), 0);
    EXPECT_DOUBLE_EQ(Fader::placeOf(12), 1);
    for (double dB = -96; dB <= 12; dB += 0.5)
        EXPECT_NEAR(Fader::dBAt(Fader::placeOf(dB)), dB, 1e-9);
    EXPECT_EQ(Fader::textOf(-96), QStringLiteral("-\u221E"));
    EXPECT_EQ(Fader::textOf(-0.01), "0.0");
    EXPECT_EQ(Fader::textOf(6), "+6.0");
}

TEST_F(MixerTest, AFaderIsDraggedFinelyWithShiftTurnedAndPutBackByADoubleClick) {
    ASSERT_EQ(mixer.strips().size(), 4U);
    auto& fader = named<Fader>(mixer, QStringLiteral("Boom: Fader"));
    const QPoint handle(fader.width() / 2, fader.height() / 2);
    QTest::mousePress(&fader, Qt::LeftButton, {}, handle);
    QMouseEvent down(QEvent::MouseMove, handle + QPoint(0, 40), fader.mapToGlobal(handle + QPoint(0, 40)), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&fader, &down);
    const double coarse = player.faderDBParCanal()[0];
    EXPECT_LT(coarse, -3);
    QMouseEvent fine(QEvent::MouseMove, handle + QPoint(0, 30), fader.mapToGlobal(handle + QPoint(0, 30)), Qt::NoButton,
                     Qt::LeftButton, Qt::ShiftModifier);
    QApplication::sendEvent(&fader, &fine);
    EXPECT_GT(player.faderDBParCanal()[0], coarse);
    EXPECT_LT(player.faderDBParCanal()[0], coarse + 1.5);
    QTest::mouseRelease(&fader, Qt::LeftButton, {}, handle);
    QTest::mouseDClick(&fader, Qt::LeftButton, {}, handle);
    EXPECT_EQ(player.faderDBParCanal()[0], 0);
    QTest::keyClick(&fader, Qt::Key_Down);
    EXPECT_EQ(player.faderDBParCanal()[0], -1);
    QWheelEvent wheel({5, 5}, fader.mapToGlobal(QPointF(5, 5)), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&fader, &wheel);
    EXPECT_EQ(player.faderDBParCanal()[0], 0);
}

TEST_F(MixerTest, AValueIsTypedAndWhatIsNoneIsTakenBack) {
    auto& value = named<QLineEdit>(mixer, QStringLiteral("Lav: Fader value"));
    const struct {
        const char* typed;
        double dB;
    } cases[] = {{"-6,5 dB", -6.5}, {"40", 12}, {"nothing", 12}, {"-inf", -96}};
    for (const auto& [typed, dB] : cases) {
        value.setFocus();
        value.selectAll();
        QTest::keyClicks(&value, QString::fromLatin1(typed));
        QTest::keyClick(&value, Qt::Key_Return);
        EXPECT_EQ(player.faderDBParCanal()[3], dB) << typed;
        EXPECT_EQ(value.text(), Fader::textOf(dB)) << typed;
    }
}

TEST_F(MixerTest, PairsTakeThePanAndKeepTheirNeighboursFromPairing) {
    click(QStringLiteral("Mid: M/S"));
    ASSERT_EQ(player.mixer().activePairesMS().size(), 1U);
    EXPECT_EQ(player.mixer().activePairesMS().front().mid(), 1);
    auto& pan = named<PanControl>(mixer, QStringLiteral("Side: Pan"));
    EXPECT_FALSE(pan.isEnabled());
    EXPECT_EQ(pan.toolTip(), "Pan disabled during M/S monitoring");
    EXPECT_FALSE(named<QToolButton>(mixer, QStringLiteral("Boom: Link")).isEnabled());
    click(QStringLiteral("Mid: M/S"), Qt::AltModifier);
    ASSERT_EQ(player.mixer().activePairesMS().size(), 1U);
    EXPECT_EQ(player.mixer().activePairesMS().front().mid(), 2) << "the sides are switched";
    click(QStringLiteral("Mid: M/S"));
    EXPECT_TRUE(player.mixer().activePairesMS().empty());
    EXPECT_TRUE(pan.isEnabled());

    click(QStringLiteral("Boom: Link"));
    EXPECT_EQ(player.panParCanal()[0], -1.0F);
    EXPECT_EQ(player.panParCanal()[1], 1.0F);
    EXPECT_FALSE(named<QToolButton>(mixer, QStringLiteral("Mid: M/S")).isEnabled());
    for (int presses = 0; presses < 5; ++presses)
        QTest::keyClick(&named<Fader>(mixer, QStringLiteral("Mid: Fader")), Qt::Key_Down);
    EXPECT_EQ(player.faderDBParCanal()[0], -5);
    click(QStringLiteral("Boom: Link"));
    EXPECT_EQ(player.panParCanal()[0], 0.0F);
}

TEST_F(MixerTest, MetersAndSwitchesShowWhatThePlayerSays) {
    click(QStringLiteral("Boom: Solo"));
    click(QStringLiteral("Lav: Solo"));
    EXPECT_EQ(player.soloParCanal(), (std::vector<bool>{false, false, false, true})) << "the last one alone";
    EXPECT_FALSE(named<QToolButton>(mixer, QStringLiteral("Boom: Solo")).isChecked());
    click(QStringLiteral("Boom: Solo"), Qt::ShiftModifier);
    EXPECT_EQ(player.soloParCanal(), (std::vector<bool>{true, false, false, true})) << "added to it";
    click(QStringLiteral("Side: Mute"));
    EXPECT_TRUE(player.muteParCanal()[2]);
    TransportBar bar(playback, settings, theme, TransportBar::Form::bar);
    bar.show();
    auto& play = named<QToolButton>(bar, QStringLiteral("Play"));
    QTest::mouseClick(&play, Qt::LeftButton);
    EXPECT_TRUE(player.enLecture());
    EXPECT_EQ(play.accessibleName(), "Pause");
    outputs.run(9600);
    auto& counter = named<CounterView>(bar, QStringLiteral("Position"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return player.frameCourante() >= 9600; }, 20'000));
    EXPECT_EQ(counter.text(), "10:00:00:05");
    QTest::mouseClick(&counter, Qt::LeftButton);
    EXPECT_EQ(counter.text(), "00:00:00.20");
    EXPECT_GT(player.niveauxDB()[0], -60.0F);
    MetersView meters(*content, playback, settings, theme);
    EXPECT_EQ(meters.findChildren<LevelMeter*>().size(), 4);
    QTest::mouseClick(&play, Qt::LeftButton);
    EXPECT_FALSE(player.enLecture());
    if (qEnvironmentVariableIsSet("DRAVIK_TEST_PICTURES")) {
        mixer.grab().save(qEnvironmentVariable("DRAVIK_TEST_PICTURES") + QStringLiteral("/mixer.png"));
        bar.resize(900, bar.sizeHint().height());
        bar.grab().save(qEnvironmentVariable("DRAVIK_TEST_PICTURES") + QStringLiteral("/bar.png"));
    }
}

TEST_F(MixerTest, TheScaleIsDrawnWhateverFloorIsStored) {
    for (const int floor : {5, 0, -1, -100'000, -2'000'000'000}) {
        settings.set(settings::meterPlancher, floor);
        const float lowest = MeterScale(settings).plancher;
        EXPECT_TRUE(lowest >= -144 && lowest <= -1) << floor << ": no more marks than can be drawn";
        EXPECT_FALSE(mixer.grab().isNull());
    }
}

}  // namespace
}  // namespace dravik
