#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace dravik {

/// Text helpers on UTF-8 bytes. No locale, no allocation unless a std::string is returned, any thread.

/// Blank, tab, line feed, vertical tab, form feed and carriage return.
[[nodiscard]] constexpr bool isAsciiSpace(char c) noexcept { return c == ' ' || (c >= '\t' && c <= '\r'); }
[[nodiscard]] constexpr bool isAsciiDigit(char c) noexcept { return c >= '0' && c <= '9'; }
[[nodiscard]] constexpr bool isAsciiLetter(char c) noexcept { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
[[nodiscard]] constexpr char toLowerAscii(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// The text without ASCII white space at either end (a view into the argument).
[[nodiscard]] std::string_view trimmed(std::string_view text) noexcept;
/// A to Z become a to z; other bytes stay.
[[nodiscard]] std::string lowerAscii(std::string_view text);
[[nodiscard]] bool equalsIgnoringAsciiCase(std::string_view a, std::string_view b) noexcept;
/// Every "from" replaced by "to", left to right, not looking again at what was put in.
[[nodiscard]] std::string replacedAll(std::string_view text, std::string_view from, std::string_view to);

/// Well-formed UTF-8 (no surrogates, no overlong forms, nothing above U+10FFFF)?
[[nodiscard]] bool isValidUtf8(std::string_view text) noexcept;
/// ISO Latin-1 bytes as UTF-8. Every byte sequence is valid Latin-1, so this cannot fail.
[[nodiscard]] std::string latin1ToUtf8(std::string_view latin1);
/// The name of the encoding that an XML declaration at the start of the text gives, a view into the text; empty when
/// there is none. A byte order mark may stand in front.
[[nodiscard]] std::string_view declaredEncoding(std::string_view text) noexcept;
/// Text of unknown encoding as UTF-8: characters that are UTF-8 stay as they are, every other byte is read as ISO
/// Latin-1, so that stray bytes in one value garble no accent elsewhere. Text that is not UTF-8 throughout and declares
/// Latin-1 (or a relative of it) is read as Latin-1 throughout. In Latin-1 text that declares nothing, two or three
/// letters that happen to read as UTF-8 ("\xC3\xA9") are taken for that: no one writes them in a row.
[[nodiscard]] std::string utf8OrLatin1(std::string_view bytes);

/// One step through text.
struct Utf8Character {
    std::size_t bytes = 1;        ///< its length; 1 for a byte that is not UTF-8
    std::int32_t codepoint = -1;  ///< negative for such a byte

    [[nodiscard]] bool isValid() const noexcept { return codepoint >= 0; }
};
/// What the text, which is not empty, begins with.
[[nodiscard]] Utf8Character firstCharacter(std::string_view text) noexcept;
/// The longest start of `text` that is at most `maxBytes` long and does not end inside a UTF-8 character.
[[nodiscard]] std::string_view truncatedUtf8(std::string_view text, std::size_t maxBytes) noexcept;
/// Number of terminal cells the text takes (wide East Asian characters count two, combining marks none).
[[nodiscard]] int displayWidth(std::string_view text) noexcept;

/// Unicode lower case of UTF-8 text, for comparisons that ignore case. Bytes that are not UTF-8 are kept as they are.
[[nodiscard]] std::string foldedCase(std::string_view text);

/// Order of names as people expect it: case ignored, runs of digits compared as numbers of any length
/// ("Take 9" before "take 10"). Texts that differ only in case or leading zeros are ordered by their bytes, so that
/// the result is a total order.  Negative, zero or positive like std::string::compare.
[[nodiscard]] int compareNatural(std::string_view a, std::string_view b);
/// For sorting many names, each looked at once: keys are ordered by their bytes as compareNatural orders the texts, but
/// for texts that differ only in case or leading zeros, which have the same key. Not for showing.
[[nodiscard]] std::string naturalKey(std::string_view text);

/// A whole decimal integer with an optional leading '+' or '-', nothing else; absent when it does not fit.
[[nodiscard]] std::optional<std::int64_t> parseInteger(std::string_view text) noexcept;
/// Decimal digits only (an optional '+'); absent when it does not fit 32 bits.
[[nodiscard]] std::optional<std::uint32_t> parseUnsigned32(std::string_view text) noexcept;
/// A whole decimal number, as in "25", "29.97" or "1e3"; no blanks, no "inf", no "nan". The locale does not matter.
[[nodiscard]] std::optional<double> parseDouble(std::string_view text) noexcept;
/// The shortest text that reads back as the same number, always with a fraction: 50.0, 59.94.
[[nodiscard]] std::string shortestDouble(double value);

}  // namespace dravik
