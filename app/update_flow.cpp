#include "app/update_flow.h"

#include "app/text.h"
#include "app/update_defaults.h"
#include "base/paths.h"
#include "update/release_notes.h"

#include <utility>

#include <spdlog/spdlog.h>

namespace dravik {

struct UpdateFlow::Outcome {
    std::optional<UpdateAvailability> found;
    std::string failure;  ///< why there is nothing
    std::shared_ptr<UpdateDefaultsCopy> defaults;
};

UpdateFlow::UpdateFlow(Services services) : services_(std::move(services)) {}

UpdateFlow::~UpdateFlow() {
    if (token_) token_->cancel();
}

void UpdateFlow::start() {
    if (services_.deployment.hasPlaceholders()) return;
    const UpdateChecker checker(
        {{}, {}, {}, {}, std::make_shared<UpdateDefaultsCopy>(services_.settings), services_.now, {}});
    if (checker.shouldCheckAutomatically()) check();
}

void UpdateFlow::checkForUpdates() {
    if (services_.deployment.hasPlaceholders()) {
        showError(services_.dialogs, tr("Unable to Check for Updates"),
                  tr("This build of Dravik was made without an update server."));
        return;
    }
    if (!std::exchange(asked_, true)) emit waitingChanged(true);
    check();
}

void UpdateFlow::check() {
    if (isChecking()) return;
    token_ = std::make_shared<CancellationToken>();
    const auto defaults = std::make_shared<UpdateDefaultsCopy>(services_.settings);
    const Deployment& ours = services_.deployment;
    // Owns all that it works with: a proxy that does not answer can hold it beyond the end of the program.
    const auto checker = std::make_shared<const UpdateChecker>(
        UpdateChecker::Parts{ours.updateInfoURL, ours.webDomain, services_.fetcher, ours.bundle, defaults,
                             services_.now, services_.system.macOS});
    background_.run(
        this,
        [checker, defaults, token = token_]() -> Outcome {
            try {
                return {checker->check(*token), {}, defaults};
            } catch (const std::exception& error) {
                return {std::nullopt, userText(error), defaults};
            }
        },
        [this](const Outcome& outcome) {
            token_.reset();
            outcome.defaults->storeInto(services_.settings);
            tell(outcome);
        });
}

void UpdateFlow::tell(const Outcome& outcome) {
    const bool asked = std::exchange(asked_, false);
    if (asked) emit waitingChanged(false);
    if (!outcome.found) {
        // What the window says is the same for every reason: the support needs this one.
        spdlog::log(asked ? spdlog::level::warn : spdlog::level::info, "looking for updates failed: {}",
                    outcome.failure);
        if (!asked) return;
        showError(services_.dialogs, tr("Unable to Check for Updates"),
                  tr("Dravik couldn't connect to the update server. Please check your internet connection and try "
                     "again."));
    } else if (const auto* available = std::get_if<UpdateAvailable>(&*outcome.found)) {
        emit presented(presentationOf(*available, installedAppVersion(services_.deployment.bundle), services_.system),
                       asked);
    } else if (asked) {
        showError(services_.dialogs, tr("Dravik is up to date"), tr("You're running the latest version of Dravik"));
    }
}

void UpdateFlow::showWhatsNew() {
    emit presented(whatsNewPresentation(services_.deployment.bundle, releaseNotesOf(services_.changeLog)), true);
}

void UpdateFlow::download(const QString& url) { open(url, tr("The Update Could Not Be Downloaded")); }

void UpdateFlow::contactSupport() {
    open(QStringLiteral("mailto:") + toQt(services_.deployment.supportAddress), tr("Support Could Not Be Contacted"));
}

void UpdateFlow::openWebSite() { open(toQt(services_.deployment.webSite), tr("The Web Site Could Not Be Opened")); }

void UpdateFlow::open(const QString& url, const QString& failureTitle) {
    const QString failure = services_.workspace.open(url);
    if (!failure.isEmpty()) showError(services_.dialogs, failureTitle, failure);
}

}  // namespace dravik
