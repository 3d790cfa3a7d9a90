#pragma once

#include "app/workspace.h"

#include <memory>

namespace dravik {

/// The desktop that the program runs on. `open` and `reveal` return at once and belong to the main thread;
/// `moveToTrash`, `eject` and `volumes` wait for the system, as long as it takes, and may be called on any thread.
[[nodiscard]] std::unique_ptr<Workspace> makeDesktopWorkspace();

}  // namespace dravik
