#include "app/waveform_viewport.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace dravik {
namespace {

/// Single samples can be told apart and taken hold of.
constexpr double closestFramesPerPixel = 1.0 / 16.0;

/// Distances between labels in seconds: what a clock face offers.
constexpr double roundSeconds[] = {0.001, 0.002, 0.005, 0.01, 0.02, 0.05, 0.1, 0.2,  0.5,  1,    2,     5,
                                   10,    15,    30,    60,   120,  300,  600, 1800, 3600, 7200, 21600, 86400};
constexpr int marksBetween = 5;

}  // namespace

double WaveformViewport::widest() const noexcept {
    return std::max(closestFramesPerPixel, static_cast<double>(frameTotal_) / width_);
}

void WaveformViewport::settle() {
    framesPerPixel_ = std::clamp(framesPerPixel_, std::min(closestFramesPerPixel, widest()), widest());
    const double last = std::max(0.0, static_cast<double>(frameTotal_) - visibleFrames());
    firstFrame_ = std::clamp(firstFrame_, 0.0, last);
}

bool WaveformViewport::isWhole() const noexcept { return framesPerPixel_ >= widest(); }

void WaveformViewport::setTake(std::int64_t frameTotal) {
    frameTotal_ = std::max<std::int64_t>(0, frameTotal);
    showWhole();
}

void WaveformViewport::setWidth(int pixels) {
    const bool whole = isWhole();
    width_ = std::max(1, pixels);
    if (whole) {
        showWhole();
    } else {
        settle();
    }
}

std::int64_t WaveformViewport::frameAt(double x) const noexcept {
    const double frame = std::clamp(firstFrame_ + x * framesPerPixel_, 0.0, static_cast<double>(frameTotal_));
    return std::llround(frame);
}

WaveformViewport WaveformViewport::scaledBy(double ratio) const {
    WaveformViewport scaled = *this;
    scaled.width_ = std::max(1, static_cast<int>(width_ * ratio));
    scaled.framesPerPixel_ = framesPerPixel_ / ratio;
    return scaled;
}

void WaveformViewport::zoom(double factor, double x) {
    if (!(factor > 0)) return;
    const double held = firstFrame_ + x * framesPerPixel_;
    framesPerPixel_ = std::clamp(framesPerPixel_ / factor, std::min(closestFramesPerPixel, widest()), widest());
    firstFrame_ = held - x * framesPerPixel_;
    settle();
}

void WaveformViewport::showWhole() {
    framesPerPixel_ = widest();
    firstFrame_ = 0;
}

void WaveformViewport::showRange(std::int64_t debut, std::int64_t fin) {
    if (fin <= debut) return;
    framesPerPixel_ = static_cast<double>(fin - debut) / width_;
    firstFrame_ = static_cast<double>(debut);
    settle();
}

void WaveformViewport::scrollBy(double pixels) { scrollTo(firstFrame_ + pixels * framesPerPixel_); }

void WaveformViewport::scrollTo(double firstFrame) {
    firstFrame_ = firstFrame;
    settle();
}

bool WaveformViewport::pageTo(std::int64_t frame) {
    const auto at = static_cast<double>(frame);
    if (at >= firstFrame_ && at < firstFrame_ + visibleFrames()) return false;
    const double before = firstFrame_;
    firstFrame_ += std::floor((at - firstFrame_) / visibleFrames()) * visibleFrames();
    settle();
    return firstFrame_ != before;
}

std::vector<RulerTick> rulerTicks(const WaveformViewport& viewport, double sampleRate, const TakeTimecode& timecode,
                                  bool elapsed, int labelPixels) {
    if (!(sampleRate > 0) || viewport.frameTotal() <= 0) return {};
    const double needed = labelPixels * viewport.framesPerPixel() / sampleRate;
    // The units that are counted: thousandths of a second, or timecode frames, which are not finer than themselves.
    const double real = timecode.tcFps > 0 ? timecode.tcFps : 25.0;
    const double nominal = nominalTimecodeRate(real);
    const double unitSeconds = elapsed ? 0.001 : 1.0 / real;
    double step = 0;  // in units
    if (!elapsed) {
        for (const double frames : {1.0, 2.0, 5.0, 10.0}) {
            if (frames >= nominal || frames * unitSeconds < needed) continue;
            step = frames;
            break;
        }
    }
    if (step == 0) {
        const auto* const round = std::find_if(std::begin(roundSeconds), std::end(roundSeconds), [&](double seconds) {
            return seconds >= needed && (elapsed || seconds >= 1);
        });
        const double seconds = round == std::end(roundSeconds) ? std::ceil(needed / 86400) * 86400 : *round;
        step = elapsed ? std::round(seconds * 1000) : seconds * nominal;
    }
    const double small = std::fmod(step, marksBetween) == 0 ? step / marksBetween : step;
    const double depart = elapsed ? 0 : static_cast<double>(timecode.tcDepart);
    const double framesPerUnit = unitSeconds * sampleRate;
    const double first = std::ceil((viewport.firstFrame() / framesPerUnit + depart) / small) * small;
    const double last =
        std::min(viewport.firstFrame() + viewport.visibleFrames(), static_cast<double>(viewport.frameTotal())) /
            framesPerUnit +
        depart;
    std::vector<RulerTick> ticks;
    for (double unit = first; unit <= last; unit += small) {
        RulerTick tick{(unit - depart) * framesPerUnit, {}};
        if (std::fmod(unit, step) == 0) {
            tick.label =
                elapsed ? elapsedText(std::llround(tick.frame), sampleRate) : timecodeText(std::llround(unit), real);
        }
        ticks.push_back(std::move(tick));
    }
    return ticks;
}

}  // namespace dravik
