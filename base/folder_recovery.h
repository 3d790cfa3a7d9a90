#pragma once

#include "base/file_ops.h"

#include <filesystem>
#include <string>
#include <vector>

namespace dravik {

/// What a killed run left in a folder, put right. Done whenever a folder is opened.
struct Recovery {
    std::vector<std::string> done;      ///< one sentence each: what was put right
    std::vector<std::string> failures;  ///< one sentence each: what could not be, and where the file is
    [[nodiscard]] bool empty() const noexcept { return done.empty() && failures.empty(); }
};

/// Rolls unfinished renames back (or finishes them, when every file already had its hidden name) and removes temporary
/// files of dead processes. Files of a process that still runs are left alone, and so is every file that only looks
/// like one of ours. Changes nothing in a folder that holds nothing of ours. Never throws; blocks.
[[nodiscard]] Recovery recoverFolder(FileOps& ops, const std::filesystem::path& dossier);

}  // namespace dravik
