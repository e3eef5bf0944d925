#include "tests/Zorvane/Scenes/Sample.h"
#include "tests/Zorvane/Scenes/Scene.h"

#include <QAccessible>
#include <QTest>

#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

using Zorvane::Phase;

constexpr QSize ordinary(1080, 760);

bool isWithin(const QQuickItem& item, const QStringList& types)
{
    for (const QQuickItem* parent = &item; parent != nullptr; parent = parent->parentItem()) {
        for (const QString& type : types) {
            if (isOfType(*parent, type)) {
                return true;
            }
        }
    }
    return false;
}

/// A window that is not the active one gives nothing the keyboard.
void activate(const MainWindow& window)
{
    window.window().requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window.window()));
}

/// Everything visible that assistive tools can press.
void addPressable(QAccessibleInterface* element, std::vector<QAccessibleInterface*>& found)
{
    for (int index = 0; index < element->childCount(); ++index) {
        QAccessibleInterface* const child = element->child(index);
        if (child->state().invisible) {
            continue;
        }
        QAccessibleActionInterface* const actions = child->actionInterface();
        if (actions != nullptr &&
            actions->actionNames().contains(QAccessibleActionInterface::pressAction())) {
            found.push_back(child);
        }
        addPressable(child, found);
    }
}

TEST(WindowCovers, NothingBelowIsOfferedToAssistiveTools)
{
    struct Case
    {
        const char* screen;
        const char* state;
        /// QML types of what can be used.
        QStringList above;
    };
    const QString sheet = QStringLiteral("SheetPanel");
    const QString titleBar = QStringLiteral("TitleBar");
    const Case cases[] = {
        {"confirmation", "two-review-areas", {sheet, titleBar}},
        {"report", "details", {sheet, titleBar}},
        {"icloud", "selected", {sheet, titleBar}},
        {"results", "cleaning", {titleBar}},
        {"results", "closing", {}},
        {"shell", "menu", {QStringLiteral("ApplicationMenuItem")}},
        {"shell", "about", {sheet}},
        {"shell", "update-offered", {sheet}},
    };
    for (const Case& entry : cases) {
        SCOPED_TRACE(std::string(entry.screen) + ' ' + entry.state);
        MainWindow window(ordinary);
        sceneNamed(entry.screen, entry.state).show(window);
        std::vector<QAccessibleInterface*> pressable;
        addPressable(QAccessible::queryAccessibleInterface(&window.window()), pressable);
        int above = 0;
        int below = 0;
        for (QAccessibleInterface* element : pressable) {
            SCOPED_TRACE(element->text(QAccessible::Name).toStdString());
            const auto& item = *qobject_cast<QQuickItem*>(element->object());
            if (isWithin(item, entry.above)) {
                ++above;
                continue;
            }
            ++below;
            EXPECT_FALSE(item.isEnabled());
            EXPECT_EQ(element->text(QAccessible::Description), QStringLiteral("Not available"));
        }
        EXPECT_EQ(above > 0, !entry.above.isEmpty());
        EXPECT_GT(below, 0);
    }
}

bool hasKeyboardIn(const MainWindow& window, const QString& type)
{
    const QQuickItem* item = window.window().activeFocusItem();
    return item != nullptr && isWithin(*item, {type});
}

void press(const MainWindow& window, Qt::Key key)
{
    QTest::keyClick(&window.window(), key);
    window.settle();
}

TEST(WindowCovers, AssistiveToolsNeitherPressNorFocusWhatIsBelow)
{
    struct Case
    {
        const char* screen;
        const char* state;
        const char* below;
        QString above;
    };
    const Case cases[] = {
        {"confirmation", "safe-only", "Rescan", QStringLiteral("ConfirmationSheet")},
        {"results", "cleaning", "Rescan", QStringLiteral("CleaningOverlay")},
        {"results", "closing", "Rescan", QStringLiteral("ClosingOverlay")},
        {"shell", "about", "Scan my", QStringLiteral("AboutSheet")},
        {"shell", "update-offered", "Scan my", QStringLiteral("UpdateSheet")},
    };
    for (const Case& entry : cases) {
        SCOPED_TRACE(std::string(entry.screen) + ' ' + entry.state);
        MainWindow window(ordinary);
        sceneNamed(entry.screen, entry.state).show(window);
        activate(window);
        const Phase phase = window.state().phase();
        window.press(QLatin1String(entry.below));
        EXPECT_EQ(window.state().phase(), phase);
        QAccessible::queryAccessibleInterface(&window.control(QLatin1String(entry.below)))
            ->actionInterface()
            ->doAction(QAccessibleActionInterface::setFocusAction());
        EXPECT_TRUE(hasKeyboardIn(window, entry.above));
    }
}

/// A clean ends while something else lies over the window: its report waits for the keyboard, and
/// in the end the results have it.
TEST(WindowCovers, TheKeyboardGoesToWhatIsOnTop)
{
    const QString menu = QStringLiteral("Menu");
    const QString about = QStringLiteral("About Zorvane");
    for (const QStringList& opened : {QStringList{}, {menu}, {menu, about}}) {
        SCOPED_TRACE(opened.join(u' ').toStdString());
        MainWindow window(ordinary);
        sceneNamed("results", "cleaning").show(window);
        activate(window);
        for (const QString& name : opened) {
            window.press(name);
        }
        window.gate->open();
        waitUntil([&] { return !window.state().isCleaning(); });
        window.settle();
        if (!opened.isEmpty()) {
            EXPECT_FALSE(hasKeyboardIn(window, QStringLiteral("ReportSheet")));
            press(window, Qt::Key_Escape);
            EXPECT_TRUE(window.state().hasCleaningReport());
        }
        EXPECT_TRUE(hasKeyboardIn(window, QStringLiteral("ReportSheet")));
        press(window, Qt::Key_Escape);
        EXPECT_FALSE(window.state().hasCleaningReport());
        EXPECT_TRUE(hasKeyboardIn(window, QStringLiteral("ResultsList")));
    }
}

} // namespace
} // namespace ZorvaneTests
