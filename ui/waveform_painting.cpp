#include "app/cue_names.h"
#include "app/text.h"
#include "ui/shown_track.h"
#include "ui/waveform_view.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace dravik {
namespace {

constexpr int flagHeight = 14;
constexpr int longestFlagText = 110;

QFont flagFont(const QWidget& widget) {
    QFont font = widget.font();
    font.setPixelSize(10);
    return font;
}

}  // namespace

QRectF WaveformView::cueFlag(const CueMarker& marker, std::size_t number) const {
    const QFontMetrics metrics(flagFont(*this));
    const double x = std::floor(xOfFrame(static_cast<double>(marker.frame))) + 0.5;
    const int width = std::min(metrics.horizontalAdvance(cueName(marker, number)), longestFlagText);
    return {x, rulerHeight, width + 8.0, flagHeight};
}

QString WaveformView::message() const {
    if (content_.selectedRow() < 0) return tr("Select a take to see its waveform.");
    if (!waveform_.error().isEmpty()) return waveform_.error();
    if (waveform_.peaks() == nullptr) return tr("Reading the audio...");
    return frameTotal() == 0 ? tr("This take holds no audio.") : QString();
}

void WaveformView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    painter.setLayoutDirection(layoutDirection());  // it begins with that of the program
    painter.fillRect(event->rect(), palette().color(QPalette::Base));
    if (const QString text = message(); !text.isEmpty()) {
        painter.setPen(theme_.dimmed());
        painter.drawText(viewport()->rect().adjusted(20, 0, -20, 0), Qt::AlignCenter | Qt::TextWordWrap, text);
        return;
    }
    paintLanes(painter);
    paintSelection(painter);
    paintRuler(painter);
    paintCues(painter);
    paintOverview(painter);
    const QRect over = playheadRect(playhead_);
    if (over.right() >= namesWidth) {
        const QColor colour = palette().color(QPalette::WindowText);
        const double x = std::floor(xOfFrame(static_cast<double>(playhead_))) + 0.5;
        painter.setPen(QPen(colour, 1));
        painter.drawLine(QPointF(x, rulerHeight - 6), QPointF(x, lanesArea().bottom()));
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour);
        painter.drawPolygon(
            QPolygonF({{x - 5, rulerHeight - 8.0}, {x + 5, rulerHeight - 8.0}, {x, rulerHeight - 1.0}}));
        painter.setRenderHint(QPainter::Antialiasing, false);
    }
    paintNames(painter);
}

void WaveformView::paintLanes(QPainter& painter) {
    const QRect area = lanesArea();
    if (std::exchange(pictureDue_, false) || picture_.isNull()) {
        // Drawn in the pixels of the screen.
        const double scale = viewport()->devicePixelRatioF();
        std::vector<WaveformLane> all = lanes();
        for (WaveformLane& lane : all) {
            lane.area = QRect(0, static_cast<int>(lane.area.top() * scale), static_cast<int>(area.width() * scale),
                              static_cast<int>(lane.area.height() * scale));
        }
        const QColor wave = theme_.isDark() ? QColor(0x7F, 0xB2, 0xD9) : QColor(0x2F, 0x6F, 0xA3);
        const QColor silenced = theme_.isDark() ? QColor(0x4A, 0x52, 0x5C) : QColor(0xB4, 0xBC, 0xC6);
        QColor axis = palette().color(QPalette::Mid);
        axis.setAlpha(140);
        picture_ = drawWaveform(area.size() * scale, all, {waveform_.peaks(), playback_.player().take().get()},
                                view_.scaledBy(scale), gain_, {wave, silenced, axis});
        picture_.setDevicePixelRatio(scale);
    }
    painter.drawImage(area.topLeft(), picture_);
}

void WaveformView::paintRuler(QPainter& painter) {
    const QRect area = rulerArea();
    painter.fillRect(QRect(0, 0, viewport()->width(), rulerHeight), palette().color(QPalette::Window));
    QFont small = font();
    small.setPixelSize(10);
    painter.setFont(small);
    painter.setPen(theme_.dimmed());
    painter.setClipRect(area, Qt::IntersectClip);
    constexpr int labelPixels = 90;
    const bool elapsed = defaults_.value(settings::counterShowsElapsedTime);
    TakeTimecode timecode = playback_.player().takeTimecode();
    if (!timecode.timecodeRateDisponible && content_.selectedRow() >= 0) {
        const auto row = static_cast<std::size_t>(content_.selectedRow());
        const GroupeFichiers& groupe = content_.rows().groupesOriginauxTableau().at(row);
        timecode = TakeTimecode::of(groupe.framerate, groupe.timecode);
    }
    for (const RulerTick& tick : rulerTicks(view_, sampleRate(), timecode, elapsed, labelPixels)) {
        const double x = std::floor(xOfFrame(tick.frame)) + 0.5;
        painter.drawLine(QPointF(x, tick.label.empty() ? rulerHeight - 4 : rulerHeight - 9),
                         QPointF(x, rulerHeight - 1));
        if (!tick.label.empty()) painter.drawText(QPointF(x + 3, 11), toQt(tick.label));
    }
    painter.setClipping(false);
}

