#pragma once

#include "app/user_defaults.h"
#include "ui/spoken_control.h"
#include "ui/theme.h"

#include <QColor>
#include <QWidget>

namespace dravik {

/// What a meter shows and in which colours: the bottom of the scale and the two thresholds, out of the settings.
struct MeterScale {
    explicit MeterScale(const UserDefaults& defaults);

    float plancher, seuilJaune, seuilRouge;  ///< dB

    /// Part of the scale that is filled at a level, 0 to 1; the scale is even in dB.
    [[nodiscard]] double fraction(float dB) const noexcept;
};

/// The bar of one channel with its peak marker and its clip sign, which a click clears. Shows what it is given.
class LevelMeter : public QWidget, public SpokenControl {
    Q_OBJECT
  public:
    LevelMeter(const UserDefaults& defaults, const Theme& theme, Qt::Orientation orientation,
               QWidget* parent = nullptr);

    /// In dBFS; the latched sign with it.
    void show(float niveau, float peak, bool clip);
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QAccessible::Role spokenRole() const override { return QAccessible::Indicator; }
    [[nodiscard]] QString spokenValue() const override;
    [[nodiscard]] std::optional<Range> spokenRange() const override;

  signals:
    /// The clip signs are to be cleared.
    void clipClicked();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    const UserDefaults& defaults_;
    const Theme& theme_;
    Qt::Orientation orientation_;
    float niveau_ = -60, peak_ = -60;
    bool clip_ = false;
};

/// The marks beside vertical meters.
class MixerMeterScaleView : public QWidget {
    Q_OBJECT
  public:
    MixerMeterScaleView(const UserDefaults& defaults, const Theme& theme, QWidget* parent = nullptr);
    /// Where the meters beside it stand, in its own coordinates.
    void setMeters(int top, int height);
    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    const UserDefaults& defaults_;
    const Theme& theme_;
    int top_ = 0, height_ = 0;
};

/// Height of the clip sign above a vertical meter, and length of the one at the end of a horizontal one.
inline constexpr int clipSignLength = 6;

}  // namespace dravik
