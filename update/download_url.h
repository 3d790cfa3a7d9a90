#pragma once

#include <string_view>

namespace dravik {

/// Is this an address on the program's own web site that a browser may be sent to? It must be "https", its host the
/// domain itself, with or without "www.", in any letter case, and nothing may stand beside the host: no user name, no
/// port. Whatever programs read in different ways (backslashes, blanks, control characters, characters beyond ASCII,
/// broken percent signs) makes it none.
[[nodiscard]] bool isDownloadURL(std::string_view url, std::string_view webDomain) noexcept;

}  // namespace dravik
