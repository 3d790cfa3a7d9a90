#pragma once

#include "app/take_playback.h"
#include "ui/spoken_control.h"

#include <QTimer>
#include <QWidget>

namespace dravik {

/// The position of the player, as timecode or as time since the start of the take; a click goes from one to the other.
/// Draws itself at most sixty times a second while playing.
class CounterView : public QWidget, public SpokenControl {
    Q_OBJECT
  public:
    CounterView(TakePlayback& playback, UserDefaults& defaults, QWidget* parent = nullptr);

    [[nodiscard]] QString text() const;
    [[nodiscard]] QAccessible::Role spokenRole() const override { return QAccessible::Clock; }
    [[nodiscard]] QString spokenValue() const override { return text(); }
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    /// Draws its text as large as its place allows, rather than at the size of its font.
    void setGrowing(bool growing);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void toggle();
    [[nodiscard]] QFont digits() const;

    TakePlayback& playback_;
    UserDefaults& defaults_;
    QTimer redraw_;
    QString shown_;
    bool growing_ = false;
};

}  // namespace dravik
