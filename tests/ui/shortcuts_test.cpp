#include "ui/shortcuts.h"

#include "tests/support/files.h"
#include "tests/ui/window_stage.h"
#include "ui/about_windows.h"

#include <QAction>
#include <QTextBrowser>
#include <map>

#include <gmock/gmock.h>

namespace dravik {
namespace {

std::string text(const QKeySequence& key) { return key.toString().toStdString(); }

TEST(Shortcuts, NoTwoOfOnePlaceCollide) {
    std::map<std::pair<KeyContext, std::string>, std::string> taken;
    for (const Shortcut& one : shortcuts()) {
        for (const QKeySequence& key : one.keys) {
            const auto [at, isFree] = taken.emplace(std::pair(one.context, text(key)), one.name().toStdString());
            EXPECT_TRUE(isFree) << text(key) << ": " << at->second << " and " << one.name().toStdString();
        }
        EXPECT_EQ(&shortcut(one.id), &one) << "two lines for " << one.name().toStdString();
    }
}

TEST(Shortcuts, TheKeypadAndBackwardTabsAreTheSameKeys) {
    const QKeyEvent enter(QEvent::KeyPress, Qt::Key_Enter, Qt::KeypadModifier | Qt::ShiftModifier);
    EXPECT_EQ(keyIn(KeyContext::cell, enter), KeyId::commitUp);
    const QKeyEvent back(QEvent::KeyPress, Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(keyIn(KeyContext::cell, back), KeyId::commitPrevious);
    const QKeyEvent none(QEvent::KeyPress, Qt::Key_Enter, Qt::AltModifier);
    EXPECT_EQ(keyIn(KeyContext::cell, none), std::nullopt);
}

class ShortcutPanel : public testing::Test, public test::WindowStage {};

TEST_F(ShortcutPanel, ShowsEveryKeyOfTheWindow) {
    showShortcuts(*window);
    auto* dialog = window->findChild<QDialog*>(QStringLiteral("shortcuts"));
    ASSERT_NE(dialog, nullptr);
    const QString panel = dialog->findChild<QTextBrowser*>()->toPlainText();
    std::map<std::string, std::string> ofWindow;
    for (const QAction* action : window->findChildren<QAction*>()) {
        // Other windows have some of the keys, too.
        const auto* owner = qobject_cast<const QWidget*>(action->parent());
        const bool isOfWindow = owner == nullptr || owner->window() == window.get();
        for (const QKeySequence& key : action->shortcuts()) {
            if (isOfWindow && action->shortcutContext() != Qt::WidgetShortcut) {
                const bool isFree = ofWindow.emplace(text(key), action->text().toStdString()).second;
                EXPECT_TRUE(isFree) << text(key);
            }
            const auto inTable = [&](const Shortcut& one) {
                return !one.keys.empty() && one.keys.front() == key && action->text().startsWith(one.name());
            };
            const auto found = std::find_if(shortcuts().begin(), shortcuts().end(), inTable);
            ASSERT_NE(found, shortcuts().end()) << action->text().toStdString() << " " << text(key);
        }
    }
    EXPECT_GE(ofWindow.size(), 18U);
    for (const Shortcut& one : shortcuts())
        EXPECT_TRUE(panel.contains(keysText(one))) << one.name().toStdString();
    QTest::keyClick(dialog, Qt::Key_Escape);
    QTRY_VERIFY(window->findChild<QDialog*>(QStringLiteral("shortcuts")) == nullptr);
}

}  // namespace
}  // namespace dravik
