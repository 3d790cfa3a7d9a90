#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dravik {

/// Arguments that count: "3=Boom", "2,1,3". What cannot be read throws CLI::ValidationError, which names the option and
/// what was given.

/// "N=TEXT", or "N" alone. The text is all behind the first "=", and may be empty.
struct NumberedText {
    std::int64_t number = 0;
    std::optional<std::string> text;
};

/// A number below `least` is refused.
[[nodiscard]] NumberedText numberedText(const std::string& option, const std::string& argument, std::int64_t least);
/// With a number from 1 on, and always with a text.
[[nodiscard]] NumberedText numberedName(const std::string& option, const std::string& argument);

/// Number of a track, from 1. One that no take can have stays one that no take has.
[[nodiscard]] int trackOf(const NumberedText& track);

/// Tracks as they are counted on the command line, "2,1,3", as channels from 0, in the order given.
[[nodiscard]] std::vector<int> trackNumbers(const std::string& option, std::string_view list);

[[noreturn]] void refuseTrackGivenTwice(const std::string& option, int track);

/// A track has one name and one number: the second of two values is a slip of the hand.
template <typename Value>
void refuseSecond(const std::string& option, const std::vector<std::pair<int, Value>>& given, int track) {
    const bool isThere = std::any_of(given.begin(), given.end(), [&](const auto& one) { return one.first == track; });
    if (isThere) refuseTrackGivenTwice(option, track);
}

}  // namespace dravik
