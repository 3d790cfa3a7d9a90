#pragma once

#include "base/bytes.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace dravik {

/// Where an encoder's file comes into being: it writes forward, and at the end back into its head.
class EncodedOutput {
  public:
    virtual ~EncodedOutput() = default;
    virtual void writeAt(std::uint64_t offset, ByteSpan bytes) = 0;
};

struct AacSettings {
    int channels = 2;
    int sampleRate = 48000;  ///< Hz
    int bitRate = 256;       ///< kbit/s
    std::string title, comment;
};

/// One M4A file being made. One thread at a time; throws OperationAudioError, and what the output throws.
class AacEncoder {
  public:
    virtual ~AacEncoder() = default;
    /// What it was really set to, in bits a second.
    [[nodiscard]] virtual std::int64_t bitRate() const noexcept = 0;
    /// One row of samples a channel, full scale at 1, all finite.
    virtual void encode(std::span<const float* const> planes, std::size_t frames) = 0;
    /// Encodes what is left and completes the file, whose length is that of the samples given.
    virtual void finish() = 0;
};

/// The best AAC encoder that there is.
class AacEncoders {
  public:
    virtual ~AacEncoders() = default;
    /// Sample rates in Hz that it takes for so many channels; none when there is no encoder.
    [[nodiscard]] virtual std::vector<int> sampleRates(int channels) const = 0;
    /// Does it take this many kbit/s at that rate?
    [[nodiscard]] virtual bool takesBitRate(int channels, int sampleRate, int bitRate) const = 0;
    /// `output` must outlive the encoder. Throws OperationAudioError.
    [[nodiscard]] virtual std::unique_ptr<AacEncoder> make(const AacSettings& settings,
                                                           EncodedOutput& output) const = 0;
};

}  // namespace dravik
