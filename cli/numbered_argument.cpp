#include "cli/numbered_argument.h"

#include "base/text.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace dravik {

NumberedText numberedText(const std::string& option, const std::string& argument, std::int64_t least) {
    const std::size_t equals = argument.find('=');
    const std::optional<std::int64_t> number = parseInteger(std::string_view(argument).substr(0, equals));
    if (!number || *number < least) {
        throw CLI::ValidationError(option,
                                   fmt::format("\"{}\" does not begin with a number from {} on", argument, least));
    }
    NumberedText result{*number, {}};
    if (equals != std::string::npos) result.text = argument.substr(equals + 1);
    return result;
}

NumberedText numberedName(const std::string& option, const std::string& argument) {
    NumberedText result = numberedText(option, argument, 1);
    if (!result.text) throw CLI::ValidationError(option, fmt::format("\"{}\" is not NUMBER=NAME", argument));
    return result;
}

int trackOf(const NumberedText& track) {
    constexpr std::int64_t beyondAnyTake = 1'000'000;
    return static_cast<int>(std::min(track.number, beyondAnyTake));
}

std::vector<int> trackNumbers(const std::string& option, std::string_view list) {
    constexpr std::int64_t mostTracksOfAFile = 65535;
    std::vector<int> channels;
    for (bool more = true; more;) {
        const std::size_t comma = list.find(',');
        const std::string_view item = trimmed(list.substr(0, comma));
        const std::optional<std::int64_t> number = parseInteger(item);
        if (!number || *number < 1 || *number > mostTracksOfAFile) {
            throw CLI::ValidationError(option, fmt::format("\"{}\" is not a track's number, from 1 on", item));
        }
        channels.push_back(static_cast<int>(*number) - 1);
        more = comma != std::string_view::npos;
        if (more) list.remove_prefix(comma + 1);
    }
    return channels;
}

void refuseTrackGivenTwice(const std::string& option, int track) {
    throw CLI::ValidationError(option, fmt::format("track {} is given twice", track));
}

}  // namespace dravik
