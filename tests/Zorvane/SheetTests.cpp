#include "tests/Zorvane/Support/TestWindow.h"

#include <QTest>

#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

/// The type of the topmost thing, what else can be used, and a control that cannot.
TEST(Sheets, AssistiveToolsCanUseNothingBelow)
{
    constexpr const char* cases[][4] = {
        {"confirmation review-areas", "SheetPanel", "TitleBar", "Rescan"},
        {"report details", "SheetPanel", "TitleBar", "Rescan"},
        {"icloud selected", "SheetPanel", "TitleBar", "Clean"},
        {"results cleaning", "BusyOverlay", "TitleBar", "Rescan"},
        {"results closing", "BusyOverlay", "", "Close"},
        {"shell menu", "ApplicationMenuItem", "", "Scan my"},
        {"shell about", "SheetPanel", "", "Scan my"},
        {"shell update-offered", "SheetPanel", "", "Menu"},
    };
    for (const auto& [scene, above, besides, below] : cases) {
        SCOPED_TRACE(scene);
        MainWindow window;
        show(window, scene);
        window.activate();
        EXPECT_TRUE(window.window().isVisible());
        const auto phase = window.state().phase();
        for (const QQuickItem* item : window.items("QQuickAbstractButton")) {
            const QString description = accessible(*item).text(QAccessible::Description);
            EXPECT_TRUE(isIn(item, above) || isIn(item, besides) ||
                        (!item->isEnabled() && description == QStringLiteral("Not available")));
        }
        const QQuickItem& covered = window.control(below);
        if (std::string(scene) != "shell menu") {
            act(covered, QAccessibleActionInterface::setFocusAction());
            EXPECT_TRUE(window.hasFocusIn(above));
        }
        act(covered);
        QTest::mouseClick(&window.window(), Qt::LeftButton, {}, QPoint(120, 300));
        EXPECT_EQ(window.state().phase(), phase);
    }
}

/// The stops are in the order of the Tab key, which comes back to the first.
TEST(Sheets, KeepTheKeyboardAndGiveItBack)
{
    constexpr const char* cases[][4] = {
        {"area a, safe, a, a=1; results", "Clean", "confirm",
         "Cancel|Delete 1 byte permanently|Free space will grow by Zero KB to 1 byte"},
        {"results", "Rescan", "sheet; measured", "Close|Rescan"},
        {"access; open", "Menu", "update News", "Close|Open download page"},
        {"area a, safe, a, a=1; results", "Rescan", "clean",
         "Scan again|Close|Why the free space has grown by less"},
    };
    for (const auto& [before, from, open, order] : cases) {
        SCOPED_TRACE(open);
        const Strings stops = split(order, "|");
        MainWindow window;
        play(window, before);
        window.activate(from);
        play(window, open);
        for (std::size_t stop = 0; stop <= stops.size(); ++stop) {
            EXPECT_EQ(window.focused(), stops[stop % stops.size()]);
            window.key(Qt::Key_Tab);
        }
        window.key(Qt::Key_Tab, Qt::ShiftModifier);
        EXPECT_EQ(window.focused(), stops.front());
        window.key(Qt::Key_Tab, Qt::ShiftModifier);
        EXPECT_EQ(window.focused(), stops.back());
        window.key(Qt::Key_Escape);
        EXPECT_TRUE(window.focused().starts_with(from));
        EXPECT_TRUE(window.window().activeFocusItem()->property("visualFocus").toBool());
    }
}

TEST(Sheets, KeepTheKeyboardWhenTheFocusedControlIsHidden)
{
    MainWindow window;
    play(window, "cloud a, 1, 1; results; sheet; measured; hold");
    window.activate("Rescan");
    window.key(Qt::Key_Space);
    window.key(Qt::Key_Tab);
    EXPECT_EQ(window.focused(), "Close");
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
        window.application.gate.open();
        waitUntil([&] { return !window.state().isCleaning(); });
        window.settle();
        if (*steps != '\0') {
            EXPECT_FALSE(window.hasFocusIn("ReportSheet"));
            window.key(Qt::Key_Escape);
            EXPECT_TRUE(window.state().hasCleaningReport());
        }
        EXPECT_TRUE(window.hasFocusIn("ReportSheet"));
        window.key(Qt::Key_Escape);
        EXPECT_TRUE(window.hasFocusIn("ResultsList"));
    }
}

