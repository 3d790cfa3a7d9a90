#pragma once

#include "app/take_playback.h"
#include "ui/level_meter.h"
#include "ui/theme.h"

#include <QLabel>
#include <QWidget>
#include <vector>

namespace dravik {

/// The levels of all channels as lying bars with their names, to be read from the other end of the room.
class MetersView : public QWidget {
    Q_OBJECT
  public:
    MetersView(ContentView& content, TakePlayback& playback, const UserDefaults& defaults, const Theme& theme,
               QWidget* parent = nullptr);

  private:
    void rebuild();
    void refreshNames();
    void refreshHint();

    ContentView& content_;
    TakePlayback& playback_;
    const UserDefaults& defaults_;
    const Theme& theme_;
    QWidget* page_ = nullptr;
    std::vector<LevelMeter*> meters_;
    std::vector<QLabel*> names_;
    QLabel* hint_ = nullptr;  ///< instead of them, while there are none
};

}  // namespace dravik
