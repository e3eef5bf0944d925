#include "tests/Zorvane/Support/Stage.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

namespace ZorvaneTests {
namespace {

QQuickItem& focused(const Stage& stage)
{
    QQuickItem& control = stage.item(QStringLiteral("control"));
    control.forceActiveFocus(Qt::TabFocusReason);
    return control;
}

TEST(Controls, ArePressedByTheKeysThatSuitThem)
{
    struct Case
    {
        const char* control;
        int bySpace;
        int byReturn;
    };
    constexpr Case cases[] = {
        {"PrimaryButton { text: \"Scan\"", 1, 1},
        {"PrimaryButton { text: \"Delete\"; isDestructive: true", 1, 0},
        {"PrimaryButton { text: \"Delete\"; busy: true", 0, 0},
        {"PrimaryButton { text: \"Delete\"; enabled: false", 0, 0},
        {"SecondaryButton { text: \"Cancel\"", 1, 1},
        {"PlainButton { text: \"Details\"", 1, 1},
        {"LinkButton { text: \"Terms\"", 1, 1},
        {"SelectionBox { accessibleName: \"Caches\"", 1, 0},
    };
    for (const Case& entry : cases) {
        SCOPED_TRACE(entry.control);
        const Stage stage(QLatin1String(entry.control) +
                          QStringLiteral("; objectName: \"control\" }"));
        QQuickItem& control = focused(stage);
        const QSignalSpy clicks(&control, SIGNAL(clicked()));
        QTest::keyClick(&stage.window(), Qt::Key_Space);
        EXPECT_EQ(clicks.count(), entry.bySpace);
        QTest::keyClick(&stage.window(), Qt::Key_Return);
        QTest::keyClick(&stage.window(), Qt::Key_Enter);
        EXPECT_EQ(clicks.count(), entry.bySpace + 2 * entry.byReturn);
    }
}

struct Accessibility
{
    const char* control;
    QAccessible::Role role;
    const char* name;
    QStringList actions;
};

const std::vector<Accessibility>& accessibilities()
{
    static const QStringList press{QAccessibleActionInterface::pressAction()};
    static const std::vector<Accessibility> all = {
        {"PrimaryButton { text: \"Scan\"", QAccessible::Button, "Scan", press},
        {"PrimaryButton { text: \"Scan\"; isDestructive: true", QAccessible::Button, "Scan", press},
        {"SecondaryButton { text: \"Rescan\"; symbol: \"arrow.clockwise\"", QAccessible::Button,
         "Rescan", press},
        {"PlainButton { text: \"Details\"; symbol: \"chevron.down\"", QAccessible::Button,
         "Details", press},
        {"LinkButton { text: \"Terms\"", QAccessible::Button, "Terms", press},
        {"WindowButton { text: \"Menu\"; symbol: \"minus\"", QAccessible::Button, "Menu", press},
        {"ApplicationMenuItem { text: \"About\"", QAccessible::MenuItem, "About", press},
        {"SelectionBox { accessibleName: \"Caches\"", QAccessible::CheckBox, "Caches",
         press + QStringList{QAccessibleActionInterface::toggleAction()}},
    };
    return all;
}

TEST(Controls, AreAccessibleByRoleNameAndAction)
{
    for (const Accessibility& entry : accessibilities()) {
        SCOPED_TRACE(entry.control);
        const Stage stage(QLatin1String(entry.control) +
                          QStringLiteral("; objectName: \"control\" }"));
        QQuickItem& control = focused(stage);
        const QSignalSpy clicks(&control, SIGNAL(clicked()));
        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&control);
        ASSERT_NE(accessible, nullptr);
        EXPECT_EQ(accessible->role(), entry.role);
        EXPECT_EQ(accessible->text(QAccessible::Name), QLatin1String(entry.name));
        EXPECT_EQ(accessible->text(QAccessible::Description), QString());
        ASSERT_NE(accessible->actionInterface(), nullptr);
        for (const QString& action : entry.actions) {
            EXPECT_TRUE(accessible->actionInterface()->actionNames().contains(action));
            accessible->actionInterface()->doAction(action);
        }
        EXPECT_EQ(clicks.count(), entry.actions.size());
    }
}

TEST(Controls, AreNotPressedByAssistiveToolsWhileTheyAreDisabled)
{
    for (const Accessibility& entry : accessibilities()) {
        for (const char* disabled : {"%1; enabled: false; objectName: \"control\" }",
                                     "Item { enabled: false; %1; objectName: \"control\" } }"}) {
            SCOPED_TRACE(
                QString::fromLatin1(disabled).arg(QLatin1String(entry.control)).toStdString());
            const Stage stage(QString::fromLatin1(disabled).arg(QLatin1String(entry.control)));
            QQuickItem& control = stage.item(QStringLiteral("control"));
            const QSignalSpy clicks(&control, SIGNAL(clicked()));
            QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&control);
            EXPECT_EQ(accessible->text(QAccessible::Description), QStringLiteral("Not available"));
            for (const QString& action : entry.actions) {
                accessible->actionInterface()->doAction(action);
            }
            EXPECT_EQ(clicks.count(), 0);
        }
    }
}

