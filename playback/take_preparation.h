#pragma once

#include <QThreadPool>
#include <functional>
#include <future>
#include <memory>

namespace dravik {

/// Where takes are read into memory and freed again: off the main thread, one piece of work after the other, so that
/// two takes are never held at once. A piece that hangs, because its volume does not answer, does not hold up the next
/// for more than a moment, nor the end of the program (base/abandoned_work.h).
class TakePreparation {
  public:
    /// Calls back on the main thread, in order; what comes after the preparation is gone is dropped. Any thread.
    using Post = std::function<void(const std::function<void()>&)>;

    /// Main thread, as all below.
    TakePreparation();
    ~TakePreparation();
    TakePreparation(const TakePreparation&) = delete;
    TakePreparation& operator=(const TakePreparation&) = delete;

    [[nodiscard]] const Post& post() const noexcept { return post_; }
    /// `work` does not throw, and must not touch what the main thread may change or destroy. What it holds is freed on
    /// its thread.
    void run(std::function<void(const Post&)> work);

  private:
    class Line;
    struct End;

    std::unique_ptr<Line> line_;
    std::shared_ptr<End> end_;
    Post post_;
    std::shared_ptr<QThreadPool> pool_;
    std::shared_future<void> last_;  ///< what was given last has ended
};

}  // namespace dravik
