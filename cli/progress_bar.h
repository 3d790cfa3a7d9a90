#pragma once

#include "base/progress.h"
#include "cli/console.h"

#include <chrono>
#include <string>

namespace dravik {

/// One piece of long work on the console's status line: what, how far, how long still, which file. Work that is quickly
/// done shows nothing. The line is gone when the bar is destroyed.
class ProgressBar {
  public:
    /// `verb` says what is going on: "Reading".
    ProgressBar(Console& console, std::string verb);
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    ~ProgressBar();

    /// For the engine; must not outlive the bar. Empty where nobody would see it. One call at a time.
    [[nodiscard]] ProgressSink sink();

  private:
    using Clock = std::chrono::steady_clock;
    void show(const Progress& progress);

    Console& console_;
    std::string verb_;
    Clock::time_point start_ = Clock::now();
    Clock::time_point next_;
};

}  // namespace dravik
