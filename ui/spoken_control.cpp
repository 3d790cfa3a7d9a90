#include "ui/spoken_control.h"

#include <QAccessibleWidget>
#include <QWidget>
#include <memory>

namespace dravik {
namespace {

class AccessibleControl final : public QAccessibleWidget, public QAccessibleValueInterface {
  public:
    AccessibleControl(QWidget& widget, SpokenControl& control)
        : QAccessibleWidget(&widget, control.spokenRole()), control_(control) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface && control_.spokenRange())
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }
    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? control_.spokenValue() : QAccessibleWidget::text(kind);
    }
    [[nodiscard]] QVariant currentValue() const override { return range().current; }
    [[nodiscard]] QVariant minimumValue() const override { return range().least; }
    [[nodiscard]] QVariant maximumValue() const override { return range().most; }
    /// Each control rounds as it does for the mouse.
    [[nodiscard]] QVariant minimumStepSize() const override { return 0.0; }
    void setCurrentValue(const QVariant& value) override { control_.setSpokenNumber(value.toDouble()); }

  private:
    [[nodiscard]] SpokenControl::Range range() const { return control_.spokenRange().value_or(SpokenControl::Range{}); }

    SpokenControl& control_;  ///< lives as long as the widget, with which this goes
};

QAccessibleInterface* interfaceOf(const QString&, QObject* object) {
    auto* widget = qobject_cast<QWidget*>(object);
    auto* control = dynamic_cast<SpokenControl*>(object);
    if (widget == nullptr || control == nullptr) return nullptr;
    return std::make_unique<AccessibleControl>(*widget, *control).release();  // the toolkit's, as it has it
}

}  // namespace

SpokenControl::SpokenControl() {
    static const bool installed = [] {
        QAccessible::installFactory(interfaceOf);
        return true;
    }();
    static_cast<void>(installed);
}

void SpokenControl::tellValue(QWidget& control, double number) {
    if (!QAccessible::isActive()) return;
    QAccessibleValueChangeEvent event(&control, number);
    QAccessible::updateAccessibility(&event);
}

}  // namespace dravik
