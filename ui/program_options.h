#pragma once

#include "base/usage.h"

namespace dravik {

/// What the window program takes on its command line: for its parser, its help, its manual page and its completions.
/// Texts are in English; the parser shows them translated, in the context "CommandLine".
[[nodiscard]] Usage programUsage();

}  // namespace dravik
