#include "update/installed_app_version.h"

#include "base/text.h"
#include "update/update_check_error.h"

namespace dravik {

InstalledAppVersion installedAppVersion(const Bundle& bundle) {
    const std::optional<std::int64_t> build = bundle.build ? parseInteger(*bundle.build) : std::nullopt;
    if (!build) throw UpdateCheckError(UpdateCheckError::Case::invalidLocalBuild);
    return {bundle.shortVersion.value_or("Unknown"), *build};
}

}  // namespace dravik
