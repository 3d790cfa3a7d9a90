#include "cli/json_writer.h"

#include "base/text.h"
#include "cli/display_text.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

namespace dravik {
namespace {

bool isPlain(char c) { return static_cast<unsigned char>(c) >= 0x20 && c != '"' && c != '\\'; }

/// Nearly all texts are: they are copied as they stand.
bool isPlainAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return isPlain(c) && static_cast<unsigned char>(c) < 0x80; });
}

std::string escaped(char c) {
    switch (c) {
        case '"':
            return "\\\"";
        case '\\':
            return "\\\\";
        case '\n':
            return "\\n";
        case '\r':
            return "\\r";
        case '\t':
            return "\\t";
        default:
            return fmt::format("\\u{:04x}", static_cast<unsigned char>(c));
    }
}

void appendEscaped(std::string& out, std::string_view text) {
    while (!text.empty()) {
        const auto special = std::find_if_not(text.begin(), text.end(), isPlain);
        out.append(text.begin(), special);
        text.remove_prefix(static_cast<std::size_t>(special - text.begin()));
        if (text.empty()) break;
        out += escaped(text.front());
        text.remove_prefix(1);
    }
}

}  // namespace

void JsonWriter::newLine() {
    out_ += '\n';
    out_.append(2 * depth_, ' ');
}

/// Comma, line and indentation before what comes next.
void JsonWriter::place() {
    if (afterKey_) {
        afterKey_ = false;
        return;
    }
    if (!first_) out_ += ',';
    first_ = false;
    if (depth_ > 0) newLine();
}

void JsonWriter::open(char bracket) {
    place();
    out_ += bracket;
    ++depth_;
    first_ = true;
}

void JsonWriter::close(char bracket) {
    --depth_;
    if (!first_) newLine();
    out_ += bracket;
    first_ = false;
}

void JsonWriter::scalar(std::string_view text) {
    place();
    out_ += text;
}

void JsonWriter::key(std::string_view name) {
    place();
    out_ += '"';
    out_ += name;
    out_ += "\": ";
    afterKey_ = true;
}

void JsonWriter::value(std::string_view text) {
    place();
    out_ += '"';
    if (isPlainAscii(text)) {
        out_ += text;
    } else if (isValidUtf8(text)) {
        appendEscaped(out_, text);
    } else {
        appendEscaped(out_, validUtf8(text));
    }
    out_ += '"';
}

void JsonWriter::value(double number) {
    if (std::isfinite(number)) {
        scalar(fmt::format("{}", number));
    } else {
        null();
    }
}

}  // namespace dravik
