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
    for (const Control& entry : controls) {
        for (const char* whole : {"%1 }", "%1; enabled: false }", "Item { enabled: false; %1 } }",
                                  "%1; busy: true }"}) {
            const bool isEnabled = whole == std::string("%1 }");
            const QString qml = QString::fromUtf8(whole).arg(QLatin1String(entry.qml));
            if (qml.contains(QStringLiteral("busy")) &&
                !qml.startsWith(QStringLiteral("PrimaryButton"))) {
                continue;
            }
            SCOPED_TRACE(qml.toStdString());
            const Stage stage(qml);
            QQuickItem& control = stage.control(entry.name);
            QAccessibleInterface& interface = accessible(control);
            const QSignalSpy clicks(&control, SIGNAL(clicked()));
            EXPECT_EQ(interface.role(), entry.role);
            EXPECT_EQ(interface.text(QAccessible::Description).isEmpty(), isEnabled);
            act(control);
            EXPECT_EQ(clicks.count(), isEnabled ? 1 : 0);
            const QImage resting = stage.picture();
            control.forceActiveFocus(Qt::TabFocusReason);
            EXPECT_EQ(stage.picture() != resting, isEnabled && entry.role != QAccessible::MenuItem);
            for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
                stage.key(key);
            }
            EXPECT_EQ(clicks.count(), isEnabled ? 1 + entry.keys : 0);
        }
    }
}

TEST(Controls, ASelectionBoxLetsItsOwnerDecide)
{
    const Stage stage(
        QStringLiteral("id: window; property bool chosen: true; property bool refused: true\n"
                       "SelectionBox { accessibleName: \"Caches\"; checked: window.chosen\n"
                       "onToggled: if (!window.refused) window.chosen = !window.chosen }"));
    const QAccessibleInterface& box = accessible(stage.control("Caches"));
    stage.control("Caches").forceActiveFocus(Qt::TabFocusReason);
    stage.key(Qt::Key_Space);
    EXPECT_TRUE(box.state().checked);
    stage.window().setProperty("refused", false);
    stage.key(Qt::Key_Space);
    EXPECT_FALSE(box.state().checked);
    act(stage.control("Caches"), QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(box.state().checkable && box.state().checked);
}

} // namespace
} // namespace ZorvaneTests
