#pragma once

#include "tests/app/main_window_stage.h"
#include "tests/ui/by_keys.h"
#include "ui/theme.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QTest>
#include <QVBoxLayout>
#include <QWidget>
#include <algorithm>
#include <stdexcept>

#include <gmock/gmock.h>

namespace dravik::test {

/// A window with one widget in it, as a user has it before him.
class WidgetStage : public testing::Test {
  protected:
    void show(QWidget& widget, const QSize& size = {560, 420}) {
        layout.addWidget(&widget);
        window.resize(size);
        window.show();
        window.activateWindow();
        static_cast<void>(QTest::qWaitForWindowActive(&window));
    }
    /// By what it is called for those who hear instead of see, or by its text.
    template <typename Widget>
    [[nodiscard]] Widget& named(const QString& name) const {
        for (Widget* widget : window.findChildren<Widget*>()) {
            const auto* button = qobject_cast<const QAbstractButton*>(widget);
            if (widget->accessibleName() == name || (button != nullptr && button->text() == name)) return *widget;
        }
        throw std::runtime_error("nothing is called " + name.toStdString());
    }
    void click(const QString& name) const {
        QTest::mouseClick(&named<QAbstractButton>(name), Qt::LeftButton, {}, {8, 8});
    }
    void choose(const QString& box, const QString& entry) const { chooseByKeys(named<QComboBox>(box), entry); }
    [[nodiscard]] QString shown(const QString& box) const { return named<QComboBox>(box).currentText(); }
    [[nodiscard]] bool says(const QString& text) const {
        const auto labels = window.findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(),
                           [&](const QLabel* one) { return one->isVisible() && one->text() == text; });
    }
    /// Keys go where a user's would.
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const {
        QTest::keyClick(window.focusWidget(), key, modifiers);
    }
    void type(const QString& text) const {
        for (const QChar letter : text)
            QTest::keyClicks(window.focusWidget(), QString(letter));
    }
    /// Both positions are those of `on`. The mouse is let go with `drop`, later otherwise.
    static void drag(QWidget& on, const QPoint& from, const QPoint& to, bool drop = true) {
        QTest::mousePress(&on, Qt::LeftButton, {}, from);
        QMouseEvent move(QEvent::MouseMove, to, on.mapToGlobal(QPointF(to)), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(&on, &move);
        if (drop) QTest::mouseRelease(&on, Qt::LeftButton, {}, to);
    }
    /// Every control that takes keys says what it is.
    void expectNamed() const {
        const auto labels = window.findChildren<QLabel*>();
        for (const QWidget* widget : window.findChildren<QWidget*>()) {
            if (widget->focusPolicy() == Qt::NoFocus || widget->focusProxy() != nullptr ||
                widget->window() != &window || widget->objectName().startsWith(QStringLiteral("qt_"))) {
                continue;
            }
            const auto* button = qobject_cast<const QAbstractButton*>(widget);
            const bool isNamed =
                !widget->accessibleName().isEmpty() || (button != nullptr && !button->text().isEmpty()) ||
                std::any_of(labels.begin(), labels.end(), [&](const QLabel* one) { return one->buddy() == widget; });
            EXPECT_TRUE(isNamed) << widget->metaObject()->className();
        }
    }

    TempFolder folder;
    UserDefaults settings{folder / "settings.ini"};
    Theme theme{settings};
    ScriptedDialogs dialogs;
    QWidget window;
    QVBoxLayout layout{&window};
};

}  // namespace dravik::test
