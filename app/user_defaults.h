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
inline constexpr Setting<int> layoutHauteurZoneTableau{"layoutHauteurZoneTableau", 460};
inline constexpr Setting<int> layoutLargeurNavigateur{"layoutLargeurNavigateur", 220};
inline constexpr Setting<bool> layoutNavigateurVisible{"layoutNavigateurVisible", true};
inline constexpr Setting<const char*> couleurAccent{"couleurAccent", "#E8912D"};
inline constexpr Setting<const char*> appearance{"appearance", "system"};  ///< "system", "light" or "dark"
inline constexpr Setting<bool> reopenLastFolder{"reopenLastFolder", true};
inline constexpr Setting<const char*> lastFolder{"lastFolder", ""};
inline constexpr Setting<int> NSInitialToolTipDelay{"NSInitialToolTipDelay", 300};  ///< milliseconds
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
