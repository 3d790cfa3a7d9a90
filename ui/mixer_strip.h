#pragma once

#include "app/take_playback.h"
#include "ui/fader.h"
#include "ui/level_meter.h"
#include "ui/pan_control.h"
#include "ui/theme.h"
#include "ui/track_name.h"

#include <QLabel>
#include <QLineEdit>
#include <QSlider>
#include <QString>
#include <QToolButton>
#include <QWidget>

namespace dravik {

/// One channel of the mixer: name, polarity, pan, solo and mute, fader with its value to type, meter, and the pairs
/// that it can form with the channel right of it. Shows the player's state and sends it what is done here.
class MixerStrip : public QWidget {
    Q_OBJECT
  public:
    /// `index` counts from 0; the last strip has no neighbour to pair with.
    MixerStrip(TakePlayback& playback, const UserDefaults& defaults, const Theme& theme, int index, bool hasNeighbour,
               QWidget* parent = nullptr);

    void setTrack(const TrackName& track);
    /// What the mixer says of this channel.
    void refresh();
    void refreshMeter();
    /// Room for the width of an M/S pair, which all strips keep while one of them has a pair, so that faders stay
    /// level.
    void keepWidthRoom(bool keep);
    [[nodiscard]] LevelMeter& meter() const noexcept { return *meter_; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QToolButton* button(const QString& text, const QString& help, const QString& name);
    QWidget* makePairCard();
    void typeDB();
    void refreshPairs();
    [[nodiscard]] LecteurCoreAudio& player() const noexcept { return playback_.player(); }

    TakePlayback& playback_;
    const Theme& theme_;
    const int index_;
    const bool hasNeighbour_;
    QLabel* name_ = nullptr;
    QToolButton* polarity_ = nullptr;
    PanControl* pan_ = nullptr;
    QToolButton* solo_ = nullptr;
    QToolButton* mute_ = nullptr;
    Fader* fader_ = nullptr;
    LevelMeter* meter_ = nullptr;
    QLineEdit* value_ = nullptr;
    QToolButton* link_ = nullptr;
    QToolButton* ms_ = nullptr;
    QSlider* width_ = nullptr;
    QLabel* widthText_ = nullptr;
};

}  // namespace dravik
