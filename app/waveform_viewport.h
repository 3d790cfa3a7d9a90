#pragma once

#include "playback/counter.h"

#include <cstdint>
#include <string>
#include <vector>

namespace dravik {

/// Which part of a take a waveform shows: the frames across its width. A value; every change keeps it within the take.
/// A take is never shown smaller than the width, and no closer than some pixels a sample.
class WaveformViewport {
  public:
    WaveformViewport() = default;

    /// Another take, shown whole.
    void setTake(std::int64_t frameTotal);
    /// Another width in pixels; what is at the left edge stays there, and what was shown whole stays so.
    void setWidth(int pixels);

    [[nodiscard]] std::int64_t frameTotal() const noexcept { return frameTotal_; }
    [[nodiscard]] int width() const noexcept { return width_; }
    [[nodiscard]] double firstFrame() const noexcept { return firstFrame_; }
    [[nodiscard]] double framesPerPixel() const noexcept { return framesPerPixel_; }
    [[nodiscard]] double visibleFrames() const noexcept { return framesPerPixel_ * width_; }
    [[nodiscard]] bool isWhole() const noexcept;

    [[nodiscard]] double xOf(double frame) const noexcept { return (frame - firstFrame_) / framesPerPixel_; }
    /// Within the take.
    [[nodiscard]] std::int64_t frameAt(double x) const noexcept;

    /// The same part of the take across another number of pixels, those of a screen with `ratio` pixels in place of
    /// one. For drawing: it is not kept within the limits that a zoom has.
    [[nodiscard]] WaveformViewport scaledBy(double ratio) const;

    /// Closer by a factor above 1, further away below; the frame at `x` stays where it is.
    void zoom(double factor, double x);
    void showWhole();
    /// These frames across the width.
    void showRange(std::int64_t debut, std::int64_t fin);
    void scrollBy(double pixels);
    void scrollTo(double firstFrame);
    /// Goes on by whole pages until the frame is in sight; true when it was not.
    bool pageTo(std::int64_t frame);

    friend bool operator==(const WaveformViewport&, const WaveformViewport&) = default;

  private:
    void settle();
    [[nodiscard]] double widest() const noexcept;

    std::int64_t frameTotal_ = 0;
    int width_ = 1;
    double firstFrame_ = 0;
    double framesPerPixel_ = 1;
};

/// A mark of the ruler above a waveform.
struct RulerTick {
    double frame = 0;
    std::string label;  ///< empty for the marks between
    friend bool operator==(const RulerTick&, const RulerTick&) = default;
};

/// Marks at round times across what is shown, labelled at least so many pixels apart: as timecode of the take, or as
/// time since its start.
[[nodiscard]] std::vector<RulerTick> rulerTicks(const WaveformViewport& viewport, double sampleRate,
                                                const TakeTimecode& timecode, bool elapsed, int labelPixels);

}  // namespace dravik
