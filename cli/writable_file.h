#pragma once

#include <filesystem>
#include <string>

namespace dravik {

/// Why this file's metadata and markers cannot be written, as a sentence that names the file; empty when they can.
/// Asked before any file of a command is touched, so that a command is refused whole. Looks at the file's first bytes.
[[nodiscard]] std::string writeProblem(const std::filesystem::path& file);

}  // namespace dravik
