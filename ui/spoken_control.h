#pragma once

#include <QAccessible>
#include <QString>
#include <optional>

class QWidget;

namespace dravik {

/// What a control that draws itself tells assistive programs, which see nothing of what it draws. A widget derives
/// from QWidget first and from this second; its accessibleName() says what it is called. Main thread.
class SpokenControl {
  public:
    /// The value as a number in the control's own unit (dB, seconds, -1 to 1), between its ends.
    struct Range {
        double current = 0, least = 0, most = 0;
    };

    SpokenControl(const SpokenControl&) = delete;
    SpokenControl& operator=(const SpokenControl&) = delete;

    [[nodiscard]] virtual QAccessible::Role spokenRole() const = 0;
    /// As the control shows it: "-12.5 dB".
    [[nodiscard]] virtual QString spokenValue() const = 0;
    /// Absent for values that are no number.
    [[nodiscard]] virtual std::optional<Range> spokenRange() const { return std::nullopt; }
    /// Moves the control there, as the user would; nothing happens where it only shows.
    virtual void setSpokenNumber(double /*number*/) {}

  protected:
    SpokenControl();
    virtual ~SpokenControl() = default;
    /// Announces a new value at once. For changes by the user: a meter or a running counter would never be silent.
    static void tellValue(QWidget& control, double number);
};

}  // namespace dravik
