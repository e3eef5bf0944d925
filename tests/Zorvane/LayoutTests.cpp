#include "tests/Zorvane/Scenes/Scene.h"

#include <gtest/gtest.h>

#include <optional>

namespace ZorvaneTests {
namespace {

bool isInFlickable(const QQuickItem* item)
{
    while (item != nullptr && !item->inherits("QQuickFlickable")) {
        item = item->parentItem();
    }
    return item != nullptr;
}

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
    const auto texts =
        window.items([](const QQuickItem& item) { return item.inherits("QQuickText"); });
    ASSERT_FALSE(texts.empty());
    for (const QQuickItem* text : texts) {
        SCOPED_TRACE(text->property("text").toString().left(60).toStdString());
        const QRectF letters = lettersOf(*text);
        EXPECT_GE(letters.left(), -tolerance);
        EXPECT_LE(letters.right(), smallest.width() + tolerance);
        // Beyond their own item letters would lie on something else.
        EXPECT_LE(text->property("contentWidth").toReal(), text->width() + 1);
        EXPECT_LE(text->property("contentHeight").toReal(), text->height() + 1);
        if (!isInFlickable(text)) {
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

/// What a property of a part, a QML type or a control after "=", is at least and at most.
TEST(Parts, HaveTheirMeasures)
{
    struct Case
    {
        const char* scene;
        const char* part;
        const char* property;
        qreal least;
        qreal most;
    };
    constexpr qreal any = 10'000;
    constexpr Case cases[] = {
        {"terms first-run", "GlassCard", "width", 0, 480},
        {"terms first-run", "=Accept and continue", "width", 220, any},
        {"permission missing", "GlassCard", "width", 0, 460},
        {"permission missing", "=Open System Settings", "width", 220, any},
        {"ready with-permission", "=Scan my Mac", "width", 220, any},
        {"results typical", "SummaryPanel", "width", 300, 300},
        {"results typical", "DonutChart", "width", 190, 190},
        {"results typical", "=Measure", "cornerRadius", 99, 99},
        {"results empty", "=Clean", "width", 150, any},
        {"results empty", "=Rescan", "cornerRadius", 12, 12},
        {"results empty", "=Rescan", "leftPadding", 18, 18},
        {"results empty", "=Rescan", "bottomPadding", 10, 10},
        {"confirmation long-titles", "NoticeBox", "width", 0, 440},
        {"confirmation long-titles", "Acknowledgement", "width", 0, 440},
        {"confirmation zero-bytes", "=Delete", "width", 220, any},
        {"report details", "SkippedSummary", "width", 0, 470},
        {"report details", "SkippedPaths", "height", 110, 110},
        {"icloud measuring", "Expectations", "width", 0, 500},
        {"icloud hostile-names", "ICloudList", "height", 220, 220},
        {"icloud busy-folder", "NoticeBox", "width", 0, 500},
        {"icloud five-apps", "AppsNotice", "width", 0, 500},
        {"icloud five-apps", "=Show in", "leftPadding", 12, 12},
        {"icloud freed", "ReleaseResult", "width", 0, 500},
        // A label of at least 170 with 26 on either side.
        {"icloud nothing-selected", "=Free up", "width", 222, any},
    };
    std::optional<MainWindow> window;
    std::string shown;
    for (const Case& entry : cases) {
        SCOPED_TRACE(std::string(entry.scene) + ' ' + entry.part + ' ' + entry.property);
        if (entry.scene != shown) {
            show(window.emplace(), entry.scene);
            shown = entry.scene;
        }
        const QString part = QString::fromLatin1(entry.part);
        const QQuickItem& item =
            part.startsWith(u'=') ? window->control(part.mid(1)) : window->item(part);
        EXPECT_GE(item.property(entry.property).toReal(), entry.least);
        EXPECT_LE(item.property(entry.property).toReal(), entry.most);
    }
}

} // namespace
} // namespace ZorvaneTests
