#include "ui/fader.h"

#include "playback/mixer_state.h"
#include "ui/focus_ring.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <array>
#include <cmath>

namespace dravik {
namespace {

constexpr int handleHeight = 22;
constexpr int handleWidth = 18;
/// Less travel than that cannot be set with a hand.
constexpr int leastHeight = 96;
/// With Shift a drag moves by this part of its way.
constexpr double fine = 0.1;

/// Where on the travel these dB are.
struct Mark {
    double position, dB;
};
constexpr std::array<Mark, 5> marks{
    {{0.0, MixerState::faderMinimumDB}, {0.08, -60.0}, {0.28, -30.0}, {0.78, 0.0}, {1.0, MixerState::faderMaximumDB}}};

double between(double at, double from, double to, double low, double high) {
    return low + (at - from) / (to - from) * (high - low);
}

}  // namespace

Fader::Fader(const Theme& theme, QWidget* parent) : QWidget(parent), theme_(theme) {
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    setMinimumHeight(leastHeight);
    setToolTip(tr("Drag, with Shift finely; double click for 0 dB"));
}

double Fader::placeOf(double dB) noexcept {
    for (std::size_t at = 1; at < marks.size(); ++at) {
        if (dB <= marks[at].dB) {
            return std::max(0.0,
                            between(dB, marks[at - 1].dB, marks[at].dB, marks[at - 1].position, marks[at].position));
        }
    }
    return 1.0;
}

double Fader::dBAt(double position) noexcept {
    for (std::size_t at = 1; at < marks.size(); ++at) {
        if (position <= marks[at].position) {
            return std::max(MixerState::faderMinimumDB, between(position, marks[at - 1].position, marks[at].position,
                                                                marks[at - 1].dB, marks[at].dB));
        }
    }
    return MixerState::faderMaximumDB;
}

QString Fader::textOf(double dB) {
    if (dB <= MixerState::faderMinimumDB) return QStringLiteral("-\u221E");
    const QString text = QString::number(dB, 'f', 1);
    return text == QLatin1String("-0.0") ? QStringLiteral("0.0") : dB > 0 ? QLatin1Char('+') + text : text;
}

QSize Fader::sizeHint() const { return {26, 140}; }
int Fader::travel() const { return std::max(1, height() - handleHeight); }

void Fader::setDB(double dB) {
    if (dB == dB_) return;
    dB_ = dB;
    update();
    tellValue(*this, dB_);
}

QString Fader::spokenValue() const { return tr("%1 dB").arg(textOf(dB_)); }

std::optional<SpokenControl::Range> Fader::spokenRange() const {
    return Range{dB_, MixerState::faderMinimumDB, MixerState::faderMaximumDB};
}

void Fader::move(double dB) {
    constexpr double step = 0.1;  // finer than anybody hears, and what is shown
    dB = std::clamp(std::round(dB / step) * step, MixerState::faderMinimumDB, MixerState::faderMaximumDB);
    if (dB != dB_) emit moved(dB);
}

void Fader::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double centre = width() / 2.0;
    const double top = handleHeight / 2.0;
    const auto yOf = [&](double dB) { return top + (1.0 - placeOf(dB)) * travel(); };
    painter.setPen(QPen(theme_.dimmed(), 1));
    for (const double dB : {12.0, 6.0, 0.0, -6.0, -12.0, -24.0, -36.0, -60.0}) {
        const double half = dB == 0.0 ? 10 : 6;
        painter.drawLine(QPointF(centre - half, yOf(dB)), QPointF(centre + half, yOf(dB)));
    }
    const QColor slot = theme_.isDark() ? QColor(0x14, 0x16, 0x19) : QColor(0xB8, 0xBD, 0xC4);
    painter.setPen(Qt::NoPen);
    painter.setBrush(slot);
    painter.drawRoundedRect(QRectF(centre - 2, top, 4, travel()), 2, 2);
    const QRectF handle(centre - handleWidth / 2.0, yOf(dB_) - handleHeight / 2.0, handleWidth, handleHeight);
    painter.setPen(QPen(theme_.isDark() ? QColor(0x0C, 0x0E, 0x10) : QColor(0x8A, 0x90, 0x99), 1));
    painter.setBrush(theme_.isDark() ? QColor(0x5A, 0x62, 0x6D) : QColor(0xF4, 0xF5, 0xF7));
    painter.drawRoundedRect(handle.adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
    painter.setPen(QPen(isEnabled() ? theme_.accent() : theme_.dimmed(), 2));
    painter.drawLine(QPointF(handle.left() + 3, handle.center().y()), QPointF(handle.right() - 3, handle.center().y()));
    drawFocusRing(painter, *this, theme_);
}

void Fader::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    grabbed_ = event->position();
    grabbedPosition_ = placeOf(dB_);
}

void Fader::mouseMoveEvent(QMouseEvent* event) {
    if (!(event->buttons() & Qt::LeftButton)) return;
    const double way = (grabbed_.y() - event->position().y()) / travel();
    const double speed = event->modifiers() & Qt::ShiftModifier ? fine : 1.0;
    // From where it stands: pressing Shift on the way does not let it jump.
    grabbedPosition_ = std::clamp(grabbedPosition_ + way * speed, 0.0, 1.0);
    grabbed_ = event->position();
    move(dBAt(grabbedPosition_));
}

void Fader::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) move(0);
    grabbedPosition_ = placeOf(0);
}

void Fader::wheelEvent(QWheelEvent* event) {
    const int turned = event->angleDelta().y() != 0 ? event->angleDelta().y() : event->angleDelta().x();
    constexpr double notch = 120.0;
    move(dB_ + turned / notch * (event->modifiers() & Qt::ShiftModifier ? fine : 1.0));
    event->accept();
}

void Fader::keyPressEvent(QKeyEvent* event) {
    const double step = event->modifiers() & Qt::ShiftModifier ? fine : 1.0;
    switch (event->key()) {
        case Qt::Key_Up:
            return move(dB_ + step);
        case Qt::Key_Down:
            return move(dB_ - step);
        case Qt::Key_PageUp:
            return move(dB_ + 6);
        case Qt::Key_PageDown:
            return move(dB_ - 6);
        case Qt::Key_Delete:
        case Qt::Key_Backspace:
            return move(0);
        default:
            QWidget::keyPressEvent(event);
    }
}

}  // namespace dravik
