#pragma once

#include <QProxyStyle>

namespace dravik {

/// Fusion with outlines that can be seen on a dark ground: its own are a darker shade of the window, and vanish there.
/// And with quieter bars, and room around the text of buttons.
class HouseStyle final : public QProxyStyle {
    Q_OBJECT
  public:
    /// `toolTipDelay` in milliseconds.
    explicit HouseStyle(int toolTipDelay);
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    [[nodiscard]] QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                         const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override;

  private:
    int toolTipDelay_;
};

}  // namespace dravik
