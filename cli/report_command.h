#pragma once

#include "cli/exit_code.h"
#include "cli/services.h"
#include "report/generateur_rapport.h"

#include <filesystem>

namespace dravik {

struct ReportOptions {
    std::filesystem::path folder, dest;
    GenerateurRapport report;  ///< what is empty is taken from the files
    bool dryRun = false;
    bool json = false;
};

[[nodiscard]] ExitCode runReport(const ReportOptions& options, Services& services);

}  // namespace dravik
