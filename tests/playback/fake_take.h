#pragma once

#include "playback/pcm_buffer.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <random>
#include <vector>

namespace dravik::test {

/// Noise below full scale, another one in each channel.
inline std::vector<std::vector<float>> noise(int channels, std::size_t frames, unsigned seed = 1) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> sample(-0.9F, 0.9F);
    std::vector<std::vector<float>> out(static_cast<std::size_t>(channels), std::vector<float>(frames));
    for (auto& channel : out)
        std::generate(channel.begin(), channel.end(), [&] { return sample(random); });
    return out;
}

/// A take in memory; as a mono set the channels may differ in length.
inline std::shared_ptr<const PcmTake> takeOf(const std::vector<std::vector<float>>& channels, bool estPoly,
                                             double sampleRate = 48000) {
    auto take = std::make_shared<PcmTake>();
    take->estPoly = estPoly;
    take->sampleRate = sampleRate;
    take->nbCanaux = static_cast<int>(channels.size());
    if (estPoly) {
        take->buffers.emplace_back(take->nbCanaux, static_cast<std::int64_t>(channels.front().size()));
    }
    for (std::size_t c = 0; c < channels.size(); ++c) {
        if (!estPoly) take->buffers.emplace_back(1, static_cast<std::int64_t>(channels[c].size()));
        const std::span<float> into =
            estPoly ? take->buffers.front().channel(static_cast<int>(c)) : take->buffers.back().channel(0);
        std::copy(channels[c].begin(), channels[c].end(), into.begin());
        take->frameTotal = std::max(take->frameTotal, static_cast<std::int64_t>(channels[c].size()));
    }
    return take;
}

}  // namespace dravik::test
