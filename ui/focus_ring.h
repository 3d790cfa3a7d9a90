#pragma once

#include "ui/theme.h"

#include <QPainter>
#include <QWidget>

namespace dravik {

/// Marks the widget that has the keyboard, for widgets that draw themselves.
inline void drawFocusRing(QPainter& painter, const QWidget& widget, const Theme& theme) {
    if (!widget.hasFocus()) return;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(theme.accent(), 1));
    painter.drawRoundedRect(QRectF(widget.rect()).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
}

}  // namespace dravik
