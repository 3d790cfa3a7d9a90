#include "operations/xml_text.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <optional>
#include <utility>

namespace dravik {
namespace {

constexpr std::array<std::pair<char, std::string_view>, 5> entities = {
    {{'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}, {'\'', "&apos;"}}};

void appendUtf8(std::string& out, std::uint32_t codepoint) {
    const auto add = [&out](std::uint32_t byte) { out.push_back(static_cast<char>(byte)); };
    if (codepoint < 0x80) {
        add(codepoint);
    } else if (codepoint < 0x800) {
        add(0xC0U | codepoint >> 6U);
        add(0x80U | (codepoint & 0x3FU));
    } else if (codepoint < 0x10000) {
        add(0xE0U | codepoint >> 12U);
        add(0x80U | (codepoint >> 6U & 0x3FU));
        add(0x80U | (codepoint & 0x3FU));
    } else {
        add(0xF0U | codepoint >> 18U);
        add(0x80U | (codepoint >> 12U & 0x3FU));
        add(0x80U | (codepoint >> 6U & 0x3FU));
        add(0x80U | (codepoint & 0x3FU));
    }
}

/// What "&#233;" or "&#xE9;" stands for; absent for what XML lets no text hold.
std::optional<std::uint32_t> numberedCharacter(std::string_view entity) {
    std::string_view digits = entity.substr(2, entity.size() - 3);
    int base = 10;
    if (digits.starts_with('x')) {
        digits.remove_prefix(1);
        base = 16;
    }
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
    if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
    if (value < 0x20 || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) return std::nullopt;
    return value;
}

/// Comments and quoted text at the start of some text. One that is not closed is text: of its kind no later one is
/// closed either, and the end is not looked for again.
class Sections {
  public:
    struct Section {
        std::string_view text;
        std::size_t bytes = 0;
    };

    [[nodiscard]] std::optional<Section> at(std::string_view text) {
        for (Kind& kind : kinds_) {
            if (!kind.closes || !text.starts_with(kind.opening)) continue;
            const std::size_t end = text.find(kind.closing, kind.opening.size());
            kind.closes = end != std::string_view::npos;
            if (!kind.closes) return std::nullopt;
            const std::string_view inside = text.substr(kind.opening.size(), end - kind.opening.size());
            return Section{kind.isText ? inside : std::string_view(), end + kind.closing.size()};
        }
        return std::nullopt;
    }

  private:
    struct Kind {
        std::string_view opening, closing;
        bool isText = false;
        bool closes = true;
    };
    std::array<Kind, 2> kinds_ = {{{"<!--", "-->"}, {"<![CDATA[", "]]>", true}}};
};

}  // namespace

std::string escapedXml(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        std::string_view put(&c, 1);
        for (const auto& [character, entity] : entities) {
            if (c == character) put = entity;
        }
        out.append(put);
    }
    return out;
}

std::string unescapedXml(std::string_view text) {
    constexpr std::size_t longestEntity = 10;  // "&#x10FFFF;"
    std::string out;
    out.reserve(text.size());
    Sections sections;
    while (!text.empty()) {
        if (const auto section = sections.at(text)) {
            out.append(section->text);
            text.remove_prefix(section->bytes);
            continue;
        }
        const std::size_t end = text.front() == '&' ? text.substr(0, longestEntity).find(';') : std::string_view::npos;
        const std::string_view entity = text.substr(0, end == std::string_view::npos ? 1 : end + 1);
        bool known = false;
        if (entity.starts_with("&#")) {
            if (const auto codepoint = numberedCharacter(entity)) {
                appendUtf8(out, *codepoint);
                known = true;
            }
        } else {
            for (const auto& [character, name] : entities) {
                if (entity != name) continue;
                out.push_back(character);
                known = true;
            }
        }
        if (known) {
            text.remove_prefix(entity.size());
        } else {
            out.push_back(text.front());
            text.remove_prefix(1);
        }
    }
    return out;
}

}  // namespace dravik
