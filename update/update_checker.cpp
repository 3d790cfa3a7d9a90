#include "update/update_checker.h"

#include "update/download_url.h"
#include "update/update_check_error.h"

namespace dravik {
namespace {

constexpr std::chrono::seconds betweenAutomaticChecks{86'400};
constexpr std::chrono::seconds timeOut{30};
/// The document is a page of text; a server that sends more is not ours.
constexpr std::size_t mostBytes = 1024 * 1024;

}  // namespace

bool UpdateChecker::shouldCheckAutomatically() const {
    if (!parts_.userDefaults->automaticCheck().value_or(true)) return false;
    const std::optional<UpdateDefaults::Time> last = parts_.userDefaults->lastSuccessfulCheck();
    return !last || parts_.now() - *last >= betweenAutomaticChecks;
}

UpdateAvailability UpdateChecker::check(const CancellationToken& token) const {
    using Case = UpdateCheckError::Case;
    const HttpResponse response = parts_.fetcher->get(
        {parts_.updateInfoURL, {{"Cache-Control", "no-cache"}, {"Pragma", "no-cache"}}, timeOut, mostBytes}, token);
    if (response.status < 200 || response.status > 299) throw UpdateCheckError(Case::invalidResponse);
    UpdateInfo info = decodeUpdateInfo(response.body);

    const std::optional<OperatingSystemVersion> minimum = parseOperatingSystemVersion(info.minimumMacOS);
    if (!minimum) throw UpdateCheckError(Case::invalidMinimumMacOS);
    if (!isDownloadURL(info.downloadURL, parts_.webDomain)) throw UpdateCheckError(Case::invalidDownloadURL);
    const std::int64_t installed = installedAppVersion(parts_.bundle).build;

    parts_.userDefaults->setLastSuccessfulCheck(parts_.now());
    if (info.build <= installed) return UpToDate{std::move(info)};
    const bool compatible = !parts_.currentOSVersion || *parts_.currentOSVersion >= *minimum;
    return UpdateAvailable{std::move(info), compatible};
}

}  // namespace dravik
