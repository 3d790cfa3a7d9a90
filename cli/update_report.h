#pragma once

#include "update/update_checker.h"

#include <optional>
#include <string>

namespace dravik {

/// What a check for updates has found, as `update-check` prints it. Pure functions.

/// Harmless for terminals, whatever the version document holds.
[[nodiscard]] std::string updateText(const UpdateAvailability& found, const InstalledAppVersion& installed);

/// Without a result, `message` says why.
[[nodiscard]] std::string updateJson(const std::optional<UpdateAvailability>& found, const Bundle& installed,
                                     const std::optional<std::string>& message);

}  // namespace dravik
