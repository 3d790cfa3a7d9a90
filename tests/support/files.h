#pragma once

#include "base/bytes.h"

#include <filesystem>
#include <string>
#include <vector>

namespace dravik::test {

/// Whole files, for fixtures and comparisons. All throw when the system refuses.

[[nodiscard]] Bytes readFile(const std::filesystem::path& path);
void writeFile(const std::filesystem::path& path, ByteSpan bytes);
inline void writeFile(const std::filesystem::path& path, std::string_view text) { writeFile(path, asBytes(text)); }
void appendToFile(const std::filesystem::path& path, std::string_view text);

/// The names in a folder, hidden ones included, in byte order.
[[nodiscard]] std::vector<std::string> namesIn(const std::filesystem::path& folder);

}  // namespace dravik::test
