#pragma once

#include "cli/exit_code.h"
#include "cli/services.h"

namespace dravik {

struct UpdateCheckOptions {
    bool json = false;
};

/// Asks the update server whether there is a newer release. Keeps nothing: what a nightly script asks must not silence
/// the window program.
[[nodiscard]] ExitCode runUpdateCheck(const UpdateCheckOptions& options, Services& services);

}  // namespace dravik
