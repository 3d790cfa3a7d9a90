#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QString>
#include <utility>

namespace dravik {

/// An application that can tell when its main thread was busy for longer than a user would not notice: with the watch
/// on, every event that takes more than 50 ms is logged with its receiver.
class WatchedApplication : public QApplication {
    Q_OBJECT
  public:
    static constexpr qint64 longestMilliseconds = 50;

    WatchedApplication(int& argc, char** argv) : QApplication(argc, argv) { sinceStart_.start(); }

    void startWatch() { watching_ = true; }
    [[nodiscard]] int slowEvents() const noexcept { return slowEvents_; }

    /// The event that took longest since the watch began, or since this was asked for last.
    struct Longest {
        qint64 milliseconds = 0;
        QString what;  ///< "KeyPress to QLineEdit"
    };
    Longest takeLongest() { return std::exchange(longest_, Longest()); }
    [[nodiscard]] qint64 millisecondsSinceStart() const { return sinceStart_.elapsed(); }

    bool notify(QObject* receiver, QEvent* event) override;

  private:
    bool watching_ = false;
    bool painted_ = false;
    int depth_ = 0;
    int slowEvents_ = 0;
    Longest longest_;
    QElapsedTimer sinceStart_;
};

}  // namespace dravik
