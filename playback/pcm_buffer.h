#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <vector>

namespace dravik {

/// Samples of some channels in memory, one channel behind the other. The memory comes as the system gives it: it is
/// filled once, by whoever decodes into it, and by several threads at once where their ranges differ.
class PcmBuffer {
  public:
    PcmBuffer() = default;
    /// Throws std::bad_alloc.
    PcmBuffer(int channels, std::int64_t frames);

    [[nodiscard]] int channels() const noexcept { return channels_; }
    [[nodiscard]] std::int64_t frames() const noexcept { return frames_; }
    [[nodiscard]] std::span<const float> channel(int index) const noexcept {
        return {start(index), static_cast<std::size_t>(frames_)};
    }
    [[nodiscard]] std::span<float> channel(int index) noexcept {
        return {start(index), static_cast<std::size_t>(frames_)};
    }
    /// Less than was announced turned out to be there.
    void shorten(std::int64_t frames) noexcept {
        if (frames >= 0 && frames < frames_) frames_ = frames;
    }
    /// What a buffer takes, in bytes. Both numbers are within what a file may announce.
    [[nodiscard]] static std::uint64_t bytesFor(int channels, std::int64_t frames) noexcept;

  private:
    struct Free {
        void operator()(float* samples) const noexcept { std::free(samples); }  // NOLINT: the pair of aligned_alloc
    };
    [[nodiscard]] float* start(int index) const noexcept {
        return samples_.get() + static_cast<std::size_t>(index) * stride_;
    }

    std::unique_ptr<float, Free> samples_;
    std::size_t stride_ = 0;  ///< floats from one channel to the next
    int channels_ = 0;
    std::int64_t frames_ = 0;
};

/// A whole take in memory: one buffer of all channels for a poly file, one for each file of a mono set. Does not change
/// once it is loaded; shared with the audio thread.
struct PcmTake {
    std::vector<PcmBuffer> buffers;
    bool estPoly = false;
    double sampleRate = 0;  ///< Hz
    int nbCanaux = 0;
    std::int64_t frameTotal = 0;  ///< of the longest file

    /// Channel i of the take: of a mono set the only channel of the i-th file, which may end before the take does.
    [[nodiscard]] std::span<const float> canal(int index) const noexcept {
        return estPoly ? buffers.front().channel(index) : buffers[static_cast<std::size_t>(index)].channel(0);
    }
};

}  // namespace dravik
