#include "operations/parallel_rounds.h"

#include <algorithm>

namespace dravik {
namespace {

/// A pipeline has no more work at a time than this; more threads would only wait.
constexpr unsigned mostThreads = 16;

}  // namespace

ParallelRounds::ParallelRounds() {
    const unsigned threads = std::clamp(std::thread::hardware_concurrency(), 1U, mostThreads);
    for (unsigned i = 1; i < threads; ++i)
        helpers_.emplace_back([this](std::stop_token stop) { help(std::move(stop)); });
}

ParallelRounds::~ParallelRounds() = default;  // the helpers are asked to stop, and joined, before what they use goes

void ParallelRounds::run(const std::vector<Task>& tasks) {
    std::unique_lock held(mutex_);
    failures_.assign(tasks.size(), nullptr);
    tasks_ = &tasks;
    next_ = 0;
    done_ = 0;
    began_.notify_all();
    while (workOff(held)) {
    }
    ended_.wait(held, [&] { return done_ == tasks.size(); });
    tasks_ = nullptr;
    for (const std::exception_ptr& failure : failures_) {
        if (failure) std::rethrow_exception(failure);
    }
}

void ParallelRounds::help(std::stop_token stop) {
    std::unique_lock held(mutex_);
    while (began_.wait(held, stop, [&] { return tasks_ != nullptr && next_ < tasks_->size(); })) {
        while (workOff(held)) {
        }
    }
}

bool ParallelRounds::workOff(std::unique_lock<std::mutex>& held) {
    if (tasks_ == nullptr || next_ == tasks_->size()) return false;
    const std::size_t index = next_++;
    const Task& task = (*tasks_)[index];
    held.unlock();
    std::exception_ptr failure;
    try {
        task();
    } catch (...) {
        failure = std::current_exception();
    }
    held.lock();
    failures_[index] = std::move(failure);
    if (++done_ == tasks_->size()) ended_.notify_one();
    return true;
}

}  // namespace dravik
