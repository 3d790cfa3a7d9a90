#pragma once

#include "base/usage.h"

#include <optional>
#include <string>
#include <string_view>

namespace dravik {

enum class Shell { bash, zsh, fish };
/// The shell of this name, "zsh"; absent when there is no such one.
[[nodiscard]] std::optional<Shell> shellOf(std::string_view name);

/// A script that teaches the shell to complete what the program takes: commands, options, their choices, files and
/// folders. It holds everything that it offers, so that a Tab starts no program. A command has one positional argument
/// at most, which may repeat: what is offered does not depend on how many words stand before.
[[nodiscard]] std::string completions(const Usage& program, Shell shell);

}  // namespace dravik
