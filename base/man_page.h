#pragma once

#include "base/usage.h"

#include <string>
#include <string_view>
#include <vector>

namespace dravik {

/// The manual page of a program, in roff with the man macros: section 1, "User Commands".
/// `version` is that of the program, `seeAlso` names other pages of section 1.
[[nodiscard]] std::string manPage(const Usage& program, std::string_view version,
                                  const std::vector<std::string>& seeAlso);

}  // namespace dravik
