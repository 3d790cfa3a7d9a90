#include "app/clock.h"

#include <QTimer>

namespace dravik {

void SystemClock::after(std::chrono::milliseconds delay, QObject* context, std::function<void()> call) {
    QTimer::singleShot(delay, context, std::move(call));
}

}  // namespace dravik
