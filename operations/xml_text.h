#pragma once

#include <string>
#include <string_view>

namespace dravik {

/// Text between tags. Pure functions, linear; bytes that are not UTF-8 pass.

/// "&", "<", ">", quote and apostrophe as their five named entities.
[[nodiscard]] std::string escapedXml(std::string_view text);
/// The five named entities and numbers of characters ("&#233;") read, comments left out, "<![CDATA[" sections taken as
/// they stand; anything else stays.
[[nodiscard]] std::string unescapedXml(std::string_view text);

}  // namespace dravik
