#include "update/release_notes.h"

#include "base/text.h"

#include <algorithm>

namespace dravik {
namespace {

/// The length of "](address)" at the start of the text; 0 when that is not what it starts with.
std::size_t linkEnd(std::string_view text) {
    if (text.substr(0, 2) != "](") return 0;
    const std::size_t end = text.find(')');
    return end == std::string_view::npos ? 0 : end + 1;
}

std::string withoutMarks(std::string_view markdown) {
    std::string plain;
    std::size_t openLink = std::string::npos;  // where its bracket stands in `plain`
    for (std::size_t at = 0; at < markdown.size();) {
        const char c = markdown[at];
        if (c == '`') {
            ++at;
        } else if (markdown.substr(at, 2) == "**") {
            at += 2;
        } else if (const std::size_t end = linkEnd(markdown.substr(at)); end > 0 && openLink != std::string::npos) {
            plain.erase(openLink, 1);
            openLink = std::string::npos;
            at += end;
        } else {
            if (c == '[') openLink = plain.size();
            plain += c;
            ++at;
        }
    }
    return plain;
}

}  // namespace

std::vector<std::string> releaseNotesOf(std::string_view changeLog) {
    constexpr std::string_view sectionMark = "## ";
    std::vector<std::string> notes;
    bool inSection = false;
    bool goesOn = false;  // the last entry, on the next line
    while (!changeLog.empty()) {
        const std::size_t end = std::min(changeLog.find('\n'), changeLog.size());
        const std::string_view line = trimmed(changeLog.substr(0, end));
        changeLog.remove_prefix(std::min(changeLog.size(), end + 1));
        if (line.substr(0, sectionMark.size()) == sectionMark) {
            if (inSection && !notes.empty()) break;  // "Unreleased" is empty right after a release
            inSection = true;
        } else if (!inSection || line.empty() || line.front() == '#') {
            goesOn = false;
        } else if (const std::string_view mark = line.substr(0, 2); mark == "- " || mark == "* ") {
            notes.emplace_back(trimmed(line.substr(2)));
            goesOn = true;
        } else if (goesOn) {
            notes.back().append(" ").append(line);
        } else {
            notes.emplace_back(line);
            goesOn = true;
        }
    }
    std::transform(notes.begin(), notes.end(), notes.begin(), withoutMarks);
    return notes;
}

}  // namespace dravik
