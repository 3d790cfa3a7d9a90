#pragma once

#include <mutex>
#include <optional>
#include <string_view>
#include <system_error>

namespace dravik {

/// Standard output cannot be written: the disk is full, or the reader of the pipe has gone.
class OutputError : public std::system_error {
  public:
    explicit OutputError(int errorNumber) : std::system_error(errorNumber, std::generic_category()) {}
};

/// The program's standard output and standard error. Results go to the first, everything else to the second. Knows
/// whether they are terminals, how wide and whether they like colour; asks nothing, ever. Any thread.
class Console {
  public:
    /// Looks at the two streams and at COLUMNS, NO_COLOR and TERM once.
    Console();

    /// Cells a line of output may take: what COLUMNS says, else the terminal's width. Absent where there is no
    /// terminal: a file or pipe gets everything.
    [[nodiscard]] std::optional<int> outputWidth() const noexcept { return outputWidth_; }
    [[nodiscard]] bool outputHasColour() const noexcept { return outputHasColour_; }

    /// Writes the bytes as they are and flushes. Throws OutputError when they cannot all be written.
    void print(std::string_view text);
    /// A sentence on standard error; may have several lines. Made harmless for terminals.
    void message(std::string_view line);

    /// A line on standard error that the next status or message replaces. Nothing where that is no terminal.
    void status(std::string_view line);
    void clearStatus();
    /// Cells of that line; absent where standard error is no terminal.
    [[nodiscard]] std::optional<int> statusWidth() const noexcept { return statusWidth_; }

  private:
    std::optional<int> outputWidth_;
    std::optional<int> statusWidth_;
    bool outputHasColour_ = false;
    std::mutex errors_;
    bool statusShown_ = false;
};

}  // namespace dravik
