#include "tests/Zorvane/Support/TestWindow.h"

#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

/// Into the folder that ZORVANE_PICTURES names, for whoever wants to look at them.
void savePicture(const MainWindow& window, const std::string& scene)
{
    const QString folder = qEnvironmentVariable("ZORVANE_PICTURES");
    const QQuickWindow& shown = window.window();
    const bool isSoftware = !QQuickWindow::sceneGraphBackend().isEmpty();
    const QString name = QStringLiteral("%1/%2-%3x%4-%5-%6.png")
                             .arg(folder, QString::fromStdString(scene).replace(u' ', u'-'))
                             .arg(shown.width())
                             .arg(shown.height())
                             .arg(shown.effectiveDevicePixelRatio())
                             .arg(QLatin1String(isSoftware ? "software" : "opengl"));
    EXPECT_TRUE(folder.isEmpty() || window.picture().save(name));
}

class Layout : public testing::TestWithParam<std::string>
{
};

TEST_P(Layout, KeepsLongTextsInTheSmallestWindow)
{
    constexpr qreal tolerance = 0.5;
    const std::string screen = split(GetParam(), " ")[0];
    const bool isLarge =
        std::string("results confirmation report icloud").find(screen) != std::string::npos;
    const QSize smallest(isLarge ? 900 : 520, 640);
    MainWindow window(smallest, Wording::lengthened);
    show(window, GetParam());
    ASSERT_EQ(window.window().size(), smallest);
    savePicture(window, GetParam() + "-long-texts");
    const auto texts = window.items("QQuickText");
    ASSERT_FALSE(texts.empty());
    for (const QQuickItem* text : texts) {
        SCOPED_TRACE(text->property("text").toString().left(60).toStdString());
        // Beyond their own item letters would lie on something else.
        EXPECT_LE(text->property("contentWidth").toReal(), text->width() + 1);
        EXPECT_LE(text->property("contentHeight").toReal(), text->height() + 1);
        const QRectF place = text->mapRectToScene(text->boundingRect());
        const QQuickItem* scroller = text;
        while (scroller != nullptr && !scroller->inherits("QQuickFlickable")) {
            scroller = scroller->parentItem();
        }
        EXPECT_TRUE(place.left() >= -tolerance && place.right() <= smallest.width() + tolerance);
        EXPECT_TRUE(scroller != nullptr ||
                    (place.top() >= -tolerance && place.bottom() <= smallest.height() + tolerance));
    }
}

TEST_P(Layout, IsDrawnWithoutAWarning)
{
    MainWindow window;
    show(window, GetParam());
    savePicture(window, GetParam());
}

INSTANTIATE_TEST_SUITE_P(Scenes, Layout, testing::ValuesIn(allScenes()), [](const auto& test) {
    std::string name = test.param;
    std::ranges::replace_if(
        name, [](char letter) { return !std::isalnum(letter); }, '_');
    return name;
});

} // namespace
} // namespace ZorvaneTests
