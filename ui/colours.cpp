#include "ui/colours.h"

#include <algorithm>
#include <cmath>

namespace dravik {
namespace {

/// As the accessibility guidelines for the web define it.
double luminance(const QColor& colour) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor& a, const QColor& b) {
    const double x = luminance(a), y = luminance(b);
    return (std::max(x, y) + 0.05) / (std::min(x, y) + 0.05);
}

}  // namespace

QColor mixed(const QColor& under, const QColor& over, double share) {
    const auto part = [share](int a, int b) { return static_cast<int>(std::lround(a + (b - a) * share)); };
    return {part(under.red(), over.red()), part(under.green(), over.green()), part(under.blue(), over.blue())};
}

QColor legibleOn(const QColor& background, QColor colour) {
    constexpr double enough = 4.5;
    const QColor end = luminance(background) > 0.18 ? QColor(Qt::black) : QColor(Qt::white);
    for (int step = 0; step < 20 && contrast(background, colour) < enough; ++step)
        colour = mixed(colour, end, 0.1);
    return colour;
}

}  // namespace dravik
