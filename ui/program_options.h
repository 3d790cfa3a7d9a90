#pragma once

#include "base/usage.h"

namespace dravik {

/// What the window program takes on its command line: for its parser, its help, its manual page and its completions.
/// In English, as the manual page is.
[[nodiscard]] Usage programUsage();

}  // namespace dravik
