#pragma once

#include <cstddef>
#include <cstdint>

namespace dravik {

/// The same numbers for the same seed on every machine and with every standard library (whose distributions differ).
/// SplitMix64: for made-up recordings, not for secrets.
class DemoRandom {
  public:
    explicit DemoRandom(std::uint64_t seed) noexcept : state_(seed) {}

    std::uint64_t next() noexcept {
        state_ += 0x9E3779B97F4A7C15ULL;
        std::uint64_t z = state_;
        z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27U)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31U);
    }
    /// 0 up to but not 1.
    double unit() noexcept { return static_cast<double>(next() >> 11U) * 0x1.0p-53; }
    double between(double low, double high) noexcept { return low + (high - low) * unit(); }
    /// 0 to count - 1; `count` above 0.
    std::size_t below(std::size_t count) noexcept { return static_cast<std::size_t>(next() % count); }
    bool chance(double probability) noexcept { return unit() < probability; }

  private:
    std::uint64_t state_;
};

}  // namespace dravik
