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

/// Background work that asks what may never answer: a network mount whose server is gone keeps whoever looks at it. The
/// destructor waits a moment only, and leaves the work that has not come back to itself. So that work uses nothing but
/// what it owns and what lives until `waitForAbandoned` has said that nothing is left, and it must not leave anything
/// half done when the process ends.
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

    /// How long a destructor waits.
    static constexpr std::chrono::milliseconds patience{500};
    /// Leaves something that runs to itself; `ended` waits for it as long as it is told, and says whether it has ended.
    static void abandon(std::function<bool(std::chrono::milliseconds)> ended);
    /// Has all ended that was left to itself? Where it has not, the process has to end without destroying anything
    /// more.
    [[nodiscard]] static bool waitForAbandoned(std::chrono::milliseconds most);

  private:
    std::unique_ptr<Background> background_;
};

}  // namespace dravik
