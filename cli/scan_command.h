#pragma once

#include "cli/exit_code.h"
#include "cli/services.h"

#include <filesystem>
#include <vector>

namespace dravik {

struct ScanOptions {
    std::vector<std::filesystem::path> paths;  ///< folders and files
    bool group = true;
    bool json = false;
};

/// Lists takes. A path that cannot be read is named on standard error and does not stop the others.
[[nodiscard]] ExitCode runScan(const ScanOptions& options, Services& services);

}  // namespace dravik
