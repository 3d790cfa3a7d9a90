#include "playback/take_preparation.h"

#include "base/abandoned_work.h"

#include <QObject>
#include <chrono>
#include <mutex>
#include <utility>

namespace dravik {
namespace {

/// Each volume that does not answer holds one of them for as long as the program runs; the others go on.
constexpr int threads = 16;
/// Work that has been cancelled ends within a moment, or hangs.
constexpr std::chrono::seconds turnPatience{2};

}  // namespace

/// Leads to the main thread until it is cut.
class TakePreparation::Line : public QObject {
    Q_OBJECT
  public:
    Line() {
        connect(
            this, &Line::posted, this, [](const std::function<void()>& call) { call(); }, Qt::QueuedConnection);
    }
    void post(const std::function<void()>& call) { emit posted(call, {}); }

  signals:
    void posted(const std::function<void()>& call, QPrivateSignal);
};

/// Holds the line for those that may outlive it.
struct TakePreparation::End {
    std::mutex lock;
    Line* line = nullptr;
};

TakePreparation::TakePreparation()
    : line_(std::make_unique<Line>()), end_(std::make_shared<End>()), pool_(std::make_shared<QThreadPool>()) {
    end_->line = line_.get();
    post_ = [end = end_](const std::function<void()>& call) {
        const std::scoped_lock guard(end->lock);
        if (end->line != nullptr) end->line->post(call);
    };
    pool_->setMaxThreadCount(threads);
}

TakePreparation::~TakePreparation() {
    {
        const std::scoped_lock guard(end_->lock);
        end_->line = nullptr;
    }
    const auto ended = [pool = pool_](std::chrono::milliseconds most) {
        return pool->waitForDone(static_cast<int>(most.count()));
    };
    if (!ended(abandonPatience)) abandonWork(ended);
}

void TakePreparation::run(std::function<void(const Post&)> work) {
    auto done = std::make_shared<std::promise<void>>();
    auto before = std::exchange(last_, done->get_future().share());
    pool_->start([work = std::move(work), before = std::move(before), done = std::move(done), post = post_]() mutable {
        if (before.valid()) static_cast<void>(before.wait_for(turnPatience));
        work(post);
        work = nullptr;  // what it holds is gone before the next begins
        done->set_value();
    });
}

}  // namespace dravik

#include "take_preparation.moc"
