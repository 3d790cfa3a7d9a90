#pragma once

#include "app/commands.h"
#include "app/user_defaults.h"
#include "ui/theme.h"

#include <QComboBox>
#include <QDialog>
#include <QSpinBox>
#include <QTabWidget>
#include <utility>
#include <vector>

namespace dravik {

/// The settings in tabs. Each control shows its setting and changes it at once; there is nothing to confirm.
class PreferencesWindow : public QDialog {
    Q_OBJECT
  public:
    /// `updatesExist`: there is a server to be asked for them.
    PreferencesWindow(UserDefaults& settings, Commands& commands, const Theme& theme, bool updatesExist = true);

    static constexpr int tabCount = 5;

    void present();
    /// From 0 on.
    void showTab(int tab);

  protected:
    void done(int result) override;

  private:
    QWidget* appearanceTab();
    QWidget* filesTab();
    QWidget* listeningTab();
    QWidget* metersTab();
    QWidget* warningsTab();
    QWidget* checkBox(const QString& text, const Setting<bool>& setting, bool inverted = false);
    /// `choices`: values and what they are called; the first one stands for all values that are none of them.
    QComboBox* choice(const Setting<const char*>& setting,
                      const std::vector<std::pair<const char*, const char*>>& choices);
    QSpinBox* number(const Setting<int>& setting, int least, int most, const QString& unit);

    UserDefaults& settings_;
    Commands& commands_;
    const Theme& theme_;
    bool updatesExist_;
    QTabWidget* tabs_;  ///< a child
};

}  // namespace dravik
