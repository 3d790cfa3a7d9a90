#pragma once

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace dravik {

/// Threads that work off one list of independent tasks after another: the stages of a pipeline, each on another block.
/// The caller's thread works, too.
class ParallelRounds {
  public:
    using Task = std::function<void()>;

    /// As many threads as there are cores.
    ParallelRounds();
    ParallelRounds(const ParallelRounds&) = delete;
    ParallelRounds& operator=(const ParallelRounds&) = delete;
    ~ParallelRounds();

    /// Does all the tasks, begun in their order, and returns when they are done. When some throw, the exception of the
    /// first of them in the list is thrown.
    void run(const std::vector<Task>& tasks);

  private:
    void help(std::stop_token stop);
    /// Takes the next task, if there is one, and does it; the lock is held before and after.
    bool workOff(std::unique_lock<std::mutex>& held);

    std::mutex mutex_;
    std::condition_variable_any began_;
    std::condition_variable ended_;
    const std::vector<Task>* tasks_ = nullptr;
    std::size_t next_ = 0, done_ = 0;
    std::vector<std::exception_ptr> failures_;
    std::vector<std::jthread> helpers_;
};

}  // namespace dravik
