#pragma once

#include <cstdint>
#include <optional>

namespace dravik {

/// Bytes of memory that this process can take now without another being pushed out to disk, limits set for a group of
/// processes included; absent when the system does not tell.
[[nodiscard]] std::optional<std::uint64_t> availableMemory();

}  // namespace dravik
