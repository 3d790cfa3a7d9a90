#pragma once

#include "update/deployment.h"
#include "update/http_fetcher.h"
#include "update/operating_system_version.h"
#include "update/update_info.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>

namespace dravik {

/// What is remembered from one check to the next.
class UpdateDefaults {
  public:
    using Time = std::chrono::system_clock::time_point;

    virtual ~UpdateDefaults() = default;
    /// Does the user want automatic checks? Absent where nobody has said.
    [[nodiscard]] virtual std::optional<bool> automaticCheck() const = 0;
    [[nodiscard]] virtual std::optional<Time> lastSuccessfulCheck() const = 0;
    virtual void setLastSuccessfulCheck(Time time) = 0;

  protected:
    UpdateDefaults() = default;
    UpdateDefaults(const UpdateDefaults&) = default;
    UpdateDefaults& operator=(const UpdateDefaults&) = default;
};

/// What a check says.
struct UpToDate {
    UpdateInfo info;
};
struct UpdateAvailable {
    UpdateInfo info;
    /// Always where the running system is not macOS: a minimum for macOS says nothing about it.
    bool isCompatibleWithCurrentMac = true;
};
using UpdateAvailability = std::variant<UpToDate, UpdateAvailable>;

/// Compares the installed build with the newest release. Knows no thread of its own: `check` waits for the server, and
/// belongs on a background thread.
class UpdateChecker {
  public:
    struct Parts {
        std::string updateInfoURL;
        std::string webDomain;  ///< the only one that a release may be downloaded from
        std::shared_ptr<const HttpFetcher> fetcher;
        Bundle bundle;
        std::shared_ptr<UpdateDefaults> userDefaults;
        std::function<UpdateDefaults::Time()> now;
        std::optional<OperatingSystemVersion> currentOSVersion;  ///< of macOS; absent on another system
    };
    explicit UpdateChecker(Parts parts) : parts_(std::move(parts)) {}

    /// At most once a day, and not when the user has switched it off.
    [[nodiscard]] bool shouldCheckAutomatically() const;

    /// Keeps the time when it has a result. Throws UpdateCheckError, TransportError or Cancelled.
    [[nodiscard]] UpdateAvailability check(const CancellationToken& token) const;

  private:
    Parts parts_;
};

}  // namespace dravik
