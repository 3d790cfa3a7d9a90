#pragma once

#include "base/error.h"
#include "base/progress.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <exception>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace dravik {

/// Pieces of one long work, done by as many threads as there are cores. The first failure stops them all.
class ParallelWork {
  public:
    /// `allBytes` is what `advance` adds up to.
    ParallelWork(const TaskContext& task, std::uint64_t allBytes) : task_(task), allBytes_(allBytes) {}

    /// Calls `work(index)` of a Worker made for each thread, for every index below `count` in order of the claims.
    /// Returns when all is done, or throws what the first failing piece threw.
    template <typename MakeWorker>
    void run(std::size_t count, MakeWorker makeWorker) {
        const std::size_t threads =
            std::min<std::size_t>({count, std::max(1U, std::thread::hardware_concurrency()), mostThreads});
        const auto takeWork = [&]() noexcept {
            try {
                auto worker = makeWorker();
                for (std::size_t next = claim(); next < count; next = claim())
                    worker(next);
            } catch (...) {
                // The reason first: the others end as if cancelled as soon as they see the sign.
                const std::lock_guard held(mutex_);
                if (!failure_) failure_ = std::current_exception();
                stopped_.store(true, std::memory_order_release);
            }
        };
        {
            std::vector<std::jthread> others;
            for (std::size_t i = 1; i < threads; ++i)
                others.emplace_back(takeWork);
            takeWork();
        }
        if (failure_) std::rethrow_exception(failure_);
    }

    /// To be called by a worker at least every few milliseconds. Throws Cancelled.
    void advance(std::uint64_t bytes, const std::string& name) {
        if (stopped_.load(std::memory_order_acquire)) throw Cancelled();  // another worker has failed, and says why
        task_.checkCancelled();
        const std::lock_guard held(mutex_);
        doneBytes_ += bytes;
        task_.advance({doneBytes_, allBytes_, name});
    }
    /// What only one worker may do at a time.
    template <typename Action>
    void exclusively(Action action) {
        const std::lock_guard held(mutex_);
        action();
    }

  private:
    /// More threads than this only fight for the disk.
    static constexpr unsigned mostThreads = 8;

    std::size_t claim() noexcept {
        return stopped_.load(std::memory_order_relaxed) ? static_cast<std::size_t>(-1)
                                                        : next_.fetch_add(1, std::memory_order_relaxed);
    }

    const TaskContext& task_;
    const std::uint64_t allBytes_;
    std::atomic<std::size_t> next_{0};
    std::atomic<bool> stopped_{false};
    std::mutex mutex_;
    std::exception_ptr failure_;
    std::uint64_t doneBytes_ = 0;
};

}  // namespace dravik
