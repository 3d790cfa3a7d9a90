#pragma once

#include "base/error.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <string_view>

namespace dravik {

/// A switch that one side sets and the other side asks. `cancel` may be called from any thread and from a signal
/// handler; it cannot be taken back.
class CancellationToken {
  public:
    void cancel() noexcept { cancelled_.store(true, std::memory_order_relaxed); }
    [[nodiscard]] bool isCancelled() const noexcept { return cancelled_.load(std::memory_order_relaxed); }

  private:
    std::atomic<bool> cancelled_{false};
    static_assert(std::atomic<bool>::is_always_lock_free, "cancel() is called from signal handlers");
};

/// How far a long piece of work has come.
struct Progress {
    std::uint64_t doneBytes = 0;
    std::uint64_t allBytes = 0;
    std::string_view currentName;  ///< the file at work; valid during the call only
};
using ProgressSink = std::function<void(const Progress&)>;

/// What every long engine function takes: where to report and whom to ask. Both may be absent. Copied by value; the
/// token must outlive the work. The sink is called on the working thread, at the latest every 8 MiB.
struct TaskContext {
    const CancellationToken* token = nullptr;
    ProgressSink report;

    /// Throws Cancelled when the token says so.
    void checkCancelled() const {
        if (token != nullptr && token->isCancelled()) throw Cancelled();
    }
    void advance(const Progress& progress) const {
        checkCancelled();
        if (report) report(progress);
    }
};

}  // namespace dravik
