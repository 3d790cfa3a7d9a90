#pragma once

#include "app/content_view.h"
#include "app/take_playback.h"
#include "ui/shortcuts.h"

#include <QAction>
#include <QMenu>
#include <QObject>
#include <functional>
#include <vector>

namespace dravik {

/// What the transport does, as actions with their keys: a menu of the main window, which gives it the keys everywhere
/// but where a text is typed.
class TransportActions : public QObject {
    Q_OBJECT
  public:
    TransportActions(ContentView& content, TakePlayback& playback, UserDefaults& defaults, QObject* parent);
    void fill(QMenu& menu);

  private:
    QAction* add(QMenu& menu, KeyId key, std::function<void()> run, bool needsTake = true);
    void addToggle(QMenu& menu, KeyId key, bool (TakePlayback::*isOn)() const, void (TakePlayback::*run)());
    void refresh();

    struct Toggle {
        QAction* action;
        bool (TakePlayback::*isOn)() const;
    };
    ContentView& content_;
    TakePlayback& playback_;
    UserDefaults& defaults_;
    std::vector<QAction*> needTake_;
    std::vector<Toggle> toggles_;
    std::vector<QAction*> nudges_;
    QAction* addCue_ = nullptr;
};

}  // namespace dravik
