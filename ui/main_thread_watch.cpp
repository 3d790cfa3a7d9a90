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
    const qint64 took = timer.elapsed();
    if (took > longestMilliseconds || took > longest_.milliseconds) {
        const char* const known = QMetaEnum::fromType<QEvent::Type>().valueToKey(type);
        const char* const kind = known != nullptr ? known : "event";
        if (took > longest_.milliseconds) longest_ = {took, QStringLiteral("%1 to %2").arg(kind, name)};
        if (took > longestMilliseconds) {
            ++slowEvents_;
            spdlog::info("main thread busy for {} ms: {} to {}", took, kind, name);
        }
    }
    return handled;
}

}  // namespace dravik
