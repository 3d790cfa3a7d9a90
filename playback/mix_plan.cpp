#include "playback/mix_plan.h"

#include <algorithm>

namespace dravik {
namespace {

template <typename Value>
Value entry(const std::vector<Value>& values, int index, Value otherwise) {
    const auto i = static_cast<std::size_t>(index);
    return i < values.size() ? Value(values[i]) : otherwise;
}

Panoramique panOf(const MixerState& mixer, int canal) {
    const auto i = static_cast<std::size_t>(canal);
    if (i < mixer.panoramiquesParCanal.size()) return mixer.panoramiquesParCanal[i];
    // Of a take whose pans are not known the first two channels are heard as left and right.
    if (mixer.nbCanaux > 1 && canal == 0) return {1.0F, 0.0F};
    if (mixer.nbCanaux > 1 && canal == 1) return {0.0F, 1.0F};
    return {};
}

float polarity(const MixerState& mixer, int canal) {
    return entry(mixer.reversePolarityParCanal, canal, false) ? -1.0F : 1.0F;
}

void addPair(std::vector<MixTerm>& plan, const MixerState& mixer, const PaireMonitoringMS& pair, float gainBoost,
             bool anySolo) {
    const int mid = pair.mid();
    const int side = pair.side();
    const bool soloMid = entry(mixer.soloParCanal, mid, false);
    const bool soloSide = entry(mixer.soloParCanal, side, false);
    if (anySolo && !soloMid && !soloSide) return;
    // The fader of the Mid channel sets the level of both; pans are not used.
    const float gain = entry(mixer.gainsParCanal, mid, 1.0F) * gainBoost;
    if (gain <= 0) return;
    const bool sideAlone = soloSide && !soloMid;
    const bool midAlone = soloMid && !soloSide;
    if (!sideAlone && !entry(mixer.muteParCanal, mid, false)) {
        const float level = gain * polarity(mixer, mid);
        plan.push_back({mid, level, level});
    }
    if (!midAlone && !entry(mixer.muteParCanal, side, false)) {
        const float level = gain * polarity(mixer, side);
        if (sideAlone) {
            plan.push_back({side, level, level});
        } else if (pair.width > 0) {
            plan.push_back({side, pair.width * level, -pair.width * level});
        }
    }
}

}  // namespace

std::vector<MixTerm> mixPlan(const MixerState& mixer, float gainBoost) {
    std::vector<MixTerm> plan;
    std::vector<bool> canauxTraitesMSRendu(static_cast<std::size_t>(std::max(0, mixer.nbCanaux)), false);
    const bool anySolo =
        std::find(mixer.soloParCanal.begin(), mixer.soloParCanal.end(), true) != mixer.soloParCanal.end();
    for (const PaireMonitoringMS& pair : mixer.pairesMSMonitoring) {
        const bool valid = pair.indexMid >= 0 && pair.indexMid < mixer.nbCanaux && pair.indexSide >= 0 &&
                           pair.indexSide < mixer.nbCanaux && pair.indexMid != pair.indexSide;
        if (!pair.actif || !valid) continue;
        const auto first = static_cast<std::size_t>(pair.indexMid);
        const auto second = static_cast<std::size_t>(pair.indexSide);
        if (canauxTraitesMSRendu[first] || canauxTraitesMSRendu[second]) continue;
        addPair(plan, mixer, pair, gainBoost, anySolo);
        canauxTraitesMSRendu[first] = true;
        canauxTraitesMSRendu[second] = true;
    }
    for (int canal = 0; canal < mixer.nbCanaux; ++canal) {
        if (canauxTraitesMSRendu[static_cast<std::size_t>(canal)]) continue;
        const float gain = entry(mixer.volumeParCanal, canal, 1.0F);
        if (!(gain > 0)) continue;
        const Panoramique pan = panOf(mixer, canal);
        const float level = gain * gainBoost * polarity(mixer, canal);
        plan.push_back({canal, pan.gauche * level, pan.droite * level});
    }
    return plan;
}

void mixInto(float* __restrict left, float* __restrict right, std::span<const float> x, float gauche,
             float droite) noexcept {
    const float* __restrict in = x.data();
    const std::size_t count = x.size();
    for (std::size_t i = 0; i < count; ++i) {
        left[i] += in[i] * gauche;
        right[i] += in[i] * droite;
    }
}

void scale(std::span<float> x, float gain) noexcept {
    for (float& sample : x)
        sample *= gain;
}

}  // namespace dravik
