#pragma once

#include "app/operations_tab.h"

#include <cstddef>
#include <iterator>

namespace dravik {

/// The drawing of a tab and of its command, as Theme::icon knows it.
[[nodiscard]] inline const char* iconNameOf(OperationsTab tab) noexcept {
    static constexpr const char* names[] = {"merge", "split", "delete_tracks", "reorder", "rename", "export", "report"};
    static_assert(std::size(names) == allOperationsTabs.size());
    return names[static_cast<std::size_t>(tab)];
}

}  // namespace dravik
