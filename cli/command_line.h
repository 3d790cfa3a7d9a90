#pragma once

#include "cli/cues_command.h"
#include "cli/demo_command.h"
#include "cli/export_command.h"
#include "cli/recover_command.h"
#include "cli/rename_command.h"
#include "cli/report_command.h"
#include "cli/scan_command.h"
#include "cli/set_command.h"
#include "cli/show_command.h"
#include "cli/track_commands.h"
#include "cli/update_check_command.h"

#include <string>
#include <variant>

namespace dravik {

/// What the command line asks for: a command with its options, or to be told something and end.
struct Told {
    ExitCode code = ExitCode::done;
    std::string text;  ///< help or version when done, else what is wrong
};
using Command = std::variant<Told, ScanOptions, ShowOptions, SetOptions, CuesOptions, DemoOptions, RecoverOptions,
                             ReorderOptions, DeleteTracksOptions, SplitOptions, MergeOptions, ExportOptions,
                             RenameOptions, ReportOptions, UpdateCheckOptions>;

/// Never throws for what a user may type.
[[nodiscard]] Command parseCommandLine(int argc, const char* const* argv);

}  // namespace dravik
