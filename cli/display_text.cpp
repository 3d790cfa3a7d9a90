#include "cli/display_text.h"

#include "base/paths.h"
#include "base/text.h"
#include "model/audio_metadata.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include <fmt/format.h>

namespace dravik {
namespace {

constexpr std::string_view replacement = "\uFFFD";

bool isControl(std::string_view character) {
    const auto first = static_cast<unsigned char>(character[0]);
    if (character.size() == 1) return first < 0x20 || first == 0x7F;
    // U+0080 to U+009F: terminals obey some of them like escape sequences.
    return character.size() == 2 && first == 0xC2 && static_cast<unsigned char>(character[1]) < 0xA0;
}

std::string_view escapeSequence(Style style) {
    switch (style) {
        case Style::plain:
            return "";
        case Style::strong:
            return "\x1b[1m";
        case Style::dim:
            return "\x1b[2m";
        case Style::good:
            return "\x1b[32m";
        case Style::special:
            return "\x1b[36m";
        case Style::bad:
            return "\x1b[31m";
    }
    return "";
}

}  // namespace

std::string validUtf8(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const Utf8Character next = firstCharacter(text);
        out += next.isValid() ? text.substr(0, next.bytes) : replacement;
        text.remove_prefix(next.bytes);
    }
    return out;
}

std::string printable(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    const std::string valid = validUtf8(text);
    for (std::string_view rest = valid; !rest.empty();) {
        const std::string_view character = rest.substr(0, firstCharacter(rest).bytes);
        // A line end is one blank, however many bytes it has.
        const bool half = rest.starts_with("\r\n");
        if (isAsciiSpace(character[0])) {
            if (!half) out += ' ';
        } else {
            out += isControl(character) ? replacement : character;
        }
        rest.remove_prefix(character.size());
    }
    return out;
}

std::string shown(const std::filesystem::path& path) { return printable(pathText(path)); }

std::string fitted(std::string_view text, int cells) {
    if (displayWidth(text) <= cells) return std::string(text);
    std::string out;
    int used = 0;
    while (!text.empty()) {
        const std::string_view character = text.substr(0, firstCharacter(text).bytes);
        const int width = displayWidth(character);
        if (used + width > cells - 1) break;
        out += character;
        used += width;
        text.remove_prefix(character.size());
    }
    return cells > 0 ? out + "…" : out;
}

std::string shortDuration(double secondes) {
    if (!(secondes > 0) || secondes > longestDuration) return "0:00";
    const std::int64_t whole = std::max<std::int64_t>(1, std::llround(secondes));
    if (whole < 3600) return fmt::format("{}:{:02}", whole / 60, whole % 60);
    return fmt::format("{}:{:02}:{:02}", whole / 3600, whole / 60 % 60, whole % 60);
}

std::string counted(std::size_t count, std::string_view noun) {
    return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

std::string escapedId(std::string_view id) {
    std::string out;
    for (const char c : id) {
        if (c >= ' ' && c <= '~' && c != '\\') {
            out += c;
        } else {
            out += fmt::format("\\x{:02X}", static_cast<unsigned char>(c));
        }
    }
    return out;
}

std::string styled(std::string_view text, Style style, bool colour) {
    if (!colour || style == Style::plain || text.empty()) return std::string(text);
    return fmt::format("{}{}\x1b[0m", escapeSequence(style), text);
}

}  // namespace dravik
