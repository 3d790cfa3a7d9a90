#pragma once

#include "base/two_phase_rename.h"
#include "operations/batch_rename_plan.h"
#include "operations/operation_run.h"

#include <string>
#include <string_view>
#include <vector>

namespace dravik::OperationsAudio {

/// Renames the files where they are, all or none: what fails or is cancelled is undone. Or copies them under their new
/// names into the folder, which is made when it is not there; each copy is whole, and those made before a failure or a
/// cancel stay. No file is ever replaced, no byte in a file is changed.
///
/// One result a file, in their order, with its new path; none when a cancel was undone whole. `refused` counts those
/// for which nothing was begun. Progress counts moves, or bytes that are copied. Throws OperationAudioError when a
/// check fails, std::filesystem::filesystem_error when there is no room for copies or their folder cannot be made:
/// nothing was touched then. Blocks.
[[nodiscard]] RunOutcome runBatchRename(FileOps& ops, const std::vector<OperationAudioBatchRenameItem>& items,
                                        OperationAudioBatchRenameMode mode, const std::filesystem::path& destination,
                                        const TaskContext& task);

/// What else would refuse the run of a preview, one sentence each: a folder in which nothing can be made, no room for
/// the copies, what `planBatchRename` finds. Names that collide, and a folder of copies that is not chosen yet, are the
/// preview's own affair. Asks only; nothing is made.
[[nodiscard]] std::vector<std::string> renameProblems(FileOps& ops, const std::vector<InfoFichier>& fichiers,
                                                      const BatchRenameChoice& choice, const RenamePreview& preview);

/// The moves of the entries that change their name, with hidden names of this run that are free. Throws
/// OperationAudioError when no free one is found for a file.
[[nodiscard]] std::vector<RenameMove> movesOf(const std::vector<PlanRenommageBatch>& plan, std::string_view runToken);

}  // namespace dravik::OperationsAudio
