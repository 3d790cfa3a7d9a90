#pragma once

#include <string>

namespace dravik {

/// What the player asks of the user's settings, each at the moment at which it matters. Main thread.
class PlaybackSettings {
  public:
    virtual ~PlaybackSettings() = default;
    [[nodiscard]] virtual bool lectureEnBoucle() const = 0;
    virtual void setLectureEnBoucle(bool loop) = 0;
    /// "retour": a pause goes back to where playback began; anything else stays.
    [[nodiscard]] virtual std::string pauseComportement() const = 0;
    /// "X" or "OR"; "OR" when it was never set.
    [[nodiscard]] virtual std::string soloComportement() const = 0;
    /// "1f", "1s" or "5s".
    [[nodiscard]] virtual std::string nudgeValeur() const = 0;
};

}  // namespace dravik
