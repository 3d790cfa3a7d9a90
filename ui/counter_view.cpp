#include "ui/counter_view.h"

#include "app/text.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>

namespace dravik {
namespace {

/// A sixtieth of a second.
constexpr int redrawMilliseconds = 16;
const QString widest = QStringLiteral("00:00:00:00");

}  // namespace

CounterView::CounterView(TakePlayback& playback, UserDefaults& defaults, QWidget* parent)
    : QWidget(parent), playback_(playback), defaults_(defaults) {
    setAccessibleName(tr("Position"));
    setToolTip(tr("Toggle timecode / elapsed time"));
    setLayoutDirection(Qt::LeftToRight);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
    redraw_.setTimerType(Qt::PreciseTimer);
    redraw_.setInterval(redrawMilliseconds);
    connect(&redraw_, &QTimer::timeout, this, [this] {
        if (text() != shown_) update();
    });
    const LecteurCoreAudio& player = playback_.player();
    connect(&player, &LecteurCoreAudio::enLectureChanged, this, [this] {
        playback_.player().enLecture() ? redraw_.start() : redraw_.stop();
        update();
    });
    connect(&player, &LecteurCoreAudio::positionChanged, this, [this] {
        if (!redraw_.isActive()) update();
    });
    connect(&defaults_, &UserDefaults::changed, this, [this](const QString& key) {
        if (key == QLatin1String(settings::counterShowsElapsedTime.key)) update();
    });
    if (player.enLecture()) redraw_.start();
}

QString CounterView::text() const {
    const LecteurCoreAudio& player = playback_.player();
    return toQt(defaults_.value(settings::counterShowsElapsedTime) ? player.timecodeMillis()
                                                                   : player.timecodeCourant());
}

void CounterView::setGrowing(bool growing) {
    growing_ = growing;
    updateGeometry();
    update();
}

QFont CounterView::digits() const {
    QFont font = this->font();
    font.setStyleHint(QFont::Monospace);
    font.setFamilies({QStringLiteral("DejaVu Sans Mono"), QStringLiteral("monospace")});
    font.setBold(true);
    if (!growing_) {
        font.setPixelSize(QFontInfo(this->font()).pixelSize() * 5 / 3);
        return font;
    }
    constexpr int tried = 100;
    font.setPixelSize(tried);
    const QFontMetrics metrics(font);
    const double fits = std::min(0.94 * width() / metrics.horizontalAdvance(widest), 0.9 * height() / metrics.height());
    font.setPixelSize(std::max(8, static_cast<int>(tried * fits)));
    return font;
}

QSize CounterView::sizeHint() const {
    if (growing_) return {420, 96};
    const QFontMetrics metrics(digits());
    return {metrics.horizontalAdvance(widest) + 16, metrics.height() + 6};
}

QSize CounterView::minimumSizeHint() const { return growing_ ? QSize(160, 32) : sizeHint(); }

void CounterView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setLayoutDirection(layoutDirection());
    shown_ = text();
    painter.setFont(digits());
    const QColor colour =
        palette().color(playback_.player().pret() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText);
    painter.setPen(QColor(0, 0, 0, 90));
    painter.drawText(rect().translated(0, 1), Qt::AlignCenter, shown_);
    painter.setPen(colour);
    painter.drawText(rect(), Qt::AlignCenter, shown_);
    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
    }
}

void CounterView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->pos())) toggle();
}

void CounterView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        toggle();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void CounterView::toggle() {
    defaults_.set(settings::counterShowsElapsedTime, !defaults_.value(settings::counterShowsElapsedTime));
}

}  // namespace dravik
