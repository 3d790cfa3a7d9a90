#include "base/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

#include <fmt/format.h>
#include <utf8proc.h>

namespace dravik {
namespace {

std::string_view digitRun(std::string_view text, std::size_t at) noexcept {
    std::size_t end = at;
    while (end < text.size() && isAsciiDigit(text[end]))
        ++end;
    return text.substr(at, end - at);
}

std::string_view withoutLeadingZeros(std::string_view digits) noexcept {
    const std::size_t first = digits.find_first_not_of('0');
    return first == std::string_view::npos ? std::string_view{} : digits.substr(first);
}

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// An encoding of one byte a character whose letters are those of ISO Latin-1.
bool isLatin1Name(std::string_view encoding) {
    static constexpr std::array<std::string_view, 5> names = {"iso88591", "latin1", "iso885915", "windows1252",
                                                              "cp1252"};
    std::string plain = lowerAscii(trimmed(encoding));
    std::erase_if(plain, [](char c) { return c == '-' || c == '_' || c == ' '; });
    return std::find(names.begin(), names.end(), plain) != names.end();
}

/// What XML allows in the name of an encoding, and the blanks that recorders put there ("ISO 8859-1").
constexpr bool isEncodingNameByte(char c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' || c == '_' ||
           c == '-' || c == ' ';
}

}  // namespace

Utf8Character firstCharacter(std::string_view text) noexcept {
    Utf8Character character;
    const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
    const auto most = static_cast<utf8proc_ssize_t>(std::min<std::size_t>(text.size(), 4));
    const utf8proc_ssize_t length = utf8proc_iterate(bytes, most, &character.codepoint);
    if (length > 0) character.bytes = static_cast<std::size_t>(length);
    return character;
}

std::string_view trimmed(std::string_view text) noexcept {
    while (!text.empty() && isAsciiSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isAsciiSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

std::string lowerAscii(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(), toLowerAscii);
    return out;
}

bool equalsIgnoringAsciiCase(std::string_view a, std::string_view b) noexcept {
    // Most texts compared are equal to the byte, or of different length.
    if (a.size() != b.size()) return false;
    return a == b || std::equal(a.begin(), a.end(), b.begin(), b.end(),
                                [](char x, char y) { return toLowerAscii(x) == toLowerAscii(y); });
}

std::string replacedAll(std::string_view text, std::string_view from, std::string_view to) {
    std::string out;
    out.reserve(text.size());
    std::size_t at = 0;
    while (!from.empty()) {
        const std::size_t hit = text.find(from, at);
        if (hit == std::string_view::npos) break;
        out.append(text.substr(at, hit - at)).append(to);
        at = hit + from.size();
    }
    out.append(text.substr(at));
    return out;
}

bool isValidUtf8(std::string_view text) noexcept {
    constexpr std::uint64_t highBits = 0x8080808080808080U;
    std::size_t at = 0;
    while (at < text.size()) {
        // Metadata is ASCII nearly everywhere: 32 bytes at a step.
        if (std::array<std::uint64_t, 4> some{}; text.size() - at >= sizeof some) {
            std::memcpy(some.data(), text.data() + at, sizeof some);
            if (((some[0] | some[1] | some[2] | some[3]) & highBits) == 0) {
                at += sizeof some;
                continue;
            }
        }
        if (static_cast<unsigned char>(text[at]) < 0x80) {
            ++at;
            continue;
        }
        const Utf8Character character = firstCharacter(text.substr(at));
        if (!character.isValid()) return false;
        at += character.bytes;
    }
    return true;
}

std::string latin1ToUtf8(std::string_view latin1) {
    std::string out;
    out.reserve(latin1.size() + latin1.size() / 8);
    for (const char c : latin1) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            out.push_back(c);
        } else {
            out.push_back(static_cast<char>(0xC0 | (byte >> 6U)));
            out.push_back(static_cast<char>(0x80 | (byte & 0x3FU)));
        }
    }
    return out;
}

std::string_view declaredEncoding(std::string_view text) noexcept {
    constexpr std::string_view key = "encoding";
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t start = text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0;
    if (!text.substr(start).starts_with("<?xml")) return {};
    // A damaged first line may find its end far into the document, and what stands in between is no encoding: whoever
    // replaces the name would replace elements.
    const std::size_t end = text.find_first_of("<>", start + 1);
    if (end == std::string_view::npos || text[end] != '>' || text[end - 1] != '?') return {};
    const std::string_view line = text.substr(0, end - 1);
    const std::size_t at = line.find(key, start);
    if (at == std::string_view::npos) return {};
    const std::size_t equals = line.find_first_not_of(blanks, at + key.size());
    if (equals == std::string_view::npos || line[equals] != '=') return {};
    const std::size_t open = line.find_first_not_of(blanks, equals + 1);
    if (open == std::string_view::npos || (line[open] != '"' && line[open] != '\'')) return {};
    const std::size_t close = line.find(line[open], open + 1);
    if (close == std::string_view::npos) return {};
    const std::string_view name = line.substr(open + 1, close - open - 1);
    return std::all_of(name.begin(), name.end(), isEncodingNameByte) ? name : std::string_view{};
}

