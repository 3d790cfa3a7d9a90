#pragma once

#include <cstdint>
#include <vector>

namespace dravik {

/// Made-up production sound at 48 kHz: people who talk in turns (a voiced source through vowel formants, at the pace of
/// syllables), a slate, room noise, tones. Nobody says anything, but it looks and levels like speech.

/// What a track's microphone is near to.
enum class DemoSound { boom, lavFirst, lavSecond, lavThird, mixLeft, mixRight, plant, playback, tone, room };

inline constexpr int demoSampleRate = 48000;

/// One signal a track, values from -1 to 1. All tracks hear the same people, each in its own way. The same arguments
/// give the same signals.
[[nodiscard]] std::vector<std::vector<float>> demoTracks(const std::vector<DemoSound>& sounds, std::int64_t frames,
                                                         bool slate, std::uint64_t seed);

}  // namespace dravik
