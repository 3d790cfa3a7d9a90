#pragma once

#include "app/user_defaults.h"
#include "update/update_checker.h"

#include <QDateTime>

namespace dravik {

/// The settings of the update check as they are at one moment, for a check on another thread, which may not touch the
/// settings themselves. What it wants to be remembered waits in here.
class UpdateDefaultsCopy final : public UpdateDefaults {
  public:
    /// Main thread.
    explicit UpdateDefaultsCopy(const UserDefaults& settings);
    /// Main thread, after the check: stores what there is to remember.
    void storeInto(UserDefaults& settings) const;

    [[nodiscard]] std::optional<bool> automaticCheck() const override { return automatic_; }
    [[nodiscard]] std::optional<Time> lastSuccessfulCheck() const override { return last_; }
    void setLastSuccessfulCheck(Time time) override { remembered_ = time; }

  private:
    std::optional<bool> automatic_;
    std::optional<Time> last_, remembered_;
};

}  // namespace dravik