std::string utf8OrLatin1(std::string_view bytes) {
    if (isValidUtf8(bytes)) return std::string(bytes);
    if (!bytes.starts_with(byteOrderMark) && isLatin1Name(declaredEncoding(bytes))) return latin1ToUtf8(bytes);
    std::string mended;
    mended.reserve(bytes.size() + bytes.size() / 8);
    for (std::string_view rest = bytes; !rest.empty();) {
        const Utf8Character next = firstCharacter(rest);
        const std::string_view taken = rest.substr(0, next.bytes);
        if (next.isValid()) {
            mended += taken;
        } else {
            mended += latin1ToUtf8(taken);
        }
        rest.remove_prefix(next.bytes);
    }
    return mended;
}

std::string_view truncatedUtf8(std::string_view text, std::size_t maxBytes) noexcept {
    if (text.size() <= maxBytes) return text;
    // The character that the border may fall into begins at most three bytes ahead of it.
    const std::size_t earliest = maxBytes < 3 ? 0 : maxBytes - 3;
    for (std::size_t at = maxBytes; at-- > earliest;) {
        if (at + firstCharacter(text.substr(at)).bytes > maxBytes) return text.substr(0, at);
    }
    return text.substr(0, maxBytes);
}

int displayWidth(std::string_view text) noexcept {
    int width = 0;
    while (!text.empty()) {
        const Utf8Character character = firstCharacter(text);
        width += character.isValid() ? utf8proc_charwidth(character.codepoint) : 1;
        text.remove_prefix(character.bytes);
    }
    return width;
}

std::string foldedCase(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        if (static_cast<unsigned char>(text.front()) < 0x80) {
            out.push_back(toLowerAscii(text.front()));
            text.remove_prefix(1);
            continue;
        }
        const Utf8Character character = firstCharacter(text);
        if (character.isValid()) {
            std::array<utf8proc_uint8_t, 4> encoded{};
            const utf8proc_ssize_t length = utf8proc_encode_char(utf8proc_tolower(character.codepoint), encoded.data());
            out.append(reinterpret_cast<const char*>(encoded.data()), static_cast<std::size_t>(length));
        } else {
            out.push_back(text.front());
        }
        text.remove_prefix(character.bytes);
    }
    return out;
}

std::string naturalKey(std::string_view text) {
    const std::string folded = foldedCase(text);
    std::string key;
    key.reserve(folded.size() + 16);
    for (std::size_t at = 0; at < folded.size();) {
        if (!isAsciiDigit(folded[at])) {
            key.push_back(folded[at++]);
            continue;
        }
        const std::string_view run = digitRun(folded, at);
        const std::string_view number = withoutLeadingZeros(run);
        // A digit, which stands to other characters as any digit does; then the longer number is the greater one.
        key.push_back('0');
        for (int shift = 24; shift >= 0; shift -= 8)
            key.push_back(static_cast<char>(number.size() >> static_cast<unsigned>(shift)));
        key.append(number);
        at += run.size();
    }
    return key;
}

int compareNatural(std::string_view a, std::string_view b) {
    const int order = naturalKey(a).compare(naturalKey(b));
    return order != 0 ? order : a.compare(b);
}

std::optional<std::int64_t> parseInteger(std::string_view text) noexcept {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) return std::nullopt;
    }
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return value;
}

std::optional<std::uint32_t> parseUnsigned32(std::string_view text) noexcept {
    const std::optional<std::int64_t> value = parseInteger(text);
    if (!value || *value < 0 || *value > 0xFFFFFFFFLL || text.starts_with('-')) return std::nullopt;
    return static_cast<std::uint32_t>(*value);
}

std::optional<double> parseDouble(std::string_view text) noexcept {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) return std::nullopt;
    }
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(value)) return std::nullopt;
    return value;
}

std::string shortestDouble(double value) {
    // {fmt} prints the shortest round-trip digits; whole numbers get the fraction that marks them as a rate.
    std::string text = fmt::format("{}", value);
    if (text.find_first_not_of("-0123456789") == std::string::npos) text += ".0";
    return text;
}

}  // namespace dravik
