#pragma once

#include "app/user_defaults.h"

#include <QColor>
#include <QIcon>
#include <QObject>
#include <QPalette>
#include <functional>

namespace dravik {

/// How everything looks: dark or light, one accent colour, the icons in the colour of the text. Follows the settings
/// `appearance` and `couleurAccent`, and the system where the user has chosen nothing. Main thread.
class Theme : public QObject {
    Q_OBJECT
  public:
    /// Takes effect on the whole application at once, and again whenever a setting changes.
    explicit Theme(UserDefaults& settings) : Theme(settings, &Theme::systemPaletteIsDark) {}
    /// `systemIsDark` is asked at first and whenever the desktop says that its looks have changed.
    Theme(UserDefaults& settings, std::function<bool()> systemIsDark);

    [[nodiscard]] bool isDark() const noexcept { return dark_; }
    [[nodiscard]] QColor accent() const { return accent_; }
    /// A value that differs from what is on disk.
    [[nodiscard]] QColor pending() const { return accent_; }
    /// Such a value as a text, which has to be read on every ground that there is.
    [[nodiscard]] QColor pendingText() const { return pendingText_; }
    [[nodiscard]] QColor error() const { return dark_ ? QColor(0xFF, 0x7B, 0x72) : QColor(0xB4, 0x23, 0x18); }
    [[nodiscard]] QColor success() const { return QColor(0x3F, 0xA6, 0x6B); }
    /// Secondary text.
    [[nodiscard]] QColor dimmed() const { return dark_ ? QColor(0x8F, 0x97, 0xA3) : QColor(0x6A, 0x71, 0x7C); }

    /// One of our drawings ("save" for icons/save.svg), crisp at any scale factor, greyed when disabled.
    [[nodiscard]] QIcon icon(const QString& name) const;

  signals:
    void changed();

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    [[nodiscard]] static bool systemPaletteIsDark();
    void followSystem();
    void apply();

    UserDefaults& settings_;
    std::function<bool()> askSystem_;
    bool systemIsDark_;
    bool followDue_ = false;
    bool dark_ = true;
    QColor accent_, pendingText_;
};

}  // namespace dravik
