#pragma once

#include "tests/support/files.h"
#include "tests/ui/by_keys.h"
#include "tests/ui/window_stage.h"
#include "ui/operations/check_table.h"
#include "ui/operations/operation_overlay.h"
#include "ui/operations/operations_window.h"
#include "ui/operations/pattern_row.h"
#include "ui/operations/take_check_list.h"
#include "ui/operations/track_checks.h"
#include "ui/operations/track_order_list.h"
#include "ui/operations/track_order_view.h"

#include <gmock/gmock.h>

namespace dravik::test {

/// The operations window as a user has it, over two poly takes and a mono set. What is chosen is chosen with keys and
/// clicks, so that a form that no longer sends or shows its choice fails.
class OperationsStage : public testing::Test, public WindowStage {
  protected:
    OperationsStage() {
        Ixml poly;
        poly.tracks = {{1, 1, "Boom"}, {2, 2, "Lav"}};
        for (const char* name : {"A1.wav", "A2.wav"})
            recorderFile(poly, {.channels = 2}, 4800).write(folder / name);
        Ixml mono;
        mono.familyUid = "set";
        for (const char* name : {"S_1.wav", "S_2.wav"})
            recorderFile(mono, {}, 4800).write(folder / name);
        open();
    }
    template <typename Child>
    Child& child(const QString& name = {}) {
        Child* found = window->operationsWindow().findChild<Child*>(name);
        EXPECT_NE(found, nullptr);
        return *found;
    }
    /// The one of its kind that is on the page in front, by what it is called or what stands on it.
    template <typename Child>
    Child& seen(const QString& name = {}) {
        for (Child* one : window->operationsWindow().findChildren<Child*>()) {
            const auto* button = qobject_cast<const QAbstractButton*>(one);
            const bool isNamed = name.isEmpty() || one->accessibleName() == name || one->objectName() == name ||
                                 (button != nullptr && button->text() == name);
            if (one->isVisible() && isNamed) return *one;
        }
        throw std::runtime_error("not seen: " + name.toStdString());
    }
    /// Opens the tab by its menu's command, for all takes.
    void show(void (Commands::*command)()) {
        emit(commands.*command)();
        static_cast<void>(QTest::qWaitForWindowActive(&window->operationsWindow()));
        operations->setAppliquerTous(true);
        planned();
    }
    void planned() {
        ASSERT_TRUE(QTest::qWaitFor([this] { return !operations->isPlanning(); }, 20'000));
    }
    /// Keys go to what has the keyboard.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(window->operationsWindow().focusWidget(), key, modifiers);
    }
    void click(const QString& button) { QTest::mouseClick(&seen<QAbstractButton>(button), Qt::LeftButton, {}, {8, 8}); }
    void spaceOn(QAbstractItemView& list, int row) {
        goTo(list, row);
        press(Qt::Key_Space);
    }
    /// With arrows, from the top.
    void goTo(QAbstractItemView& list, int row) {
        list.setFocus();
        for (int step = list.currentIndex().row(); step > row; --step)
            press(Qt::Key_Up);
        for (int step = std::max(0, list.currentIndex().row()); step < row; ++step)
            press(Qt::Key_Down);
        ASSERT_EQ(list.currentIndex().row(), row);
    }
    /// Takes the blocks of the new names away, from the last one.
    void clearPattern() {
        child<PatternRow>().setFocus();
        for (int key = 0; key < 20 && !operations->renameChoice().pattern.empty(); ++key)
            press(Qt::Key_Backspace);
        ASSERT_TRUE(operations->renameChoice().pattern.empty());
    }
    QAbstractItemView& takes() { return child<TakeCheckList>().table(); }
    QAbstractItemView& tracks() { return seen<TrackChecks>().table(); }
    void choose(const QString& box, const QString& entry) { chooseByKeys(seen<QComboBox>(box), entry); }
};

}  // namespace dravik::test
