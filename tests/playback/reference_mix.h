#pragma once

#include "playback/mixer_state.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

namespace dravik::test {

/// What is to be heard, sample by sample in double precision and straight from the rules: no plan, no term, none of the
/// product's gains.
inline std::vector<std::array<double, 2>> referenceMix(const MixerState& mixer,
                                                       const std::vector<std::vector<float>>& channels,
                                                       double boostDB = 0) {
    std::size_t frames = 0;
    for (const auto& channel : channels)
        frames = std::max(frames, channel.size());
    const auto gain = [&](std::size_t c) {
        return mixer.faderDBParCanal[c] <= -96.0 ? 0.0 : std::pow(10.0, mixer.faderDBParCanal[c] / 20.0);
    };
    const auto sample = [&](std::size_t c, std::size_t i) {
        const double x = i < channels[c].size() ? double{channels[c][i]} : 0.0;
        return mixer.reversePolarityParCanal[c] ? -x : x;
    };
    bool anySolo = false;
    for (const bool solo : mixer.soloParCanal)
        anySolo = anySolo || solo;

    std::vector<std::array<double, 2>> out(frames);
    std::vector<bool> inPair(channels.size(), false);
    for (const PaireMonitoringMS& pair : mixer.pairesMSMonitoring) {
        if (!pair.actif) continue;
        const bool ms = pair.orientation == OrientationMonitoringMS::ms;
        const auto m = static_cast<std::size_t>(ms ? pair.indexMid : pair.indexSide);
        const auto s = static_cast<std::size_t>(ms ? pair.indexSide : pair.indexMid);
        inPair[m] = inPair[s] = true;
        const bool soloM = mixer.soloParCanal[m];
        const bool soloS = mixer.soloParCanal[s];
        for (std::size_t i = 0; i < frames; ++i) {
            const double mid = mixer.muteParCanal[m] ? 0.0 : gain(m) * sample(m, i);
            const double side = mixer.muteParCanal[s] ? 0.0 : gain(m) * sample(s, i);
            if (anySolo && !soloM && !soloS) continue;
            if (soloS && !soloM) {
                out[i][0] += side;
                out[i][1] += side;
            } else if (soloM && !soloS) {
                out[i][0] += mid;
                out[i][1] += mid;
            } else {
                out[i][0] += mid + double{pair.width} * side;
                out[i][1] += mid - double{pair.width} * side;
            }
        }
    }
    for (std::size_t c = 0; c < channels.size(); ++c) {
        if (inPair[c] || mixer.muteParCanal[c] || (anySolo && !mixer.soloParCanal[c])) continue;
        const double pan = double{mixer.panParCanal[c]};
        for (std::size_t i = 0; i < frames; ++i) {
            out[i][0] += sample(c, i) * gain(c) * (1 - pan) / 2;
            out[i][1] += sample(c, i) * gain(c) * (1 + pan) / 2;
        }
    }
    for (auto& frame : out) {
        frame[0] *= std::pow(10.0, boostDB / 20.0);
        frame[1] *= std::pow(10.0, boostDB / 20.0);
    }
    return out;
}

}  // namespace dravik::test