TEST(Sheets, DeleteOnlyWhatIsAcknowledgedAndNeverByReturn)
{
    MainWindow window;
    play(window, "area caches, safe, caches, a=100; area movies, review, movies, b=200; results;"
                 "select movies");
    for (int opening = 0; opening < 2; ++opening) {
        play(window, "confirm");
        // However many areas there are, it does not scroll out of sight.
        for (auto* item = &window.control("I understand"); item; item = item->parentItem()) {
            EXPECT_FALSE(item->inherits("QQuickFlickable"));
        }
        const QQuickItem& button = window.control("Delete 300 bytes");
        EXPECT_FALSE(button.isEnabled());
        act(button);
        window.activate("I understand");
        window.key(Qt::Key_Space);
        EXPECT_TRUE(button.isEnabled());
        window.activate("Delete ");
        window.key(Qt::Key_Return);
        window.key(Qt::Key_Enter);
        EXPECT_TRUE(window.state().showConfirmation());
        window.key(Qt::Key_Escape);
    }
    EXPECT_TRUE(window.application.disk->removed().empty());
    window.state().deselectAll("movies");
    play(window, "confirm");
    EXPECT_THROW(window.press("I understand"), std::runtime_error);
    window.press("Delete 100 bytes");
    waitUntil([&] { return window.state().hasCleaningReport(); });
    EXPECT_EQ(window.application.disk->removed(), Strings{"/home/me/caches/a"});
}

/// Also the rows that do not exist before the keyboard comes near.
TEST(Lists, EveryRowIsReachedByTheKeyboard)
{
    for (const auto& [scene, type] : {std::pair{"results expanded", "ResultsList"},
                                      {"icloud hostile-names", "ICloudList"},
                                      {"report details", "SkippedPaths"}}) {
        SCOPED_TRACE(scene);
        MainWindow window;
        show(window, scene);
        window.activate();
        QQuickItem& list = window.find(
            "QQuickListView", [name = type](const QQuickItem& item) { return isIn(&item, name); });
        list.setProperty("currentIndex", 0);
        window.settle();
        list.property("currentItem").value<QQuickItem*>()->forceActiveFocus(Qt::TabFocusReason);
        // Each key with the row that it leads to.
        const int count = list.property("count").toInt();
        std::vector<std::pair<Qt::Key, int>> keys;
        for (int row = 1; row < count; ++row) {
            keys.emplace_back(Qt::Key_Down, row);
        }
        keys.insert(keys.end(),
                    {{Qt::Key_Home, 0}, {Qt::Key_End, count - 1}, {Qt::Key_Up, count - 2}});
        for (const auto& [key, row] : keys) {
            window.key(key);
            const QQuickItem* focus = window.window().activeFocusItem();
            while (focus != nullptr && focus->property("index").isNull()) {
                focus = focus->parentItem();
            }
            ASSERT_NE(focus, nullptr) << row;
            EXPECT_EQ(focus->property("index").toInt(), row);
            const QRectF place = focus->mapRectToItem(&list, focus->boundingRect());
            EXPECT_TRUE(place.top() >= -0.5 && place.bottom() <= list.height() + 0.5) << row;
        }
        // Other rows are no stops of the Tab key.
        window.key(Qt::Key_Tab);
        EXPECT_FALSE(window.hasFocusIn(type));
    }
}

TEST(Lists, FiveHundredEntriesAreTickedByTheKeyboard)
{
    MainWindow window;
    std::string entries;
    for (int entry = 0; entry < 500; ++entry) {
        entries +=
            "file " + std::to_string(1000 + entry) + ", " + std::to_string(900 - entry) + ";";
    }
    play(window, entries + "results; sheet; measured");
    window.activate("Rescan");
    window.key(Qt::Key_Tab);
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_End, Qt::Key_Space, Qt::Key_Up, Qt::Key_Space,
                              Qt::Key_Home, Qt::Key_Down, Qt::Key_Space}) {
        window.key(key);
    }
    EXPECT_EQ(window.state().cloud()->icloudSelection(),
              (std::set{inCloud("1000"), inCloud("1001"), inCloud("1498"), inCloud("1499")}));
    window.key(Qt::Key_Tab);
    EXPECT_EQ(window.focused(), "Close");
}

} // namespace
} // namespace ZorvaneTests
