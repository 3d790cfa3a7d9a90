#include "model/wave/take_flags.h"

#include "base/text.h"

#include <algorithm>
#include <array>

namespace dravik {
namespace {

bool says(std::string_view value, std::string_view word) { return equalsIgnoringAsciiCase(trimmed(value), word); }

}  // namespace

bool estVrai(std::string_view value) {
    static constexpr std::array<std::string_view, 6> truths = {"1", "true", "yes", "y", "oui", "o"};
    return std::any_of(truths.begin(), truths.end(), [value](std::string_view truth) { return says(value, truth); });
}

std::optional<bool> circledFlag(const FlagLookup& valueOf) {
    for (const std::string_view name : {"CIRCLED", "CIRCLE"}) {
        if (const auto value = valueOf(name)) return estVrai(*value) || says(*value, "circled");
    }
    const auto takeType = valueOf("TAKE_TYPE");
    return takeType ? std::optional(says(*takeType, "circled")) : std::nullopt;
}

std::optional<bool> wildFlag(const FlagLookup& valueOf) {
    if (const auto value = valueOf("WILD_TRACK")) return estVrai(*value);
    const auto takeType = valueOf("TAKE_TYPE");
    return takeType ? std::optional(says(*takeType, "wild")) : std::nullopt;
}

}  // namespace dravik
