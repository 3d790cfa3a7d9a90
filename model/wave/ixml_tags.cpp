#include "model/wave/ixml_tags.h"

#include "base/text.h"

#include <algorithm>

namespace dravik {
namespace {

/// A byte in either case: of letters, the bit that tells the cases apart is set before comparing.
struct FoldedByte {
    char lower = 0, caseBit = 0;

    explicit FoldedByte(char c) noexcept
        : lower(toLowerAscii(c)), caseBit(isAsciiLetter(c) ? static_cast<char>('a' - 'A') : '\0') {}
    [[nodiscard]] int matches(char c) const noexcept { return static_cast<char>(c | caseBit) == lower ? 1 : 0; }
};

/// The two bytes behind the '<' of a tag: enough to tell most tags of a document apart.
struct TagStart {
    FoldedByte second, third;
};

/// First place at or after `from` where the three bytes stand and `accepts(place)` holds. Whole blocks are first asked
/// for any such place at all, in a loop without an exit that the compiler turns into vector code: a look-up that finds
/// nothing in a large document then costs about as much as reading it.
template <typename Accept>
std::size_t findTag(std::string_view text, const TagStart& start, std::size_t from, Accept accepts) noexcept {
    constexpr std::size_t block = 64;
    constexpr std::size_t startBytes = 3;
    const auto isStart = [start](const char* at) {
        return (at[0] == '<' ? 1 : 0) & start.second.matches(at[1]) & start.third.matches(at[2]);
    };
    if (text.size() < startBytes) return noTag;
    const std::size_t end = text.size() - startBytes + 1;  // behind the last place where three bytes fit
    std::size_t at = from;
    while (at < end) {
        const std::size_t stop = std::min(end, at + block);
        if (stop - at == block) {
            int any = 0;
            for (std::size_t i = 0; i < block; ++i)
                any |= isStart(text.data() + at + i);
            if (any == 0) {
                at = stop;
                continue;
            }
        }
        for (; at < stop; ++at) {
            if (isStart(text.data() + at) != 0 && accepts(at)) return at;
        }
    }
    return noTag;
}

}  // namespace

bool opensElement(std::string_view text, std::size_t at, std::string_view name) noexcept {
    const std::size_t behind = at + 1 + name.size();
    if (behind > text.size() || text[at] != '<' || !equalsIgnoringAsciiCase(text.substr(at + 1, name.size()), name)) {
        return false;
    }
    return behind == text.size() || !isNameByte(text[behind]);
}

bool closesElement(std::string_view text, std::size_t at, std::string_view name) noexcept {
    const std::size_t end = at + closingTagBytes(name);
    return end <= text.size() && text[at] == '<' && text[at + 1] == '/' && text[end - 1] == '>' &&
           equalsIgnoringAsciiCase(text.substr(at + 2, name.size()), name);
}

std::size_t findOpeningTag(std::string_view text, std::string_view name, std::size_t from) noexcept {
    if (name.size() < 2) {
        // Too short for three bytes to tell it apart; no element of iXML has such a name.
        for (std::size_t at = text.find('<', from); at != noTag && !name.empty(); at = text.find('<', at + 1)) {
            if (opensElement(text, at, name)) return at;
        }
        return noTag;
    }
    return findTag(text, {FoldedByte(name[0]), FoldedByte(name[1])}, from,
                   [&](std::size_t at) { return opensElement(text, at, name); });
}

std::size_t findClosingTag(std::string_view text, std::string_view name, std::size_t from) noexcept {
    if (name.empty()) return noTag;
    return findTag(text, {FoldedByte('/'), FoldedByte(name[0])}, from,
                   [&](std::size_t at) { return closesElement(text, at, name); });
}

}  // namespace dravik
