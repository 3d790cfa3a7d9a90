#pragma once

#include <QObject>
#include <chrono>
#include <functional>

namespace dravik {

/// Calls that are due later, on the main thread. Replaceable, so that a test does not have to wait.
class Clock {
  public:
    virtual ~Clock() = default;
    /// Dropped when `context` is destroyed before.
    virtual void after(std::chrono::milliseconds delay, QObject* context, std::function<void()> call) = 0;

  protected:
    Clock() = default;
    Clock(const Clock&) = default;
    Clock& operator=(const Clock&) = default;
};

/// The real one.
class SystemClock final : public Clock {
  public:
    void after(std::chrono::milliseconds delay, QObject* context, std::function<void()> call) override;
};

}  // namespace dravik
