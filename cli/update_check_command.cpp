#include "cli/update_check_command.h"

#include "base/paths.h"
#include "cli/update_report.h"
#include "platform/network/lazy_http_fetcher.h"
#include "platform/running_system.h"

namespace dravik {
namespace {

class NothingKept final : public UpdateDefaults {
  public:
    [[nodiscard]] std::optional<bool> automaticCheck() const override { return std::nullopt; }
    [[nodiscard]] std::optional<Time> lastSuccessfulCheck() const override { return std::nullopt; }
    void setLastSuccessfulCheck(Time) override {}
};

UpdateAvailability check(const CancellationToken& token) {
    const Deployment& ours = deployment();
    if (ours.hasPlaceholders()) throw Error("This build of Dravik was made without an update server.");
    return UpdateChecker({ours.updateInfoURL, ours.webDomain, makeLazyHttpFetcher(), ours.bundle,
                          std::make_shared<NothingKept>(), &std::chrono::system_clock::now, runningMacOS()})
        .check(token);
}

}  // namespace

ExitCode runUpdateCheck(const UpdateCheckOptions& options, Services& services) {
    const Bundle& bundle = deployment().bundle;
    try {
        const UpdateAvailability found = check(services.token);
        services.console.print(options.json ? updateJson(found, bundle, std::nullopt)
                                            : updateText(found, installedAppVersion(bundle)));
        return ExitCode::done;
    } catch (const Cancelled&) {
        throw;
    } catch (const Error& error) {
        services.console.message(userText(error));
        if (options.json) services.console.print(updateJson(std::nullopt, bundle, userText(error)));
        return ExitCode::someFailed;
    }
}

}  // namespace dravik
