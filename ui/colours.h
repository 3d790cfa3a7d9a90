#pragma once

#include <QColor>

namespace dravik {

/// The colour itself, or as much darker or lighter as text needs to be read on the background.
[[nodiscard]] QColor legibleOn(const QColor& background, QColor colour);
/// `share` of `over` on `under`.
[[nodiscard]] QColor mixed(const QColor& under, const QColor& over, double share);

}  // namespace dravik
