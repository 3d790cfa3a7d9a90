#include "cli/recover_command.h"

#include "base/folder_recovery.h"
#include "base/paths.h"
#include "cli/display_text.h"
#include "cli/opened_folder.h"

#include <fmt/format.h>

namespace dravik {

ExitCode runRecover(const RecoverOptions& options, Services& services) {
    bool failed = false;
    for (const std::filesystem::path& folder : options.folders) {
        if (const std::string problem = folderProblem(folder); !problem.empty()) {
            services.console.message(problem);
            failed = true;
            continue;
        }
        const Recovery recovery = recoverFolder(services.files, folder);
        for (const std::string& sentence : recovery.done)
            services.console.print(printable(sentence) + "\n");
        for (const std::string& sentence : recovery.failures)
            services.console.message(sentence);
        if (recovery.empty()) {
            services.console.print(fmt::format("Nothing to recover in {}.\n", shown(folder)));
        }
        if (!recovery.failures.empty()) failed = true;
    }
    return failed ? ExitCode::someFailed : ExitCode::done;
}

}  // namespace dravik
