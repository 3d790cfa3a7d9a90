#include "playback/level_meters.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

namespace dravik {
namespace {

/// A longer pause between two steps (a window that was dragged, a machine that slept) lets a bar fall by no more.
constexpr double longestStepSeconds = 0.25;

}  // namespace

float peakLevelDB(std::span<const float> samples) noexcept {
    // The bits of floats without their sign are ordered as their magnitudes are; whole numbers have a maximum that
    // does not depend on the order of comparison, so that the loop can be vectorised without changing a result.
    std::int32_t largest = 0;
    const float* __restrict in = samples.data();
    const std::size_t count = samples.size();
    for (std::size_t i = 0; i < count; ++i) {
        const auto magnitude = std::bit_cast<std::int32_t>(in[i]) & 0x7FFFFFFF;
        largest = magnitude > largest ? magnitude : largest;
    }
    const float peak = std::bit_cast<float>(largest);
    if (!std::isfinite(peak)) return 0.0F;
    if (peak <= 0.0F) return meterMinimumDB;
    return std::max(meterMinimumDB, 20.0F * std::log10(peak));
}

void LevelMeters::step(std::span<const float> levelsDB, double t) {
    const std::size_t count = std::max(niveauxDB.size(), levelsDB.size());
    niveauxDB.resize(count, meterMinimumDB);
    meterPeakDB.resize(count, meterMinimumDB);
    meterPeakHoldUntil.resize(count, 0.0);
    meterClipHeld.resize(count, false);

    double dt = dernierTempsBallistiqueMeters > 0 ? t - dernierTempsBallistiqueMeters : 0.0;
    dt = std::clamp(dt, 0.0, longestStepSeconds);
    dernierTempsBallistiqueMeters = t;
    const auto fall = static_cast<float>(dt * double{meterReleaseDBParSeconde});
    const auto peakFall = static_cast<float>(dt * double{meterPeakReleaseDBParSeconde});

    for (std::size_t i = 0; i < count; ++i) {
        const float x = i < levelsDB.size() ? levelsDB[i] : meterMinimumDB;
        const float shown = x >= niveauxDB[i] || dt <= 0 ? x : std::max(x, niveauxDB[i] - fall);
        niveauxDB[i] = std::clamp(shown, meterMinimumDB, 0.0F);
        if (x >= meterPeakDB[i]) {
            meterPeakDB[i] = x;
            meterPeakHoldUntil[i] = t + meterPeakHoldSecondes;
        } else if (t >= meterPeakHoldUntil[i]) {
            meterPeakDB[i] = std::max(x, meterPeakDB[i] - peakFall);
        }
        if (x >= 0.0F) meterClipHeld[i] = true;
    }
}

void LevelMeters::reset(int nbCanaux, bool clearClip) {
    const auto count = static_cast<std::size_t>(std::max(0, nbCanaux));
    niveauxDB.assign(count, meterMinimumDB);
    meterPeakDB.assign(count, meterMinimumDB);
    meterPeakHoldUntil.assign(count, 0.0);
    if (clearClip) {
        meterClipHeld.assign(count, false);
    } else {
        meterClipHeld.resize(count, false);
    }
}

}  // namespace dravik
