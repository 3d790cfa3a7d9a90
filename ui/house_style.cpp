#include "ui/house_style.h"

#include <QPainter>
#include <QPainterPath>
#include <QPlainTextEdit>
#include <QStyleOption>

namespace dravik {
namespace {

constexpr qreal radius = 2.5;
constexpr int buttonPadding = 14;

QColor outline(const QStyleOption& option) {
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    if (enabled && option.state.testFlag(QStyle::State_HasFocus)) return option.palette.color(QPalette::Highlight);
    QColor colour = option.palette.color(QPalette::PlaceholderText);
    colour.setAlphaF(enabled ? 0.6F : 0.3F);
    return colour;
}

void drawBox(const QStyleOption& option, QPainter& painter, const QColor& fill) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(outline(option), 1));
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}

void drawCheckBox(const QStyleOption& option, QPainter& painter) {
    const bool on = option.state.testFlag(QStyle::State_On);
    const bool partly = option.state.testFlag(QStyle::State_NoChange);
    const QColor accent = option.palette.color(QPalette::Highlight);
    drawBox(option, painter, on ? accent : option.palette.color(QPalette::Base));
    const QRectF box(option.rect);
    painter.setPen(QPen(on ? option.palette.color(QPalette::HighlightedText) : option.palette.color(QPalette::Text),
                        box.width() / 8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    if (partly) {
        painter.drawLine(QPointF(box.left() + box.width() * 0.28, box.center().y()),
                         QPointF(box.right() - box.width() * 0.28, box.center().y()));
    } else if (on) {
        QPainterPath tick;
        tick.moveTo(box.left() + box.width() * 0.25, box.top() + box.height() * 0.53);
        tick.lineTo(box.left() + box.width() * 0.43, box.top() + box.height() * 0.70);
        tick.lineTo(box.left() + box.width() * 0.76, box.top() + box.height() * 0.32);
        painter.setBrush(Qt::NoBrush);
        painter.drawPath(tick);
    }
}

void drawRadioButton(const QStyleOption& option, QPainter& painter) {
    const bool on = option.state.testFlag(QStyle::State_On);
    const QRectF circle = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(outline(option), 1));
    painter.setBrush(option.palette.color(on ? QPalette::Highlight : QPalette::Base));
    painter.drawEllipse(circle);
    if (!on) return;
    painter.setPen(Qt::NoPen);
    painter.setBrush(option.palette.color(QPalette::HighlightedText));
    painter.drawEllipse(circle.center(), circle.width() / 5, circle.height() / 5);
}

}  // namespace

HouseStyle::HouseStyle(int toolTipDelay) : QProxyStyle(QStringLiteral("fusion")), toolTipDelay_(toolTipDelay) {}

int HouseStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* data) const {
    return hint == SH_ToolTip_WakeUpDelay ? toolTipDelay_ : QProxyStyle::styleHint(hint, option, widget, data);
}

void HouseStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    if (element == PE_IndicatorCheckBox) {
        painter->save();
        drawCheckBox(*option, *painter);
        painter->restore();
    } else if (element == PE_IndicatorRadioButton) {
        painter->save();
        drawRadioButton(*option, *painter);
        painter->restore();
    } else if (element == PE_PanelLineEdit || element == PE_FrameLineEdit) {
        const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
        if (frame != nullptr && frame->lineWidth == 0) {
            QProxyStyle::drawPrimitive(element, option, painter, widget);
            return;
        }
        painter->save();
        drawBox(*option, *painter,
                element == PE_PanelLineEdit ? option->palette.color(QPalette::Base) : QColor(Qt::transparent));
        painter->restore();
    } else if (element == PE_Frame && qobject_cast<const QPlainTextEdit*>(widget) != nullptr) {
        // A text of several lines is a field like those of one line.
        QStyleOption frame(*option);
        frame.state.setFlag(State_HasFocus, widget->hasFocus());
        painter->save();
        drawBox(frame, *painter, QColor(Qt::transparent));
        painter->restore();
    } else {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void HouseStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const {
    if (element == CE_MenuBarEmptyArea || element == CE_ToolBar) {
        // One quiet line below both, none between them.
        painter->fillRect(option->rect, option->palette.color(QPalette::Window));
        if (element == CE_ToolBar) {
            const QRect& bar = option->rect;
            painter->fillRect(QRect(bar.left(), bar.bottom(), bar.width(), 1), option->palette.color(QPalette::Mid));
        }
        return;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
    if (element == CE_MenuBarItem && !option->state.testFlag(State_Selected)) {
        const QRect& item = option->rect;
        painter->fillRect(QRect(item.left(), item.bottom(), item.width(), 1), option->palette.color(QPalette::Window));
    }
}

QSize HouseStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                   const QWidget* widget) const {
    const QSize fusion = QProxyStyle::sizeFromContents(type, option, size, widget);
    return type == CT_PushButton ? fusion.expandedTo({size.width() + 2 * buttonPadding, fusion.height()}) : fusion;
}

}  // namespace dravik
