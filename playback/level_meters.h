#pragma once

#include <span>
#include <vector>

namespace dravik {

inline constexpr float meterMinimumDB = -60.0F;
inline constexpr float meterReleaseDBParSeconde = 20.0F;
inline constexpr double meterPeakHoldSecondes = 1.0;
inline constexpr float meterPeakReleaseDBParSeconde = 15.0F;
inline constexpr double meterPublicationSecondes = 1.0 / 48.0;

/// Level of the largest sample in dBFS, not below the floor; a sample that is no number counts as full scale.
/// Real-time safe.
[[nodiscard]] float peakLevelDB(std::span<const float> samples) noexcept;

/// What the meters of a take show. A value; nothing here allocates once there is an entry for every channel.
struct LevelMeters {
    std::vector<float> niveauxDB;              ///< bars, dBFS, from the floor to 0
    std::vector<float> meterPeakDB;            ///< peak markers, dBFS
    std::vector<double> meterPeakHoldUntil;    ///< media time, seconds
    std::vector<bool> meterClipHeld;           ///< latched
    double dernierTempsBallistiqueMeters = 0;  ///< media time of the last step; 0 before the first

    LevelMeters() = default;
    explicit LevelMeters(int nbCanaux) { reset(nbCanaux, true); }

    /// One step at media time `t` (seconds) with the levels measured: bars rise at once and fall evenly, markers wait
    /// before they fall, a full-scale sample sets the clip sign and no step clears it. Channels without a level fall
    /// as if silent.
    void step(std::span<const float> levelsDB, double t);
    /// Everything to the floor; the clip signs too when asked.
    void reset(int nbCanaux, bool clearClip);

    friend bool operator==(const LevelMeters&, const LevelMeters&) = default;
};

}  // namespace dravik
