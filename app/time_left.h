#pragma once

#include <QCoreApplication>
#include <QString>
#include <algorithm>
#include <cmath>
#include <cstdint>

namespace dravik {

/// "12 s left" or "3 min left" of work of which that fraction took so long; empty at its beginning, when any guess
/// would jump.
[[nodiscard]] inline QString timeLeft(std::int64_t elapsedMilliseconds, double fraction) {
    constexpr std::int64_t leastMilliseconds = 1000;
    constexpr double leastFraction = 0.02;
    if (elapsedMilliseconds < leastMilliseconds || fraction < leastFraction) return {};
    const double left = static_cast<double>(elapsedMilliseconds) / 1000 * (1 - std::min(fraction, 1.0)) / fraction;
    const auto seconds = std::max(1L, std::lround(left));
    return seconds < 60 ? QCoreApplication::translate("dravik::TimeLeft", "%1 s left").arg(seconds)
                        : QCoreApplication::translate("dravik::TimeLeft", "%1 min left").arg((seconds + 59) / 60);
}

}  // namespace dravik
