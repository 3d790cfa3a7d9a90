#pragma once

#include <QAccessible>
#include <QString>
#include <optional>

class QWidget;

namespace dravik {

/// What a control that draws itself tells assistive programs, which see nothing of what it draws. Mixed into a widget,
/// whose accessible name is its name. Main thread.
class SpokenControl {
  public:
    /// The value as a number, between its ends.
    struct Range {
        double current, least, most;
    };

    SpokenControl(const SpokenControl&) = delete;
    SpokenControl& operator=(const SpokenControl&) = delete;

    [[nodiscard]] virtual QAccessible::Role spokenRole() const = 0;
    /// As the control shows it: "-12.5 dB".
    [[nodiscard]] virtual QString spokenValue() const = 0;
    /// Absent for values that are no number.
    [[nodiscard]] virtual std::optional<Range> spokenRange() const { return std::nullopt; }
    /// As if the user had moved it there. Does nothing where that cannot be.
    virtual void setSpokenNumber(double) {}

  protected:
    SpokenControl();
    virtual ~SpokenControl() = default;
    /// To be said now. Not of what changes all the time.
    static void tellValue(QWidget& control, double number);
};

}  // namespace dravik
