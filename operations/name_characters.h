#pragma once

#include "base/text.h"

namespace dravik::OperationsAudio {

/// The C0 and C1 sets and the delete character.
[[nodiscard]] constexpr bool isControlCharacter(const Utf8Character& character) noexcept {
    const auto point = character.codepoint;
    return point >= 0 && (point < 0x20 || (point >= 0x7F && point < 0xA0));
}

/// What is left out of names that are made of metadata: separators of folders on any system, and what the volumes of
/// cards and network storage (FAT, exFAT, NTFS) refuse. A recording is copied to one of them sooner or later.
[[nodiscard]] constexpr bool isForbiddenInNames(const Utf8Character& character) noexcept {
    switch (character.codepoint) {
        case '/':
        case ':':
        case '\\':
        case '<':
        case '>':
        case '"':
        case '|':
        case '?':
        case '*':
            return true;
        default:
            return isControlCharacter(character);
    }
}

}  // namespace dravik::OperationsAudio
