#pragma once

#include <chrono>
#include <functional>

namespace dravik {

/// What asks a volume that does not answer (a network mount whose server is gone) cannot be stopped. Whoever owns such
/// work waits a moment when it goes, then leaves the work to itself here. That work uses nothing but what it owns and
/// what lives until `waitForAbandonedWork` has said that nothing is left, and must leave nothing half done when the
/// process ends. Main thread.

/// How long an owner waits.
inline constexpr std::chrono::milliseconds abandonPatience{500};

/// Leaves something that runs to itself; `ended` waits for it as long as it is told, and says whether it has ended.
void abandonWork(std::function<bool(std::chrono::milliseconds)> ended);

/// Has all ended that was left to itself? Where it has not, the process has to end without destroying anything more.
[[nodiscard]] bool waitForAbandonedWork(std::chrono::milliseconds most);

}  // namespace dravik
