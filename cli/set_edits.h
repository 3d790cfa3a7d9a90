#pragma once

#include "cli/set_command.h"
#include "editing/save_transaction.h"
#include "model/groupe_fichiers.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dravik {

/// The edits of one `set`, checked and applicable to any take. Touches no file.
class SetEdits {
  public:
    /// Throws UsageError for values that no file can take. Keeps a reference.
    explicit SetEdits(const SetOptions& options);

    /// What a save of the take has to do. Throws UsageError for values that this take cannot have.
    [[nodiscard]] std::vector<SaveItem> itemsFor(const GroupeFichiers& groupe) const;

  private:
    [[nodiscard]] std::string timecodeFor(const GroupeFichiers& groupe) const;

    const SetOptions& options_;
    std::optional<std::string> framerate_;  ///< as a label
};

/// The frame-rate label that a typed text means: one of the labels offered (case and blanks do not matter: "29.97df"),
/// or a whole number from 1 to 240, which is what the file format can say beside them. Absent for anything else.
[[nodiscard]] std::optional<std::string> framerateFromTyped(std::string_view typed);

}  // namespace dravik
