#pragma once

#include "ui/spoken_control.h"
#include "ui/theme.h"

#include <QWidget>

namespace dravik {

/// A pan from left to right. Drag, with Shift finely; wheel and arrow keys; double click or Delete for the centre.
class PanControl : public QWidget, public SpokenControl {
    Q_OBJECT
  public:
    explicit PanControl(const Theme& theme, QWidget* parent = nullptr);
    /// -1 (left) to +1 (right). No signal.
    void setPan(double pan);
    [[nodiscard]] QSize sizeHint() const override;
    /// "L 50", "C", "R 100".
    [[nodiscard]] static QString textOf(double pan);
    [[nodiscard]] QAccessible::Role spokenRole() const override { return QAccessible::Slider; }
    [[nodiscard]] QString spokenValue() const override { return textOf(pan_); }
    [[nodiscard]] std::optional<Range> spokenRange() const override { return Range{pan_, -1, 1}; }
    void setSpokenNumber(double pan) override { move(pan); }

  signals:
    void moved(double pan);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void move(double pan);

    const Theme& theme_;
    double pan_ = 0;
    QPointF grabbed_;
    double grabbedPan_ = 0;
};

}  // namespace dravik
