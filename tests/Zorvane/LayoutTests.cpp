#include "tests/Zorvane/Scenes/Scene.h"

#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

/// Where the letters of a text are, in the window.
QRectF lettersOf(const QQuickItem& text)
{
    const qreal width = text.property("contentWidth").toReal();
    const int alignment = text.property("effectiveHorizontalAlignment").toInt();
    const qreal room = text.width() - width;
    const qreal left = alignment == Qt::AlignRight     ? room
                       : alignment == Qt::AlignHCenter ? room / 2
                                                       : 0;
    return text.mapRectToScene({left, 0, width, text.property("contentHeight").toReal()});
}

/// Into the folder that ZORVANE_PICTURES names, for whoever wants to look at them.
void savePicture(const MainWindow& window, const Scene& scene, const char* wording)
{
    const QString folder = qEnvironmentVariable("ZORVANE_PICTURES");
    const QQuickWindow& shown = window.window();
    const QString name = QStringLiteral("%1/%2%3-%4x%5-%6-%7.png")
                             .arg(folder, QString::fromStdString(scene.name).replace(u' ', u'-'),
                                  QLatin1String(wording))
                             .arg(shown.width())
                             .arg(shown.height())
                             .arg(shown.effectiveDevicePixelRatio())
                             .arg(QQuickWindow::sceneGraphBackend());
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
        const QRectF letters = lettersOf(*text);
        EXPECT_GE(letters.left(), -tolerance);
        EXPECT_LE(letters.right(), smallest.width() + tolerance);
        // Beyond their own item letters would lie on something else.
        EXPECT_LE(text->property("contentWidth").toReal(), text->width() + 1);
        EXPECT_LE(text->property("contentHeight").toReal(), text->height() + 1);
        const QQuickItem* scroller = text;
        while (scroller != nullptr && !scroller->inherits("QQuickFlickable")) {
            scroller = scroller->parentItem();
        }
        if (scroller == nullptr) {
            EXPECT_GE(letters.top(), -tolerance);
            EXPECT_LE(letters.bottom(), smallest.height() + tolerance);
        }
    }
}

TEST_P(Layout, IsDrawnWithoutAWarning)
{
    std::vector sizes = {QSize(1080, 760)};
    if (qEnvironmentVariableIsSet("ZORVANE_PICTURES") &&
        !qEnvironmentVariableIsSet("QT_SCALE_FACTOR")) {
        sizes.insert(sizes.end(), {smallestWindow(GetParam()), QSize(2560, 1440)});
    }
    for (const QSize size : sizes) {
        MainWindow window(size);
        play(window, GetParam().steps);
        savePicture(window, GetParam(), "");
    }
}

INSTANTIATE_TEST_SUITE_P(Scenes, Layout, testing::ValuesIn(allScenes()), [](const auto& test) {
    return QString::fromStdString(test.param.name)
        .replace(u' ', u'_')
        .replace(u'-', u'_')
        .toStdString();
});

TEST(WindowSize, IsAsSmallAsTheScreenAllows)
{
    MainWindow window(QSize(100, 100));
    const auto waitFor = [&](QSize size) {
        waitUntil([&] { return window.window().size() == size; });
    };
    play(window, "access; open");
    waitFor({520, 640});
    scan(window.state());
    waitFor({900, 640});
    // It grows by itself, but shrinks only by hand.
    window.state().startScan();
    window.window().resize(700, 700);
    waitFor({700, 700});
    waitUntil([&] { return window.state().phase() == Zorvane::Phase::results; });
    waitFor({900, 700});
}

} // namespace
} // namespace ZorvaneTests
