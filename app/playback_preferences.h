#pragma once

#include "app/user_defaults.h"
#include "playback/playback_settings.h"

namespace dravik {

/// The player's settings as the user's choices keep them. Main thread.
class PlaybackPreferences final : public PlaybackSettings {
  public:
    explicit PlaybackPreferences(UserDefaults& defaults) : defaults_(defaults) {}

    [[nodiscard]] bool lectureEnBoucle() const override { return defaults_.value(settings::lectureEnBoucle); }
    void setLectureEnBoucle(bool loop) override { defaults_.set(settings::lectureEnBoucle, loop); }
    [[nodiscard]] std::string pauseComportement() const override {
        return defaults_.value(settings::pauseComportement).toStdString();
    }
    [[nodiscard]] std::string soloComportement() const override {
        return defaults_.value(settings::soloComportement).toStdString();
    }
    [[nodiscard]] std::string nudgeValeur() const override {
        return defaults_.value(settings::nudgeValeur).toStdString();
    }

  private:
    UserDefaults& defaults_;
};

}  // namespace dravik
