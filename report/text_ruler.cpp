#include "report/text_ruler.h"

#include "base/text.h"

#include <algorithm>

#include <utf8proc.h>

namespace dravik {
namespace {

constexpr std::string_view dots = "...";
/// More than stands in the widest line at the smallest size; whatever a file holds is not measured beyond it.
constexpr std::size_t mostBytesOfLine = 2000;

std::string_view withoutEndingBlanks(std::string_view text) {
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

/// The longest start that is not wider; at least one character when `atLeastOne`.
std::size_t fittingStart(std::string_view text, TextStyle style, double width, bool atLeastOne,
                         const TextRuler& ruler) {
    const std::vector<std::size_t> ends = characterEnds(text);
    const auto beyond = std::partition_point(
        ends.begin(), ends.end(), [&](std::size_t end) { return ruler.width(style, text.substr(0, end)) <= width; });
    if (beyond != ends.begin()) return *(beyond - 1);
    return atLeastOne && !ends.empty() ? ends.front() : 0;
}

/// Breaks one paragraph.
class Wrapper {
  public:
    Wrapper(TextStyle style, double width, double indent, const TextRuler& ruler, std::vector<std::string>& lines)
        : style_(style), full_(width), room_(width - indent), ruler_(ruler), lines_(lines) {}

    void addWord(std::string_view word) {
        if (line_.empty() || ruler_.width(style_, line_ + " " + std::string(word)) <= room_) {
            line_.append(line_.empty() ? "" : " ").append(word);
        } else {
            endLine();
            line_ = word;
        }
        while (line_.size() > mostBytesOfLine || ruler_.width(style_, line_) > room_) {
            const std::string_view measured = truncatedUtf8(line_, mostBytesOfLine);
            const std::size_t cut = fittingStart(measured, style_, room_, true, ruler_);
            if (cut >= line_.size()) break;
            const std::string rest = line_.substr(cut);
            line_.resize(cut);
            endLine();
            line_ = rest;
        }
    }
    void endLine() {
        lines_.push_back(std::move(line_));
        line_.clear();
        room_ = full_;
    }
    [[nodiscard]] double room() const noexcept { return room_; }

  private:
    TextStyle style_;
    double full_, room_;
    const TextRuler& ruler_;
    std::vector<std::string>& lines_;
    std::string line_;
};

}  // namespace

TextFace faceOf(TextStyle style) noexcept {
    switch (style) {
        case TextStyle::title:
            return {18, true};
        case TextStyle::date:
            return {10, true};
        case TextStyle::subject:
            return {9.5, false};
        case TextStyle::label:
            return {6.6, false};
        case TextStyle::value:
            return {9.2, false};
        case TextStyle::notes:
            return {8, false};
        case TextStyle::notesLead:
            return {8, true};
        case TextStyle::head:
            return {7, true};
        case TextStyle::cell:
            return {7.6, false};
        case TextStyle::strongCell:
            return {7.6, true};
        case TextStyle::mark:
            return {8, true};
        case TextStyle::totals:
            return {7.8, true};
        case TextStyle::small:
            return {7, false};
        case TextStyle::smallStrong:
            return {7, true};
    }
    return {};
}

std::string oneLine(std::string_view text) {
    std::string line;
    while (!text.empty()) {
        const Utf8Character character = firstCharacter(text);
        const bool isBlank = character.bytes == 1 && isAsciiSpace(text.front());
        const utf8proc_category_t category = utf8proc_category(character.codepoint);
        const bool isBreak = category == UTF8PROC_CATEGORY_ZL || category == UTF8PROC_CATEGORY_ZP;
        if (isBlank || isBreak) {
            line += ' ';
        } else if (!character.isValid()) {
            line += "\xEF\xBF\xBD";
        } else if (category != UTF8PROC_CATEGORY_CC) {
            line.append(text.substr(0, character.bytes));
        }
        text.remove_prefix(character.bytes);
    }
    return line;
}

std::vector<std::size_t> characterEnds(std::string_view text) {
    std::vector<std::size_t> ends;
    utf8proc_int32_t state = 0;
    std::int32_t before = -1;
    for (std::size_t at = 0; at < text.size();) {
        const Utf8Character character = firstCharacter(text.substr(at));
        const std::int32_t point = character.isValid() ? character.codepoint : 0xFFFD;
        if (at > 0 && utf8proc_grapheme_break_stateful(before, point, &state)) ends.push_back(at);
        before = point;
        at += character.bytes;
    }
    if (!text.empty()) ends.push_back(text.size());
    return ends;
}

std::string fittedText(std::string_view text, TextStyle style, double width, const TextRuler& ruler) {
    const std::string_view start = truncatedUtf8(text, mostBytesOfLine);
    const std::string line = oneLine(start);
    if (start.size() == text.size() && ruler.width(style, line) <= width) return line;
    const double room = width - ruler.width(style, dots);
    if (room < 0) return {};
    const std::size_t cut = fittingStart(line, style, room, false, ruler);
    return std::string(withoutEndingBlanks(std::string_view(line).substr(0, cut))).append(dots);
}

std::vector<std::string> wrappedText(std::string_view text, TextStyle style, double width, double indent,
                                     const TextRuler& ruler) {
    std::vector<std::string> lines;
    while (!text.empty() && isAsciiSpace(text.back()))
        text.remove_suffix(1);
    for (bool more = true; more;) {
        const std::size_t end = text.find('\n');
        const std::string paragraph = oneLine(text.substr(0, end));
        Wrapper wrapper(style, width, lines.empty() ? indent : 0, ruler, lines);
        std::string_view rest = paragraph;
        for (rest = trimmed(rest); !rest.empty(); rest = trimmed(rest)) {
            const std::size_t blank = std::min(rest.find(' '), rest.size());
            wrapper.addWord(rest.substr(0, blank));
            rest.remove_prefix(blank);
        }
        wrapper.endLine();
        more = end != std::string_view::npos;
        if (more) text.remove_prefix(end + 1);
    }
    return lines;
}

}  // namespace dravik
