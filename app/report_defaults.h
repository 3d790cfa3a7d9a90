#pragma once

#include "app/user_defaults.h"
#include "report/report_form.h"

namespace dravik {

/// The values with which the report's form opens: what the user has kept as defaults, each under the key that
/// `reportTextSettings` and the like name. What was never kept, or is of another kind, is as in a new form.
[[nodiscard]] ReportForm reportDefaults(const UserDefaults& settings);
void saveReportDefaults(UserDefaults& settings, const ReportForm& form);

}  // namespace dravik
