#pragma once

#include "playback/mixer_state.h"

#include <cstddef>
#include <span>
#include <vector>

namespace dravik {

/// What one channel adds to the two outputs.
struct MixTerm {
    int canal = 0;
    float gauche = 0, droite = 0;
    friend bool operator==(const MixTerm&, const MixTerm&) = default;
};

/// The mixer brought down to two gains a channel, which is all that a render has to know: mute, solo, fader, pan,
/// polarity and Mid/Side decoding are all linear. Pairs come first; a channel that is silent has no term, and none has
/// two. Computed where the mixer changes, so that the audio thread only multiplies and adds.
[[nodiscard]] std::vector<MixTerm> mixPlan(const MixerState& mixer, float gainBoost = 1.0F);

/// left += x * gauche, right += x * droite over the whole of `x`; both outputs are at least as long. Real-time safe.
void mixInto(float* left, float* right, std::span<const float> x, float gauche, float droite) noexcept;
/// x *= gain. Real-time safe.
void scale(std::span<float> x, float gain) noexcept;

}  // namespace dravik
