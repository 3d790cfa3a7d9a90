#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace dravik {

/// The random numbers of the dither: xorshift-64 (13, 7, 17), two draws for a sample, samples counted over all channels
/// of all frames. What belongs to a sample depends on the seed and its place alone, so blocks may be quantised in any
/// order, by any thread, and a seeded export is the same on every machine.
class DitherGenerator {
  public:
    explicit DitherGenerator(std::uint64_t state) noexcept : state_(state) {}

    /// Triangular noise above -1 and below 1: the difference of two uniform numbers, exact in a double.
    [[nodiscard]] double next() noexcept {
        const double first = uniform();
        return first - uniform();
    }

  private:
    [[nodiscard]] double uniform() noexcept {
        state_ ^= state_ << 13U;
        state_ ^= state_ >> 7U;
        state_ ^= state_ << 17U;
        // By way of a signed number, which the processor converts in one instruction; 53 bits fit either.
        return static_cast<double>(static_cast<std::int64_t>(state_ >> 11U)) * 0x1p-53;
    }

    std::uint64_t state_;
};

/// The sequence of one seed, open at any place. Immutable; any thread.
class DitherSequence {
  public:
    /// A seed of 0, at which the generator would stand still, counts as `substituteForZero`.
    explicit DitherSequence(std::uint64_t seed) noexcept;
    /// The generator as it stands before that sample. Costs some thousand instructions.
    [[nodiscard]] DitherGenerator at(std::uint64_t sample) const noexcept;

    static constexpr std::uint64_t substituteForZero = 0x9E3779B97F4A7C15U;

  private:
    /// A linear map of 64 bits: the images of the single bits.
    using Map = std::array<std::uint64_t, 64>;
    [[nodiscard]] static std::uint64_t applied(const Map& map, std::uint64_t state) noexcept;

    std::uint64_t seed_;
    std::array<Map, 64> leaps_;  ///< 1, 2, 4 ... samples forward
};

/// The seed of an export that names none: another one in every run.
[[nodiscard]] std::uint64_t freshDitherSeed(std::string_view destinationName);

}  // namespace dravik
