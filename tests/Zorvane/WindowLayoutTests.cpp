#include "tests/Zorvane/Scenes/Sample.h"
#include "tests/Zorvane/Scenes/Scene.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

namespace ZorvaneTests {
namespace {

constexpr QSize ordinary(1080, 760);
/// Half a pixel is nobody's fault.
constexpr qreal tolerance = 0.5;

bool isText(const QQuickItem& item)
{
    return item.inherits("QQuickText");
}

bool isInFlickable(const QQuickItem& item)
{
    for (const QQuickItem* parent = item.parentItem(); parent; parent = parent->parentItem()) {
        if (parent->inherits("QQuickFlickable")) {
            return true;
        }
    }
    return false;
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

std::string quoted(const QQuickItem& text)
{
    return '"' + text.property("text").toString().left(60).toStdString() + '"';
}

struct StateCase
{
    Scene scene;
    Wording wording;
};

void PrintTo(const StateCase& entry, std::ostream* stream)
{
    *stream << entry.scene.screen << ' ' << entry.scene.state;
}

std::vector<StateCase> everyState()
{
    std::vector<StateCase> cases;
    for (const Scene& scene : allScenes()) {
        cases.push_back({scene, Wording::english});
        cases.push_back({scene, Wording::lengthened});
    }
    return cases;
}

class EveryState : public testing::TestWithParam<StateCase>
{
};

TEST_P(EveryState, KeepsItsTextsInTheSmallestWindowAndWarnsOfNothing)
{
    const QSize smallest = smallestWindow(GetParam().scene);
    MainWindow window(smallest, GetParam().wording);
    GetParam().scene.show(window);
    ASSERT_EQ(window.window().size(), smallest);
    const auto texts = window.items(isText);
    ASSERT_FALSE(texts.empty());
    for (const QQuickItem* text : texts) {
        SCOPED_TRACE(quoted(*text));
        const QRectF letters = lettersOf(*text);
        EXPECT_GE(letters.left(), -tolerance);
        EXPECT_LE(letters.right(), smallest.width() + tolerance);
        // Letters beyond their own item lie on something else.
        EXPECT_LE(text->property("contentWidth").toReal(), text->width() + 1);
        if (!isInFlickable(*text)) {
            EXPECT_GE(letters.top(), -tolerance);
            EXPECT_LE(letters.bottom(), smallest.height() + tolerance);
        }
    }
    EXPECT_EQ(window.warnings().join(QLatin1Char('\n')).toStdString(), "");
}

INSTANTIATE_TEST_SUITE_P(Window, EveryState, testing::ValuesIn(everyState()), [](const auto& test) {
    std::string name = test.param.scene.screen + '_' + test.param.scene.state +
                       (test.param.wording == Wording::lengthened ? "_long_texts" : "");
    std::ranges::replace(name, '-', '_');
    return name;
});

TEST(Window, IsAsSmallAsItsScreenAllows)
{
    MainWindow window(QSize(100, 100));
    const auto waitForSize = [&](QSize size) {
        waitUntil([&] { return window.window().size() == size; });
    };
    Sample::grantAccess(window.application);
    Zorvane::AppState& state = window.open();
    waitForSize({520, 640});
    scan(state);
    waitForSize({900, 640});
    // It does not become smaller by itself, only for whoever wants it to be.
    state.startScan();
    window.window().resize(700, 700);
    waitForSize({700, 700});
    waitUntil([&] { return state.phase() == Zorvane::Phase::results; });
    waitForSize({900, 700});
    EXPECT_EQ(window.warnings().join(QLatin1Char('\n')).toStdString(), "");
}

TEST(Window, GivesItsPartsTheirWidths)
{
    struct Case
    {
        const char* screen;
        const char* state;
        /// A QML type, or the beginning of a control's accessible name after "=".
        const char* part;
        qreal least;
        qreal most;
    };
    constexpr qreal any = 10'000;
    constexpr Case cases[] = {
        {"terms", "first-run", "GlassCard", 0, 480},
        {"terms", "first-run", "=Accept and continue", 220, any},
        {"permission", "missing", "GlassCard", 0, 460},
        {"permission", "missing", "=Open System Settings", 220, any},
        {"ready", "with-permission", "=Scan my Mac", 220, any},
        {"results", "typical", "SummaryPanel", 300, 300},
        {"results", "typical", "DonutChart", 190, 190},
        {"results", "typical", "=Clean", 150, any},
        {"results", "empty", "=Clean", 150, any},
        {"confirmation", "two-review-areas", "NoticeBox", 0, 440},
        {"confirmation", "two-review-areas", "Acknowledgement", 0, 440},
        {"confirmation", "long-titles", "NoticeBox", 0, 440},
        {"confirmation", "long-titles", "Acknowledgement", 0, 440},
        {"confirmation", "zero-bytes", "=Delete", 220, any},
        {"report", "details", "SkippedSummary", 0, 470},
        {"report", "details", "SkippedPaths", 0, 470},
        {"icloud", "measuring", "Expectations", 0, 500},
        {"icloud", "busy-folder", "ICloudList", 0, 500},
        {"icloud", "busy-folder", "NoticeBox", 0, 500},
        {"icloud", "five-apps", "AppsNotice", 0, 500},
        {"icloud", "freed", "ReleaseResult", 0, 500},
        // The label of at least 170 and 26 on either side of it.
        {"icloud", "nothing-selected", "=Free up", 222, any},
    };
    std::optional<MainWindow> window;
    std::string shown;
    for (const Case& entry : cases) {
        const std::string name = std::string(entry.screen) + ' ' + entry.state;
        SCOPED_TRACE(name + ' ' + entry.part);
        if (name != shown) {
            window.emplace(ordinary);
            sceneNamed(entry.screen, entry.state).show(*window);
            shown = name;
        }
        const QString part = QString::fromLatin1(entry.part);
        const QQuickItem& item = part.startsWith(QLatin1Char('=')) ? window->control(part.mid(1))
                                                                   : window->itemOfType(part);
        EXPECT_GE(item.width(), entry.least);
        EXPECT_LE(item.width(), entry.most);
    }
}

TEST(Window, GivesItsSecondaryButtonsTheirForms)
{
    struct Case
    {
        const char* screen;
        const char* state;
        const char* button;
        int fontSize;
        qreal paddingAcross;
        qreal paddingDown;
        qreal cornerRadius;
    };
    constexpr Case cases[] = {
        {"results", "empty", "Rescan", 13, 18, 10, 12},
        {"results", "empty", "Measure", 13, 18, 10, 99},
        {"icloud", "five-apps", "Rescan", 13, 18, 10, 99},
        {"icloud", "five-apps", "Show in", 11, 12, 5, 99},
        {"confirmation", "safe-only", "Cancel", 13, 18, 10, 12},
    };
    for (const Case& entry : cases) {
        SCOPED_TRACE(entry.button);
        MainWindow window(ordinary);
        sceneNamed(entry.screen, entry.state).show(window);
        const QQuickItem& button = window.control(QLatin1String(entry.button));
        const auto font = button.property("font").value<QFont>();
        EXPECT_EQ(font.pixelSize(), entry.fontSize);
        EXPECT_EQ(font.weight(), QFont::Medium);
        EXPECT_EQ(button.property("leftPadding").toReal(), entry.paddingAcross);
        EXPECT_EQ(button.property("rightPadding").toReal(), entry.paddingAcross);
        EXPECT_EQ(button.property("topPadding").toReal(), entry.paddingDown);
        EXPECT_EQ(button.property("bottomPadding").toReal(), entry.paddingDown);
        EXPECT_EQ(button.property("cornerRadius").toReal(), entry.cornerRadius);
    }
}

TEST(Window, DividesTheTotalFromTheAreasEvenWhereThereAreNone)
{
    for (const char* state : {"safe-only", "zero-bytes"}) {
        SCOPED_TRACE(state);
        MainWindow window(ordinary);
        sceneNamed("confirmation", state).show(window);
        const QQuickItem& summary = window.itemOfType(QStringLiteral("ConfirmationSummary"));
        const auto lines = window.items([&](const QQuickItem& item) {
            return item.inherits("QQuickRectangle") && item.height() == 1 &&
                   summary.isAncestorOf(&item);
        });
        ASSERT_EQ(lines.size(), 1U);
        EXPECT_GT(lines.front()->width(), summary.width() / 2);
    }
}

TEST(Window, KeepsTheListsOfItsSheetsLow)
{
    struct Case
    {
        const char* screen;
        const char* state;
        const char* list;
        qreal most;
    };
    for (const Case& entry : {Case{"report", "details", "SkippedPaths", 110},
                              Case{"icloud", "hostile-names", "ICloudList", 220}}) {
        SCOPED_TRACE(entry.list);
        MainWindow window(ordinary);
        sceneNamed(entry.screen, entry.state).show(window);
        EXPECT_EQ(window.itemOfType(QString::fromLatin1(entry.list)).height(), entry.most);
    }
}

} // namespace
} // namespace ZorvaneTests
