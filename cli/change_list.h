#pragma once

#include "editing/save_transaction.h"

#include <string>
#include <vector>

namespace dravik {

/// What a save would change in one file, a line each: `scene: "12" -> "12A"`. Pure.
[[nodiscard]] std::vector<std::string> changesOf(const SaveItem& item);

}  // namespace dravik
