#include "ui/waveform_picture.h"

#include <QPainter>
#include <QPolygonF>
#include <algorithm>
#include <cmath>

namespace dravik {
namespace {

/// From here on single samples are dots on their line.
constexpr double dotsFromPixelsPerFrame = 6;
/// From here on a line through the samples would go up and down within each pixel: filled columns look the same, and
/// are drawn in no time.
constexpr double columnsFromFramesPerPixel = 1;

/// A column of one lane, filled from the highest to the lowest excursion; at least one pixel, so that silence is a
/// line.
void fillColumn(QImage& image, int x, const QRect& lane, double gain, const PeakColumn& column, QRgb colour) {
    if (!column.known) return;
    const double centre = lane.top() + lane.height() / 2.0;
    const double half = lane.height() / 2.0 - 1;
    const auto yOf = [&](float value) {
        const double y = centre - std::clamp(static_cast<double>(value) * gain, -1.0, 1.0) * half;
        return static_cast<int>(std::floor(y));
    };
    const int top = std::max({yOf(column.highest), lane.top(), 0});
    const int bottom = std::min({std::max(yOf(column.lowest), top), lane.bottom(), image.height() - 1});
    const auto stride = image.bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb));
    auto* pixel = reinterpret_cast<QRgb*>(image.bits()) + top * stride + x;
    for (int y = top; y <= bottom; ++y, pixel += stride)
        *pixel = colour;
}

/// The extremes of the samples of each pixel, each up to the first one of the next, so that there are no gaps.
void columnsOfSamples(std::span<const float> samples, const WaveformViewport& viewport, std::span<PeakColumn> into) {
    const auto count = static_cast<double>(samples.size());
    for (std::size_t i = 0; i < into.size(); ++i) {
        const double x = static_cast<double>(i) * viewport.framesPerPixel();
        const double from = std::clamp(std::floor(viewport.firstFrame() + x), 0.0, count);
        const double to =
            std::clamp(std::floor(viewport.firstFrame() + x + viewport.framesPerPixel()) + 1, from, count);
        PeakColumn& column = into[i] = PeakColumn{};
        for (auto frame = static_cast<std::size_t>(from); frame < static_cast<std::size_t>(to); ++frame) {
            const float value = samples[frame];
            if (std::isnan(value)) continue;
            column.lowest = column.known ? std::min(column.lowest, value) : value;
            column.highest = column.known ? std::max(column.highest, value) : value;
            column.known = true;
        }
    }
}

/// The samples themselves, joined by a line.
void drawSamples(QPainter& painter, const WaveformLane& lane, const PcmTake& take, const WaveformViewport& viewport,
                 double gain, const QColor& colour) {
    const std::span<const float> samples = take.canal(lane.canal);
    const auto count = static_cast<std::int64_t>(samples.size());
    const auto first = std::clamp<std::int64_t>(static_cast<std::int64_t>(viewport.firstFrame()) - 1, 0, count);
    const auto last = std::clamp<std::int64_t>(
        static_cast<std::int64_t>(viewport.firstFrame() + viewport.visibleFrames()) + 2, first, count);
    const double centre = lane.area.top() + lane.area.height() / 2.0;
    const double half = lane.area.height() / 2.0 - 1;
    QPolygonF line;
    line.reserve(static_cast<qsizetype>(last - first));
    for (std::int64_t frame = first; frame < last; ++frame) {
        auto value = static_cast<double>(samples[static_cast<std::size_t>(frame)]);
        if (std::isnan(value)) value = 0;
        line << QPointF(viewport.xOf(static_cast<double>(frame)), centre - std::clamp(value * gain, -1.0, 1.0) * half);
    }
    painter.setClipRect(lane.area);
    painter.setPen(QPen(colour, 1.2));
    painter.drawPolyline(line);
    if (1.0 / viewport.framesPerPixel() < dotsFromPixelsPerFrame) return;
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    constexpr double radius = 2.2;
    for (const QPointF& dot : line)
        painter.drawEllipse(dot, radius, radius);
}

}  // namespace

QImage drawWaveform(QSize size, const std::vector<WaveformLane>& lanes, const WaveformContent& content,
                    const WaveformViewport& viewport, double gain, const WaveformColours& colours) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    std::vector<PeakColumn> columns(static_cast<std::size_t>(std::max(0, size.width())));
    std::vector<const WaveformLane*> close;
    for (const WaveformLane& lane : lanes) {
        if (lane.area.bottom() < 0 || lane.area.top() >= size.height()) continue;
        {
            QPainter painter(&image);
            const int centre = lane.area.top() + lane.area.height() / 2;
            painter.fillRect(QRect(0, centre, size.width(), 1), colours.axis);
        }
        if (content.peaks == nullptr || lane.canal >= content.peaks->nbCanaux()) continue;
        const auto first = static_cast<std::int64_t>(std::floor(viewport.firstFrame()));
        const TakePeaks::Detail detail = content.peaks->columns(lane.canal, first, viewport.framesPerPixel(), columns);
        const bool hasSamples = content.samples != nullptr && lane.canal < content.samples->nbCanaux;
        if (detail == TakePeaks::Detail::samples && hasSamples) {
            if (viewport.framesPerPixel() < columnsFromFramesPerPixel) {
                close.push_back(&lane);
                continue;
            }
            columnsOfSamples(content.samples->canal(lane.canal), viewport, columns);
        }
        const QRgb colour = qPremultiply((lane.silenced ? colours.silenced : colours.wave).rgba());
        for (int x = 0; x < size.width(); ++x)
            fillColumn(image, x, lane.area, gain, columns[static_cast<std::size_t>(x)], colour);
    }
    if (close.empty() || content.samples == nullptr) return image;
    QPainter painter(&image);
    // Smooth lines take their time, and are of use only where a line can be followed from sample to sample.
    constexpr double smoothUpToFramesPerPixel = 0.25;
    painter.setRenderHint(QPainter::Antialiasing, viewport.framesPerPixel() <= smoothUpToFramesPerPixel);
    for (const WaveformLane* lane : close)
        drawSamples(painter, *lane, *content.samples, viewport, gain, lane->silenced ? colours.silenced : colours.wave);
    return image;
}

QImage drawOverview(QSize size, const TakePeaks& peaks, const QColor& wave) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    if (size.isEmpty()) return image;
    std::vector<PeakColumn> columns(static_cast<std::size_t>(size.width()));
    const double framesPerPixel = std::max(1e-3, static_cast<double>(peaks.frameTotal()) / size.width());
    for (int canal = 0; canal < peaks.nbCanaux(); ++canal) {
        static_cast<void>(peaks.columns(canal, 0, framesPerPixel, columns));
        for (int x = 0; x < size.width(); ++x) {
            fillColumn(image, x, QRect(QPoint(0, 0), size), 1, columns[static_cast<std::size_t>(x)],
                       qPremultiply(wave.rgba()));
        }
    }
    return image;
}

}  // namespace dravik
