#pragma once

#include "app/waveform_viewport.h"
#include "playback/pcm_buffer.h"
#include "playback/peaks.h"

#include <QColor>
#include <QImage>
#include <QRect>
#include <QSize>
#include <vector>

namespace dravik {

/// Draws waveforms into pictures. Knows no take, no window and no events; pixels here are those of the screen.
struct WaveformColours {
    QColor wave, silenced, axis;
};

/// One channel's place in the picture.
struct WaveformLane {
    int canal = 0;
    QRect area;
    bool silenced = false;  ///< muted, or another one is soloed
};

/// What the lanes show: the extremes of the take, and its samples where it is loaded, for looking at them singly.
struct WaveformContent {
    const TakePeaks* peaks = nullptr;
    const PcmTake* samples = nullptr;
};

/// The lanes on a transparent ground. `viewport` is in the pixels of the picture; `gain` enlarges the excursions, which
/// are cut off at the edges of their lane.
[[nodiscard]] QImage drawWaveform(QSize size, const std::vector<WaveformLane>& lanes, const WaveformContent& content,
                                  const WaveformViewport& viewport, double gain, const WaveformColours& colours);

/// The whole take in one lane, all channels over each other.
[[nodiscard]] QImage drawOverview(QSize size, const TakePeaks& peaks, const QColor& wave);

}  // namespace dravik
