#pragma once

#include <QObject>
#include <QSettings>
#include <QVariant>
#include <filesystem>
#include <vector>

namespace dravik {

/// A key under which something is remembered, and what holds until it is. Texts are given as C strings.
template <typename Value>
struct Setting {
    const char* key;
    Value standard;
};

/// The settings, by the names under which they are stored. What a window alone remembers of itself (its frame, its
/// columns) is stored by that window under a key of its own.
namespace settings {
inline constexpr Setting<bool> regrouperFichiersMono{"regrouperFichiersMono", true};
inline constexpr Setting<bool> masquerAvertissementDesactivationGroupesMono{
    "masquerAvertissementDesactivationGroupesMono", false};
inline constexpr Setting<bool> confirmerSuppressionCues{"confirmerSuppressionCues", true};
/// Ask to save before another take of the list is selected, although its edits would stay with its row.
inline constexpr Setting<bool> confirmBeforeSelectingAnotherTake{"confirmBeforeSelectingAnotherTake", false};
inline constexpr Setting<const char*> layoutVueActive{"layoutVueActive", "waveforms"};
inline constexpr Setting<int> layoutHauteurZoneTableau{"layoutHauteurZoneTableau", 420};
/// Heights of what is below the table.
inline constexpr Setting<int> layoutHeightPresentation{"layoutHeightPresentation", 190};
inline constexpr Setting<bool> layoutEditorVisible{"layoutEditorVisible", true};
inline constexpr Setting<int> layoutLargeurNavigateur{"layoutLargeurNavigateur", 220};
inline constexpr Setting<bool> layoutNavigateurVisible{"layoutNavigateurVisible", true};
inline constexpr Setting<const char*> couleurAccent{"couleurAccent", "#E8912D"};
inline constexpr Setting<const char*> appearance{"appearance", "system"};  ///< "system", "light" or "dark"
inline constexpr Setting<bool> reopenLastFolder{"reopenLastFolder", true};
inline constexpr Setting<const char*> lastFolder{"lastFolder", ""};
inline constexpr Setting<bool> verifierMisesAJourAutomatiquement{"verifierMisesAJourAutomatiquement", true};
inline constexpr const char* lastSuccessfulUpdateCheckDate = "lastSuccessfulUpdateCheckDate";  ///< in ISO 8601
inline constexpr Setting<int> NSInitialToolTipDelay{"NSInitialToolTipDelay", 300};             ///< milliseconds

// Making new files.
inline constexpr Setting<const char*> operationsTab{"operationsTab", ""};
inline constexpr Setting<bool> preserveTrackNumbers{"preserveTrackNumbers", false};
inline constexpr Setting<bool> renameCopies{"renameCopies", false};
inline constexpr Setting<bool> renameLeavesSeparators{"renameLeavesSeparators", false};

// Listening.
inline constexpr Setting<bool> lectureEnBoucle{"lectureEnBoucle", false};
/// "retour": a pause goes back to where playback began.
inline constexpr Setting<const char*> pauseComportement{"pauseComportement", ""};
inline constexpr Setting<const char*> soloComportement{"soloComportement", "OR"};  ///< "X" adds, "OR" replaces
inline constexpr Setting<const char*> nudgeValeur{"nudgeValeur", "1f"};            ///< "1f", "1s" or "5s"
/// The waveform scrolls under a playhead in the middle; otherwise it turns pages.
inline constexpr Setting<bool> suiviLectureCentre{"suiviLectureCentre", false};
inline constexpr Setting<bool> counterShowsElapsedTime{"counterShowsElapsedTime", false};
inline constexpr Setting<int> meterPlancher{"meterPlancher", -60};      ///< dB
inline constexpr Setting<int> meterSeuilJaune{"meterSeuilJaune", -20};  ///< dB
inline constexpr Setting<int> meterSeuilRouge{"meterSeuilRouge", -6};   ///< dB
inline constexpr Setting<bool> afficherEchelleDBFSMixerPrincipal{"afficherEchelleDBFSMixerPrincipal", true};
inline constexpr Setting<bool> floatingMixerVisible{"floatingMixerVisible", false};
inline constexpr Setting<bool> floatingMixerAlwaysOnTop{"floatingMixerAlwaysOnTop", false};
inline constexpr Setting<bool> floatingMetersVisible{"floatingMetersVisible", false};
inline constexpr Setting<bool> floatingMetersAlwaysOnTop{"floatingMetersAlwaysOnTop", false};
inline constexpr Setting<bool> largeTransportVisible{"largeTransportVisible", false};
inline constexpr Setting<bool> largeTransportAlwaysOnTop{"largeTransportAlwaysOnTop", false};
inline constexpr Setting<int> peakCacheMegabytes{"peakCacheMegabytes", 2048};
}  // namespace settings

/// What the user's choices are kept in. Main thread only. Values of the wrong kind count as absent; nothing throws.
class UserDefaults : public QObject {
    Q_OBJECT
  public:
    /// The user's own.
    UserDefaults();
    /// Kept in the given file: for tests.
    explicit UserDefaults(const std::filesystem::path& file);

    [[nodiscard]] bool value(const Setting<bool>& setting) const;
    [[nodiscard]] int value(const Setting<int>& setting) const;
    [[nodiscard]] double value(const Setting<double>& setting) const;
    [[nodiscard]] QString value(const Setting<const char*>& setting) const;
    void set(const Setting<bool>& setting, bool value) { store(setting.key, value); }
    void set(const Setting<int>& setting, int value) { store(setting.key, value); }
    void set(const Setting<double>& setting, double value) { store(setting.key, value); }
    void set(const Setting<const char*>& setting, const QString& value) { store(setting.key, value); }

    /// For what has no fixed form, such as the state of a header.
    [[nodiscard]] QVariant stored(const QString& key) const { return storage_.value(key); }
    void store(const QString& key, const QVariant& value);

  signals:
    /// After a value has changed; not when it was set to what it is.
    void changed(const QString& key);

  private:
    QSettings storage_;
};

}  // namespace dravik
