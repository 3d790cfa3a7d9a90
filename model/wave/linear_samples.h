#pragma once

#include "base/byte_source.h"
#include "base/bytes.h"
#include "model/wave/chunk_walk.h"
#include "model/wave/wave_format.h"

#include <cstdint>
#include <optional>
#include <span>

namespace dravik {

/// How the samples of a linear WAV file are written.
enum class SampleEncoding { unsigned8, signed16, signed24, signed32, float32, float64 };

/// Where the audio of a linear WAV file lies.
struct LinearLayout {
    SampleEncoding encoding = SampleEncoding::signed16;
    int channels = 0;
    double sampleRate = 0;         ///< Hz
    std::uint64_t offset = 0;      ///< of the first frame
    std::uint32_t frameBytes = 0;  ///< of all channels
    std::int64_t frames = 0;       ///< whole ones that are there
};

/// Where frames of integer or float samples lie in a file, and how its header declares them.
struct LinearAudio {
    WaveFormat format;
    std::uint64_t offset = 0;  ///< of the first frame
    std::int64_t frames = 0;   ///< whole ones that are there
};
/// Absent for a file that is no WAVE, has no format or no data, or holds coded audio.
[[nodiscard]] std::optional<LinearAudio> linearAudioIn(const ByteSource& source, const ChunkTable& table);

/// Absent for what is not linear PCM or float in samples of whole bytes. A sample takes its share of the frame: 20 bits
/// in three bytes stand at the upper end of them, so that full scale is full scale whatever the declared bits are.
[[nodiscard]] std::optional<LinearLayout> linearLayoutIn(const ByteSource& source, const ChunkTable& table);

/// Whole frames of a file as float, full scale at 1: `planes` has one destination a channel, each with room for all
/// frames in `bytes`. Float samples that are no finite number become silence. Any thread; allocates nothing.
void samplesToPlanes(ByteSpan bytes, const LinearLayout& layout, std::span<float* const> planes) noexcept;
/// One channel (from 0) of whole frames, with room for all of them at `out`. Float samples stay what they are, numbers
/// or not; a double that is too large for a float becomes infinite.
void channelSamples(ByteSpan bytes, const LinearLayout& layout, int channel, float* out) noexcept;

}  // namespace dravik
