#include "tests/Zorvane/Scenes/Scene.h"

#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

/// Into the folder that ZORVANE_PICTURES names, for whoever wants to look at them.
void savePicture(const MainWindow& window, const Scene& scene, const char* wording)
{
    const QString folder = qEnvironmentVariable("ZORVANE_PICTURES");
    const QQuickWindow& shown = window.window();
    const bool isSoftware = !QQuickWindow::sceneGraphBackend().isEmpty();
    const QString name = QStringLiteral("%1/%2%3-%4x%5-%6-%7.png")
                             .arg(folder, QString::fromStdString(scene.name).replace(u' ', u'-'),
                                  QLatin1String(wording))
                             .arg(shown.width())
                             .arg(shown.height())
                             .arg(shown.effectiveDevicePixelRatio())
                             .arg(QLatin1String(isSoftware ? "software" : "opengl"));
    EXPECT_TRUE(folder.isEmpty() || window.picture().save(name));
}

class Layout : public testing::TestWithParam<Scene>
{
};

TEST_P(Layout, KeepsLongTextsInTheSmallestWindow)
{
    constexpr qreal tolerance = 0.5;
    const QSize smallest = smallestWindow(GetParam());
    MainWindow window(smallest, Wording::lengthened);
    play(window, GetParam().steps);
    ASSERT_EQ(window.window().size(), smallest);
    savePicture(window, GetParam(), "-long-texts");
    const auto texts = window.itemsOfClass("QQuickText");
    ASSERT_FALSE(texts.empty());
    for (const QQuickItem* text : texts) {
        SCOPED_TRACE(text->property("text").toString().left(60).toStdString());
        const QRectF place = text->mapRectToScene(text->boundingRect());
        EXPECT_GE(place.left(), -tolerance);
        EXPECT_LE(place.right(), smallest.width() + tolerance);
        // Beyond their own item letters would lie on something else.
        EXPECT_LE(text->property("contentWidth").toReal(), text->width() + 1);
        EXPECT_LE(text->property("contentHeight").toReal(), text->height() + 1);
        const QQuickItem* scroller = text;
        while (scroller != nullptr && !scroller->inherits("QQuickFlickable")) {
            scroller = scroller->parentItem();
        }
        if (scroller == nullptr) {
            EXPECT_GE(place.top(), -tolerance);
            EXPECT_LE(place.bottom(), smallest.height() + tolerance);
        }
    }
}

TEST_P(Layout, IsDrawnWithoutAWarning)
{
    MainWindow window;
    play(window, GetParam().steps);
    savePicture(window, GetParam(), "");
}

INSTANTIATE_TEST_SUITE_P(Scenes, Layout, testing::ValuesIn(allScenes()), [](const auto& test) {
    return QString::fromStdString(test.param.name)
        .replace(u' ', u'_')
        .replace(u'-', u'_')
        .toStdString();
});

} // namespace
} // namespace ZorvaneTests
