#pragma once

#include "app/user_defaults.h"

#include <QString>
#include <QWidget>

namespace dravik {

/// A small window of its own for a view of the main window: it remembers its frame and whether it stays on top of all
/// others, which its context menu changes. Escape closes it.
class FloatingWindow : public QWidget {
    Q_OBJECT
  public:
    /// What it is called, where it is remembered, and how large it is the first time.
    struct Kind {
        const char* key;    ///< names its frame in the settings
        const char* title;  ///< before it is translated
        Setting<bool> visible, alwaysOnTop;
        QSize firstSize;
    };
    /// Takes the view over.
    FloatingWindow(UserDefaults& defaults, const Kind& kind, QWidget* view, QWidget* parent);
    ~FloatingWindow() override;

    void present();
    /// Shows it, or closes it when it is in front of the user already.
    void togglePresence();
    void setStaysOnTop(bool stays);

  protected:
    void closeEvent(QCloseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void rememberFrame();

    UserDefaults& defaults_;
    Kind kind_;
};

}  // namespace dravik
