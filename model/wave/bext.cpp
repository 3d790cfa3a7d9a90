#include "model/wave/bext.h"

#include "base/text.h"
#include "model/wave/timecode.h"

#include <algorithm>
#include <array>
#include <vector>

#include <fmt/format.h>

namespace dravik {
namespace {

/// Letter in front of the keys of lines that we add. Recorders have one of their own each; lines that are there keep
/// it.
constexpr std::string_view ownPrefix = "s";
constexpr std::string_view defaultLineEnd = "\r\n";

/// One line of a Description.
struct Line {
    std::string content;  ///< without its line end
    std::string lineEnd;  ///< empty for a last line without one
};

/// The prefix letter of a key=value line of that key: empty when it has none; absent when the line is another.
std::optional<std::string_view> prefixOfLine(std::string_view content, std::string_view key) {
    const std::size_t prefix = !content.empty() && content.front() >= 'a' && content.front() <= 'z' ? 1 : 0;
    const std::string_view rest = content.substr(prefix);
    if (!rest.starts_with(key) || !rest.substr(key.size()).starts_with('=')) return std::nullopt;
    return content.substr(0, prefix);
}

/// A value on one line: what would end the line or the text becomes a blank.
std::string onOneLine(std::string_view value) {
    std::string out(value);
    std::replace_if(
        out.begin(), out.end(), [](char c) { return c == '\r' || c == '\n' || c == '\0'; }, ' ');
    return out;
}

/// A Description as lines, those we add apart from those that were there.
class DescriptionLines {
  public:
    explicit DescriptionLines(std::string_view text) {
        while (!text.empty()) {
            const std::size_t feed = text.find('\n');
            const std::size_t end = feed == std::string_view::npos ? text.size() : feed + 1;
            std::size_t contentEnd = std::min(feed, text.size());
            if (feed != std::string_view::npos && contentEnd > 0 && text[contentEnd - 1] == '\r') --contentEnd;
            lines_.push_back(
                {std::string(text.substr(0, contentEnd)), std::string(text.substr(contentEnd, end - contentEnd))});
            text.remove_prefix(end);
        }
        if (!lines_.empty() && !lines_.front().lineEnd.empty()) lineEnd_ = lines_.front().lineEnd;
    }

    /// New value for every line of the key; false when there is none.
    bool replace(std::string_view key, std::string_view value) {
        bool found = false;
        for (Line& line : lines_) {
            const std::optional<std::string_view> prefix = prefixOfLine(line.content, key);
            if (!prefix) continue;
            line.content = fmt::format("{}{}={}", *prefix, key, value);
            found = true;
        }
        return found;
    }

    /// New value for every line of the key; a line is added when there is none.
    void set(std::string_view key, std::string_view value) {
        const std::string oneLine = onOneLine(value);
        if (!replace(key, oneLine)) added_.push_back(fmt::format("{}{}={}", ownPrefix, key, oneLine));
    }

    /// The same, but nothing is added for an empty value.
    void setOptional(std::string_view key, std::string_view value) {
        value.empty() ? static_cast<void>(replace(key, value)) : set(key, value);
    }

    void remove(std::string_view key) {
        std::erase_if(lines_, [&](const Line& line) { return prefixOfLine(line.content, key).has_value(); });
    }

    /// The text in at most `maxBytes`: added lines are given up from the last on, then the end is cut.
    [[nodiscard]] std::string text(std::size_t maxBytes) const {
        std::string out;
        for (const Line& line : lines_)
            out.append(line.content).append(line.lineEnd);
        if (out.size() > maxBytes) return std::string(truncatedUtf8(out, maxBytes));
        for (const std::string& line : added_) {
            std::string_view separator;
            if (!out.empty() && out.back() != '\n') separator = lineEnd_;
            if (out.size() + separator.size() + line.size() + lineEnd_.size() > maxBytes) break;
            out.append(separator).append(line).append(lineEnd_);
        }
        return out;
    }

