#include "Zorvane/Theme/Painting/GaussianBlur.h"
#include "Zorvane/Theme/Tokens/SymbolImages.h"
#include "tests/Zorvane/Scenes/Scene.h"

#include <QDir>
#include <QTest>

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>

namespace ZorvaneTests {
namespace {

const QColor violet(139, 92, 246);
const QColor teal(45, 212, 191);
const QColor danger(248, 113, 113);

QColor over(const QColor& below, const QColor& above, double opacity)
{
    const auto mix = [opacity](int from, int to) {
        return static_cast<int>(std::lround(from + (to - from) * opacity));
    };
    return {mix(below.red(), above.red()), mix(below.green(), above.green()),
            mix(below.blue(), above.blue())};
}

MATCHER_P2(IsColor, expected, tolerance, QColor(expected).name().toStdString())
{
    *result_listener << QColor(arg).name().toStdString();
    return std::abs(arg.red() - expected.red()) <= tolerance &&
           std::abs(arg.green() - expected.green()) <= tolerance &&
           std::abs(arg.blue() - expected.blue()) <= tolerance;
}

TEST(Pixels, OfControlsAndSurfaces)
{
    struct Case
    {
        const char* qml;
        QPoint place;
        QColor color;
    };
    const QColor glass = over(Qt::black, Qt::white, 0.055);
    const QColor chosen = over(Qt::black, violet, 0.14);
    const Case cases[] = {
        {"PrimaryButton { x: 9; y: 9; width: 120; height: 120 }", {15, 15}, {167, 139, 250}},
        {"PrimaryButton { x: 9; y: 9; width: 120; height: 120 }", {122, 122}, {124, 58, 237}},
        {"PrimaryButton { x: 9; y: 9; width: 120; height: 120; down: true }",
         {15, 15},
         {124, 58, 237}},
        {"PrimaryButton { x: 99; y: 99; width: 90; isDestructive: true }",
         {109, 109},
         over(Qt::black, danger, 0.9)},
        {"PrimaryButton { x: 99; y: 99; width: 90; isDestructive: true; down: true }",
         {109, 109},
         over(Qt::black, danger, 0.75)},
        // Half of the shadow's opacity is left at the edge of its shape, four below the button.
        {"PrimaryButton { x: 99; y: 99; width: 120; height: 60; isDestructive: true }",
         {159, 163},
         over(Qt::black, violet, 0.45 / 2)},
        {"SecondaryButton { x: 99; y: 99; width: 80 }",
         {139, 109},
         over(Qt::black, Qt::white, 0.06)},
        {"SecondaryButton { x: 99; y: 99; width: 80; down: true }",
         {139, 109},
         over(Qt::black, Qt::white, 0.1)},
        {"GlassCard { width: 99; height: 60 }", {50, 30}, glass},
        {"GlassCard { width: 99; height: 60 }", {0, 30}, over(glass, Qt::white, 0.11)},
        {"GlassCard { width: 99; height: 40000 }", {0, 99}, over(glass, Qt::white, 0.11)},
        {"GlassCard { width: 99; height: 60; selected: true }", {50, 30}, chosen},
        {"GlassCard { width: 99; height: 60; selected: true }",
         {0, 30},
         over(chosen, QColor(167, 139, 250), 0.5)},
        {"RingArc { width: 99; height: 99; diameter: 80; lineWidth: 9; end: 0.25; color: \"red\" }",
         {79, 21},
         Qt::red},
        {"RingArc { width: 99; height: 99; diameter: 80; lineWidth: 9; end: 0.25; color: \"red\" }",
         {21, 21},
         Qt::black},
    };
    for (const Case& entry : cases) {
        const QImage picture = Stage(QLatin1String(entry.qml)).picture();
        EXPECT_THAT(picture.pixelColor(entry.place), IsColor(entry.color, 6)) << entry.qml;
    }
}

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

TEST(Pixels, GlowsFollowTheWindowAndHaveNoBands)
{
    for (const QSize size : {QSize(900, 640), QSize(1400, 900)}) {
        const QImage picture =
            Stage(QStringLiteral("AuroraBackground { anchors.fill: parent }"), size).picture();
        const auto isGlow = [&](QPoint place, const QColor& glow) {
            EXPECT_THAT(picture.pixelColor(place), IsColor(over({7, 7, 12}, glow, 0.55), 14));
        };
        isGlow({120, 40}, {91, 33, 182});
        isGlow({size.width() - 110, 100}, {30, 58, 138});
        const auto green = [&](double x) {
            return picture.pixelColor(static_cast<int>(x * size.width()), size.height() - 1)
                .green();
        };
        EXPECT_GT(green(0.45), green(0.3) + 5);
        EXPECT_GT(green(0.45), green(0.6) + 5);
        int run = 0;
        for (int x = 1; x < 400; ++x) {
            const int step =
                picture.pixelColor(x, 100).red() - picture.pixelColor(x - 1, 100).red();
            ASSERT_LE(std::abs(step), 2);
            run = step == 0 ? run + 1 : 0;
            ASSERT_LT(run, 40);
        }
    }
}

TEST(Pixels, ABlurLosesNothing)
{
    Zorvane::Plane plane{61, 61, std::vector<float>(61 * 61)};
    plane.values[30 * 61 + 30] = 1;
    plane = Zorvane::gaussianBlurred(plane, 6);
    double sum = 0;
    double across = 0;
    double down = 0;
    for (int i = 0; i < 61 * 61; ++i) {
        const double value = plane.values[static_cast<std::size_t>(i)];
        sum += value;
        across += value * std::pow(i % 61 - 30, 2);
        down += value * std::pow(i / 61 - 30, 2);
    }
    EXPECT_NEAR(sum, 1, 0.001);
    EXPECT_NEAR(std::sqrt(across), 6, 0.15);
    EXPECT_NEAR(std::sqrt(down), 6, 0.15);
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
        int empty = 0;
        for (int pixel = 0; pixel < 26 * 26; ++pixel) {
            const QColor color = image.pixelColor(pixel % 26, pixel / 26);
            EXPECT_LE(color.alpha(), 0x80);
            empty += color.alpha() == 0 ? 1 : 0;
            if (color.alpha() >= 0x7e) {
                EXPECT_THAT(color, IsColor(QColor(0x34, 0xd3, 0x99), 2));
                ++drawn;
            }
        }
        EXPECT_TRUE(drawn >= 15 && drawn <= 500 && empty >= 60) << file.toStdString();
    }
}

TEST(Pixels, TheRingAndItsLegendShowTheGroups)
{
    MainWindow window;
    show(window, "results three-to-one");
    const QQuickItem& chart = window.item(QStringLiteral("DonutChart"));
    const QImage picture = window.picture();
    const QPointF centre = chart.mapToScene(chart.boundingRect().center());
    for (const double fraction : {0.01, 0.25, 0.5, 0.74, 0.76, 0.99}) {
        const double angle = 2 * std::numbers::pi * fraction;
        const QPointF place = centre + QPointF(std::sin(angle), -std::cos(angle)) * 85;
        EXPECT_THAT(picture.pixelColor(place.toPoint()),
                    IsColor(fraction < 0.75 ? violet : teal, 3));
    }
    const auto swatches = window.items([](const QQuickItem& item) {
        return item.inherits("Zorvane::RoundedBox") && item.width() == 8;
    });
    ASSERT_EQ(swatches.size(), 2U);
    EXPECT_THAT(window.colorAt(swatches[1]->mapToScene({4, 4})), IsColor(teal, 3));
}

TEST(Pixels, SheetsAndOverlaysDimTheirBackground)
{
    const QPointF place(40, 120);
    MainWindow below;
    show(below, "results typical");
    const QColor bright = below.colorAt(place);
    for (const auto& [scene, darkness] :
         {std::pair{"confirmation safe-only", 0.55}, std::pair{"results cleaning", 0.4}}) {
        MainWindow window;
        show(window, scene);
        EXPECT_THAT(window.colorAt(place), IsColor(over(bright, Qt::black, darkness), 3)) << scene;
    }
}

TEST(Pixels, CardsAnswerToSelectionAndPointer)
{
    struct Case
    {
        const char* type;
        const char* area;
        bool showsSelection;
        bool showsPointer;
    };
    for (const Case& entry : {Case{"CategoryRow", "dev-npm", true, true},
                              Case{"CategoryRow", "dev-gradle", false, true},
                              Case{"ICloudBridgeCard", nullptr, false, false}}) {
        SCOPED_TRACE(entry.area == nullptr ? entry.type : entry.area);
        MainWindow window;
        const std::string area = entry.area == nullptr ? "" : entry.area;
        if (!area.empty()) {
            play(window,
                 "area " + area + (entry.showsSelection ? ", safe" : ", review") + ", a, a=9");
        }
        play(window, "results; deselect");
        const QQuickItem& row = window.item(QLatin1String(entry.type));
        const QPoint place = row.mapToScene({6, row.height() / 2}).toPoint();
        const QColor resting = window.colorAt(place);
        if (!area.empty()) {
            play(window, "select " + area);
        }
        EXPECT_EQ(window.colorAt(place) != resting, entry.showsSelection);
        play(window, "deselect");
        QTest::mouseMove(&window.window(), QPoint(0, 0));
        QTest::mouseMove(&window.window(), place);
        window.settle();
        EXPECT_EQ(window.colorAt(place) != resting, entry.showsPointer);
    }
}

} // namespace
} // namespace ZorvaneTests
