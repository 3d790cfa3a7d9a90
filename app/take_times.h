#pragma once

#include "model/groupe_fichiers.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace dravik {

/// Positions in a take as texts. A take with a start timecode is counted from it, every other one from zero. Pure.

/// Last position in the take, in sample frames; not negative.
[[nodiscard]] std::int64_t lastFrameOf(const GroupeFichiers& groupe);

/// "10:00:04:12", or "00:00:04.500" in a take without timecode.
[[nodiscard]] std::string positionText(const GroupeFichiers& groupe, std::int64_t frame);

/// A position as typed: a timecode (HH:MM:SS:FF or HHMMSSFF) where the take has one, or the time since the start as
/// [[HH:]MM:]SS[.fff]. A timecode before the start is one of the next day. Absent when it is neither, or outside the
/// take.
[[nodiscard]] std::optional<std::int64_t> parsePosition(const GroupeFichiers& groupe, std::string_view typed);

}  // namespace dravik
