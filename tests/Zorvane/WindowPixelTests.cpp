#include "tests/Zorvane/Scenes/Sample.h"
#include "tests/Zorvane/Scenes/Scene.h"
#include "tests/Zorvane/Support/Colors.h"

#include <QTest>

#include <gtest/gtest.h>

#include <numbers>

namespace ZorvaneTests {
namespace {

constexpr QSize ordinary(1080, 760);

const QColor background(7, 7, 12);
const QColor danger(248, 113, 113);
const QColor ofWhatsApp(52, 211, 153);
const QColor ofCaches(139, 92, 246);
const QColor ofDev(45, 212, 191);

void show(MainWindow& window, const std::string& screen, const std::string& state)
{
    sceneNamed(screen, state).show(window);
}

QPointF centreOf(const QQuickItem& item)
{
    return item.mapToScene({item.width() / 2, item.height() / 2});
}

/// In the middle of the ring's line or further out, at a fraction of the circle from twelve
/// o'clock, clockwise.
QPointF onRing(const QQuickItem& chart, double fraction, double outwards = 0)
{
    const double angle = 2 * std::numbers::pi * fraction;
    return centreOf(chart) + QPointF(std::sin(angle), -std::cos(angle)) * (170.0 / 2 + outwards);
}

TEST(WindowPixels, TheRingShowsThreeQuartersAndOneQuarter)
{
    MainWindow window(ordinary);
    show(window, "results", "three-to-one");
    const QQuickItem& chart = window.itemOfType(QStringLiteral("DonutChart"));
    const QImage picture = window.picture();
    const auto color = [&](double fraction) {
        return picture.pixelColor(onRing(chart, fraction).toPoint());
    };
    for (const double fraction : {0.01, 0.1, 0.25, 0.5, 0.74}) {
        EXPECT_THAT(color(fraction), IsColor(ofCaches, 3)) << fraction;
    }
    for (const double fraction : {0.76, 0.85, 0.99}) {
        EXPECT_THAT(color(fraction), IsColor(ofDev, 3)) << fraction;
    }
    // The line is 13 wide, with nothing of it beyond.
    for (const double outwards : {-9.0, -5.0, 5.0, 9.0}) {
        const QColor pixel = picture.pixelColor(onRing(chart, 0.25, outwards).toPoint());
        EXPECT_EQ(testing::Value(pixel, IsColor(ofCaches, 60)), std::abs(outwards) < 6.5);
    }
}

TEST(WindowPixels, TheRingOfNothingIsItsTrack)
{
    MainWindow window(ordinary);
    show(window, "results", "empty");
    const QQuickItem& chart = window.itemOfType(QStringLiteral("DonutChart"));
    const QImage picture = window.picture();
    for (const double fraction : {0.0, 0.25, 0.5, 0.75}) {
        const auto color = [&](double outwards) {
            return picture.pixelColor(onRing(chart, fraction, outwards).toPoint());
        };
        // The glow below changes slowly.
        const QColor beside = over(color(-10), color(10), 0.5);
        EXPECT_THAT(color(0), IsColor(over(beside, Qt::white, 0.08), 3)) << fraction;
    }
}

TEST(WindowPixels, TheLegendShowsTheColorsOfTheGroups)
{
    MainWindow window(ordinary);
    Sample::addTypicalAreas(window.application);
    window.openResults();
    const auto swatches = window.items([](const QQuickItem& item) {
        return item.inherits("Zorvane::RoundedBox") && item.width() == 8 && item.height() == 8;
    });
    const QImage picture = window.picture();
    // Local snapshots hold no bytes, so nothing of another kind is shown.
    const QColor expected[] = {ofWhatsApp, ofCaches, ofDev};
    ASSERT_EQ(swatches.size(), std::size(expected));
    for (std::size_t i = 0; i < swatches.size(); ++i) {
        EXPECT_THAT(picture.pixelColor(centreOf(*swatches[i]).toPoint()), IsColor(expected[i], 2));
    }
}

TEST(WindowPixels, SheetsLieOnTheBackgroundColorAndDimWhatIsBelow)
{
    MainWindow window(ordinary);
    show(window, "confirmation", "safe-only");
    const QQuickItem& panel = window.itemOfType(QStringLiteral("SheetPanel"));
    EXPECT_THAT(window.colorAt(panel.mapToScene({12, panel.height() / 2})), IsColor(background, 1));

    MainWindow below(ordinary);
    show(below, "results", "typical");
    const QPointF place(40, 120);
    EXPECT_THAT(window.colorAt(place), IsColor(over(below.colorAt(place), Qt::black, 0.55), 3));
}

TEST(WindowPixels, TheCleaningOverlayDimsTheScreen)
{
    MainWindow window(ordinary);
    show(window, "results", "cleaning");
    MainWindow below(ordinary);
    show(below, "results", "typical");
    for (const QPointF place : {QPointF(40, 120), QPointF(540, 20), QPointF(700, 700)}) {
        EXPECT_THAT(window.colorAt(place), IsColor(over(below.colorAt(place), Qt::black, 0.4), 3));
    }
}

/// The colour of a button's fill near its left edge, where no letter is.
QColor fillOf(const MainWindow& window, const QQuickItem& button)
{
    return window.colorAt(button.mapToScene({10, button.height() / 2}));
}

TEST(WindowPixels, ButtonsWithNothingToDoAreHalfAsOpaque)
{
    struct Case
    {
        const char* name;
        const char* screen;
        const char* disabledState;
        const char* enabledState;
    };
    constexpr Case cases[] = {
        {"Clean", "results", "nothing-selected", "typical"},
        {"Delete", "confirmation", "two-review-areas", "acknowledged"},
        {"Free up", "icloud", "nothing-selected", "selected"},
    };
    for (const Case& entry : cases) {
        SCOPED_TRACE(entry.name);
        const QString name = QString::fromLatin1(entry.name);
        MainWindow disabled(ordinary);
        show(disabled, entry.screen, entry.disabledState);
        QQuickItem& button = disabled.control(name);
        EXPECT_FALSE(button.isEnabled());
        const QColor half = fillOf(disabled, button);
        button.setOpacity(0);
        const QColor below = fillOf(disabled, button);
        MainWindow enabled(ordinary);
        show(enabled, entry.screen, entry.enabledState);
        EXPECT_TRUE(enabled.control(name).isEnabled());
        const QColor whole = fillOf(enabled, enabled.control(name));
        EXPECT_THAT(half, IsColor(over(below, whole, 0.5), 6));
    }
}

TEST(WindowPixels, TheDestructiveButtonHasTheColorOfDanger)
{
    MainWindow window(ordinary);
    show(window, "confirmation", "acknowledged");
    EXPECT_THAT(fillOf(window, window.control(QStringLiteral("Delete"))),
                IsColor(over(background, danger, 0.9), 3));
}

TEST(WindowPixels, ChosenCategoriesHaveTheSelectedLookUnlessTheyWantReview)
{
    MainWindow window(ordinary);
    show(window, "results", "typical");
    window.state().selectAll("dev-gradle");
    const QImage chosen = window.picture();
    const auto categories = window.state().categories();
    const auto cards = window.items(
        [](const QQuickItem& item) { return isOfType(item, QStringLiteral("CardSlice")); });
    ASSERT_GE(cards.size(), 3U);
    for (const auto& category : categories) {
        window.state().deselectAll(category.rule.id);
    }
    const QImage plain = window.picture();
    for (std::size_t i = 0; i < 3; ++i) {
        SCOPED_TRACE(categories[i].rule.id);
        const QPoint place = cards[i]->mapToScene({8, cards[i]->height() / 2}).toPoint();
        const bool isSafe = categories[i].rule.tier == CleanCore::RuleTier::safe;
        EXPECT_EQ(chosen.pixelColor(place).blue() > plain.pixelColor(place).blue() + 10, isSafe);
        EXPECT_EQ(chosen.pixelColor(place) == plain.pixelColor(place), !isSafe);
    }
}

TEST(WindowPixels, CategoriesAnswerToThePointerAndTheCardOfTheCloudDriveDoesNot)
{
    for (const auto& [type, answers] :
         {std::pair{"CategoryRow", true}, std::pair{"ICloudBridgeCard", false}}) {
        SCOPED_TRACE(type);
        MainWindow window(ordinary);
        show(window, "results", "three-to-one");
        const QQuickItem& row = window.itemOfType(QLatin1String(type));
        const QPoint place = row.mapToScene({6, row.height() / 2}).toPoint();
        const QColor resting = window.colorAt(place);
        QTest::mouseMove(&window.window(), place);
        window.settle();
        EXPECT_EQ(window.colorAt(place) != resting, answers);
        QTest::mousePress(&window.window(), Qt::LeftButton, {}, place);
        window.settle();
        EXPECT_EQ(window.colorAt(place) != resting, answers);
        QTest::mouseRelease(&window.window(), Qt::LeftButton, {}, QPoint(0, 0));
    }
}

} // namespace
} // namespace ZorvaneTests