  private:
    std::vector<Line> lines_;
    std::vector<std::string> added_;
    std::string lineEnd_{defaultLineEnd};
};

std::string_view flagValue(bool flag) noexcept { return flag ? "TRUE" : "FALSE"; }

/// The Description after the edit. The order of the calls is that of added lines; what the format's users look for
/// first comes first, since the last ones are given up where there is no room.
std::string updatedDescription(std::string_view description, const BextValues& values) {
    const MetadataValues& edited = values.edited;
    DescriptionLines lines(description);
    if (edited.project) lines.set("PROJECT", *edited.project);
    if (edited.scene) lines.set("SCENE", *edited.scene);
    if (values.circled) {
        lines.remove("CIRCLE");
        lines.remove("TAKE_TYPE");
        lines.set("CIRCLED", flagValue(*values.circled));
    }
    if (values.wild) {
        if (*values.wild) {
            lines.set("WILD_TRACK", flagValue(true));
        } else {
            lines.replace("WILD_TRACK", flagValue(false));
        }
    }
    if (!edited.framerate.empty()) lines.set("SPEED", speedText(edited.framerate));
    if (edited.tape) lines.setOptional("TAPE", *edited.tape);
    if (edited.prise) lines.setOptional("TAKE", *edited.prise);
    if (edited.note) lines.setOptional("NOTE", *edited.note);
    return lines.text(bext::descriptionBytes);
}

std::optional<int> digits(std::string_view text) noexcept {
    int value = 0;
    for (const char c : text) {
        if (!isAsciiDigit(c)) return std::nullopt;
        value = value * 10 + (c - '0');
    }
    return value;
}

int daysInMonth(int year, int month) noexcept {
    static constexpr std::array days = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return days[static_cast<std::size_t>(month - 1)] + (month == 2 && leap ? 1 : 0);
}

}  // namespace

std::string formatRecordingDate(const RecordingDate& date) {
    return fmt::format("{:04}-{:02}-{:02}", date.year, date.month, date.day);
}

std::optional<RecordingDate> parseOriginationDate(std::string_view tenBytes) {
    const std::string_view text = trimmed(tenBytes);
    if (text.size() != bext::originationDateBytes || text[4] != '-' || text[7] != '-') return std::nullopt;
    const std::optional<int> year = digits(text.substr(0, 4));
    const std::optional<int> month = digits(text.substr(5, 2));
    const std::optional<int> day = digits(text.substr(8, 2));
    if (!year || !month || !day) return std::nullopt;
    if (*year < 1 || *month < 1 || *month > 12 || *day < 1 || *day > daysInMonth(*year, *month)) return std::nullopt;
    return RecordingDate{*year, *month, *day};
}

std::string_view descriptionText(ByteSpan payload) noexcept {
    const std::string_view field = asText(payload.first(std::min(payload.size(), bext::descriptionBytes)));
    return field.substr(0, field.find('\0'));
}

Bytes updatedBext(ByteSpan payload, const BextValues& values) {
    Bytes out(payload.begin(), payload.end());
    if (payload.size() < bext::descriptionBytes) return out;

    const std::string_view before = descriptionText(payload);
    const std::string after = updatedDescription(before, values);
    if (after != before) {
        // Recorders leave stray bytes behind the text. They stay only as long as nothing is written there.
        const auto descriptionEnd = out.begin() + bext::descriptionBytes;
        std::fill(out.begin(), descriptionEnd, std::byte{0});
        std::copy(asBytes(after).begin(), asBytes(after).end(), out.begin());
    }
    if (!values.edited.timecode.empty() && payload.size() >= bext::timeReferenceEnd) {
        writeLE<std::uint64_t>(
            out.data() + bext::timeReferenceOffset,
            samplesFromTimecode(values.edited.timecode, values.edited.framerate, values.edited.sampleRate));
    }
    return out;
}

std::optional<std::string_view> descriptionValue(ByteSpan payload, std::string_view key) noexcept {
    std::optional<std::string_view> value;
    for (std::string_view text = descriptionText(payload); !text.empty();) {
        const std::size_t feed = text.find('\n');
        const std::string_view line = trimmed(text.substr(0, feed));
        if (const auto prefix = prefixOfLine(line, key)) value = line.substr(prefix->size() + key.size() + 1);
        text.remove_prefix(feed == std::string_view::npos ? text.size() : feed + 1);
    }
    return value;
}

}  // namespace dravik
