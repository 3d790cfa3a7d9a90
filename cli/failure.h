#pragma once

#include "cli/exit_code.h"

#include <exception>

namespace dravik {

/// The exit code for what the engine threw: refused when it says that nothing was changed, interrupted for a cancel.
[[nodiscard]] ExitCode exitCodeFor(const std::exception& error);

}  // namespace dravik
