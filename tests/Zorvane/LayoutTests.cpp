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

INSTANTIATE_TEST_SUITE_P(Scenes, Layout, testing::ValuesIn(allScenes()), [](const auto& test) {
    std::string name = test.param.name;
    std::ranges::replace_if(
        name, [](char letter) { return letter == ' ' || letter == '-'; }, '_');
    return name;
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
