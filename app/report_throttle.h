#pragma once

#include <chrono>

namespace dravik {

/// Passes reports of progress on no more often than a view can show them. One thread at a time.
class ReportThrottle {
  public:
    /// The first one always is.
    [[nodiscard]] bool isDue() {
        constexpr auto interval = std::chrono::milliseconds(50);
        const auto now = std::chrono::steady_clock::now();
        if (now - told_ < interval) return false;
        told_ = now;
        return true;
    }

  private:
    std::chrono::steady_clock::time_point told_;
};

}  // namespace dravik
