#pragma once

#include <exception>
#include <string>
#include <utility>

namespace dravik {

/// The one base of Dravik's own errors. `what()` is the complete sentence for the user: it names the file and says
/// whether anything was changed. It is not a wrapper for system errors: those stay std::system_error and
/// std::filesystem::filesystem_error and pass through the engine unchanged.
class Error : public std::exception {
  public:
    explicit Error(std::string message) : message_(std::move(message)) {}
    [[nodiscard]] const char* what() const noexcept override { return message_.c_str(); }

  private:
    std::string message_;
};

/// The user (or a signal) stopped the work. Whatever was being written has been discarded.
class Cancelled : public Error {
  public:
    Cancelled() : Error("Cancelled. Files not yet written were left unchanged.") {}
};

}  // namespace dravik
