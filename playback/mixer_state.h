#pragma once

#include "playback/monitoring_types.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dravik {

/// The monitoring mixer of one take as a value: what the strips show, and the rules by which it changes. Changes only
/// what is heard. Knows no device and no thread. Every operation does nothing for a channel that the take does not have
/// and for a number that is none.
class MixerState {
  public:
    static constexpr double faderMinimumDB = -96.0;  ///< silence
    static constexpr double faderMaximumDB = 12.0;

    MixerState() = default;
    /// All channels audible, at 0 dB, in the centre.
    explicit MixerState(int nbCanaux);

    int nbCanaux = 0;
    std::vector<bool> muteParCanal, soloParCanal, reversePolarityParCanal;
    std::vector<float> panParCanal;  ///< -1 (left) to +1 (right)
    std::vector<double> faderDBParCanal;
    std::vector<float> gainsParCanal;                   ///< linear, of the fader alone
    std::vector<float> volumeParCanal;                  ///< linear, after mute and solo
    std::vector<Panoramique> panoramiquesParCanal;      ///< out of the pans
    std::vector<PaireMonitoringMS> pairesMSMonitoring;  ///< inactive ones stay, to be taken up again
    std::vector<PaireLinkAB> pairesABLink;

    /// Moves the fader, and the one that is linked with it by as much; the move ends where either meets an end of the
    /// range, so that their difference stays.
    void setFader(int index, double dB);
    void setPan(int index, float pan);
    void toggleMute(int index);
    /// `soloComportement` is the setting: "X" adds, "OR" adds with Shift and replaces without; anything else replaces.
    /// Linked channels solo together.
    void toggleSolo(int index, bool shift, std::string_view soloComportement);
    void toggleReversePolarity(int index);

    /// Makes the pair or gives it another orientation and width. False when a channel is taken by another pair or link.
    bool setPaireMS(int first, int second, OrientationMonitoringMS orientation, float width);
    void removePaireMS(int first, int second);
    void setWidth(int first, int second, float width);
    [[nodiscard]] std::vector<PaireMonitoringMS> activePairesMS() const;

    /// False when the channels are not neighbours, or taken.
    bool makeLinkAB(int a, int b);
    void removeLinkAB(int a, int b);
    [[nodiscard]] std::vector<PaireLinkAB> activeLinksAB() const;
    /// The two channels of the active link that holds this one.
    [[nodiscard]] std::optional<std::pair<int, int>> linkOf(int index) const;

    /// Absent unless there is a channel and every array has an entry for each.
    [[nodiscard]] std::optional<MonitoringSessionState> snapshot() const;
    /// False, and nothing changed, when the snapshot is of another number of channels. Pairs that could not be made on
    /// this take are left out.
    bool restore(const MonitoringSessionState& state);

    friend bool operator==(const MixerState&, const MixerState&) = default;

  private:
    [[nodiscard]] bool isChannel(int index) const noexcept { return index >= 0 && index < nbCanaux; }
    [[nodiscard]] bool isInActivePaireMS(int index) const noexcept;
    void setFaderAlone(int index, double dB);
    void recomputeVolumes();
};

/// 10^(dB/20); exactly 0 at the bottom of the fader's range and below.
[[nodiscard]] float faderGain(double dB) noexcept;
/// Linear pan law: 0.5 on both sides in the centre.
[[nodiscard]] Panoramique panoramiqueOf(float pan) noexcept;

/// "0 dB", "+6 dB", "-3 dB": the whole part.
[[nodiscard]] std::string volumeLabel(float boostDB);
/// 10^(dB/20).
[[nodiscard]] float outputGain(float boostDB) noexcept;

}  // namespace dravik
