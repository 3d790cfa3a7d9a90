#pragma once

#include "app/dialogs.h"

#include <QDialog>
#include <QPointer>
#include <QWidget>
#include <deque>

namespace dravik {

/// The questions as dialogs, modal on the main window, one at a time. Main thread.
class QtDialogs final : public QObject, public Dialogs {
    Q_OBJECT
  public:
    /// The window they belong to; before there is one they stand alone.
    void setWindow(QWidget* window) { window_ = window; }

    void ask(const Alert& alert, std::function<void(AlertAnswer)> answered) override;
    void askText(const TextQuestion& question, std::function<void(std::optional<QString>)> answered) override;
    void choose(const OpenPanel& panel, std::function<void(std::optional<std::filesystem::path>)> chosen) override;

    /// A dialog of another kind, in its turn: made when that has come, shown as a sheet of the window, deleted when it
    /// is closed.
    void show(std::function<QDialog*(QWidget* window)> make);

  private:
    void enqueue(std::function<void()> open);
    void next();

    QPointer<QWidget> window_;
    std::deque<std::function<void()>> waiting_;
    bool open_ = false;
};

}  // namespace dravik
