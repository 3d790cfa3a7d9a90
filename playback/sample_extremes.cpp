#include "playback/sample_extremes.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <numeric>

namespace dravik {
namespace {

static_assert(std::endian::native == std::endian::little, "lanes are read as the file holds them");

constexpr std::size_t vectorBytes = 16;
constexpr double fullScale = 32768;
constexpr std::int16_t largest = std::numeric_limits<std::int16_t>::max();

template <typename Lane>
using Vector = std::array<Lane, vectorBytes / sizeof(Lane)>;

template <typename Lane>
Vector<Lane> load(const std::byte* at) noexcept {
    Vector<Lane> vector;
    std::memcpy(vector.data(), at, vectorBytes);
    return vector;
}
template <typename Lane>
void store(std::byte* at, const Vector<Lane>& vector) noexcept {
    std::memcpy(at, vector.data(), vectorBytes);
}
template <typename Lane>
Lane laneAt(const Bytes& lanes, std::size_t index) noexcept {
    Lane lane;
    std::memcpy(&lane, lanes.data() + index * sizeof(Lane), sizeof(Lane));
    return lane;
}

// What is no finite number is silence, as it is when it is played. A double beyond the range of a float is no number.
float finite(float sample) noexcept {
    constexpr std::uint32_t exponent = 0x7F800000U;
    const std::uint32_t bits = std::bit_cast<std::uint32_t>(sample);
    return std::bit_cast<float>((bits & exponent) == exponent ? 0U : bits);
}
double finite(double sample) noexcept {
    return std::fabs(sample) <= double{std::numeric_limits<float>::max()} ? sample : 0.0;
}
template <typename Integer>
Integer finite(Integer sample) noexcept {
    return sample;
}

/// Extremes of each lane of the rows, one vector of a row at a time, so that they stay in registers.
template <typename Lane>
void extremesOfLanes(const std::byte* at, std::size_t rowBytes, std::size_t rows, std::byte* lowest,
                     std::byte* highest) noexcept {
    for (std::size_t x = 0; x < rowBytes; x += vectorBytes) {
        Vector<Lane> low;
        Vector<Lane> high;
        low.fill(std::numeric_limits<Lane>::max());
        high.fill(std::numeric_limits<Lane>::lowest());
        const std::byte* from = at + x;
        for (std::size_t row = 0; row < rows; ++row, from += rowBytes) {
            const Vector<Lane> lanes = load<Lane>(from);
            for (std::size_t i = 0; i < lanes.size(); ++i) {
                const Lane sample = finite(lanes[i]);
                low[i] = sample < low[i] ? sample : low[i];
                high[i] = sample > high[i] ? sample : high[i];
            }
        }
        store(lowest + x, low);
        store(highest + x, high);
    }
}

/// Which bits are set anywhere in the rows.
void bitsOfRows(const std::byte* at, std::size_t rowBytes, std::size_t rows, std::byte* bits) noexcept {
    for (std::size_t x = 0; x < rowBytes; x += vectorBytes) {
        Vector<std::uint64_t> set{};
        const std::byte* from = at + x;
        for (std::size_t row = 0; row < rows; ++row, from += rowBytes) {
            const auto words = load<std::uint64_t>(from);
            set[0] |= words[0];
            set[1] |= words[1];
        }
        store(bits + x, set);
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
    const auto each = [&](auto valueOf) {
        std::size_t sample = 0;
        for (std::size_t frame = 0; frame < rowFrames_; ++frame) {
            for (PeakValue& channel : channels)
                channel.add(valueOf(sample++));
        }
    };
    const auto plain = [&]<typename Lane>(Lane) {
        extremesOfLanes<Lane>(at, rowBytes_, rows, lowest_.data(), highest_.data());
        return [&](std::size_t i) { return outwards(laneAt<Lane>(lowest_, i), laneAt<Lane>(highest_, i)); };
    };
    switch (encoding_) {
        case SampleEncoding::unsigned8:
            return each(plain(std::uint8_t{}));
        case SampleEncoding::float32:
            return each(plain(float{}));
        case SampleEncoding::float64:
            return each(plain(double{}));
        case SampleEncoding::signed16:
            extremesOfLanes<std::int16_t>(at, rowBytes_, rows, lowest_.data(), highest_.data());
            return each([&](std::size_t i) {
                return PeakValue{laneAt<std::int16_t>(lowest_, i), laneAt<std::int16_t>(highest_, i)};
            });
        case SampleEncoding::signed32:
            extremesOfLanes<std::int16_t>(at, rowBytes_, rows, lowest_.data(), highest_.data());
            bitsOfRows(at, rowBytes_, rows, bits_.data());
            return each([&](std::size_t i) {
                return outwards(laneAt<std::int16_t>(lowest_, 2 * i + 1), laneAt<std::int16_t>(highest_, 2 * i + 1),
                                laneAt<std::uint16_t>(bits_, 2 * i) != 0);
            });
        case SampleEncoding::signed24:
            // The upper two bytes of every other sample begin at an odd byte: the rows are compared as 16-bit lanes
            // twice, the second time shifted by a byte. Two lanes of three hold parts of two samples and are ignored.
            extremesOfLanes<std::int16_t>(at, rowBytes_, rows, lowest_.data(), highest_.data());
            extremesOfLanes<std::int16_t>(at + 1, rowBytes_, rows, shiftedLowest_.data(), shiftedHighest_.data());
            bitsOfRows(at, rowBytes_, rows, bits_.data());
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
