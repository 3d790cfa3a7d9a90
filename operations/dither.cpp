#include "operations/dither.h"

#include "base/uuid.h"

#include <functional>
#include <string>

namespace dravik {
namespace {

constexpr std::uint64_t drawn(std::uint64_t state) noexcept {
    state ^= state << 13U;
    state ^= state >> 7U;
    state ^= state << 17U;
    return state;
}

}  // namespace

DitherSequence::DitherSequence(std::uint64_t seed) noexcept : seed_(seed == 0 ? substituteForZero : seed) {
    // A draw only shifts and adds bits without carry, so it is a linear map, and so are many of them in a row.
    for (std::size_t bit = 0; bit < 64; ++bit)
        leaps_[0][bit] = drawn(drawn(std::uint64_t{1} << bit));
    for (std::size_t leap = 1; leap < leaps_.size(); ++leap) {
        for (std::size_t bit = 0; bit < 64; ++bit)
            leaps_[leap][bit] = applied(leaps_[leap - 1], leaps_[leap - 1][bit]);
    }
}

std::uint64_t DitherSequence::applied(const Map& map, std::uint64_t state) noexcept {
    std::uint64_t image = 0;
    for (std::size_t bit = 0; bit < 64; ++bit)
        image ^= map[bit] & (std::uint64_t{0} - (state >> bit & 1U));
    return image;
}

DitherGenerator DitherSequence::at(std::uint64_t sample) const noexcept {
    std::uint64_t state = seed_;
    for (std::size_t leap = 0; sample >> leap != 0; ++leap) {
        if ((sample >> leap & 1U) != 0) state = applied(leaps_[leap], state);
        if (leap == 63) break;
    }
    return DitherGenerator(state);
}

std::uint64_t freshDitherSeed(std::string_view destinationName) {
    static const std::string salt = Uuid::random().toString();
    return std::hash<std::string>{}(salt + std::string(destinationName)) ^ DitherSequence::substituteForZero;
}

}  // namespace dravik
