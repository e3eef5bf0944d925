#include "tests/Zorvane/Support/TestWindow.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

struct Control
{
    const char* qml;
    QAccessible::Role role;
    const char* name;
    /// How many of Space, Return and Enter press it.
    int keys = 3;
};

constexpr Control controls[] = {
    {R"(PrimaryButton { text: "Scan")", QAccessible::Button, "Scan"},
    {R"(PrimaryButton { text: "Delete"; isDestructive: true)", QAccessible::Button, "Delete", 1},
    {R"(SecondaryButton { text: "Rescan")", QAccessible::Button, "Rescan"},
    {R"(PlainButton { text: "Details")", QAccessible::Button, "Details"},
    {R"(LinkButton { text: "Terms")", QAccessible::Button, "Terms"},
    {R"(WindowButton { text: "Menu"; symbol: "minus")", QAccessible::Button, "Menu"},
    {R"(SelectionBox { accessibleName: "Caches")", QAccessible::CheckBox, "Caches", 1},
    {R"(ApplicationMenuItem { text: "About")", QAccessible::MenuItem, "About"},
};

/// Disabled itself, or with everything around it, or busy.
TEST(Controls, ArePressedByTheirKeysAndByAssistiveToolsOnlyWhileTheyAreEnabled)
{
    const QString enabled = QStringLiteral("%1 }");
    for (const Control& entry : controls) {
        for (const QString& whole : {enabled, QStringLiteral("%1; enabled: false }"),
                                     QStringLiteral("Item { enabled: false; %1 } }"),
                                     QStringLiteral("%1; busy: true }")}) {
            if (whole.contains(QStringLiteral("busy")) &&
                !QByteArray(entry.qml).startsWith("PrimaryButton")) {
                continue;
            }
            const QString qml = whole.arg(QLatin1String(entry.qml));
            SCOPED_TRACE(qml.toStdString());
            const Stage stage(qml);
            QQuickItem& control = stage.control(entry.name);
            QAccessibleInterface& interface = accessible(control);
            const QSignalSpy clicks(&control, SIGNAL(clicked()));
            const int pressed = whole == enabled ? 1 : 0;
            EXPECT_EQ(interface.role(), entry.role);
            EXPECT_EQ(interface.text(QAccessible::Description).isEmpty(), whole == enabled);
            act(control);
            EXPECT_EQ(clicks.count(), pressed);
            control.forceActiveFocus(Qt::TabFocusReason);
            for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
                stage.key(key);
            }
            EXPECT_EQ(clicks.count(), pressed * (1 + entry.keys));
        }
    }
}

TEST(Controls, LookTheSameWhenSomethingCoversThemOrTheMouseFocusedThem)
{
    for (const Control& entry : std::span(controls).first(std::size(controls) - 1)) {
        SCOPED_TRACE(entry.name);
        const Stage stage(QStringLiteral("property alias on: all.enabled\n"
                                         "Item { id: all; x: 50; y: 50; %1 } }")
                              .arg(QLatin1String(entry.qml)));
        QQuickItem& control = stage.control(entry.name);
        const QImage resting = stage.picture();
        stage.window().setProperty("on", false);
        EXPECT_EQ(stage.picture(), resting);
        stage.window().setProperty("on", true);
        control.forceActiveFocus(Qt::MouseFocusReason);
        EXPECT_EQ(stage.picture(), resting);
        control.setFocus(false);
        control.forceActiveFocus(Qt::TabFocusReason);
        EXPECT_NE(stage.picture(), resting);
    }
}

TEST(Controls, ASelectionBoxLetsItsOwnerDecide)
{
    const Stage stage(
        QStringLiteral("id: window; property bool chosen: true; property bool refused: true\n"
                       "SelectionBox { accessibleName: \"Caches\"; checked: window.chosen\n"
                       "onToggled: if (!window.refused) window.chosen = !window.chosen }"));
    const QAccessibleInterface& box = accessible(stage.control("Caches"));
    stage.click("Caches");
    EXPECT_TRUE(box.state().checked);
    stage.window().setProperty("refused", false);
    stage.click("Caches");
    EXPECT_FALSE(box.state().checked);
    act(stage.control("Caches"), QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(box.state().checkable && box.state().checked);
}

TEST(Controls, AToolTipWaitsForThePointerOrTheKeyboard)
{
    const Stage stage(QStringLiteral("PlainButton { x: 100; y: 100; text: \"Scan\"\n"
                                     "HoverHelp { text: \"Finds files\" } }"));
    QQuickItem& control = stage.control("Scan");
    const QQuickItem& help = stage.item("HoverHelp");
    control.forceActiveFocus(Qt::MouseFocusReason);
    for (const bool isOver : {false, true, false}) {
        QTest::mouseMove(&stage.window(), isOver ? QPoint(108, 108) : QPoint(0, 0));
        EXPECT_EQ(help.property("isWanted").toBool(), isOver);
    }
    control.setFocus(false);
    control.forceActiveFocus(Qt::TabFocusReason);
    EXPECT_TRUE(help.property("isWanted").toBool());
}

/// Letters that stand together are neither replaced nor moved.
TEST(Controls, FiguresAndNamesTakeTheWidthOfTheirLetters)
{
    for (const auto& [font, difference] : {std::pair{"fileFont", "of('9') + of('x1') - of('9x1')"},
                                           {"numberFont", "of('·') + of(' 6') - of('· 6')"},
                                           {"numberFont", "of('1111') - of('8888')"}}) {
        const Stage stage(QStringLiteral("id: window; property real difference: 9\n"
                                         "TextMetrics { id: metrics; font: Theme.%1(40, 400) }\n"
                                         "function of(text: string): real {\n"
                                         "metrics.text = text; return metrics.advanceWidth }\n"
                                         "Item { Component.onCompleted: window.difference = %2 }")
                              .arg(QLatin1String(font), QString::fromUtf8(difference)));
        EXPECT_NEAR(stage.window().property("difference").toReal(), 0, 1) << difference;
    }
}

} // namespace
} // namespace ZorvaneTests
