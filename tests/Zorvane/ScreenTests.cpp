#include "tests/Zorvane/Support/Stage.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace ZorvaneTests {
namespace {

const QString arcs = QStringLiteral("component Arc: RingArc { width: 190; height: 190; "
                                    "diameter: 170; lineWidth: 13 }\n");

/// On a ring in the middle of 190 × 190, clockwise from the top.
QColor onRing(const QImage& picture, double fraction, double radius)
{
    const double angle = 2 * std::numbers::pi * fraction;
    return picture.pixelColor(static_cast<int>(std::floor(95 + radius * std::sin(angle))),
                              static_cast<int>(std::floor(95 - radius * std::cos(angle))));
}

TEST(RingArc, RunsClockwiseFromTwelveOClock)
{
    const Stage stage(arcs + QStringLiteral("Arc { end: 0.75; color: \"red\" }"
                                            "Arc { start: 0.75; color: \"lime\" }"));
    const QImage picture = stage.picture();
    for (const double fraction : {0.01, 0.25, 0.5, 0.74}) {
        EXPECT_EQ(onRing(picture, fraction, 85), QColor(Qt::red)) << fraction;
    }
    for (const double fraction : {0.76, 0.875, 0.99}) {
        EXPECT_EQ(onRing(picture, fraction, 85), QColor(Qt::green)) << fraction;
    }
}

TEST(RingArc, IsALineAroundItsDiameter)
{
    const Stage stage(arcs + QStringLiteral("Arc { color: \"red\" }"));
    const QImage picture = stage.picture();
    for (const double fraction : {0.0, 0.3, 0.6, 0.9}) {
        EXPECT_EQ(onRing(picture, fraction, 80), QColor(Qt::red)) << fraction;
        EXPECT_EQ(onRing(picture, fraction, 90), QColor(Qt::red)) << fraction;
        EXPECT_EQ(onRing(picture, fraction, 76), QColor(Qt::black)) << fraction;
        EXPECT_EQ(onRing(picture, fraction, 94), QColor(Qt::black)) << fraction;
    }
}

TEST(RingArc, IsNothingWithoutAPartOfTheCircle)
{
    const Stage stage(arcs + QStringLiteral("Arc { end: 0; color: \"red\" }"));
    EXPECT_EQ(onRing(stage.picture(), 0, 85), QColor(Qt::black));
}

TEST(CardPart, MakesOneBoxWithThePartsBelow)
{
    const auto part = [](int y, int height, bool isFirst, bool isLast) {
        return QStringLiteral("CardPart { y: %1; width: 200; height: %2; isFirst: %3; isLast: %4; "
                              "cornerRadius: 14; color: \"#40ffffff\"; outlineColor: \"#80ff0000\" "
                              "}\n")
            .arg(y)
            .arg(height)
            .arg(isFirst ? QStringLiteral("true") : QStringLiteral("false"),
                 isLast ? QStringLiteral("true") : QStringLiteral("false"));
    };
    const QSize size(200, 120);
    const Stage whole(part(0, 120, true, true), size);
    const Stage parts(
        part(0, 41, true, false) + part(41, 30, false, false) + part(71, 49, false, true), size);
    EXPECT_EQ(parts.picture(), whole.picture());
}

/// Long texts, as other languages have them, and the largest figure that there is.
TEST(CategoryRow, ShortensItsTitleAndNothingElse)
{
    const Stage stage(QStringLiteral("CategoryRow { objectName: \"row\"; width: 544; index: 0; "
                                     "title: \"%1\"; countText: \"100.000 Objekte\"; "
                                     "sizeText: \"999.99 PB\"; isSelected: false; "
                                     "isSelectable: true; isDiagnostic: true; "
                                     "isReviewRequired: true; hadAccessErrors: true; "
                                     "isExpanded: false; isLast: true; hasSelectedLook: false }")
                          .arg(QStringLiteral("Zwischenspeicher ").repeated(6)),
                      QSize(544, 100));
    const QQuickItem& row = stage.item(QStringLiteral("row"));
    int shortened = 0;
    for (const QObject* text : row.findChildren<QObject*>()) {
        if (!text->inherits("QQuickText")) {
            continue;
        }
        const auto& item = *qobject_cast<const QQuickItem*>(text);
        const qreal right = item.mapToItem(&row, QPointF(item.width(), 0)).x();
        EXPECT_LE(right, 530) << text->property("text").toString().toStdString();
        shortened += text->property("truncated").toBool() ? 1 : 0;
    }
    EXPECT_EQ(shortened, 1);
}

} // namespace
} // namespace ZorvaneTests
