#pragma once

#include "base/error.h"
#include "base/file_ops.h"
#include "base/progress.h"
#include "editing/save_item.h"
#include "editing/save_rename_plan.h"

#include <filesystem>
#include <string>
#include <vector>

namespace dravik {

/// Why one file, or a folder, cannot be written to, as a sentence that names it.
struct SaveProblem {
    std::filesystem::path path;  ///< of the file as the item has it, or of the folder
    std::string sentence;
};

/// A save that was refused before anything was changed. `what()` is the sentences, one a line.
class SaveRefused : public Error {
  public:
    explicit SaveRefused(std::vector<SaveProblem> problems);
    [[nodiscard]] const std::vector<SaveProblem>& problems() const noexcept { return problems_; }

  private:
    std::vector<SaveProblem> problems_;
};

/// Looks at everything that a save of the items needs, but the room, and changes nothing: the new names and the takes
/// that they make, the folders, and what each file would become, by the plans that the writers themselves write by. A
/// save and its rehearsal both begin with it.
///
/// Returns the checked renames. Throws MainSaveRenameError, SaveRefused with all files concerned, or Cancelled. Blocks;
/// not for the main thread.
[[nodiscard]] std::vector<MainSaveRenamePlanEntry> checkSave(FileOps& ops, const std::vector<SaveItem>& items,
                                                             const TaskContext& task);

}  // namespace dravik
