#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace dravik {

/// The entries of the newest section of a change log in Markdown that has any: what stands between a heading of the
/// second level and the next one, one line of text for each list item or paragraph. Marks of code and emphasis are left
/// out, of a link its text remains.
[[nodiscard]] std::vector<std::string> releaseNotesOf(std::string_view changeLog);

}  // namespace dravik
