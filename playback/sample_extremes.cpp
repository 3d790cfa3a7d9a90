#include "playback/sample_extremes.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <numeric>
#include <type_traits>

namespace dravik {
namespace {

static_assert(std::endian::native == std::endian::little, "lanes are read as the file holds them");

constexpr std::size_t vectorBytes = 32;
constexpr double fullScale = 32768;
constexpr std::int16_t largest = std::numeric_limits<std::int16_t>::max();

/// Lanes that are compared at once; where the processor has no vectors of this length the compiler takes two.
template <typename Lane>
struct VectorOf {
    using Type __attribute__((vector_size(vectorBytes))) = Lane;
};
template <typename Lane>
using Vector = typename VectorOf<Lane>::Type;

template <typename Lane>
Lane laneAt(const Bytes& lanes, std::size_t index) noexcept {
    Lane lane;
    std::memcpy(&lane, lanes.data() + index * sizeof(Lane), sizeof(Lane));
    return lane;
}

/// Where the extremes of the lanes of a row go, and the bits that are set anywhere in them.
struct RowResult {
    std::byte* lowest;
    std::byte* highest;
    std::byte* shiftedLowest;  ///< of lanes that begin a byte later
    std::byte* shiftedHighest;
    std::byte* bits;
};
enum class Find { extremes, andBits, andBitsAndShifted };

// Both become part of their callers, for whichever processor these are compiled.

template <typename Lane>
[[gnu::always_inline]] inline void widen(Vector<Lane>& low, Vector<Lane>& high, const std::byte* at) noexcept {
    Vector<Lane> lanes;
    std::memcpy(&lanes, at, vectorBytes);
    if constexpr (std::is_floating_point_v<Lane>) {
        // What is no finite number is silence, as it is when it is played. A double beyond the range of a float
        // becomes none.
        constexpr Lane most = std::numeric_limits<float>::max();
        lanes = lanes <= most ? lanes : Vector<Lane>{};
        lanes = lanes >= -most ? lanes : Vector<Lane>{};
    }
    low = lanes < low ? lanes : low;
    high = lanes > high ? lanes : high;
}

/// Extremes of each lane of the rows, one vector of a row at a time, so that they stay in registers.
template <typename Lane, Find find>
[[gnu::always_inline]] inline void scanRows(const std::byte* at, std::size_t rowBytes, std::size_t rows,
                                            const RowResult& result) noexcept {
    for (std::size_t x = 0; x < rowBytes; x += vectorBytes) {
        Vector<Lane> low = Vector<Lane>{} + std::numeric_limits<Lane>::max();
        Vector<Lane> high = Vector<Lane>{} + std::numeric_limits<Lane>::lowest();
        Vector<Lane> shiftedLow = low;
        Vector<Lane> shiftedHigh = high;
        Vector<std::uint64_t> bits{};
        const std::byte* from = at + x;
        for (std::size_t row = 0; row < rows; ++row, from += rowBytes) {
            widen<Lane>(low, high, from);
            if constexpr (find == Find::andBitsAndShifted) widen<Lane>(shiftedLow, shiftedHigh, from + 1);
            if constexpr (find != Find::extremes) {
                Vector<std::uint64_t> words;
                std::memcpy(&words, from, vectorBytes);
                bits |= words;
            }
        }
        std::memcpy(result.lowest + x, &low, vectorBytes);
        std::memcpy(result.highest + x, &high, vectorBytes);
        if constexpr (find != Find::extremes) std::memcpy(result.bits + x, &bits, vectorBytes);
        if constexpr (find == Find::andBitsAndShifted) {
            std::memcpy(result.shiftedLowest + x, &shiftedLow, vectorBytes);
            std::memcpy(result.shiftedHighest + x, &shiftedHigh, vectorBytes);
        }
    }
}

#ifdef __x86_64__
template <typename Lane, Find find>
[[gnu::target("avx2")]] void scanRowsAvx2(const std::byte* at, std::size_t rowBytes, std::size_t rows,
                                          const RowResult& result) noexcept {
    scanRows<Lane, find>(at, rowBytes, rows, result);
}
#endif

template <typename Lane, Find find = Find::extremes>
void scan(const std::byte* at, std::size_t rowBytes, std::size_t rows, const RowResult& result) noexcept {
#ifdef __x86_64__
    static const bool avx2 = __builtin_cpu_supports("avx2") != 0;
    if (avx2) return scanRowsAvx2<Lane, find>(at, rowBytes, rows, result);
#endif
    scanRows<Lane, find>(at, rowBytes, rows, result);
}

/// A part of a row that every processor compares at once.
constexpr std::size_t foldBytes = 16;

/// The first half of some lanes takes in the second, which is no shorter than a part. The last part may overlap the
/// one before it: to take something in twice is no harm.
template <typename Lane, typename Take>
void fold(std::byte* lanes, std::size_t halfBytes, Take take) noexcept {
    for (std::size_t next = 0; next < halfBytes; next += foldBytes) {
        const std::size_t at = std::min(next, halfBytes - foldBytes);
        std::array<Lane, foldBytes / sizeof(Lane)> one;
        std::array<Lane, foldBytes / sizeof(Lane)> other;
        std::memcpy(one.data(), lanes + at, foldBytes);
        std::memcpy(other.data(), lanes + halfBytes + at, foldBytes);
        for (std::size_t i = 0; i < one.size(); ++i)
            one[i] = take(one[i], other[i]);
        std::memcpy(lanes + at, one.data(), foldBytes);
    }
}

/// The upper 16 bits of a deeper sample are it rounded down: right for the lowest; the highest is a step further up
/// when any sample has lower bits.
PeakValue outwards(std::int16_t lowest, std::int16_t highest, bool lowerBits) noexcept {
    if (lowerBits && highest < largest) ++highest;
    return {lowest, highest};
}
template <typename Float>
PeakValue outwards(Float lowest, Float highest) noexcept {
    const auto step = [](double value) {
        return static_cast<std::int16_t>(std::clamp(value, -fullScale, double{largest}));
    };
    // By way of float, as the samples are played.
    return {step(std::floor(double{static_cast<float>(lowest)} * fullScale)),
            step(std::ceil(double{static_cast<float>(highest)} * fullScale))};
}
PeakValue outwards(std::uint8_t lowest, std::uint8_t highest) noexcept {
    const auto step = [](std::uint8_t sample) { return static_cast<std::int16_t>((int{sample} - 128) * 256); };
    return {step(lowest), step(highest)};
}

}  // namespace

SampleExtremes::SampleExtremes(const LinearLayout& layout)
    : encoding_(layout.encoding),
      frameBytes_(layout.frameBytes),
      rowFrames_(vectorBytes / std::gcd(frameBytes_, vectorBytes)),
      rowBytes_(rowFrames_ * frameBytes_),
      lastRow_(rowBytes_ + slackBytes),
      lowest_(rowBytes_),
      highest_(rowBytes_) {
    if (encoding_ == SampleEncoding::signed24 || encoding_ == SampleEncoding::signed32) bits_.resize(rowBytes_);
    if (encoding_ == SampleEncoding::signed24) {
        shiftedLowest_.resize(rowBytes_);
        shiftedHighest_.resize(rowBytes_);
    }
}

void SampleExtremes::add(ByteSpan frames, std::span<PeakValue> channels) noexcept {
    const std::size_t rows = frames.size() / rowBytes_;
    if (rows > 0) addRows(frames.data(), rows, channels);
    const ByteSpan rest = frames.subspan(rows * rowBytes_);
    const std::size_t count = rest.size() / frameBytes_;
    if (count == 0) return;
    for (std::size_t frame = 0; frame < rowFrames_; ++frame) {
        std::memcpy(lastRow_.data() + frame * frameBytes_, rest.data() + std::min(frame, count - 1) * frameBytes_,
                    frameBytes_);
    }
    addRows(lastRow_.data(), 1, channels);
}

void SampleExtremes::addRows(const std::byte* at, std::size_t rows, std::span<PeakValue> channels) noexcept {
    const RowResult result{lowest_.data(), highest_.data(), shiftedLowest_.data(), shiftedHighest_.data(),
                           bits_.data()};
    std::size_t frames = rowFrames_;
    // Frames of one row are folded onto each other as long as that takes fewer steps than to take them apart.
    const auto foldFrames = [&]<typename Lane>(Lane) {
        const auto lower = [](Lane a, Lane b) { return b < a ? b : a; };
        const auto higher = [](Lane a, Lane b) { return b > a ? b : a; };
        for (; frames % 2 == 0; frames /= 2) {
            const std::size_t half = frames / 2 * frameBytes_;
            if (half < foldBytes || half % sizeof(Lane) != 0) return;
            fold<Lane>(result.lowest, half, lower);
            fold<Lane>(result.highest, half, higher);
            if (!shiftedLowest_.empty()) {
                fold<Lane>(result.shiftedLowest, half, lower);
                fold<Lane>(result.shiftedHighest, half, higher);
            }
            if (!bits_.empty()) {
                fold<std::uint8_t>(result.bits, half,
                                   [](std::uint8_t a, std::uint8_t b) { return static_cast<std::uint8_t>(a | b); });
            }
        }
    };
    const auto each = [&](auto valueOf) {
        for (std::size_t c = 0; c < channels.size(); ++c) {
            PeakValue value = channels[c];
            for (std::size_t frame = 0; frame < frames; ++frame)
                value.add(valueOf(frame * channels.size() + c));
            channels[c] = value;
        }
    };
    const auto plain = [&]<typename Lane>(Lane lane) {
        scan<Lane>(at, rowBytes_, rows, result);
        foldFrames(lane);
        each([&](std::size_t i) { return outwards(laneAt<Lane>(lowest_, i), laneAt<Lane>(highest_, i)); });
    };
    switch (encoding_) {
        case SampleEncoding::unsigned8:
            return plain(std::uint8_t{});
        case SampleEncoding::float32:
            return plain(float{});
        case SampleEncoding::float64:
            return plain(double{});
        case SampleEncoding::signed16:
            scan<std::int16_t>(at, rowBytes_, rows, result);
            foldFrames(std::int16_t{});
            return each([&](std::size_t i) {
                return PeakValue{laneAt<std::int16_t>(lowest_, i), laneAt<std::int16_t>(highest_, i)};
            });
        case SampleEncoding::signed32:
            scan<std::int16_t, Find::andBits>(at, rowBytes_, rows, result);
            foldFrames(std::int16_t{});
            return each([&](std::size_t i) {
                return outwards(laneAt<std::int16_t>(lowest_, 2 * i + 1), laneAt<std::int16_t>(highest_, 2 * i + 1),
                                laneAt<std::uint16_t>(bits_, 2 * i) != 0);
            });
        case SampleEncoding::signed24:
            // The upper two bytes of every other sample begin at an odd byte: the rows are compared as 16-bit lanes
            // twice, the second time shifted by a byte. Two lanes of three hold parts of two samples and are ignored.
            scan<std::int16_t, Find::andBitsAndShifted>(at, rowBytes_, rows, result);
            foldFrames(std::int16_t{});
            return each([&](std::size_t i) {
                const std::size_t upper = 3 * i + 1;
                const bool odd = upper % 2 == 1;
                return outwards(laneAt<std::int16_t>(odd ? shiftedLowest_ : lowest_, upper / 2),
                                laneAt<std::int16_t>(odd ? shiftedHighest_ : highest_, upper / 2),
                                bits_[3 * i] != std::byte{0});
            });
    }
}

}  // namespace dravik
