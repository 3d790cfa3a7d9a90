#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace dravik {

/// The kinds of text on a page. Their sizes are the layout's own; how wide a text is, only its font knows.
enum class TextStyle {
    title,
    date,
    subject,
    label,
    value,
    notes,
    notesLead,
    head,
    cell,
    strongCell,
    mark,
    totals,
    small,
    smallStrong
};

struct TextFace {
    double points = 0;
    bool bold = false;
};
[[nodiscard]] TextFace faceOf(TextStyle style) noexcept;
inline constexpr TextStyle lastTextStyle = TextStyle::smallStrong;

/// Measures text. Widths are points.
class TextRuler {
  public:
    virtual ~TextRuler() = default;
    [[nodiscard]] virtual double width(TextStyle style, std::string_view text) const = 0;
};

/// Text for one line of a page: line ends and tabs as blanks, no other control characters.
[[nodiscard]] std::string oneLine(std::string_view text);

/// Where the text may be cut: behind each of what a reader takes for one character, with all its accents and joiners.
[[nodiscard]] std::vector<std::size_t> characterEnds(std::string_view text);

/// The text, one line, if it is not wider than that; else as much of its beginning as goes with "..." behind it. Of a
/// width that has no room for that, nothing.
[[nodiscard]] std::string fittedText(std::string_view text, TextStyle style, double width, const TextRuler& ruler);

/// The text as lines, broken between words, or where a word is wider than a line between characters. The first line has
/// `indent` less room. Line ends of the text are line ends.
[[nodiscard]] std::vector<std::string> wrappedText(std::string_view text, TextStyle style, double width, double indent,
                                                   const TextRuler& ruler);

}  // namespace dravik
