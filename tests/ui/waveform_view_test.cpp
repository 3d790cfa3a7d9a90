#include "ui/waveform_view.h"

#include "app/playback_preferences.h"
#include "platform/media/lazy_sample_decoder.h"
#include "tests/app/main_window_stage.h"
#include "tests/playback/offline_output.h"

#include <QApplication>
#include <QMenu>
#include <QTest>
#include <QWheelEvent>
#include <bit>
#include <cmath>
#include <set>

#include <gmock/gmock.h>

namespace dravik {
namespace {

using test::MainWindowStage;

constexpr int frames = 480'000;  ///< ten seconds

/// A take of two tracks: a swelling tone, and silence with one click in its middle.
class WaveformViewTest : public testing::Test, public MainWindowStage {
  protected:
    WaveformViewTest() {
        Bytes data;
        for (int frame = 0; frame < frames; ++frame) {
            const double swell = static_cast<double>(frame) / frames;
            const auto tone = static_cast<float>(swell * std::sin(frame * 0.05));
            appendLE(data, std::bit_cast<std::uint32_t>(tone));
            appendLE(data, std::bit_cast<std::uint32_t>(frame == frames / 2 ? 0.9F : 0.0F));
        }
        test::WavBuilder()
            .ixml(test::Ixml{.tracks = {{1, 1, "Boom"}, {2, 2, "Lav"}}})
            .fmt({.channels = 2, .bits = 32, .isFloat = true})
            .chunk("data", data)
            .cues({{1, 96'000, "Slate"}})
            .write(folder / "A.wav");
        view.resize(1120, 400);
        view.show();
        view.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
        open();
        EXPECT_TRUE(QTest::qWaitFor([this] { return player.pret() && waveform.isComplete(); }, 20'000));
    }
    [[nodiscard]] QPoint at(double frame, int y = 100) const {
        return {view.lanesArea().left() + static_cast<int>(std::lround(view.shown().xOf(frame))), y};
    }
    void drag(QPoint from, QPoint to) {
        QTest::mousePress(view.viewport(), Qt::LeftButton, {}, from);
        for (const QPoint place : {from + (to - from) / 2, to}) {
            QMouseEvent move(QEvent::MouseMove, place, view.viewport()->mapToGlobal(QPointF(place)), Qt::NoButton,
                             Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(view.viewport(), &move);
        }
        QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, to);
    }
    void wheel(int turned, QPoint place, Qt::KeyboardModifiers keys) {
        QWheelEvent event(place, view.viewport()->mapToGlobal(QPointF(place)), {}, {0, turned}, Qt::NoButton, keys,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.viewport(), &event);
    }

    PlaybackPreferences preferences{settings};
    std::unique_ptr<SampleDecoder> decoder = makeLazySampleDecoder();
    test::OfflineOutputs outputs;
    LecteurCoreAudio player{preferences, *decoder, [] { return std::nullopt; }, outputs.outputs()};
    TakePlayback playback{*content, player, settings};
    LooseBackground peaks;
    TakeWaveform waveform{*content, peaks, files, *decoder, settings, settingsFolder / "cache"};
    Theme theme{settings};
    WaveformView view{*content, playback, waveform, settings, theme};
};

TEST_F(WaveformViewTest, AClickGoesThereAndADragSelectsWhatIsHeardNext) {
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, at(120'000));
    EXPECT_NEAR(static_cast<double>(player.frameCourante()), 120'000, view.shown().framesPerPixel());
    drag(at(240'000), at(144'000));
    ASSERT_TRUE(player.selectionDebut() && player.selectionFin());
    EXPECT_NEAR(*player.selectionDebut(), 3.0, 0.02);
    EXPECT_NEAR(*player.selectionFin(), 5.0, 0.02);
    EXPECT_NEAR(static_cast<double>(player.frameDepart()), 144'000, 500);
    view.zoomToSelection();
    EXPECT_NEAR(view.shown().visibleFrames(), 96'000, 1000);
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_FALSE(player.selectionDebut());
}

TEST_F(WaveformViewTest, ZoomsToSingleSamplesAroundThePointerAndBackToTheWholeTake) {
    const QPoint click = at(frames / 2.0);
    for (int turn = 0; turn < 60; ++turn)
        wheel(120, click, Qt::ControlModifier);
    EXPECT_DOUBLE_EQ(view.shown().framesPerPixel(), 1.0 / 16);
    EXPECT_LT(std::abs(view.shown().xOf(frames / 2.0) - (click.x() - view.lanesArea().left())), 20);
    EXPECT_FALSE(view.grab().isNull());
    QTest::keyClick(&view, Qt::Key_0);
    EXPECT_TRUE(view.shown().isWhole());
}

TEST_F(WaveformViewTest, MarkersAreDraggedAsOneStepAndAddedWhereTheMenuWasOpened) {
    const QPoint flag = at(96'000, view.rulerArea().bottom() + 6) + QPoint(2, 0);
    drag(flag, flag + QPoint(100, 0));
    ASSERT_EQ(content->cueMarkers().size(), 1U);
    EXPECT_NEAR(static_cast<double>(content->cueMarkers().front().frame), 144'000, 2000);
    EXPECT_FALSE(player.selectionDebut());
    content->undo();
    EXPECT_EQ(content->cueMarkers().front().frame, 96'000);
    QContextMenuEvent asked(QContextMenuEvent::Mouse, at(240'000), view.viewport()->mapToGlobal(at(240'000)));
    QApplication::sendEvent(view.viewport(), &asked);
    auto* menu = view.findChild<QMenu*>();
    ASSERT_NE(menu, nullptr);
    for (QAction* action : menu->actions()) {
        if (action->text() == QLatin1String("Add Cue")) action->trigger();
    }
    ASSERT_EQ(content->cueMarkers().size(), 2U);
    EXPECT_NEAR(static_cast<double>(content->cueMarkers().back().frame), 240'000, 500);
    EXPECT_EQ(content->undoName(), "Add Cue");
}

TEST_F(WaveformViewTest, FollowsThePlayheadByPagesOrInTheMiddleUntilTheUserLooksElsewhere) {
    for (int turn = 0; turn < 10; ++turn)
        wheel(120, at(0), Qt::ControlModifier);
    const double before = view.shown().firstFrame();
    playback.togglePlay();
    outputs.run(240'000);
    ASSERT_TRUE(QTest::qWaitFor([this] { return player.frameCourante() >= 240'000; }, 20'000));
    EXPECT_GT(view.shown().firstFrame(), before);
    playback.togglePageOrScroll();
    outputs.run(60'000);
    ASSERT_TRUE(QTest::qWaitFor([this] { return player.frameCourante() >= 300'000; }, 20'000));
    // The position is published a moment after it is reached.
    const auto away = [this] {
        return std::abs(view.shown().xOf(static_cast<double>(player.frameCourante())) - view.shown().width() / 2.0);
    };
    EXPECT_TRUE(QTest::qWaitFor([&] { return away() < 1; }, 20'000)) << away();
    for (int turn = 0; turn < 200; ++turn)
        wheel(120, at(0), Qt::ShiftModifier);
    EXPECT_EQ(view.shown().firstFrame(), 0);
    outputs.run(60'000);
    ASSERT_TRUE(QTest::qWaitFor([this] { return player.frameCourante() >= 360'000; }, 20'000));
    EXPECT_EQ(view.shown().firstFrame(), 0);
}

TEST_F(WaveformViewTest, DrawsWhatTheTakeHoldsAndDimsWhatIsNotHeard) {
    const auto lit = [&](int canal, double frame) {
        const QImage image = view.grab().toImage();
        const QRect area = view.lanesArea();
        const int height = area.height() / 2;
        const int x = at(frame).x();
        int count = 0;
        for (int y = area.top() + canal * height + 16; y < area.top() + (canal + 1) * height - 4; ++y) {
            const QColor colour = image.pixelColor(x, y);
            if (colour.blue() - colour.red() > 40) ++count;
        }
        return count;
    };
    settings.set(settings::appearance, QStringLiteral("dark"));
    EXPECT_LT(lit(0, 20'000), 12);
    EXPECT_GT(lit(0, 460'000), 60);
    EXPECT_LT(lit(1, 120'000), 3);
    EXPECT_GT(lit(1, frames / 2.0), 30) << "one sample in half a million";
    player.toggleMute(0);
    EXPECT_EQ(lit(0, 460'000), 0);
    if (qEnvironmentVariableIsSet("DRAVIK_TEST_PICTURES")) {
        view.grab().save(qEnvironmentVariable("DRAVIK_TEST_PICTURES") + QStringLiteral("/waveform.png"));
    }
}

TEST_F(WaveformViewTest, NoiseFillsItsLanesFromFarAndNear) {
    test::recorderFile({}, {.channels = 4}, 48'000).write(folder / "Noise.wav");
    content->reload();
    settle();
    content->selectionnerLigne(content->rows().indexOfFile(folder / "Noise.wav"));
    ASSERT_TRUE(
        QTest::qWaitFor([this] { return player.nbCanaux() == 4 && player.pret() && waveform.isComplete(); }, 20'000));
    while (view.shown().framesPerPixel() > 0.1) {
        const QImage drawn = view.grab().toImage();
        const QPoint middle = view.lanesArea().center();
        std::set<QRgb> colours;
        for (int y = view.lanesArea().top(); y < view.lanesArea().bottom(); ++y)
            colours.insert(drawn.pixel(middle.x(), y));
        EXPECT_GT(colours.size(), 1U) << view.shown().framesPerPixel() << " frames a pixel";
        wheel(240, at(24'000), Qt::ControlModifier);
    }
}

}  // namespace
}  // namespace dravik
