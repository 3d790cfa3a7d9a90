#include "app/background.h"

namespace dravik {

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

}  // namespace dravik
