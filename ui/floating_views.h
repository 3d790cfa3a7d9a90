#pragma once

#include "app/commands.h"
#include "app/take_playback.h"
#include "ui/floating_window.h"
#include "ui/theme.h"

#include <QObject>
#include <functional>

namespace dravik {

/// The mixer, the meters and the transport in windows of their own, made when they are first asked for. They belong to
/// the main window, and go with it.
class FloatingViews : public QObject {
    Q_OBJECT
  public:
    FloatingViews(ContentView& content, TakePlayback& playback, UserDefaults& defaults, const Theme& theme,
                  Commands& commands, QWidget* window);

  private:
    void toggle(FloatingWindow*& one, const QString& key, const QString& title, QSize firstSize,
                const std::function<QWidget*()>& makeView);

    UserDefaults& defaults_;
    QWidget* window_;
    FloatingWindow* mixer_ = nullptr;
    FloatingWindow* meters_ = nullptr;
    FloatingWindow* transport_ = nullptr;
};

}  // namespace dravik
