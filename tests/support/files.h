#pragma once

#include "base/bytes.h"

#include <filesystem>
#include <map>
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

/// Everything that a look at a folder can tell apart, by the names of its files: bytes, inodes, times.
[[nodiscard]] std::map<std::string, std::string> stateOf(const std::filesystem::path& folder);

}  // namespace dravik::test
