#include "ui/theme.h"

#include "tests/support/temp_folder.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

namespace dravik {
namespace {

TEST(Theme, FollowsTheDesktopWhileItRunsUnlessTheUserHasChosen) {
    test::TempFolder folder;
    UserDefaults settings{folder / "settings.ini"};
    bool systemIsDark = false;
    Theme theme(settings, [&] { return systemIsDark; });
    QWidget window;
    window.show();
    QSignalSpy changed(&theme, &Theme::changed);
    const auto desktopChangesTo = [&](bool dark) {
        systemIsDark = dark;
        changed.clear();
        QEvent event(QEvent::ThemeChange);
        QApplication::sendEvent(&window, &event);
        QApplication::sendEvent(&window, &event);
        QTRY_COMPARE(changed.count(), 1);
    };
    EXPECT_FALSE(theme.isDark());
    desktopChangesTo(true);
    EXPECT_TRUE(theme.isDark());
    EXPECT_LT(QApplication::palette().color(QPalette::Window).lightness(), 128);
    desktopChangesTo(false);
    EXPECT_FALSE(theme.isDark());
    EXPECT_GT(QApplication::palette().color(QPalette::Window).lightness(), 128);
    settings.set(settings::appearance, QStringLiteral("light"));
    desktopChangesTo(true);
    EXPECT_FALSE(theme.isDark());
    settings.set(settings::appearance, QStringLiteral("system"));
    EXPECT_TRUE(theme.isDark());
}

}  // namespace
}  // namespace dravik
