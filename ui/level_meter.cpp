#include "ui/level_meter.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace dravik {
namespace {

constexpr int barWidth = 8;
constexpr int clipGap = 2;
/// In dB: 24 bits reach no further down. Whatever is stored, the scale has no more marks than can be drawn.
constexpr int lowestPlancher = -144;

QColor low(const Theme& theme) { return theme.isDark() ? QColor(0x4F, 0xB3, 0x7A) : QColor(0x2F, 0x96, 0x5C); }
QColor middle(const Theme& theme) { return theme.isDark() ? QColor(0xE5, 0xC0, 0x4B) : QColor(0xD2, 0xA0, 0x1A); }
QColor high(const Theme& theme) { return theme.isDark() ? QColor(0xE8, 0x5D, 0x52) : QColor(0xCC, 0x3B, 0x2F); }
QColor ground(const Theme& theme) { return theme.isDark() ? QColor(0x14, 0x16, 0x19) : QColor(0xD5, 0xD8, 0xDC); }

/// The part of the bar between two fractions of its scale.
QRect part(const QRect& bar, Qt::Orientation orientation, double from, double to) {
    if (orientation == Qt::Horizontal) {
        const int left = bar.left() + static_cast<int>(std::lround(from * bar.width()));
        const int right = bar.left() + static_cast<int>(std::lround(to * bar.width()));
        return {left, bar.top(), right - left, bar.height()};
    }
    const int bottom = bar.bottom() + 1 - static_cast<int>(std::lround(from * bar.height()));
    const int top = bar.bottom() + 1 - static_cast<int>(std::lround(to * bar.height()));
    return {bar.left(), top, bar.width(), bottom - top};
}

}  // namespace

MeterScale::MeterScale(const UserDefaults& defaults)
    : plancher(static_cast<float>(std::clamp(defaults.value(settings::meterPlancher), lowestPlancher, -1))),
      seuilJaune(static_cast<float>(defaults.value(settings::meterSeuilJaune))),
      seuilRouge(static_cast<float>(defaults.value(settings::meterSeuilRouge))) {}

double MeterScale::fraction(float dB) const noexcept {
    return std::clamp(static_cast<double>((dB - plancher) / -plancher), 0.0, 1.0);
}

LevelMeter::LevelMeter(const UserDefaults& defaults, const Theme& theme, Qt::Orientation orientation, QWidget* parent)
    : QWidget(parent), defaults_(defaults), theme_(theme), orientation_(orientation) {
    setToolTip(tr("Level of the file's own samples. Click to clear the clip signs."));
    connect(&defaults, &UserDefaults::changed, this, qOverload<>(&QWidget::update));
    setLayoutDirection(Qt::LeftToRight);  // levels and time run so in every language
    setSizePolicy(orientation == Qt::Vertical ? QSizePolicy::Fixed : QSizePolicy::Expanding,
                  orientation == Qt::Vertical ? QSizePolicy::Expanding : QSizePolicy::Fixed);
}

QSize LevelMeter::sizeHint() const {
    return orientation_ == Qt::Vertical ? QSize(barWidth, 120) : QSize(200, barWidth + 4);
}

void LevelMeter::show(float niveau, float peak, bool clip) {
    if (niveau == niveau_ && peak == peak_ && clip == clip_) return;
    niveau_ = niveau;
    peak_ = peak;
    clip_ = clip;
    update();
}

QString LevelMeter::spokenValue() const {
    const QString level = tr("%1 dBFS").arg(std::lround(niveau_));
    return clip_ ? tr("%1, clipped").arg(level) : level;
}

std::optional<SpokenControl::Range> LevelMeter::spokenRange() const {
    return Range{static_cast<double>(niveau_), static_cast<double>(MeterScale(defaults_).plancher), 0};
}

void LevelMeter::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const MeterScale scale(defaults_);
    const bool vertical = orientation_ == Qt::Vertical;
    const QRect sign =
        vertical ? QRect(0, 0, width(), clipSignLength) : QRect(width() - clipSignLength, 0, clipSignLength, height());
    const QRect bar = vertical ? rect().adjusted(0, clipSignLength + clipGap, 0, 0)
                               : rect().adjusted(0, 0, -clipSignLength - clipGap, 0);
    painter.fillRect(sign, clip_ ? high(theme_) : ground(theme_));
    painter.fillRect(bar, ground(theme_));

    const double level = scale.fraction(niveau_);
    const double yellow = scale.fraction(scale.seuilJaune);
    const double red = std::max(yellow, scale.fraction(scale.seuilRouge));
    const std::pair<double, double> zones[] = {{0, yellow}, {yellow, red}, {red, 1}};
    const QColor colours[] = {low(theme_), middle(theme_), high(theme_)};
    for (std::size_t zone = 0; zone < std::size(zones); ++zone) {
        const auto [from, to] = zones[zone];
        if (level > from) painter.fillRect(part(bar, orientation_, from, std::min(level, to)), colours[zone]);
    }
    if (const double peak = scale.fraction(peak_); peak > 0) {
        QRect marker = part(bar, orientation_, peak, peak);
        constexpr int markerLength = 2;
        if (vertical) {
            marker =
                QRect(bar.left(), std::clamp(marker.top(), bar.top(), bar.bottom() - 1), bar.width(), markerLength);
        } else {
            marker =
                QRect(std::clamp(marker.left(), bar.left(), bar.right() - 1), bar.top(), markerLength, bar.height());
        }
        painter.fillRect(marker, colours[peak_ >= scale.seuilRouge   ? 2
                                         : peak_ >= scale.seuilJaune ? 1
                                                                     : 0]
                                     .lighter(130));
    }
}

void LevelMeter::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) emit clipClicked();
}

MixerMeterScaleView::MixerMeterScaleView(const UserDefaults& defaults, const Theme& theme, QWidget* parent)
    : QWidget(parent), defaults_(defaults), theme_(theme) {
    setLayoutDirection(Qt::LeftToRight);  // "-6", and not "6-"
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    connect(&defaults, &UserDefaults::changed, this, qOverload<>(&QWidget::update));
}

void MixerMeterScaleView::setMeters(int top, int height) {
    top_ = top;
    height_ = height;
    update();
}

QSize MixerMeterScaleView::sizeHint() const { return {26, 120}; }

void MixerMeterScaleView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setLayoutDirection(layoutDirection());  // it begins with that of the program
    QFont small = font();
    small.setPixelSize(9);
    painter.setFont(small);
    painter.setPen(theme_.dimmed());
    const MeterScale scale(defaults_);
    const QRect bar = QRect(0, top_, width(), height_).adjusted(0, clipSignLength + clipGap, 0, 0);
    constexpr int labelHeight = 11;
    int last = -labelHeight;
    for (int dB = 0; dB >= static_cast<int>(scale.plancher); dB -= 6) {
        const int y =
            bar.bottom() + 1 - static_cast<int>(std::lround(scale.fraction(static_cast<float>(dB)) * bar.height()));
        painter.drawLine(width() - 4, std::min(y, bar.bottom()), width() - 1, std::min(y, bar.bottom()));
        if (y - last < labelHeight) continue;
        last = y;
        const int top = std::clamp(y - labelHeight / 2, 0, height() - labelHeight);
        painter.drawText(QRect(0, top, width() - 6, labelHeight), Qt::AlignRight | Qt::AlignVCenter,
                         QString::number(dB));
    }
}

}  // namespace dravik
