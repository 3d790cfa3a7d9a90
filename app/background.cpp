#include "app/background.h"

#include <algorithm>
#include <vector>

namespace dravik {
namespace {

/// Each volume that does not answer holds one of them for as long as the program runs; the others go on.
constexpr int looseThreads = 16;

using Abandoned = std::vector<std::function<bool(std::chrono::milliseconds)>>;

/// Never destroyed: whatever is in there may still run when the process ends. Main thread.
Abandoned& abandoned() {
    static Abandoned& all = *std::make_unique<Abandoned>().release();
    return all;
}

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
    if (background_->waitForDone(patience)) return;
    abandon([left = std::shared_ptr<Background>(std::move(background_))](std::chrono::milliseconds most) {
        return left->waitForDone(most);
    });
}

void LooseBackground::abandon(std::function<bool(std::chrono::milliseconds)> ended) {
    abandoned().push_back(std::move(ended));
}

bool LooseBackground::waitForAbandoned(std::chrono::milliseconds most) {
    const auto end = std::chrono::steady_clock::now() + most;
    std::erase_if(abandoned(), [&](const auto& ended) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        return ended(std::max(left, std::chrono::milliseconds(0)));
    });
    return abandoned().empty();
}

}  // namespace dravik
