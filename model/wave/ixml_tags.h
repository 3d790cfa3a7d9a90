#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace dravik {

/// Finding single tags of an element in iXML text: what IxmlDocument and the editor are built on. Names consist of
/// ASCII letters, digits and '_'; case is ignored. Pure functions, linear, no allocation.

inline constexpr std::size_t noTag = std::string_view::npos;

/// A table, because the index of a document asks for every byte of every name.
inline constexpr auto nameBytes = [] {
    std::array<bool, 256> table{};
    for (const char c : std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_")) {
        table[static_cast<unsigned char>(c)] = true;
    }
    return table;
}();
/// A letter, digit or '_': what a tag name consists of. Bytes above 127 are not.
[[nodiscard]] constexpr bool isNameByte(char c) noexcept { return nameBytes[static_cast<unsigned char>(c)]; }

/// Does "<NAME" with a word boundary behind it stand at `at`?
[[nodiscard]] bool opensElement(std::string_view text, std::size_t at, std::string_view name) noexcept;
/// Does "</NAME>" stand at `at`?
[[nodiscard]] bool closesElement(std::string_view text, std::size_t at, std::string_view name) noexcept;

/// Offset of the first such place at or after `from`, or noTag.
[[nodiscard]] std::size_t findOpeningTag(std::string_view text, std::string_view name, std::size_t from = 0) noexcept;
[[nodiscard]] std::size_t findClosingTag(std::string_view text, std::string_view name, std::size_t from = 0) noexcept;

/// Bytes of "</NAME>".
[[nodiscard]] constexpr std::size_t closingTagBytes(std::string_view name) noexcept { return name.size() + 3; }

}  // namespace dravik
