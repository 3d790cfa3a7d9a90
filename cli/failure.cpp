#include "cli/failure.h"

#include "cli/console.h"
#include "editing/save_check.h"
#include "editing/save_rename_plan.h"

#include <system_error>

namespace dravik {

ExitCode exitCodeFor(const std::exception& error) {
    if (dynamic_cast<const UsageError*>(&error) != nullptr) return ExitCode::usage;
    if (dynamic_cast<const Cancelled*>(&error) != nullptr) return ExitCode::interrupted;
    if (dynamic_cast<const SaveRefused*>(&error) != nullptr) return ExitCode::refused;
    if (const auto* rename = dynamic_cast<const MainSaveRenameError*>(&error)) {
        return rename->nothingChanged() ? ExitCode::refused : ExitCode::someFailed;
    }
    if (dynamic_cast<const OutputError*>(&error) != nullptr) return ExitCode::someFailed;
    // Room is looked for before the first byte of a command is written.
    const auto* system = dynamic_cast<const std::system_error*>(&error);
    if (system != nullptr && system->code() == std::errc::no_space_on_device) return ExitCode::refused;
    return ExitCode::someFailed;
}

}  // namespace dravik
