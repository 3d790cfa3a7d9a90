#pragma once

#include "cli/exit_code.h"
#include "cli/services.h"

#include <filesystem>
#include <vector>

namespace dravik {

struct RecoverOptions {
    std::vector<std::filesystem::path> folders;
};

/// Puts right what killed runs left in the folders, and nothing else.
[[nodiscard]] ExitCode runRecover(const RecoverOptions& options, Services& services);

}  // namespace dravik
