#pragma once

#include "base/usage.h"

#include <string>

namespace dravik {

enum class Shell { bash, zsh, fish };

/// A script that teaches the shell to complete what the program takes: commands, options, their choices, files and
/// folders. It holds everything that it offers, so that a Tab starts no program.
[[nodiscard]] std::string completions(const Usage& program, Shell shell);

}  // namespace dravik
