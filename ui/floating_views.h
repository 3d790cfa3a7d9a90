#pragma once

#include "app/commands.h"
#include "app/take_playback.h"
#include "ui/floating_window.h"
#include "ui/theme.h"

#include <QObject>

namespace dravik {

/// The mixer, the meters and the transport in windows of their own, made when they are first asked for. They belong to
/// the main window and go with it; those that were open when the program ended are open again.
class FloatingViews : public QObject {
    Q_OBJECT
  public:
    FloatingViews(ContentView& content, TakePlayback& playback, UserDefaults& defaults, const Theme& theme,
                  Commands& commands, QWidget* window);
    /// Opens those that were open. Once the main window is there.
    void restore();

    [[nodiscard]] FloatingWindow& mixer();
    [[nodiscard]] FloatingWindow& meters();
    [[nodiscard]] FloatingWindow& transport();

  private:
    ContentView& content_;
    TakePlayback& playback_;
    UserDefaults& defaults_;
    const Theme& theme_;
    QWidget* window_;
    FloatingWindow* mixer_ = nullptr;
    FloatingWindow* meters_ = nullptr;
    FloatingWindow* transport_ = nullptr;
};

}  // namespace dravik
