#pragma once

#include <QObject>
#include <QPointer>
#include <QThreadPool>
#include <chrono>
#include <functional>
#include <memory>
#include <utility>

namespace dravik {

/// Work that must not block the main thread, and the way back. Used from the main thread. The destructor waits for
/// work that runs; owners of long work cancel it first.
class Background : public QObject {
    Q_OBJECT
  public:
    Background() = default;
    /// With a number of threads of its own choice rather than one a core, for work that mostly waits.
    explicit Background(int threads) { pool_.setMaxThreadCount(threads); }
    ~Background() override { pool_.waitForDone(); }
    Background(const Background&) = delete;
    Background& operator=(const Background&) = delete;

    /// Runs `work` on another thread and hands its result to `done` on the main thread, unless `context` is gone then.
    /// `work` must not throw and must not touch what the main thread may change.
    template <typename Work, typename Done>
    void run(QObject* context, Work work, Done done) {
        pool_.start(
            [this, guard = QPointer<QObject>(context), work = std::move(work), done = std::move(done)]() mutable {
                auto result = std::make_shared<decltype(work())>(work());
                post(guard, [result, done = std::move(done)]() mutable { done(std::move(*result)); });
            });
    }

    /// Frees what is large on another thread.
    template <typename Value>
    void letGo(Value value) {
        pool_.start([held = std::make_shared<Value>(std::move(value))]() mutable { held.reset(); });
    }

    /// Any thread: calls back on the main thread, unless `context` is gone then. In the order of the posts.
    void post(const QPointer<QObject>& context, std::function<void()> call);

    /// Waits, but not longer than this; has all work ended then?
    [[nodiscard]] bool waitForDone(std::chrono::milliseconds most) {
        return pool_.waitForDone(static_cast<int>(most.count()));
    }

  private:
    QThreadPool pool_;
};

/// Background work that asks what may never answer: the destructor waits a moment only, and leaves the work that has
/// not come back to itself (base/abandoned_work.h says what such work must keep to).
class LooseBackground {
  public:
    LooseBackground();
    ~LooseBackground();
    LooseBackground(const LooseBackground&) = delete;
    LooseBackground& operator=(const LooseBackground&) = delete;

    template <typename Work, typename Done>
    void run(QObject* context, Work work, Done done) {
        background_->run(context, std::move(work), std::move(done));
    }
    template <typename Value>
    void letGo(Value value) {
        background_->letGo(std::move(value));
    }
    /// For work that tells of itself while it runs: where to post to, also once it was left to itself.
    [[nodiscard]] Background& background() noexcept { return *background_; }

  private:
    std::unique_ptr<Background> background_;
};

}  // namespace dravik
