#pragma once

#include "app/workspace.h"

#include <memory>

namespace dravik {

/// The desktop that the program runs on.
[[nodiscard]] std::unique_ptr<Workspace> makeDesktopWorkspace();

}  // namespace dravik
