#pragma once

#include "app/content_view.h"
#include "app/take_audio.h"
#include "app/user_defaults.h"
#include "playback/lecteur_core_audio.h"

#include <QObject>
#include <QString>
#include <QTimer>

namespace dravik {

/// Brings the selected take into the player, and what the transport's buttons and keys mean for the two together.
/// Main thread only; all three outlive it.
class TakePlayback : public QObject {
    Q_OBJECT
  public:
    TakePlayback(ContentView& content, LecteurCoreAudio& player, UserDefaults& defaults);

    [[nodiscard]] LecteurCoreAudio& player() noexcept { return player_; }
    [[nodiscard]] const LecteurCoreAudio& player() const noexcept { return player_; }
    /// Being read into memory.
    [[nodiscard]] bool isLoading() const noexcept { return loading_; }
    [[nodiscard]] double loadedFraction() const noexcept { return fraction_; }
    /// Why the selected take cannot be heard; empty when it can.
    [[nodiscard]] const QString& error() const noexcept { return error_; }

    /// Plays or pauses; at the very end of the take, where nothing is left to play, from its beginning.
    void togglePlay();
    void returnToBeginning() { player_.returnToBeginning(); }
    /// From where it plays just now.
    void nudge(LecteurCoreAudio::Direction direction);
    /// "1 frame", "1 second", "5 seconds".
    [[nodiscard]] QString nudgeAmount() const;

    [[nodiscard]] bool loops() const { return defaults_.value(settings::lectureEnBoucle); }
    void toggleLoop() { player_.toggleLoop(); }
    /// Solos add to each other, rather than replace each other.
    [[nodiscard]] bool addsSolos() const { return defaults_.value(settings::soloComportement) == QLatin1String("X"); }
    void toggleSoloMode();
    [[nodiscard]] bool insertionFollows() const {
        return defaults_.value(settings::pauseComportement) != QLatin1String("retour");
    }
    void toggleInsertionFollows();
    /// The waveform scrolls under the playhead, rather than turning pages.
    [[nodiscard]] bool scrollsWithPlayhead() const { return defaults_.value(settings::suiviLectureCentre); }
    void togglePageOrScroll() { defaults_.set(settings::suiviLectureCentre, !scrollsWithPlayhead()); }

    /// To the marker before or behind the position, if there is one.
    void goToPreviousCue();
    void goToNextCue();
    void addCueAtPlayhead();

  signals:
    /// Whether a take is loading, how much of it is there, or why it cannot be heard.
    void stateChanged();

  private:
    void onSelectionChanged();
    void loadSelected();
    void onFilesMoved(const FileMoves& moved);
    void letGoOf(const std::filesystem::path& root);

    ContentView& content_;
    LecteurCoreAudio& player_;
    UserDefaults& defaults_;
    QTimer loadDelay_;  ///< who walks through the table with the arrow keys does not hear each take
    TakeAudio audio_;   ///< of the take that was asked for
    bool loading_ = false;
    double fraction_ = 0;
    QString error_;
};

}  // namespace dravik
