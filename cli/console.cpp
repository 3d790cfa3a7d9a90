#include "cli/console.h"

#include "base/text.h"
#include "cli/display_text.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace dravik {
namespace {

/// Terminals that do not tell their width are taken for what they have always been.
constexpr int assumedWidth = 80;
/// Less than this no table can be read in; a smaller COLUMNS is a mistake.
constexpr int leastWidth = 20;
/// No screen is wider, and a row padded to more than this only fills the memory.
constexpr int mostWidth = 10'000;

std::string_view environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string_view{} : value;
}

std::optional<int> columnsVariable() {
    const std::optional<std::int64_t> columns = parseInteger(environment("COLUMNS"));
    if (!columns || *columns < leastWidth || *columns > mostWidth) return std::nullopt;
    return static_cast<int>(*columns);
}

std::optional<int> terminalWidth(int descriptor) {
    if (::isatty(descriptor) != 1) return std::nullopt;
    winsize size{};
    if (::ioctl(descriptor, TIOCGWINSZ, &size) != 0 || size.ws_col < leastWidth) return assumedWidth;
    return static_cast<int>(size.ws_col);
}

void writeErrors(std::string_view text) {
    // Nobody is left to be told when standard error itself cannot be written.
    static_cast<void>(std::fwrite(text.data(), 1, text.size(), stderr));
    static_cast<void>(std::fflush(stderr));
}

}  // namespace

Console::Console() : outputWidth_(terminalWidth(STDOUT_FILENO)), statusWidth_(terminalWidth(STDERR_FILENO)) {
    outputHasColour_ = outputWidth_ && environment("NO_COLOR").empty() && environment("TERM") != "dumb";
    if (const std::optional<int> columns = columnsVariable()) {
        outputWidth_ = columns;
        if (statusWidth_) statusWidth_ = columns;
    }
}

void Console::print(std::string_view text) {
    clearStatus();
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0) {
        throw OutputError(errno);
    }
}

void Console::message(std::string_view line) {
    clearStatus();
    std::string text;
    while (true) {
        const std::size_t end = line.find('\n');
        text += printable(line.substr(0, end)) + "\n";
        if (end == std::string_view::npos) break;
        line.remove_prefix(end + 1);
    }
    const std::scoped_lock lock(errors_);
    writeErrors(text);
}

void Console::status(std::string_view line) {
    if (!statusWidth_) return;
    const std::scoped_lock lock(errors_);
    writeErrors(fmt::format("\r{}\x1b[K", line));
    statusShown_ = true;
}

void Console::clearStatus() {
    const std::scoped_lock lock(errors_);
    if (!statusShown_) return;
    writeErrors("\r\x1b[K");
    statusShown_ = false;
}

}  // namespace dravik
