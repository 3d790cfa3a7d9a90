#pragma once

#include "app/commands.h"
#include "app/user_defaults.h"
#include "ui/theme.h"

#include <QDialog>
#include <QTabWidget>

namespace dravik {

/// The settings in tabs. Each control shows its setting and changes it at once; there is nothing to confirm.
class PreferencesWindow : public QDialog {
    Q_OBJECT
  public:
    PreferencesWindow(UserDefaults& settings, Commands& commands, const Theme& theme);

    static constexpr int tabCount = 3;

    void present();
    /// From 0 on.
    void showTab(int tab);

  protected:
    void done(int result) override;

  private:
    QWidget* appearanceTab();
    QWidget* filesTab();
    QWidget* warningsTab();
    QWidget* checkBox(const QString& text, const Setting<bool>& setting, bool inverted = false);

    UserDefaults& settings_;
    Commands& commands_;
    const Theme& theme_;
    QTabWidget* tabs_;  ///< a child
};

}  // namespace dravik
