#pragma once

#include <functional>
#include <optional>
#include <string_view>

namespace dravik {

/// The two flags of a take under all the names that recorders give them, in the elements of an iXML document and in the
/// lines of a bext Description alike. Pure functions, any thread.

/// The value under a name ("CIRCLED"); absent when nothing bears it.
using FlagLookup = std::function<std::optional<std::string_view>(std::string_view name)>;

/// CIRCLED, else CIRCLE, else TAKE_TYPE: the first one present decides. Absent when there is none.
[[nodiscard]] std::optional<bool> circledFlag(const FlagLookup& valueOf);
/// WILD_TRACK, else TAKE_TYPE: the first one present decides. Absent when there is none.
[[nodiscard]] std::optional<bool> wildFlag(const FlagLookup& valueOf);

/// Truth of a flag's text: trimmed and lower-cased one of "1", "true", "yes", "y", "oui", "o".
[[nodiscard]] bool estVrai(std::string_view value);

}  // namespace dravik
