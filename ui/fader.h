#pragma once

#include "ui/spoken_control.h"
#include "ui/theme.h"

#include <QWidget>

namespace dravik {

/// A vertical fader in dB, from silence to +12. Drag, with Shift finely; wheel and arrow keys; double click or Delete
/// for 0 dB. Its travel is even above -30 dB, where one works, and ever coarser below.
class Fader : public QWidget, public SpokenControl {
    Q_OBJECT
  public:
    explicit Fader(const Theme& theme, QWidget* parent = nullptr);

    /// Shows this value. No signal.
    void setDB(double dB);
    [[nodiscard]] double dB() const noexcept { return dB_; }
    [[nodiscard]] QSize sizeHint() const override;

    /// Place on the travel, 0 (bottom) to 1, and back.
    [[nodiscard]] static double placeOf(double dB) noexcept;
    [[nodiscard]] static double dBAt(double position) noexcept;
    /// "-12.5", "0.0", "-∞".
    [[nodiscard]] static QString textOf(double dB);
    [[nodiscard]] QAccessible::Role spokenRole() const override { return QAccessible::Slider; }
    [[nodiscard]] QString spokenValue() const override;
    [[nodiscard]] std::optional<Range> spokenRange() const override;
    void setSpokenNumber(double dB) override { move(dB); }

  signals:
    /// The user moved it.
    void moved(double dB);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void move(double dB);
    [[nodiscard]] int travel() const;

    const Theme& theme_;
    double dB_ = 0;
    QPointF grabbed_;
    double grabbedPosition_ = 0;
};

}  // namespace dravik
