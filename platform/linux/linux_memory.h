#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace dravik {

/// The kernel's own estimate (MemAvailable), or what the control groups of this process leave, if that is less. `root`
/// is "/", where proc and sys are; another folder in tests.
[[nodiscard]] std::optional<std::uint64_t> linuxAvailableMemory(const std::filesystem::path& root);

}  // namespace dravik
