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
    /// `key` names its frame in the settings. Takes the view over.
    FloatingWindow(UserDefaults& defaults, const QString& key, const QString& title, QWidget* view, QSize firstSize,
                   QWidget* parent);
    ~FloatingWindow() override;

    void present();
    /// Shows it, or closes it when it is in front of the user already.
    void togglePresence();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    [[nodiscard]] bool staysOnTop() const;
    void setStaysOnTop(bool stays);
    void rememberFrame();

    UserDefaults& defaults_;
    QString key_;
};

}  // namespace dravik
