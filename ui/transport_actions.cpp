#include "ui/transport_actions.h"

#include <QAbstractButton>
#include <QActionGroup>
#include <QApplication>

namespace dravik {

TransportActions::TransportActions(ContentView& content, TakePlayback& playback, UserDefaults& defaults,
                                   QObject* parent)
    : QObject(parent), content_(content), playback_(playback), defaults_(defaults) {
    const LecteurCoreAudio& player = playback_.player();
    connect(&player, &LecteurCoreAudio::pretChanged, this, &TransportActions::refresh);
    connect(&defaults_, &UserDefaults::changed, this, &TransportActions::refresh);
    connect(&content_, &ContentView::selectionChanged, this, &TransportActions::refresh);
    connect(&content_, &ContentView::sauvegardeEnCoursChanged, this, &TransportActions::refresh);
}

QAction* TransportActions::add(QMenu& menu, KeyId key, std::function<void()> run, bool needsTake) {
    QAction* made = menu.addAction(shortcut(key).name());
    made->setShortcut(keyOf(key));
    // Also while the floating mixer has the keyboard.
    made->setShortcutContext(Qt::ApplicationShortcut);
    connect(made, &QAction::triggered, this, [this, run = std::move(run)] {
        if (!content_.enSaisie()) run();
    });
    if (needsTake) needTake_.push_back(made);
    return made;
}

void TransportActions::addToggle(QMenu& menu, KeyId key, bool (TakePlayback::*isOn)() const,
                                 void (TakePlayback::*run)()) {
    QAction* made = add(
        menu, key, [&playback = playback_, run] { (playback.*run)(); }, false);
    made->setCheckable(true);
    toggles_.push_back({made, isOn});
}

void TransportActions::fill(QMenu& menu) {
    using Direction = LecteurCoreAudio::Direction;
    add(menu, KeyId::playPause, [this] {
        // Whoever has gone to a button with the keyboard presses that one.
        auto* button = qobject_cast<QAbstractButton*>(QApplication::focusWidget());
        button != nullptr ? button->click() : playback_.togglePlay();
    });
    add(menu, KeyId::returnToBeginning, [this] { playback_.returnToBeginning(); });
    nudges_.push_back(add(menu, KeyId::nudgeBackward, [this] { playback_.nudge(Direction::backward); }));
    nudges_.push_back(add(menu, KeyId::nudgeForward, [this] { playback_.nudge(Direction::forward); }));
    QMenu* amount = menu.addMenu(tr("Nudge by"));
    auto* group = new QActionGroup(amount);
    for (const auto& [value, text] :
         {std::pair("1f", tr("1 Frame")), std::pair("1s", tr("1 Second")), std::pair("5s", tr("5 Seconds"))}) {
        QAction* one = group->addAction(amount->addAction(text));
        one->setCheckable(true);
        one->setData(QString::fromLatin1(value));
        one->setChecked(defaults_.value(settings::nudgeValeur) == QLatin1String(value));
    }
    connect(group, &QActionGroup::triggered, this,
            [this](const QAction* one) { defaults_.set(settings::nudgeValeur, one->data().toString()); });
    connect(&defaults_, &UserDefaults::changed, group, [this, group] {
        for (QAction* one : group->actions())
            one->setChecked(one->data().toString() == defaults_.value(settings::nudgeValeur));
    });
    menu.addSeparator();
    addToggle(menu, KeyId::soloMode, &TakePlayback::addsSolos, &TakePlayback::toggleSoloMode);
    addToggle(menu, KeyId::loopPlayback, &TakePlayback::loops, &TakePlayback::toggleLoop);
    addToggle(menu, KeyId::followPlayhead, &TakePlayback::scrollsWithPlayhead, &TakePlayback::togglePageOrScroll);
    addToggle(menu, KeyId::insertionFollows, &TakePlayback::insertionFollows, &TakePlayback::toggleInsertionFollows);
    menu.addSeparator();
    addCue_ = add(menu, KeyId::addCue, [this] { playback_.addCueAtPlayhead(); });
    add(menu, KeyId::previousCue, [this] { playback_.goToPreviousCue(); });
    add(menu, KeyId::nextCue, [this] { playback_.goToNextCue(); });
    refresh();
}

void TransportActions::refresh() {
    const bool ready = playback_.player().pret();
    for (QAction* one : needTake_)
        one->setEnabled(ready);
    if (addCue_ != nullptr) {
        const int row = content_.selectedRow();
        addCue_->setEnabled(ready && row >= 0 && content_.rows().canEdit(row));
    }
    for (const Toggle& one : toggles_)
        one.action->setChecked((playback_.*one.isOn)());
    for (QAction* nudge : nudges_)
        nudge->setToolTip(QStringLiteral("%1: %2").arg(nudge->text(), playback_.nudgeAmount()));
}

}  // namespace dravik
