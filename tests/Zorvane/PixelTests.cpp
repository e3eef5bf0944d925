#include "Zorvane/Theme/Painting/GaussianBlur.h"
#include "Zorvane/Theme/Tokens/SymbolImages.h"
#include "tests/Zorvane/Scenes/Scene.h"

#include <QDir>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace ZorvaneTests {
namespace {

TEST(Pixels, StripsMakeOneBox)
{
    const QString strip = QStringLiteral(
        "RoundedBox { y: %1; width: 200; height: %2; continuesAbove: %3; continuesBelow: %4\n"
        "cornerRadius: 14; color: \"#40ffffff\"; outlineColor: \"#80ff0000\" }\n");
    const QString yes = QStringLiteral("true");
    const QString no = QStringLiteral("false");
    const Stage whole(strip.arg(0).arg(120).arg(no, no));
    const Stage strips(strip.arg(0).arg(41).arg(no, yes) + strip.arg(41).arg(30).arg(yes, yes) +
                       strip.arg(71).arg(49).arg(yes, no));
    EXPECT_EQ(strips.picture(), whole.picture());
}

TEST(Pixels, ABlurLosesNothing)
{
    Zorvane::Plane plane{61, 61, std::vector<float>(std::size_t{61} * 61)};
    plane.values[30 * 61 + 30] = 1;
    plane = Zorvane::gaussianBlurred(plane, 6);
    double sum = 0;
    double across = 0;
    for (int i = 0; i < 61 * 61; ++i) {
        const double value = plane.values[static_cast<std::size_t>(i)];
        sum += value;
        across += value * std::pow(i % 61 - 30, 2);
    }
    EXPECT_NEAR(sum, 1, 0.001);
    EXPECT_NEAR(std::sqrt(across), 6, 0.15);
}

TEST(Pixels, SymbolsAreDrawnInTheirColor)
{
    const QStringList files = QDir(QStringLiteral(":/Zorvane/Resources/symbols")).entryList();
    ASSERT_GT(files.size(), 20);
    Zorvane::SymbolImageProvider provider;
    for (const QString& file : files) {
        const QImage image = provider.requestImage(file.chopped(4) + QStringLiteral("?8034d399"),
                                                   nullptr, QSize(26, 26));
        ASSERT_EQ(image.size(), QSize(26, 26)) << file.toStdString();
        int drawn = 0;
        for (int pixel = 0; pixel < 26 * 26; ++pixel) {
            const QColor color = image.pixelColor(pixel % 26, pixel / 26);
            EXPECT_LE(color.alpha(), 0x80);
            if (color.alpha() >= 0x7e) {
                EXPECT_TRUE(std::abs(color.red() - 0x34) <= 2 &&
                            std::abs(color.green() - 0xd3) <= 2);
                ++drawn;
            }
        }
        EXPECT_TRUE(drawn >= 15 && drawn <= 500) << file.toStdString();
    }
}

TEST(Pixels, TheRingShowsTheGroups)
{
    MainWindow window;
    play(window, "area cache-user, safe, a, a=75; area dev-npm, safe, b, b=25; results");
    const QQuickItem& chart = window.item("DonutChart");
    const QImage picture = window.picture();
    const QPointF centre = chart.mapToScene(chart.boundingRect().center());
    for (const double fraction : {0.01, 0.25, 0.5, 0.74, 0.76, 0.99}) {
        const double angle = 2 * std::numbers::pi * fraction;
        const QPointF place = centre + QPointF(std::sin(angle), -std::cos(angle)) * 85;
        // Violet has more red than teal.
        EXPECT_EQ(picture.pixelColor(place.toPoint()).red() > 90, fraction < 0.75) << fraction;
    }
}

} // namespace
} // namespace ZorvaneTests
