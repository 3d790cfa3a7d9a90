#pragma once

#include "base/bytes.h"
#include "model/wave/linear_samples.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

namespace dravik {

/// Between which bounds some samples of a channel lie, in steps of which full scale has 32768. Rounded outwards: no
/// sample lies outside, and neither bound is more than a step too wide. What a float file holds beyond full scale
/// counts as full scale.
struct PeakValue {
    std::int16_t lowest = std::numeric_limits<std::int16_t>::max();
    std::int16_t highest = std::numeric_limits<std::int16_t>::min();

    /// Of no samples at all.
    [[nodiscard]] constexpr bool isEmpty() const noexcept { return lowest > highest; }
    constexpr void add(PeakValue other) noexcept {
        lowest = std::min(lowest, other.lowest);
        highest = std::max(highest, other.highest);
    }
    friend bool operator==(PeakValue, PeakValue) = default;
};

/// Finds the extremes of interleaved samples as a file holds them, without converting each: whole rows of frames are
/// compared lane by lane, and only what remains of them is taken apart into channels. Several times as fast as reading
/// a file out of the page cache. Keeps scratch room of a few rows; one thread at a time.
class SampleExtremes {
  public:
    explicit SampleExtremes(const LinearLayout& layout);

    /// This many bytes behind those of a file given to `add` are looked at as well (and ignored): they must be there.
    /// Not behind floats.
    static constexpr std::size_t slackBytes = 1;
    /// Widens `channels` (one value a channel) by the whole frames in `frames`.
    void add(ByteSpan frames, std::span<PeakValue> channels) noexcept;

  private:
    void addRows(const std::byte* at, std::size_t rows, std::span<PeakValue> channels) noexcept;

    SampleEncoding encoding_;
    std::size_t frameBytes_;
    std::size_t rowFrames_;  ///< as few frames as fill whole vectors
    std::size_t rowBytes_;
    Bytes lastRow_;  ///< frames that fill no row, the last one repeated
    Bytes lowest_, highest_, shiftedLowest_, shiftedHighest_, bits_;
};

}  // namespace dravik
