#pragma once

#include "cli/exit_code.h"
#include "cli/services.h"

#include <filesystem>

namespace dravik {

struct ShowOptions {
    std::filesystem::path file;
    bool ixml = false;  ///< the bytes of the iXML chunk and nothing else
    bool json = false;
};

/// Everything about one file.
[[nodiscard]] ExitCode runShow(const ShowOptions& options, Services& services);

}  // namespace dravik
