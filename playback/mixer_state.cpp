#include "playback/mixer_state.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include <fmt/format.h>

namespace dravik {
namespace {

std::size_t at(int index) noexcept { return static_cast<std::size_t>(index); }

}  // namespace

float faderGain(double dB) noexcept {
    return dB <= MixerState::faderMinimumDB ? 0.0F : static_cast<float>(std::pow(10.0, dB / 20.0));
}

Panoramique panoramiqueOf(float pan) noexcept { return {(1.0F - pan) * 0.5F, (1.0F + pan) * 0.5F}; }

std::string volumeLabel(float boostDB) {
    return fmt::format("{}{:d} dB", boostDB > 0 ? "+" : "", static_cast<int>(boostDB));
}

float outputGain(float boostDB) noexcept { return static_cast<float>(std::pow(10.0, double{boostDB} / 20.0)); }

MixerState::MixerState(int channels) : nbCanaux(std::max(0, channels)) {
    const std::size_t count = at(nbCanaux);
    muteParCanal.assign(count, false);
    soloParCanal.assign(count, false);
    reversePolarityParCanal.assign(count, false);
    panParCanal.assign(count, 0.0F);
    faderDBParCanal.assign(count, 0.0);
    gainsParCanal.assign(count, 1.0F);
    volumeParCanal.assign(count, 1.0F);
    panoramiquesParCanal.assign(count, Panoramique{});
}

void MixerState::recomputeVolumes() {
    const bool anySolo = std::find(soloParCanal.begin(), soloParCanal.end(), true) != soloParCanal.end();
    for (std::size_t i = 0; i < volumeParCanal.size(); ++i) {
        const bool heard = !muteParCanal[i] && (!anySolo || soloParCanal[i]);
        volumeParCanal[i] = heard ? gainsParCanal[i] : 0.0F;
    }
}

void MixerState::setFaderAlone(int index, double dB) {
    const double inRange = std::clamp(dB, faderMinimumDB, faderMaximumDB);
    faderDBParCanal[at(index)] = inRange;
    gainsParCanal[at(index)] = faderGain(inRange);
}

void MixerState::setFader(int index, double dB) {
    if (!isChannel(index) || std::isnan(dB)) return;
    if (const auto link = linkOf(index)) {
        const auto [a, b] = *link;
        const double faderA = faderDBParCanal[at(a)];
        const double faderB = faderDBParCanal[at(b)];
        double delta = std::clamp(dB, faderMinimumDB, faderMaximumDB) - (index == a ? faderA : faderB);
        delta = std::min({delta, faderMaximumDB - faderA, faderMaximumDB - faderB});
        delta = std::max({delta, faderMinimumDB - faderA, faderMinimumDB - faderB});
        setFaderAlone(a, faderA + delta);
        setFaderAlone(b, faderB + delta);
    } else {
        setFaderAlone(index, dB);
    }
    recomputeVolumes();
}

void MixerState::setPan(int index, float pan) {
    if (!isChannel(index) || std::isnan(pan)) return;
    panParCanal[at(index)] = std::clamp(pan, -1.0F, 1.0F);
    panoramiquesParCanal[at(index)] = panoramiqueOf(panParCanal[at(index)]);
}

void MixerState::toggleMute(int index) {
    if (!isChannel(index)) return;
    muteParCanal[at(index)] = !muteParCanal[at(index)];
    recomputeVolumes();
}

void MixerState::toggleReversePolarity(int index) {
    if (!isChannel(index)) return;
    reversePolarityParCanal[at(index)] = !reversePolarityParCanal[at(index)];
}

void MixerState::toggleSolo(int index, bool shift, std::string_view soloComportement) {
    if (!isChannel(index)) return;
    const bool additive = soloComportement == "X" || (soloComportement == "OR" && shift);
    const auto [a, b] = linkOf(index).value_or(std::pair(index, index));
    const bool newState = !(soloParCanal[at(a)] && soloParCanal[at(b)]);
    if (!additive) std::fill(soloParCanal.begin(), soloParCanal.end(), false);
    soloParCanal[at(a)] = newState;
    soloParCanal[at(b)] = newState;
    recomputeVolumes();
}

bool MixerState::isInActivePaireMS(int index) const noexcept {
    return std::any_of(pairesMSMonitoring.begin(), pairesMSMonitoring.end(),
                       [index](const PaireMonitoringMS& pair) { return pair.actif && pair.holds(index); });
}

std::optional<std::pair<int, int>> MixerState::linkOf(int index) const {
    for (const PaireLinkAB& link : pairesABLink) {
        if (link.actif && link.holds(index) && isChannel(link.indexA) && isChannel(link.indexB)) {
            return std::pair(link.indexA, link.indexB);
        }
    }
    return std::nullopt;
}

bool MixerState::setPaireMS(int first, int second, OrientationMonitoringMS orientation, float width) {
    if (!isChannel(first) || !isChannel(second) || first == second || std::isnan(width)) return false;
    if (linkOf(first) || linkOf(second)) return false;
    for (const PaireMonitoringMS& pair : pairesMSMonitoring) {
        if (pair.actif && !pair.joins(first, second) && (pair.holds(first) || pair.holds(second))) return false;
    }
    width = std::clamp(width, 0.0F, 1.0F);
    const auto known = std::find_if(pairesMSMonitoring.begin(), pairesMSMonitoring.end(),
                                    [=](const PaireMonitoringMS& pair) { return pair.joins(first, second); });
    if (known == pairesMSMonitoring.end()) {
        pairesMSMonitoring.push_back({first, second, orientation, width, true});
    } else {
        known->orientation = orientation;
        known->width = width;
        known->actif = true;
    }
    return true;
}

void MixerState::removePaireMS(int first, int second) {
    for (PaireMonitoringMS& pair : pairesMSMonitoring) {
        if (pair.joins(first, second)) pair.actif = false;
    }
}

void MixerState::setWidth(int first, int second, float width) {
    if (std::isnan(width)) return;
    for (PaireMonitoringMS& pair : pairesMSMonitoring) {
        if (pair.joins(first, second)) pair.width = std::clamp(width, 0.0F, 1.0F);
    }
}

std::vector<PaireMonitoringMS> MixerState::activePairesMS() const {
    std::vector<PaireMonitoringMS> active;
    std::copy_if(pairesMSMonitoring.begin(), pairesMSMonitoring.end(), std::back_inserter(active),
                 [](const PaireMonitoringMS& pair) { return pair.actif; });
    return active;
}

bool MixerState::makeLinkAB(int a, int b) {
    if (!isChannel(a) || !isChannel(b) || std::abs(a - b) != 1) return false;
    if (isInActivePaireMS(a) || isInActivePaireMS(b)) return false;
    for (const PaireLinkAB& link : pairesABLink) {
        if (link.actif && !link.joins(a, b) && (link.holds(a) || link.holds(b))) return false;
    }
    const auto known = std::find_if(pairesABLink.begin(), pairesABLink.end(),
                                    [=](const PaireLinkAB& link) { return link.joins(a, b); });
    const PaireLinkAB made{a, b, panParCanal[at(a)], panParCanal[at(b)], true};
    if (known == pairesABLink.end()) {
        pairesABLink.push_back(made);
    } else if (!known->actif) {
        *known = made;  // a link that is active already keeps the pans from before it was
    }
    setPan(a, -1.0F);
    setPan(b, 1.0F);
    return true;
}

void MixerState::removeLinkAB(int a, int b) {
    for (PaireLinkAB& link : pairesABLink) {
        if (!link.actif || !link.joins(a, b)) continue;
        link.actif = false;
        setPan(link.indexA, link.panAvantActivationA);
        setPan(link.indexB, link.panAvantActivationB);
    }
}

std::vector<PaireLinkAB> MixerState::activeLinksAB() const {
    std::vector<PaireLinkAB> active;
    std::copy_if(pairesABLink.begin(), pairesABLink.end(), std::back_inserter(active),
                 [](const PaireLinkAB& link) { return link.actif; });
    return active;
}

namespace {

bool hasEveryChannel(const MonitoringSessionState& state, std::size_t channels) noexcept {
    return channels > 0 && state.gainsParCanal.size() == channels && state.faderDBParCanal.size() == channels &&
           state.panParCanal.size() == channels && state.muteParCanal.size() == channels &&
           state.soloParCanal.size() == channels && state.reversePolarityParCanal.size() == channels;
}

}  // namespace

std::optional<MonitoringSessionState> MixerState::snapshot() const {
    MonitoringSessionState state{gainsParCanal, faderDBParCanal,         panParCanal,        muteParCanal,
                                 soloParCanal,  reversePolarityParCanal, pairesMSMonitoring, pairesABLink};
    if (!hasEveryChannel(state, at(nbCanaux))) return std::nullopt;
    return state;
}

bool MixerState::restore(const MonitoringSessionState& state) {
    if (!hasEveryChannel(state, at(nbCanaux))) return false;
    gainsParCanal = state.gainsParCanal;
    faderDBParCanal = state.faderDBParCanal;
    muteParCanal = state.muteParCanal;
    soloParCanal = state.soloParCanal;
    reversePolarityParCanal = state.reversePolarityParCanal;
    for (int i = 0; i < nbCanaux; ++i)
        setPan(i, state.panParCanal[at(i)]);
    pairesMSMonitoring.clear();
    pairesABLink.clear();
    for (const PaireMonitoringMS& pair : state.pairesMSMonitoring) {
        if (isChannel(pair.indexMid) && isChannel(pair.indexSide) && pair.indexMid != pair.indexSide) {
            pairesMSMonitoring.push_back(pair);
        }
    }
    for (const PaireLinkAB& link : state.pairesABLink) {
        if (isChannel(link.indexA) && isChannel(link.indexB) && std::abs(link.indexA - link.indexB) == 1) {
            pairesABLink.push_back(link);
        }
    }
    recomputeVolumes();
    return true;
}

}  // namespace dravik
