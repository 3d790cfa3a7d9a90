#include "operations/sample_rate_converter.h"

#include <cmath>

namespace dravik {

std::uint64_t convertedFrames(std::int64_t frames, double inputRate, double outputRate) noexcept {
    // One rounding at the end, in more bits than a product of any length and rate has.
    const long double exact =
        static_cast<long double>(frames) * static_cast<long double>(outputRate) / static_cast<long double>(inputRate);
    return static_cast<std::uint64_t>(std::floor(exact + 0.5L));
}

}  // namespace dravik
