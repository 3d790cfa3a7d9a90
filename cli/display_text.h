#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace dravik {

/// Texts as a terminal shows them. Widths are cells. Pure functions, any thread.

/// The text with U+FFFD in the place of every byte that is not UTF-8.
[[nodiscard]] std::string validUtf8(std::string_view text);
/// What may be printed without harm: line ends and tabs become a blank, other control characters and bytes that are not
/// UTF-8 become U+FFFD. A note in a file must not move the cursor or change the colours of the user's terminal.
[[nodiscard]] std::string printable(std::string_view text);
/// A path as a sentence names it.
[[nodiscard]] std::string shown(const std::filesystem::path& path);
/// Printable text cut to that many cells, the last of them "…" when something is missing.
[[nodiscard]] std::string fitted(std::string_view printableText, int cells);

/// "4:12" or "1:02:33"; what is not nothing is at least a second.
[[nodiscard]] std::string shortDuration(double secondes);
/// "1 take", "3 takes".
[[nodiscard]] std::string counted(std::size_t count, std::string_view noun);
/// A chunk id as text: what is not printable, and the backslash, as "\xNN".
[[nodiscard]] std::string escapedId(std::string_view id);

/// How text stands out where colour is allowed.
enum class Style { plain, strong, dim, good, special, bad };
/// The text in its style; without colour the text itself.
[[nodiscard]] std::string styled(std::string_view text, Style style, bool colour);

}  // namespace dravik
