#pragma once

#include "update/operating_system_version.h"

namespace dravik {

/// The version of macOS that the program runs on; absent on another system.
[[nodiscard]] std::optional<OperatingSystemVersion> runningMacOS();

}  // namespace dravik
