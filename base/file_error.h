#pragma once

#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

namespace dravik {

/// A file error that Dravik found by itself, where the system's words for its code would not tell what is wrong. Caught
/// and compared like any other file error; `userText` gives the reason instead of the system's words.
class FileError : public std::filesystem::filesystem_error {
  public:
    /// `reason` stands behind "a.wav: ", without a full stop: "it ended while it was copied".
    FileError(std::string reason, const std::filesystem::path& file, std::errc code)
        : filesystem_error(reason, file, std::make_error_code(code)), reason_(std::move(reason)) {}

    [[nodiscard]] const std::string& reason() const noexcept { return reason_; }

  private:
    std::string reason_;
};

}  // namespace dravik
