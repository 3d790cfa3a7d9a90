#include "ui/main_thread_watch.h"

#include <QMetaEnum>

#include <spdlog/spdlog.h>

namespace dravik {

bool WatchedApplication::notify(QObject* receiver, QEvent* event) {
    if (!watching_) return QApplication::notify(receiver, event);
    // What an event sends on is part of it; the receiver may be gone when it returns.
    const char* const name = receiver->metaObject()->className();
    const QEvent::Type type = event->type();
    QElapsedTimer timer;
    timer.start();
    ++depth_;
    const bool handled = QApplication::notify(receiver, event);
    if (--depth_ > 0) return handled;
    if (type == QEvent::Paint && !painted_) {
        painted_ = true;
        spdlog::info("first paint {} ms after the start of main", sinceStart_.elapsed());
    }
    if (timer.elapsed() > longestMilliseconds) {
        ++slowEvents_;
        const char* const kind = QMetaEnum::fromType<QEvent::Type>().valueToKey(type);
        spdlog::info("main thread busy for {} ms: {} to {}", timer.elapsed(), kind != nullptr ? kind : "event", name);
    }
    return handled;
}

}  // namespace dravik
