#pragma once

#include <QObject>
#include <QPointer>
#include <QThreadPool>
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

  private:
    QThreadPool pool_;
};

}  // namespace dravik