void WaveformView::paintNames(QPainter& painter) {
    const QRect column(0, rulerHeight, namesWidth, lanesArea().height());
    painter.fillRect(QRect(0, 0, namesWidth, viewport()->height()), palette().color(QPalette::Window));
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawLine(namesWidth - 1, rulerHeight, namesWidth - 1, column.bottom());
    QFont small = font();
    small.setPixelSize(11);
    painter.setFont(small);
    painter.setClipRect(column);
    const std::vector<Piste>& pistes = content_.pistes();
    for (const WaveformLane& lane : lanes()) {
        const auto [numero, nom] = shownTrack(pistes, static_cast<std::size_t>(lane.canal));
        const QRect place(8, rulerHeight + lane.area.top(), namesWidth - 16, lane.area.height());
        painter.setPen(theme_.dimmed());
        painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter, QString::number(numero));
        painter.setPen(lane.silenced ? theme_.dimmed() : palette().color(QPalette::WindowText));
        const QRect text = place.adjusted(22, 0, 0, 0);
        painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter,
                         painter.fontMetrics().elidedText(nom, Qt::ElideRight, text.width()));
    }
    painter.setClipping(false);
}

void WaveformView::paintSelection(QPainter& painter) {
    const LecteurCoreAudio& player = playback_.player();
    if (!player.selectionDebut() || !player.selectionFin()) return;
    const double left = std::max<double>(namesWidth, xOfFrame(*player.selectionDebut() * player.sampleRate()));
    const double right = xOfFrame(*player.selectionFin() * player.sampleRate());
    if (right <= left) return;
    QColor fill = theme_.accent();
    fill.setAlpha(50);
    painter.fillRect(QRectF(left, rulerHeight, right - left, lanesArea().height()), fill);
    painter.setPen(theme_.accent());
    painter.drawLine(QPointF(left, rulerHeight), QPointF(left, lanesArea().bottom()));
    painter.drawLine(QPointF(right, rulerHeight), QPointF(right, lanesArea().bottom()));
}

void WaveformView::paintCues(QPainter& painter) {
    painter.setClipRect(QRect(namesWidth, 0, lanesArea().width(), lanesArea().bottom() + 1));
    painter.setFont(flagFont(*this));
    std::size_t number = 0;
    for (const CueMarker& marker : content_.cueMarkers()) {
        ++number;
        const double x = std::floor(xOfFrame(static_cast<double>(marker.frame))) + 0.5;
        if (x < namesWidth - 1 || x > viewport()->width() + 1) continue;
        const QColor colour = theme_.pending();
        painter.setPen(QPen(colour, 1, Qt::DashLine));
        painter.drawLine(QPointF(x, rulerHeight), QPointF(x, lanesArea().bottom()));
        const QString text = painter.fontMetrics().elidedText(cueName(marker, number), Qt::ElideRight, longestFlagText);
        const QRectF flag = cueFlag(marker, number);
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour);
        painter.drawRect(flag);
        painter.setPen(QColor(0x18, 0x14, 0x0C));
        painter.drawText(flag, Qt::AlignCenter, text);
    }
    painter.setClipping(false);
}

void WaveformView::paintOverview(QPainter& painter) {
    const QRect area = overviewArea();
    painter.fillRect(QRect(0, area.top() - 4, viewport()->width(), viewport()->height() - area.top() + 4),
                     palette().color(QPalette::Window));
    const double scale = viewport()->devicePixelRatioF();
    if (std::exchange(overviewDue_, false) || overview_.size() != area.size() * scale) {
        overview_ = drawOverview(area.size() * scale, *waveform_.peaks(), theme_.dimmed());
        overview_.setDevicePixelRatio(scale);
    }
    painter.drawImage(area.topLeft(), overview_);
    const auto total = static_cast<double>(std::max<std::int64_t>(1, view_.frameTotal()));
    const double perFrame = area.width() / total;
    const QRectF part(area.left() + view_.firstFrame() * perFrame, area.top(),
                      std::max(3.0, view_.visibleFrames() * perFrame), area.height());
    if (!view_.isWhole()) {
        QColor fill = palette().color(QPalette::WindowText);
        fill.setAlpha(26);
        painter.fillRect(part, fill);
        painter.setPen(theme_.dimmed());
        painter.drawRect(part.adjusted(0, 0, -1, -1));
    }
    const double x = std::floor(area.left() + static_cast<double>(playhead_) * perFrame) + 0.5;
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
}

}  // namespace dravik
