#include "app/background.h"

#include "base/abandoned_work.h"

namespace dravik {
namespace {

/// Each volume that does not answer holds one of them for as long as the program runs; the others go on.
constexpr int looseThreads = 16;

}  // namespace

void Background::post(const QPointer<QObject>& context, std::function<void()> call) {
    // Posted to this object, which outlives the pool's threads; whether the context still lives is asked on the main
    // thread, the only one that destroys it.
    QMetaObject::invokeMethod(
        this,
        [context, call = std::move(call)] {
            if (context) call();
        },
        Qt::QueuedConnection);
}

LooseBackground::LooseBackground() : background_(std::make_unique<Background>(looseThreads)) {}

LooseBackground::~LooseBackground() {
    if (background_->waitForDone(abandonPatience)) return;
    abandonWork([left = std::shared_ptr<Background>(std::move(background_))](std::chrono::milliseconds most) {
        return left->waitForDone(most);
    });
}

}  // namespace dravik
