#pragma once

#include "app/take_playback.h"
#include "app/take_waveform.h"
#include "app/waveform_viewport.h"
#include "ui/spoken_control.h"
#include "ui/theme.h"
#include "ui/waveform_picture.h"

#include <QAbstractScrollArea>
#include <QImage>
#include <optional>
#include <vector>

namespace dravik {

/// The selected take, one lane a track under a ruler, with cue markers, selection and playhead, and the whole take in a
/// strip below. Shows what the player, the markers and the waveform say, and sends them what is done here.
///
/// A click goes there, a drag selects; the wheel scrolls, with Ctrl zooms, with Ctrl+Shift enlarges the excursions. The
/// picture of the lanes is kept: while playing only the playhead is drawn anew.
class WaveformView : public QAbstractScrollArea, public SpokenControl {
    Q_OBJECT
  public:
    WaveformView(ContentView& content, TakePlayback& playback, TakeWaveform& waveform, UserDefaults& defaults,
                 const Theme& theme, QWidget* parent = nullptr);

    void zoomIn() { zoomAtPlayhead(2); }
    void zoomOut() { zoomAtPlayhead(0.5); }
    void showWhole();
    void zoomToSelection();
    [[nodiscard]] const WaveformViewport& shown() const noexcept { return view_; }
    [[nodiscard]] QRect lanesArea() const;
    [[nodiscard]] QRect rulerArea() const;
    [[nodiscard]] QRect overviewArea() const;
    [[nodiscard]] QAccessible::Role spokenRole() const override { return QAccessible::Slider; }
    /// Where the playhead is, or why there is none.
    [[nodiscard]] QString spokenValue() const override;
    /// Seconds.
    [[nodiscard]] std::optional<Range> spokenRange() const override;
    void setSpokenNumber(double seconds) override;

  signals:
    /// The take before (-1) or after (1) this one in the table.
    void otherTakeAsked(int step);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool viewportEvent(QEvent* event) override;

  private:
    static constexpr int namesWidth = 120;
    static constexpr int rulerHeight = 22;
    enum class Drag { none, pressed, selecting, cue, overview };

    void onTakeChanged();
    void onGrown();
    void onPosition();
    void redraw();
    void arrange();
    void zoomAtPlayhead(double factor);
    void zoomVertically(double factor);
    void goInOverview(double x);
    void lookAround();
    [[nodiscard]] double xOfFrame(double frame) const;
    [[nodiscard]] double laneX(double x) const;
    [[nodiscard]] QRect playheadRect(std::int64_t frame) const;
    [[nodiscard]] std::vector<WaveformLane> lanes() const;
    [[nodiscard]] int laneHeight() const;
    [[nodiscard]] std::int64_t frameTotal() const;
    [[nodiscard]] double sampleRate() const;
    /// Where the flag of a marker stands; `number` counts from 1.
    [[nodiscard]] QRectF cueFlag(const CueMarker& marker, std::size_t number) const;
    [[nodiscard]] std::optional<CueMarker> cueAt(const QPoint& place) const;
    [[nodiscard]] QString message() const;

    // In waveform_painting.cpp.
    void paintLanes(QPainter& painter);
    void paintRuler(QPainter& painter);
    void paintNames(QPainter& painter);
    void paintOverview(QPainter& painter);
    void paintSelection(QPainter& painter);
    void paintCues(QPainter& painter);

    ContentView& content_;
    TakePlayback& playback_;
    TakeWaveform& waveform_;
    UserDefaults& defaults_;
    const Theme& theme_;
    WaveformViewport view_;
    double gain_ = 1;
    QImage picture_, overview_;
    bool pictureDue_ = true, overviewDue_ = true;
    bool follows_ = true;  ///< false once the user has looked elsewhere while playing
    std::int64_t playhead_ = 0;

    Drag drag_ = Drag::none;
    QPoint pressedAt_;
    std::int64_t anchor_ = 0;  ///< frame at which a selection began
};

}  // namespace dravik
