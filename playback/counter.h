#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace dravik {

/// The timecode of a take: where it starts and how its frames are counted. Drop-frame is a label only.
struct TakeTimecode {
    double tcFps = 25.0;                    ///< frames per second, as they pass
    std::int64_t tcDepart = 0;              ///< start, as a count of frames at the nominal rate
    bool timecodeRateDisponible = false;    ///< the file carries a rate
    bool timecodeDepartDisponible = false;  ///< the file carries a start
    std::string tcFlag;                     ///< "DF", "NDF"; empty without a rate

    /// Out of the probe's texts ("29.97 DF", "10:00:00:00"), of which either may be absent.
    [[nodiscard]] static TakeTimecode of(const std::optional<std::string>& framerate,
                                         const std::optional<std::string>& timecode);
    friend bool operator==(const TakeTimecode&, const TakeTimecode&) = default;
};

/// Frames counted in a second of timecode: 24 for 23.976, 30 for 29.97, otherwise the rate itself. At least 1.
[[nodiscard]] double nominalTimecodeRate(double tcFps) noexcept;
/// The timecode frame at a sample frame of the take, as a count from midnight. A position that is less than half a
/// sample before a timecode frame counts as on it: boundaries rarely fall on a sample, and a nudge goes to the nearest.
[[nodiscard]] std::int64_t timecodeFrameAt(std::int64_t frame, double sampleRate, const TakeTimecode& take) noexcept;
/// "HH:MM:SS:FF" of such a count; hours are not wrapped.
[[nodiscard]] std::string timecodeText(std::int64_t timecodeFrame, double tcFps);
/// "HH:MM:SS.hh" from the start of the take, cut off and not rounded.
[[nodiscard]] std::string elapsedText(std::int64_t frame, double sampleRate);

/// Sample frames by which a nudge of `count` units moves, always forward. "1s" and "5s" are seconds of timecode, which
/// last a little longer than a second at 23.976 and 29.97; any other text than these two is one timecode frame.
[[nodiscard]] std::int64_t nudgeSamples(std::string_view nudgeValeur, int count, double sampleRate,
                                        double tcFps) noexcept;

/// The part of a take that is played, in sample frames. The end is not part of it.
struct PlayRange {
    std::int64_t debut = 0;  ///< where a loop begins again
    std::int64_t fin = 0;
    friend bool operator==(const PlayRange&, const PlayRange&) = default;
};
/// Out of a selection in seconds, of which either end may be absent. A selection whose end is not after its start
/// counts as none. Played from `position` at or behind the selection's end, the range ends with the take.
[[nodiscard]] PlayRange playRange(std::optional<double> selectionDebut, std::optional<double> selectionFin,
                                  std::int64_t position, double sampleRate, std::int64_t frameTotal) noexcept;

}  // namespace dravik
