#pragma once

#include <atomic>
#include <thread>

namespace dravik {

/// A lock between the audio thread, which only ever tries, and one other thread, which waits for the moment in which
/// the audio thread copies a few numbers. Never calls the system on the audio thread's side: the release of a mutex
/// that somebody waits for would.
class AudioLock {
  public:
    /// Audio thread.
    [[nodiscard]] bool try_lock() noexcept { return !taken_.test_and_set(std::memory_order_acquire); }
    void unlock() noexcept { taken_.clear(std::memory_order_release); }
    /// Other threads; nothing may be done under it but copying.
    void lock() noexcept {
        while (!try_lock())
            std::this_thread::yield();
    }

  private:
    std::atomic_flag taken_;
};

}  // namespace dravik
