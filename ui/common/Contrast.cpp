#include "ui/common/Contrast.h"

#include <algorithm>
#include <cmath>

namespace tavinor {

namespace {

/// The sRGB colour space's definition.
double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour) {
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

}  // namespace

double contrast(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor mixed(const QColor& one, const QColor& other, double share) {
    const auto channel = [share](int from, int to) { return static_cast<int>(from + share * (to - from)); };
    return {channel(one.red(), other.red()), channel(one.green(), other.green()),
            channel(one.blue(), other.blue())};
}

QColor standingOut(const QColor& wanted, const QColor& background, const QColor& towards, double ratio) {
    constexpr int steps = 32;
    for (int step = 0; step < steps; ++step) {
        const QColor colour = mixed(wanted, towards, static_cast<double>(step) / steps);
        if (contrast(colour, background) >= ratio) return colour;
    }
    return towards;
}

}  // namespace tavinor
