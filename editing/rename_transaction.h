#pragma once

#include "base/file_ops.h"
#include "editing/save_rename_plan.h"

#include <filesystem>
#include <map>
#include <vector>

namespace dravik {

/// Performs a checked plan: every file to its hidden name, then every file to its new one, under a journal. Any failure
/// puts every file back, last first.
///
/// Returns old path -> new path for every entry. Throws the error that stopped the moves once all files are back, or
/// MainSaveRenameError: sourceInUse or journalNotWritten before the first move, rollbackFailed naming where each file
/// that could not be put back is. Not re-entrant for the same files. Blocks; not for the main thread.
[[nodiscard]] std::map<std::filesystem::path, std::filesystem::path> runRenames(
    FileOps& ops, const std::vector<MainSaveRenamePlanEntry>& plan);

}  // namespace dravik
