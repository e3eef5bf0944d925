#include "Zorvane/Theme/Painting/GaussianBlur.h"
#include "Zorvane/Theme/Tokens/SymbolImages.h"
#include "tests/Zorvane/Support/Colors.h"
#include "tests/Zorvane/Support/Stage.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>
#include <vector>

namespace ZorvaneTests {
namespace {

using testing::AllOf;
using testing::Ge;
using testing::Le;

const QColor black(0, 0, 0);
const QColor primary(139, 92, 246);
const QColor primaryLight(167, 139, 250);
const QColor primaryDeep(124, 58, 237);
const QColor danger(248, 113, 113);

TEST(Theme, HasTheColorsOfThePalette)
{
    struct Entry
    {
        const char* name;
        int red;
        int green;
        int blue;
        double opacity;
    };
    constexpr Entry palette[] = {
        {"background", 7, 7, 12, 1},
        {"primary", 139, 92, 246, 1},
        {"primaryLight", 167, 139, 250, 1},
        {"primaryDeep", 124, 58, 237, 1},
        {"meshViolet", 91, 33, 182, 1},
        {"meshIndigo", 30, 58, 138, 1},
        {"meshTeal", 45, 212, 191, 0.5},
        {"catWhatsApp", 52, 211, 153, 1},
        {"catCaches", 139, 92, 246, 1},
        {"catDev", 45, 212, 191, 1},
        {"catOther", 96, 165, 250, 1},
        {"success", 52, 211, 153, 1},
        {"warning", 245, 166, 35, 1},
        {"danger", 248, 113, 113, 1},
        {"textPrimary", 237, 238, 244, 1},
        {"textSecondary", 237, 238, 244, 0.62},
        {"textTertiary", 237, 238, 244, 0.4},
        {"glassFill", 255, 255, 255, 0.055},
        {"glassBorder", 255, 255, 255, 0.11},
        {"glassSelectedFill", 139, 92, 246, 0.14},
        {"glassSelectedBorder", 167, 139, 250, 0.5},
    };
    const Stage stage(QStringLiteral("property QtObject theme: Theme"));
    const auto* theme = stage.window().property("theme").value<QObject*>();
    for (const Entry& entry : palette) {
        SCOPED_TRACE(entry.name);
        const auto color = theme->property(entry.name).value<QColor>();
        EXPECT_THAT(color, IsColor(QColor(entry.red, entry.green, entry.blue), 0));
        EXPECT_NEAR(color.alphaF(), entry.opacity, 0.0001);
    }
}

TEST(Theme, DigitsOfByteFiguresHaveOneWidth)
{
    const Stage stage(QStringLiteral(R"(
        Column { id: figures; objectName: "figures"
            Repeater { model: 10; Text {
                required property int index
                text: String(index).repeat(6); font: Theme.numberFont(26, Font.Black) } } })"));
    const QList<QQuickItem*> texts = stage.item(QStringLiteral("figures")).childItems();
    ASSERT_GE(texts.size(), 10);
    for (int digit = 1; digit < 10; ++digit)
        EXPECT_EQ(texts[digit]->implicitWidth(), texts[0]->implicitWidth()) << digit;
}

TEST(Theme, NamesAndFiguresAreDrawnLetterByLetter)
{
    const char* const texts[][3] = {{"fileFont", "9", "x1"}, {"numberFont", "·", " 6"}};
    for (const auto& [font, first, rest] : texts) {
        const Stage stage(QStringLiteral(R"(
            Row { objectName: "apart"
                Text { text: "%2"; font: Theme.%1(40, Font.Normal) }
                Text { text: "%3"; font: Theme.%1(40, Font.Normal) } }
            Text { objectName: "together"; text: "%2%3"; font: Theme.%1(40, Font.Normal) })")
                              .arg(font, first, rest));
        EXPECT_NEAR(stage.item(QStringLiteral("together")).implicitWidth(),
                    stage.item(QStringLiteral("apart")).implicitWidth(), 1)
            << font;
    }
}

TEST(Theme, ControlsAndSurfacesHaveTheirColors)
{
    struct Spot
    {
        QPoint place;
        QColor color;
        int tolerance;
    };
    const QString primaryButton =
        QStringLiteral("PrimaryButton { x: 100; y: 100; width: 120; height: 120; text: \"\"; %1 }");
    const QString secondaryButton =
        QStringLiteral("SecondaryButton { x: 10; y: 10; width: 80; height: 40; text: \"\"; %1 }");
    const QString card = QStringLiteral("GlassCard { x: 10; y: 10; width: 100; height: 60; %1 }");
    const QColor secondary = over(black, Qt::white, 0.06);
    const QColor secondaryDown = over(black, Qt::white, 0.10);
    const QColor glass = over(black, Qt::white, 0.055);
    const QColor selected = over(black, primary, 0.14);
    const struct
    {
        QString content;
        const char* state;
        std::vector<Spot> spots;
    } cases[] = {
        {primaryButton, "", {{{106, 106}, primaryLight, 4}, {{213, 213}, primaryDeep, 4}}},
        {primaryButton, "down: true", {{{106, 106}, primaryDeep, 4}, {{213, 213}, primaryDeep, 4}}},
        {primaryButton, "isDestructive: true", {{{106, 106}, over(black, danger, 0.9), 4}}},
        {primaryButton,
         "isDestructive: true; down: true",
         {{{106, 106}, over(black, danger, 0.75), 4}}},
        {secondaryButton,
         "",
         {{{50, 30}, secondary, 1}, {{50, 10}, over(secondary, Qt::white, 0.13), 2}}},
        {secondaryButton,
         "down: true",
         {{{50, 30}, secondaryDown, 1}, {{50, 10}, over(secondaryDown, Qt::white, 0.13), 2}}},
        {card, "", {{{60, 40}, glass, 1}, {{10, 40}, over(glass, Qt::white, 0.11), 2}}},
        {card,
         "selected: true",
         {{{60, 40}, selected, 1},
          {{10, 40}, over(selected, primaryLight, 0.5), 2},
          {{11, 40}, selected, 2},
          {{9, 40}, black, 0},
          {{10, 10}, black, 2}}},
        {QStringLiteral("GradientTile { x: 20; y: 20; symbol: \"lock.shield\"; %1 }"),
         "fromColor: \"#ff0000\"; toColor: \"#0000ff\"",
         {{{28, 28}, QColor(231, 0, 24), 4},
          {{99, 99}, QColor(24, 0, 231), 4},
          {{99, 28}, QColor(128, 0, 128), 4},
          {{22, 22}, black, 0}}},
    };
    for (const auto& [content, state, spots] : cases) {
        const QString text = content.arg(QLatin1String(state));
        SCOPED_TRACE(text.toStdString());
        const QImage picture = Stage(text).picture();
        for (const auto& [place, color, tolerance] : spots)
            EXPECT_THAT(picture.pixelColor(place), IsColor(color, tolerance)) << place.x();
    }
}

TEST(Theme, PrimaryButtonCastsAVioletShadowMostlyDownwards)
{
    const Stage stage(QStringLiteral(
        "PrimaryButton { x: 100; y: 100; width: 120; height: 60; isDestructive: true }"));
    const QImage picture = stage.picture();
    const QColor above = picture.pixelColor(160, 97);
    EXPECT_GT(above.blue(), above.green());
    EXPECT_GT(picture.pixelColor(160, 162).blue(), above.blue());
    // Half of the shadow's 0.45 is left at the edge of what casts it, here four below the button.
    EXPECT_THAT(picture.pixelColor(160, 164), IsColor(over(black, primary, 0.45 / 2), 6));
    EXPECT_THAT(picture.pixelColor(160, 210), IsColor(black, 2));
}

TEST(Theme, VeryTallGlassCardLooksLikeAShortOne)
{
    const Stage tall(QStringLiteral("GlassCard { x: 10; y: 10; width: 100; height: 40000 }"));
    const Stage shorter(QStringLiteral("GlassCard { x: 10; y: 10; width: 100; height: 1000 }"));
    const QImage tallPicture = tall.picture();
    const QImage shorterPicture = shorter.picture();
    for (const QPoint point : {QPoint(60, 100), QPoint(10, 100), QPoint(60, 10), QPoint(9, 100)})
        EXPECT_THAT(tallPicture.pixelColor(point), IsColor(shorterPicture.pixelColor(point), 2));
}

/// The column at which a row is brightest in the difference of two channels.
template <typename Brightness>
int brightestColumn(const QImage& picture, int y, Brightness brightness)
{
    // The dither moves single pixels by one step: sums over a stretch are compared.
    constexpr int reach = 40;
    int best = reach;
    int bestSum = -1;
    for (int x = reach; x < picture.width() - reach; ++x) {
        int sum = 0;
        for (int i = x - reach; i <= x + reach; ++i)
            sum += brightness(picture.pixelColor(i, y));
        if (sum > bestSum) {
            bestSum = sum;
            best = x;
        }
    }
    return best;
}

TEST(Theme, GlowsFollowTheSizeOfTheWindow)
{
    for (const QSize size : {QSize(900, 640), QSize(1400, 900)}) {
        SCOPED_TRACE(size.width());
        const Stage stage(QStringLiteral("AuroraBackground { anchors.fill: parent }"), size);
        const QImage picture = stage.picture();
        const QColor base(7, 7, 12);

        const auto indigo = [](const QColor& color) { return color.blue() - color.red(); };
        EXPECT_NEAR(brightestColumn(picture, 100, indigo), size.width() - 110, 30);
        const auto teal = [](const QColor& color) { return color.green(); };
        EXPECT_NEAR(brightestColumn(picture, size.height() - 1, teal), 0.45 * size.width(), 12);

        EXPECT_THAT(picture.pixelColor(120, 40),
                    IsColor(over(base, QColor(91, 33, 182), 0.55), 12));
        EXPECT_THAT(picture.pixelColor(size.width() - 110, 100),
                    IsColor(over(base, QColor(30, 58, 138), 0.55), 14));
        EXPECT_THAT(picture.pixelColor(size.width() - 1, size.height() - 1), IsColor(base, 2));
    }
}

TEST(Theme, GlowsStaySoftWithoutBands)
{
    const Stage stage(QStringLiteral("AuroraBackground { anchors.fill: parent }"), QSize(900, 640));
    const QImage picture = stage.picture();
    int longestRun = 0;
    int run = 0;
    for (int x = 1; x < 400; ++x) {
        const int step =
            std::abs(picture.pixelColor(x, 100).red() - picture.pixelColor(x - 1, 100).red());
        EXPECT_LE(step, 2) << x;
        run = step == 0 ? run + 1 : 0;
        longestRun = std::max(longestRun, run);
    }
    EXPECT_LT(longestRun, 40);
}

TEST(Theme, EverySymbolIsDrawnInItsTint)
{
    const QString names = QStringLiteral(
        "doc.text.magnifyingglass eye.slash.fill lock.shield internaldrive.fill "
        "checkmark.shield.fill exclamationmark.triangle exclamationmark.triangle.fill "
        "arrow.clockwise lock.fill shield.fill chevron.down chevron.right checkmark.circle.fill "
        "minus.circle.fill icloud icloud.fill icloud.and.arrow.up clock "
        "clock.badge.exclamationmark shippingbox shippingbox.fill folder.fill checkmark xmark "
        "minus plus square square.on.square ellipsis line.3.horizontal");
    Zorvane::SymbolImageProvider provider;
    for (const QString& name : names.split(QLatin1Char(' '))) {
        SCOPED_TRACE(name.toStdString());
        QSize size;
        const QImage image =
            provider.requestImage(name + QStringLiteral("?8034d399"), &size, QSize(26, 26));
        ASSERT_EQ(image.size(), QSize(26, 26));
        EXPECT_EQ(size, image.size());
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
        EXPECT_THAT(drawn, AllOf(Ge(15), Le(500)));
        EXPECT_GE(empty, 60);
    }
    QSize size;
    EXPECT_TRUE(
        provider.requestImage(QStringLiteral("no.such?ffffffff"), &size, QSize(26, 26)).isNull());
}

TEST(Spinner, TurnsOnlyWhereItCanBeSeen)
{
    const Stage stage(QStringLiteral("Spinner { objectName: \"spinner\"\n"
                                     "Component.onCompleted: Theme.animated = true }"));
    QQuickItem& spinner = stage.item(QStringLiteral("spinner"));
    const auto turns = [&] { return spinner.property("turns").toBool(); };
    EXPECT_TRUE(turns());
    stage.window().setWindowState(Qt::WindowMinimized);
    EXPECT_FALSE(turns());
    stage.window().setWindowState(Qt::WindowNoState);
    EXPECT_TRUE(turns());
    spinner.setVisible(false);
    EXPECT_FALSE(turns());
}

TEST(GaussianBlur, SpreadsAPointByItsRadiusAndLosesNothing)
{
    constexpr int side = 61;
    const auto at = [](int x, int y) {
        return static_cast<std::size_t>(y) * side + static_cast<std::size_t>(x);
    };
    Zorvane::Plane plane{side, side, std::vector<float>(at(0, side))};
    plane.values[at(30, 30)] = 1;
    const Zorvane::Plane blurred = Zorvane::gaussianBlurred(plane, 6);
    double sum = 0;
    double varianceX = 0;
    double varianceY = 0;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const double value = blurred.values[at(x, y)];
            sum += value;
            varianceX += value * (x - 30) * (x - 30);
            varianceY += value * (y - 30) * (y - 30);
        }
    }
    EXPECT_NEAR(sum, 1, 0.001);
    EXPECT_NEAR(std::sqrt(varianceX), 6, 0.15);
    EXPECT_NEAR(std::sqrt(varianceY), 6, 0.15);
}

} // namespace
} // namespace ZorvaneTests
