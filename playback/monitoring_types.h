#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <vector>

namespace dravik {

/// Which channel of a Mid/Side pair is the Mid signal: with `ms` the first, with `sm` the second.
enum class OrientationMonitoringMS { ms, sm };

inline constexpr std::array orientationsMonitoringMS{OrientationMonitoringMS::ms, OrientationMonitoringMS::sm};

/// "MS" or "SM".
[[nodiscard]] constexpr std::string_view rawValue(OrientationMonitoringMS orientation) noexcept {
    return orientation == OrientationMonitoringMS::ms ? "MS" : "SM";
}
[[nodiscard]] constexpr std::optional<OrientationMonitoringMS> orientationFromRawValue(std::string_view text) noexcept {
    for (const OrientationMonitoringMS orientation : orientationsMonitoringMS) {
        if (rawValue(orientation) == text) return orientation;
    }
    return std::nullopt;
}

/// Two channels heard as Mid and Side, decoded to left and right. The indexes keep the order in which the pair was
/// made; the orientation says which of them is Mid, so that switching it rewrites no index.
struct PaireMonitoringMS {
    int indexMid = 0, indexSide = 0;
    OrientationMonitoringMS orientation = OrientationMonitoringMS::ms;
    float width = 1.0F;  ///< 0 (Mid alone) to 1
    bool actif = false;

    [[nodiscard]] int mid() const noexcept { return orientation == OrientationMonitoringMS::ms ? indexMid : indexSide; }
    [[nodiscard]] int side() const noexcept {
        return orientation == OrientationMonitoringMS::ms ? indexSide : indexMid;
    }
    [[nodiscard]] bool holds(int index) const noexcept { return index == indexMid || index == indexSide; }
    [[nodiscard]] bool joins(int a, int b) const noexcept {
        return (a == indexMid && b == indexSide) || (a == indexSide && b == indexMid);
    }
    friend bool operator==(const PaireMonitoringMS&, const PaireMonitoringMS&) = default;
};

/// Two neighbouring channels heard hard left and hard right, with faders that move together.
struct PaireLinkAB {
    int indexA = 0, indexB = 0;
    /// The pans before the link was made, to which they return when it is undone.
    float panAvantActivationA = 0, panAvantActivationB = 0;
    bool actif = false;

    [[nodiscard]] bool holds(int index) const noexcept { return index == indexA || index == indexB; }
    [[nodiscard]] bool joins(int a, int b) const noexcept {
        return (a == indexA && b == indexB) || (a == indexB && b == indexA);
    }
    friend bool operator==(const PaireLinkAB&, const PaireLinkAB&) = default;
};

/// Left and right gain of one channel, out of its pan; linear.
struct Panoramique {
    float gauche = 0.5F, droite = 0.5F;
    friend bool operator==(const Panoramique&, const Panoramique&) = default;
};

/// The mixer of one take as it was left, so that the same take comes back with it.
struct MonitoringSessionState {
    std::vector<float> gainsParCanal;
    std::vector<double> faderDBParCanal;
    std::vector<float> panParCanal;
    std::vector<bool> muteParCanal, soloParCanal, reversePolarityParCanal;
    std::vector<PaireMonitoringMS> pairesMSMonitoring;
    std::vector<PaireLinkAB> pairesABLink;
    friend bool operator==(const MonitoringSessionState&, const MonitoringSessionState&) = default;
};

}  // namespace dravik
