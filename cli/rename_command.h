#pragma once

#include "cli/exit_code.h"
#include "cli/services.h"
#include "operations/rename_pattern.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace dravik {

/// A batch rename: new names out of a pattern, in place or for copies in another folder.
struct RenameOptions {
    std::vector<std::filesystem::path> paths;
    RenamePattern pattern;
    std::optional<std::filesystem::path> copyTo;  ///< absent: the files are renamed where they are
    bool keepBoth = false;
    bool keepSeparators = false;
    bool group = true;
    bool dryRun = false;
    bool json = false;
};

[[nodiscard]] ExitCode runRename(const RenameOptions& options, Services& services);

}  // namespace dravik