/// As what lies over them does.
TEST(Controls, KeepTheirLookInWhatIsDisabled)
{
    for (const Accessibility& entry : accessibilities()) {
        if (entry.role == QAccessible::MenuItem) {
            // Nothing lies over the menu.
            continue;
        }
        SCOPED_TRACE(entry.control);
        const QString inside = QStringLiteral("Item { x: 50; y: 50; enabled: %1; %2 } }");
        const QString control = QLatin1String(entry.control);
        const Stage enabled(inside.arg(QStringLiteral("true"), control));
        const Stage disabled(inside.arg(QStringLiteral("false"), control));
        EXPECT_EQ(disabled.picture(), enabled.picture());
    }
}

TEST(Controls, TextsThatAreNoControlsAreReadAsPlainText)
{
    for (const char* element : {"Badge { text: \"1.2 GB\"", "RollingFigure { text: \"1.2 GB\""}) {
        SCOPED_TRACE(element);
        const Stage stage(QLatin1String(element) + QStringLiteral("; objectName: \"control\" }"));
        QAccessibleInterface* accessible =
            QAccessible::queryAccessibleInterface(&stage.item(QStringLiteral("control")));
        ASSERT_NE(accessible, nullptr);
        EXPECT_EQ(accessible->role(), QAccessible::StaticText);
        EXPECT_EQ(accessible->text(QAccessible::Name), QStringLiteral("1.2 GB"));
        EXPECT_EQ(accessible->childCount(), 0);
    }
}

TEST(Controls, SelectionBoxAsksAndLetsItsOwnerDecide)
{
    const Stage stage(QStringLiteral(R"(
        id: window
        property bool chosen: true
        property bool refused: true
        property int asked: 0
        SelectionBox { objectName: "control"; accessibleName: "Caches"; checked: window.chosen
            onToggled: { ++window.asked; if (!window.refused) window.chosen = !window.chosen } })"));
    QQuickItem& box = focused(stage);
    const auto press = [&] {
        QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, box.mapToScene({8, 8}).toPoint());
    };
    press();
    EXPECT_EQ(stage.window().property("asked"), 1);
    EXPECT_EQ(box.property("checked"), true);

    stage.window().setProperty("refused", false);
    press();
    EXPECT_EQ(stage.window().property("asked"), 2);
    EXPECT_EQ(box.property("checked"), false);
    QTest::keyClick(&stage.window(), Qt::Key_Space);
    EXPECT_EQ(box.property("checked"), true);

    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&box);
    EXPECT_TRUE(accessible->state().checkable);
    EXPECT_TRUE(accessible->state().checked);
    stage.window().setProperty("chosen", false);
    EXPECT_FALSE(accessible->state().checked);
}

TEST(Controls, ShowTheFocusOnlyWhenTheKeyboardGaveIt)
{
    for (const char* control :
         {"PrimaryButton { text: \"Scan\"", "SecondaryButton { text: \"Scan\"",
          "PlainButton { text: \"Scan\"", "SelectionBox { accessibleName: \"a\""}) {
        SCOPED_TRACE(control);
        const Stage stage(QLatin1String(control) +
                          QStringLiteral("; objectName: \"control\"; x: 100; y: 100 }"));
        QQuickItem& item = stage.item(QStringLiteral("control"));
        const QImage resting = stage.picture();
        item.forceActiveFocus(Qt::MouseFocusReason);
        EXPECT_EQ(stage.picture(), resting);
        item.setFocus(false);
        item.forceActiveFocus(Qt::TabFocusReason);
        EXPECT_NE(stage.picture(), resting);
    }
}

TEST(Controls, AreExplainedWhenThePointerOrTheKeyboardComes)
{
    const Stage stage(
        QStringLiteral("PlainButton { objectName: \"control\"; x: 100; y: 100; text: \"Scan\"\n"
                       "HoverHelp { objectName: \"help\"; text: \"Finds what can go\" } }\n"
                       "Item { objectName: \"area\"; x: 200; width: 9; height: 9\n"
                       "HoverHelp { objectName: \"help of area\"; text: \"Locked\" } }"));
    QQuickItem& control = stage.item(QStringLiteral("control"));
    const QQuickItem& help = stage.item(QStringLiteral("help"));
    const auto isWanted = [](const QQuickItem& item) { return item.property("isWanted").toBool(); };
    control.forceActiveFocus(Qt::MouseFocusReason);
    EXPECT_FALSE(isWanted(help));
    control.setFocus(false);
    control.forceActiveFocus(Qt::TabFocusReason);
    EXPECT_TRUE(isWanted(help));
    // What is no control is not clicked.
    stage.item(QStringLiteral("area")).forceActiveFocus();
    EXPECT_FALSE(isWanted(help));
    EXPECT_TRUE(isWanted(stage.item(QStringLiteral("help of area"))));
    QTest::mouseMove(&stage.window(), control.mapToScene({8, 8}).toPoint());
    EXPECT_TRUE(isWanted(help));
}

TEST(Controls, RollingFigureShowsItsNewTextAtOnceWhenNothingMoves)
{
    const QString figure =
        QStringLiteral("RollingFigure { objectName: \"control\"; text: \"%1\" }");
    const Stage stage(figure.arg(QStringLiteral("998.5 MB")));
    stage.item(QStringLiteral("control")).setProperty("text", QStringLiteral("1.27 GB"));
    const Stage expected(figure.arg(QStringLiteral("1.27 GB")));
    EXPECT_EQ(stage.picture(), expected.picture());
}

} // namespace
} // namespace ZorvaneTests
