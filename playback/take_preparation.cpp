#include "playback/take_preparation.h"

#include "base/abandoned_work.h"

#include <QMetaObject>
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
struct TakePreparation::Line {
    std::mutex lock;
    QObject* target = nullptr;

    void post(std::function<void()> call) {
        const std::scoped_lock guard(lock);
        if (target != nullptr) QMetaObject::invokeMethod(target, std::move(call), Qt::QueuedConnection);
    }
};

TakePreparation::TakePreparation(QObject& target)
    : line_(std::make_shared<Line>()), pool_(std::make_shared<QThreadPool>()) {
    line_->target = &target;
    post_ = [line = line_](std::function<void()> call) { line->post(std::move(call)); };
    pool_->setMaxThreadCount(threads);
}

TakePreparation::~TakePreparation() {
    {
        const std::scoped_lock guard(line_->lock);
        line_->target = nullptr;
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
