#include "tests/Zorvane/Scenes/Scene.h"

#include <QTest>

#include <gmock/gmock.h>

namespace ZorvaneTests {
namespace {

const QString del = QStringLiteral("Delete ");
const char* const twoAreas = "area caches, safe, caches, a=100; area movies, review, movies, b=200;"
                             "results; select movies";

bool isIn(const QQuickItem* item, const QStringList& types)
{
    for (; item != nullptr; item = item->parentItem()) {
        for (const QString& type : types) {
            if (isOfType(*item, type)) {
                return true;
            }
        }
    }
    return false;
}

/// The type of the topmost thing, what else can be used, and a control that cannot.
TEST(Sheets, AssistiveToolsCanUseNothingBelow)
{
    struct Case
    {
        const char* scene;
        QString above;
        QString besides;
        const char* below;
    };
    const QString titleBar = QStringLiteral("TitleBar");
    const Case cases[] = {
        {"confirmation two-review-areas", QStringLiteral("SheetPanel"), titleBar, "Rescan"},
        {"report details", QStringLiteral("SheetPanel"), titleBar, "Rescan"},
        {"icloud selected", QStringLiteral("SheetPanel"), titleBar, "Clean"},
        {"results cleaning", QStringLiteral("BusyOverlay"), titleBar, "Rescan"},
        {"results closing", QStringLiteral("BusyOverlay"), {}, "Close"},
        {"shell menu", QStringLiteral("ApplicationMenuItem"), {}, "Scan my"},
        {"shell about", QStringLiteral("SheetPanel"), {}, "Scan my"},
        {"shell update-offered", QStringLiteral("SheetPanel"), {}, "Menu"},
    };
    for (const Case& entry : cases) {
        SCOPED_TRACE(entry.scene);
        MainWindow window;
        show(window, entry.scene);
        window.activate();
        const auto phase = window.state().phase();
        for (const QQuickItem* item : window.items([](const QQuickItem& each) {
                 return each.metaObject()->indexOfSignal("clicked()") >= 0;
             })) {
            const QString description = accessible(*item).text(QAccessible::Description);
            const bool isAbove = isIn(item, {entry.above, entry.besides});
            EXPECT_TRUE(isAbove || !item->isEnabled())
                << item->property("text").toString().toStdString();
            EXPECT_TRUE(isAbove || description == QStringLiteral("Not available"));
        }
        const QQuickItem& below = window.control(QLatin1String(entry.below));
        if (entry.above != QStringLiteral("ApplicationMenuItem")) {
            act(below, QAccessibleActionInterface::setFocusAction());
            EXPECT_TRUE(window.hasFocusIn(entry.above));
        }
        act(below);
        QTest::mouseClick(&window.window(), Qt::LeftButton, {}, QPoint(120, 300));
        EXPECT_EQ(window.state().phase(), phase);
    }
}

TEST(Sheets, KeepTheKeyboardAndGiveItBack)
{
    struct Case
    {
        const char* steps;
        const char* from;
        const char* open;
        /// In the order of the Tab key, which comes back to the first.
        QStringList stops;
        /// Not where something else had the keyboard in between.
        bool givesRingBack = true;
    };
    const Case cases[] = {
        {"area a, safe, a, a=1; results",
         "Clean",
         "confirm",
         {QStringLiteral("Cancel"), QStringLiteral("Delete 1 byte permanently")}},
        {"area a, safe, a, a=1; results",
         "Rescan",
         "clean",
         {QStringLiteral("Scan again"), QStringLiteral("Close")},
         false},
        {"results",
         "Rescan",
         "sheet; measured",
         {QStringLiteral("Close"), QStringLiteral("Rescan")}},
        {"access; open",
         "Scan my",
         "update News",
         {QStringLiteral("Close"), QStringLiteral("Open download page")},
         false},
    };
    for (const Case& entry : cases) {
        SCOPED_TRACE(entry.open);
        MainWindow window;
        play(window, entry.steps);
        window.activate();
        window.control(QLatin1String(entry.from)).forceActiveFocus(Qt::TabFocusReason);
        play(window, entry.open);
        for (qsizetype stop = 0; stop <= entry.stops.size(); ++stop) {
            EXPECT_EQ(window.focused(), entry.stops[stop % entry.stops.size()]);
            window.key(Qt::Key_Tab);
        }
        window.key(Qt::Key_Tab, Qt::ShiftModifier);
        EXPECT_EQ(window.focused(), entry.stops.front());
        window.key(Qt::Key_Tab, Qt::ShiftModifier);
        EXPECT_EQ(window.focused(), entry.stops.back());
        window.key(Qt::Key_Escape);
        EXPECT_TRUE(window.focused().startsWith(QLatin1String(entry.from)));
        const bool hasRing = window.window().activeFocusItem()->property("visualFocus").toBool();
        EXPECT_TRUE(hasRing || !entry.givesRingBack);
    }
}

TEST(Sheets, KeepTheKeyboardWhenTheFocusedControlIsHidden)
{
    MainWindow window;
    play(window, "cloud a, 1, 1; results; sheet; measured");
    window.activate();
    window.control(QStringLiteral("Rescan")).forceActiveFocus(Qt::TabFocusReason);
    window.application.disk->onVisit = [gate = window.gate](const std::string&) { gate->pass(); };
    window.key(Qt::Key_Space);
    window.key(Qt::Key_Tab);
    EXPECT_EQ(window.focused(), QStringLiteral("Close"));
}

/// A clean ends below the menu or the About sheet: its report waits for the keyboard.
TEST(Sheets, TheKeyboardGoesToTheTopmost)
{
    for (const char* steps : {"", "menu", "menu; about"}) {
        SCOPED_TRACE(steps);
        MainWindow window;
        show(window, "results cleaning");
        window.activate();
        play(window, steps);
        window.gate->open();
        waitUntil([&] { return !window.state().isCleaning(); });
        window.settle();
        if (*steps != '\0') {
            EXPECT_FALSE(window.hasFocusIn(QStringLiteral("ReportSheet")));
            window.key(Qt::Key_Escape);
            EXPECT_TRUE(window.state().hasCleaningReport());
        }
        EXPECT_TRUE(window.hasFocusIn(QStringLiteral("ReportSheet")));
        window.key(Qt::Key_Escape);
        EXPECT_TRUE(window.hasFocusIn(QStringLiteral("ResultsList")));
    }
}

TEST(Sheets, ReturnNeverDeletes)
{
    MainWindow window;
    play(window, "area caches, safe, caches, a=100; results; confirm");
    window.control(del).forceActiveFocus(Qt::TabFocusReason);
    window.key(Qt::Key_Return);
    window.key(Qt::Key_Enter);
    EXPECT_TRUE(window.state().showConfirmation());
    window.key(Qt::Key_Tab);
    window.key(Qt::Key_Return);
    EXPECT_FALSE(window.state().showConfirmation());
    EXPECT_TRUE(window.application.disk->removed().empty());
}

TEST(Sheets, ReviewIsAcknowledgedEachTime)
{
    MainWindow window;
    play(window, twoAreas);
    for (int opening = 0; opening < 2; ++opening) {
        play(window, "confirm");
        const QQuickItem& button = window.control(QStringLiteral("Delete 300 bytes"));
        EXPECT_FALSE(button.isEnabled());
        act(button);
        window.control(QStringLiteral("I understand")).forceActiveFocus(Qt::TabFocusReason);
        window.key(Qt::Key_Space);
        EXPECT_TRUE(button.isEnabled());
        window.key(Qt::Key_Escape);
    }
    EXPECT_TRUE(window.application.disk->removed().empty());
    window.state().deselectAll("movies");
    play(window, "confirm");
    EXPECT_FALSE(window.has(QStringLiteral("I understand")));
    window.click(QStringLiteral("Delete 100 bytes"));
    waitUntil([&] { return window.state().hasCleaningReport(); });
    EXPECT_EQ(window.application.disk->removed(), Strings{"/home/me/caches/a"});
}

TEST(Sheets, ReleaseTheTickedDownloads)
{
    MainWindow window;
    play(window, "cloud Work, 1, 10, Tool.app=5; cloud Home, 1, 3; hold releasing; results; sheet;"
                 "measured");
    EXPECT_FALSE(window.control(QStringLiteral("Free up Zero KB")).isEnabled());
    window.click(QStringLiteral("Work"));
    window.press(QStringLiteral("Show in Finder"));
    EXPECT_EQ(window.application.revealed.size(), 1U);
    window.click(QStringLiteral("Free up 10 bytes"));
    // Busy, but not dimmed.
    const QQuickItem& button = window.control(QStringLiteral("Free up 10 bytes"));
    EXPECT_FALSE(button.isEnabled());
    EXPECT_EQ(button.opacity(), 1);
    window.gate->open();
    waitUntil([&] { return !window.state().cloud()->isEvicting(); });
    window.settle();
    EXPECT_TRUE(window.texts().contains(QStringLiteral("released")));
    EXPECT_EQ(window.control(QStringLiteral("Free up Zero KB")).opacity(), 0.5);
}

TEST(Sheets, ADriveThatIsBusyCanBeTriedAgain)
{
    MainWindow window;
    show(window, "icloud busy-folder");
    EXPECT_TRUE(window.texts().contains(QStringLiteral("not measured")));
    window.press(QStringLiteral("Try again"));
    play(window, "measured");
    EXPECT_TRUE(window.has(QStringLiteral("Music projects")));
}

/// Also the rows that do not exist before the keyboard comes near.
TEST(Lists, EveryRowIsReachedByTheKeyboard)
{
    struct Case
    {
        const char* scene;
        QString list;
    };
    const Case cases[] = {
        {"results expanded", QStringLiteral("ResultsList")},
        {"icloud hostile-names", QStringLiteral("ICloudList")},
        {"icloud busy-folder", QStringLiteral("ICloudList")},
        {"report details", QStringLiteral("SkippedPaths")},
    };
    for (const Case& entry : cases) {
        SCOPED_TRACE(entry.scene);
        MainWindow window;
        show(window, entry.scene);
        window.activate();
        const auto lists = window.items([&](const QQuickItem& item) {
            return item.inherits("QQuickListView") && isIn(&item, {entry.list});
        });
        ASSERT_EQ(lists.size(), 1U);
        QQuickItem& list = *lists.front();
        const int count = list.property("count").toInt();
        const auto expectRow = [&](int row) {
            const QQuickItem* focus = window.window().activeFocusItem();
            while (focus != nullptr && focus->property("index").isNull()) {
                focus = focus->parentItem();
            }
            ASSERT_NE(focus, nullptr) << row;
            EXPECT_EQ(focus->property("index").toInt(), row);
            const QRectF place = focus->mapRectToItem(&list, focus->boundingRect());
            EXPECT_GE(place.top(), -0.5);
            EXPECT_LE(place.bottom(), list.height() + 0.5);
        };
        list.setProperty("currentIndex", 0);
        window.settle();
        list.property("currentItem").value<QQuickItem*>()->forceActiveFocus(Qt::TabFocusReason);
        for (int row = 0; row < count; ++row) {
            expectRow(row);
            window.key(Qt::Key_Down);
        }
        expectRow(count - 1);
        window.key(Qt::Key_Home);
        expectRow(0);
        window.key(Qt::Key_PageDown);
        window.key(Qt::Key_PageUp);
        expectRow(0);
        window.key(Qt::Key_End);
        expectRow(count - 1);
        window.key(Qt::Key_Up);
        expectRow(count - 2);
        // Other rows are no stops of the Tab key.
        window.key(Qt::Key_Tab);
        EXPECT_FALSE(isIn(window.window().activeFocusItem(), {entry.list}));
    }
}

} // namespace
} // namespace ZorvaneTests
