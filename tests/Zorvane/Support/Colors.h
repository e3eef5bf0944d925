#pragma once

#include <QColor>

#include <gmock/gmock.h>

#include <cmath>
#include <cstdlib>

namespace ZorvaneTests {

/// What is seen where `above` is drawn on `below` with an opacity.
[[nodiscard]] inline QColor over(const QColor& below, const QColor& above, double opacity)
{
    const auto mix = [opacity](int from, int to) {
        return static_cast<int>(std::lround(from + (to - from) * opacity));
    };
    return {mix(below.red(), above.red()), mix(below.green(), above.green()),
            mix(below.blue(), above.blue())};
}

/// No channel differs by more than `tolerance`.
MATCHER_P2(IsColor, expected, tolerance, QColor(expected).name().toStdString())
{
    *result_listener << QColor(arg).name().toStdString();
    return std::abs(arg.red() - expected.red()) <= tolerance &&
           std::abs(arg.green() - expected.green()) <= tolerance &&
           std::abs(arg.blue() - expected.blue()) <= tolerance;
}

} // namespace ZorvaneTests
