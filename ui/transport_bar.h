#pragma once

#include "app/take_playback.h"
#include "ui/counter_view.h"
#include "ui/theme.h"

#include <QString>
#include <QToolButton>
#include <QWidget>
#include <functional>
#include <utility>
#include <vector>

namespace dravik {

/// The transport: return, nudge, play, the position, the playback toggles, and the output boost. Of the main window and
/// of the floating transport, where it is large. It shows the player and sends it what is pressed.
class TransportBar : public QWidget {
    Q_OBJECT
  public:
    enum class Form { bar, large };
    TransportBar(TakePlayback& playback, UserDefaults& defaults, const Theme& theme, Form form,
                 QWidget* parent = nullptr);

  private:
    QToolButton* button(const QString& icon, const QString& name, std::function<void()> run);
    QToolButton* toggle(const QString& icon, const QString& name, const QString& help,
                        bool (TakePlayback::*isOn)() const, void (TakePlayback::*run)());
    QWidget* makeBoost();
    void layOut(Form form, QWidget* boost);
    void chooseNudge();
    void refresh();
    void refreshIcons();

    struct Toggle {
        QToolButton* button;
        bool (TakePlayback::*isOn)() const;
    };
    TakePlayback& playback_;
    UserDefaults& defaults_;
    const Theme& theme_;
    std::vector<std::pair<QToolButton*, QString>> icons_;  ///< with the name of the drawing
    std::vector<Toggle> toggles_;
    std::vector<QToolButton*> needTake_;
    QToolButton* back_ = nullptr;
    QToolButton* nudgeBack_ = nullptr;
    QToolButton* play_ = nullptr;
    QToolButton* nudgeForward_ = nullptr;
    CounterView* counter_ = nullptr;
    QWidget* boostLabel_ = nullptr;
};

}  // namespace dravik
