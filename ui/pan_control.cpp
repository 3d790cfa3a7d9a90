#include "ui/pan_control.h"

#include "ui/focus_ring.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace dravik {
namespace {

/// With Shift a drag moves by this part of its way.
constexpr double fine = 0.1;

}  // namespace

PanControl::PanControl(const Theme& theme, QWidget* parent) : QWidget(parent), theme_(theme) {
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize PanControl::sizeHint() const { return {56, 18}; }

QString PanControl::textOf(double pan) {
    const int part = static_cast<int>(std::lround(std::abs(pan) * 100));
    if (part == 0) return tr("C");
    return (pan < 0 ? tr("L %1") : tr("R %1")).arg(part);
}

void PanControl::setPan(double pan) {
    if (pan == pan_) return;
    pan_ = pan;
    update();
    tellValue(*this, pan_);
}

void PanControl::move(double pan) {
    constexpr double step = 0.01;
    pan = std::clamp(std::round(pan / step) * step, -1.0, 1.0);
    if (pan != pan_) emit moved(pan);
}

void PanControl::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setLayoutDirection(layoutDirection());
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF box = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
    painter.setPen(QPen(palette().color(QPalette::Mid), 1));
    painter.setBrush(theme_.isDark() ? QColor(0x1A, 0x1D, 0x21) : QColor(0xE6, 0xE8, 0xEB));
    painter.drawRoundedRect(box, 3, 3);
    if (isEnabled()) {
        const double centre = box.center().x();
        const double at = centre + pan_ * (box.width() / 2 - 1);
        QColor fill = theme_.accent();
        fill.setAlpha(110);
        painter.fillRect(QRectF(std::min(centre, at), box.top() + 1, std::abs(at - centre), box.height() - 2), fill);
        // Below the text, which it would cross in the centre.
        painter.fillRect(QRectF(at - 1.5, box.bottom() - 4, 3, 3.5), theme_.accent());
    }
    QFont small = font();
    small.setPixelSize(10);
    painter.setFont(small);
    painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
    painter.drawText(rect(), Qt::AlignCenter, isEnabled() ? textOf(pan_) : QStringLiteral("\u2013"));
    drawFocusRing(painter, *this, theme_);
}

void PanControl::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    grabbed_ = event->position();
    grabbedPan_ = pan_;
}

void PanControl::mouseMoveEvent(QMouseEvent* event) {
    if (!(event->buttons() & Qt::LeftButton)) return;
    constexpr double pixelsForAll = 120.0;
    const double way = (event->position().x() - grabbed_.x()) / pixelsForAll * 2.0;
    grabbedPan_ = std::clamp(grabbedPan_ + way * (event->modifiers() & Qt::ShiftModifier ? fine : 1.0), -1.0, 1.0);
    grabbed_ = event->position();
    move(grabbedPan_);
}

void PanControl::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) move(0);
    grabbedPan_ = 0;
}

void PanControl::wheelEvent(QWheelEvent* event) {
    constexpr double notch = 120.0;
    move(pan_ + event->angleDelta().y() / notch * (event->modifiers() & Qt::ShiftModifier ? 0.01 : 0.1));
    event->accept();
}

void PanControl::keyPressEvent(QKeyEvent* event) {
    const double step = event->modifiers() & Qt::ShiftModifier ? 0.01 : 0.1;
    switch (event->key()) {
        case Qt::Key_Left:
            return move(pan_ - step);
        case Qt::Key_Right:
            return move(pan_ + step);
        case Qt::Key_Delete:
        case Qt::Key_Backspace:
            return move(0);
        default:
            QWidget::keyPressEvent(event);
    }
}

}  // namespace dravik
