#include "operations/ixml_elements.h"

#include "model/wave/ixml_tags.h"

#include <cstddef>

namespace dravik::OperationsAudio {
namespace {

struct Element {
    std::size_t begin = 0, valueBegin = 0, valueEnd = 0, end = 0;
};

/// The next element at or after `from`. An empty tag is one without a value, where it is asked for.
std::optional<Element> nextElement(std::string_view text, std::string_view name, std::size_t from, bool emptyTags) {
    for (;;) {
        const std::size_t begin = findOpeningTag(text, name, from);
        if (begin == noTag) return std::nullopt;
        const std::size_t bracket = text.find('>', begin);
        if (bracket == std::string_view::npos) return std::nullopt;
        if (text[bracket - 1] == '/') {
            if (emptyTags) return Element{begin, bracket + 1, bracket + 1, bracket + 1};
            from = bracket + 1;
            continue;
        }
        // Where this one has no closing tag, no later one has.
        const std::size_t closing = findClosingTag(text, name, bracket + 1);
        if (closing == noTag) return std::nullopt;
        return Element{begin, bracket + 1, closing, closing + closingTagBytes(name)};
    }
}

}  // namespace

std::string withValues(std::string_view text, std::string_view name,
                       const std::function<std::optional<std::string>(std::string_view)>& change) {
    std::string out;
    std::size_t copied = 0;
    for (auto at = nextElement(text, name, 0, false); at; at = nextElement(text, name, at->end, false)) {
        const std::optional<std::string> value = change(text.substr(at->valueBegin, at->valueEnd - at->valueBegin));
        if (!value) continue;
        out.append(text.substr(copied, at->valueBegin - copied)).append(*value);
        copied = at->valueEnd;
    }
    return out.append(text.substr(copied));
}

void visitValues(std::string_view text, std::string_view name, const std::function<void(std::string_view)>& visit) {
    for (auto at = nextElement(text, name, 0, false); at; at = nextElement(text, name, at->end, false))
        visit(text.substr(at->valueBegin, at->valueEnd - at->valueBegin));
}

std::string withoutElements(std::string_view text, std::string_view name) {
    std::string out;
    std::size_t copied = 0;
    for (auto at = nextElement(text, name, 0, true); at; at = nextElement(text, name, at->end, true)) {
        // One that begins in a comment or in quoted text ends elsewhere than it seems to.
        const std::string_view whole = text.substr(at->begin, at->end - at->begin);
        if (whole.find("]]>") != std::string_view::npos || whole.find("-->") != std::string_view::npos) {
            return std::string(text);
        }
        out.append(text.substr(copied, at->begin - copied));
        copied = at->end;
    }
    return out.append(text.substr(copied));
}

}  // namespace dravik::OperationsAudio
