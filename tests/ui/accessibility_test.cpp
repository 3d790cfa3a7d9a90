#include "tests/ui/all_windows.h"
#include "ui/counter_view.h"
#include "ui/fader.h"
#include "ui/level_meter.h"
#include "ui/operations/pattern_chip.h"
#include "ui/pan_control.h"
#include "ui/waveform_view.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QTabBar>
#include <QTextEdit>
#include <set>

#include <gmock/gmock.h>

namespace dravik {
namespace {

QString nameOf(QObject& object) {
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&object);
    return interface == nullptr ? QString() : interface->text(QAccessible::Name).trimmed();
}

/// A part of another control, which speaks for it, or of the toolkit's own dialogs.
bool isPart(const QWidget& widget) {
    if (widget.objectName().startsWith(QLatin1String("qt_"))) return true;
    for (const QWidget* above = widget.parentWidget(); above != nullptr && !above->isWindow();
         above = above->parentWidget()) {
        if (qobject_cast<const QAbstractSpinBox*>(above) != nullptr ||
            qobject_cast<const QComboBox*>(above) != nullptr ||
            (qobject_cast<const QAbstractItemView*>(above) != nullptr &&
             qobject_cast<const QAbstractItemView*>(&widget) == nullptr && above->focusPolicy() != Qt::NoFocus))
            return true;
    }
    // The drawing in a field says what the field's name does.
    return qobject_cast<const QScrollBar*>(&widget) != nullptr ||
           qobject_cast<const QLineEdit*>(widget.parentWidget()) != nullptr ||
           (widget.parentWidget() != nullptr && widget.parentWidget()->focusProxy() == &widget);
}

/// Does the user put the keyboard or the mouse to it?
bool isControl(const QWidget& widget) {
    if (isPart(widget)) return false;
    if (dynamic_cast<const SpokenControl*>(&widget) != nullptr) return true;
    if (qobject_cast<const QAbstractButton*>(&widget) != nullptr ||
        qobject_cast<const QAbstractItemView*>(&widget) != nullptr ||
        qobject_cast<const QAbstractSlider*>(&widget) != nullptr)
        return qobject_cast<const QHeaderView*>(&widget) == nullptr;
    return (widget.focusPolicy() & Qt::TabFocus) != 0 && !widget.isWindow() && widget.focusProxy() == nullptr &&
           widget.metaObject() != &QWidget::staticMetaObject;
}

using Roles = std::set<QAccessible::Role>;
/// What the control may be called by those who say what they find; nothing where anything but a mere area will do.
Roles rolesOf(const QWidget& widget) {
    if (qobject_cast<const QCheckBox*>(&widget) != nullptr) return {QAccessible::CheckBox};
    if (qobject_cast<const QAbstractButton*>(&widget) != nullptr)
        return {QAccessible::Button, QAccessible::PushButton, QAccessible::CheckBox, QAccessible::RadioButton,
                QAccessible::ButtonMenu};
    if (qobject_cast<const QComboBox*>(&widget) != nullptr) return {QAccessible::ComboBox};
    if (qobject_cast<const QLineEdit*>(&widget) != nullptr) return {QAccessible::EditableText};
    if (qobject_cast<const QAbstractSpinBox*>(&widget) != nullptr) return {QAccessible::SpinBox};
    if (qobject_cast<const QAbstractItemView*>(&widget) != nullptr)
        return {QAccessible::Table, QAccessible::Tree, QAccessible::List};
    if (qobject_cast<const QAbstractSlider*>(&widget) != nullptr || qobject_cast<const Fader*>(&widget) != nullptr ||
        qobject_cast<const PanControl*>(&widget) != nullptr || qobject_cast<const WaveformView*>(&widget) != nullptr)
        return {QAccessible::Slider};
    if (qobject_cast<const LevelMeter*>(&widget) != nullptr) return {QAccessible::Indicator};
    if (qobject_cast<const QTabBar*>(&widget) != nullptr) return {QAccessible::PageTabList};
    return {};
}

QString problemOf(QWidget& widget) {
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&widget);
    if (interface == nullptr) return QStringLiteral("is not there for those who hear");
    const QString name = nameOf(widget);
    if (name.isEmpty()) return QStringLiteral("has no name");
    if (name.contains(QLatin1String(widget.metaObject()->className()))) return QStringLiteral("is called by its class");
    const QAccessible::Role role = interface->role();
    const Roles fit = rolesOf(widget);
    if (fit.empty() ? role == QAccessible::Client || role == QAccessible::NoRole : !fit.contains(role))
        return QStringLiteral("has the role %1").arg(int(role));
    if (dynamic_cast<SpokenControl*>(&widget) != nullptr && interface->text(QAccessible::Value).isEmpty())
        return QStringLiteral("has no value");
    return {};
}

class Accessibility : public testing::Test, public test::AllWindows {};

TEST_F(Accessibility, EveryControlOfEveryWindowHasANameARoleAndItsValue) {
    std::set<QString> faults, kinds;
    EXPECT_TRUE(visit([&](QWidget& shown, const QString& name) {
        for (const QMenu* menu : shown.findChildren<QMenu*>()) {
            for (const QAction* action : menu->actions()) {
                if (!action->isSeparator() && action->text().isEmpty())
                    faults.insert(name + QStringLiteral(": a line without a text in the menu ") + menu->title());
            }
        }
        for (QWidget* one : shown.findChildren<QWidget*>()) {
            if (one->window() != &shown) continue;
            if (!one->isVisible() || !isControl(*one)) continue;
            kinds.insert(QString::fromLatin1(one->metaObject()->className()));
            const QString problem = problemOf(*one);
            if (problem.isEmpty()) continue;
            const QString which = nameOf(*one).isEmpty() ? one->objectName() : nameOf(*one);
            faults.insert(QStringLiteral("%1: %2 “%3” of %4 %5")
                              .arg(name, QString::fromLatin1(one->metaObject()->className()), which,
                                   QString::fromLatin1(one->parentWidget()->metaObject()->className()), problem));
        }
        return true;
    }));
    for (const QString& fault : faults)
        ADD_FAILURE() << fault.toStdString();
    // The windows did show what draws itself.
    for (const char* kind :
         {"Fader", "PanControl", "LevelMeter", "CounterView", "WaveformView", "PatternChip", "PatternRow"})
        EXPECT_TRUE(kinds.contains(QStringLiteral("dravik::") + QLatin1String(kind))) << kind;
}

TEST_F(Accessibility, AssistiveProgramsMoveAFaderAsAHandDoes) {
    open();
    ASSERT_TRUE(QTest::qWaitFor([&] { return player.pret(); }, 20'000));
    window->setPresentation(PresentationMode::mixer);
    auto* fader = window->findChild<Fader*>();
    ASSERT_NE(fader, nullptr);
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(fader);
    ASSERT_NE(interface->valueInterface(), nullptr);
    interface->valueInterface()->setCurrentValue(-12.0);
    EXPECT_EQ(player.mixer().faderDBParCanal.front(), -12.0);
    EXPECT_EQ(interface->text(QAccessible::Value), QStringLiteral("-12.0 dB"));
    EXPECT_EQ(interface->valueInterface()->currentValue().toDouble(), -12.0);
}

}  // namespace
}  // namespace dravik
