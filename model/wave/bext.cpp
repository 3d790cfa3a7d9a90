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

/// Of a text that has to be shortened at least this much is kept (or all of it, if it is shorter); with less, the line
/// would tell nothing and is left out.
constexpr std::size_t leastTextBytes = 8;

/// One line of a Description.
struct Line {
    std::string content;                ///< without its line end; of an edited line only what stands before the value
    std::string lineEnd;                ///< empty for a last line without one
    std::optional<std::size_t> edit{};  ///< what its value is, for an edited line
    bool repeats = false;               ///< a line above has the same key
};

/// The new value of all lines of one key.
struct Edit {
    std::string value;
    std::size_t leastBytes = 0;  ///< the value is not shortened below
    bool added = false;          ///< no line had the key
    bool kept = true;            ///< false: there is no room for it
    bool once = false;           ///< there is no room for the lines that repeat its key
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

/// A Description as lines, and the edits of them.
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

    /// New value for every line of the key, shortened where there is no room.
    void setText(std::string_view key, std::string_view value, bool addMissing = true) {
        // No more than the field holds can ever be of use.
        const std::string oneLine = onOneLine(truncatedUtf8(value, bext::descriptionBytes));
        put(key, oneLine, truncatedUtf8(oneLine, leastTextBytes).size(), addMissing);
    }
    /// New value for every line of the key, whole or not at all: a part of it would be another value.
    void setWhole(std::string_view key, std::string_view value, bool addMissing) {
        const std::string oneLine = onOneLine(value);
        put(key, oneLine, oneLine.size(), addMissing);
    }

    void remove(std::string_view key) {
        std::erase_if(lines_, [&](const Line& line) { return prefixOfLine(line.content, key).has_value(); });
    }

    /// The text in at most `maxBytes`. Lines that are not edited are all there: iXML holds the edited values as well,
    /// the recorder's own stand nowhere else.
    [[nodiscard]] std::string text(std::size_t maxBytes) && {
        if (std::string whole = rendered(); whole.size() <= maxBytes) return whole;
        chooseLines(maxBytes);
        for (std::string whole = rendered();; whole = rendered()) {
            if (whole.size() <= maxBytes) return whole;
            Edit* longest = nullptr;
            for (Edit& edit : edits_) {
                if (!edit.kept || edit.value.size() <= edit.leastBytes) continue;
                if (longest == nullptr || edit.value.size() > longest->value.size()) longest = &edit;
            }
            // Every kept line fits with its least value, so that there is one to shorten as long as they do not fit.
            if (longest == nullptr) return whole;
            longest->value.resize(truncatedUtf8(longest->value, longest->value.size() - 1).size());
        }
    }

  private:
    void put(std::string_view key, std::string_view value, std::size_t leastBytes, bool addMissing) {
        bool found = false;
        for (Line& line : lines_) {
            const std::optional<std::string_view> prefix = prefixOfLine(line.content, key);
            if (!prefix) continue;
            line.content.resize(prefix->size() + key.size() + 1);
            line.edit = edits_.size();
            line.repeats = found;
            found = true;
        }
        if (!found && addMissing) added_.push_back({fmt::format("{}{}=", ownPrefix, key), lineEnd_, edits_.size()});
        if (found || addMissing) edits_.push_back({std::string(value), leastBytes, !found});
    }

    /// Decides which edited lines find room at all, each with the least value: first those that were there. A key that
    /// stands there several times is kept once rather than not at all.
    void chooseLines(std::size_t maxBytes) {
        std::vector<std::string> values;
        for (Edit& edit : edits_) {
            values.push_back(edit.value);
            edit.value.resize(edit.leastBytes);
            edit.kept = false;
        }
        for (const bool added : {false, true}) {
            for (Edit& edit : edits_) {
                if (edit.added != added) continue;
                const auto fits = [&] { return rendered().size() <= maxBytes; };
                edit.kept = true;
                if (fits()) continue;
                edit.once = true;
                edit.kept = fits();
            }
        }
        for (std::size_t i = 0; i < edits_.size(); ++i)
            edits_[i].value = std::move(values[i]);
    }

    [[nodiscard]] std::string rendered() const {
        std::string out;
        const auto appendLine = [&](const Line& line) {
            if (line.edit && (!edits_[*line.edit].kept || (line.repeats && edits_[*line.edit].once))) return;
            out.append(line.content);
            if (line.edit) out.append(edits_[*line.edit].value);
            out.append(line.lineEnd);
        };
        for (const Line& line : lines_)
            appendLine(line);
        for (const Line& line : added_) {
            if (edits_[*line.edit].kept && !out.empty() && out.back() != '\n') out.append(lineEnd_);
            appendLine(line);
        }
        return out;
    }

    std::vector<Line> lines_;
    std::vector<Line> added_;
    std::vector<Edit> edits_;
    std::string lineEnd_{defaultLineEnd};
};

std::string_view flagValue(bool flag) noexcept { return flag ? "TRUE" : "FALSE"; }

/// The Description after the edit. The order of the calls is that of added lines, and of who finds room: what the
/// format's users look for first comes first.
std::string updatedDescription(std::string_view description, const BextValues& values) {
    const MetadataValues& edited = values.edited;
    DescriptionLines lines(description);
    if (edited.project) lines.setText("PROJECT", *edited.project);
    if (edited.scene) lines.setText("SCENE", *edited.scene);
    if (values.circled) {
        lines.remove("CIRCLE");
        lines.remove("TAKE_TYPE");
        lines.setWhole("CIRCLED", flagValue(*values.circled), true);
    }
    if (values.wild) lines.setWhole("WILD_TRACK", flagValue(*values.wild), *values.wild);
    if (!edited.framerate.empty()) lines.setWhole("SPEED", speedText(edited.framerate), true);
    // Of these three, an empty value gets no line of its own.
    if (edited.tape) lines.setText("TAPE", *edited.tape, !edited.tape->empty());
    if (edited.prise) lines.setWhole("TAKE", *edited.prise, !edited.prise->empty());
    if (edited.note) lines.setText("NOTE", *edited.note, !edited.note->empty());
    return std::move(lines).text(bext::descriptionBytes);
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

DescriptionFlags descriptionFlags(ByteSpan payload) {
    const FlagLookup valueOf = [payload](std::string_view name) { return descriptionValue(payload, name); };
    return {circledFlag(valueOf), wildFlag(valueOf)};
}

}  // namespace dravik
