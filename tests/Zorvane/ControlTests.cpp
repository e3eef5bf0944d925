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
    {"PrimaryButton { text: \"Scan\"", QAccessible::Button, "Scan"},
    {"PrimaryButton { text: \"Delete\"; isDestructive: true", QAccessible::Button, "Delete", 1},
    {"SecondaryButton { text: \"Rescan\"; symbol: \"clock\"", QAccessible::Button, "Rescan"},
    {"PlainButton { text: \"Details\"; symbol: \"clock\"", QAccessible::Button, "Details"},
    {"LinkButton { text: \"Terms\"", QAccessible::Button, "Terms"},
    {"WindowButton { text: \"Menu\"; symbol: \"minus\"", QAccessible::Button, "Menu"},
    {"ApplicationMenuItem { text: \"About\"", QAccessible::MenuItem, "About"},
    {"SelectionBox { accessibleName: \"Caches\"", QAccessible::CheckBox, "Caches", 1},
};

/// Disabled itself, or with everything around it.
TEST(Controls, ArePressedByTheirKeysAndByAssistiveToolsOnlyWhileTheyAreEnabled)
{
    const QString wholes[] = {QStringLiteral("%1 }"), QStringLiteral("%1; enabled: false }"),
                              QStringLiteral("Item { enabled: false; %1 } }")};
    for (const Control& entry : controls) {
        const bool hasBusy = QByteArray(entry.qml).startsWith("PrimaryButton");
        for (int form = 0; form < (hasBusy ? 4 : 3); ++form) {
            const QString whole = form == 3 ? QStringLiteral("%1; busy: true }") : wholes[form];
            const Stage stage(whole.arg(QLatin1String(entry.qml)));
            SCOPED_TRACE(whole.arg(QLatin1String(entry.qml)).toStdString());
            QQuickItem& control = stage.control(QLatin1String(entry.name));
            QAccessibleInterface& interface = accessible(control);
            const QSignalSpy clicks(&control, SIGNAL(clicked()));
            const int pressed = form == 0 ? 1 : 0;
            EXPECT_EQ(interface.role(), entry.role);
            EXPECT_EQ(interface.text(QAccessible::Description).isEmpty(), form == 0);
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
    for (const Control& entry : controls) {
        if (entry.role == QAccessible::MenuItem) {
            continue;
        }
        SCOPED_TRACE(entry.qml);
        const Stage stage(QStringLiteral("property alias on: all.enabled\n"
                                         "Item { id: all; x: 50; y: 50; %1 } }")
                              .arg(QLatin1String(entry.qml)));
        QQuickItem& control = stage.control(QLatin1String(entry.name));
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
    const QAccessibleInterface& box = accessible(stage.control(QStringLiteral("Caches")));
    stage.click(QStringLiteral("Caches"));
    EXPECT_TRUE(box.state().checked);
    stage.window().setProperty("refused", false);
    stage.click(QStringLiteral("Caches"));
    EXPECT_FALSE(box.state().checked);
    act(stage.control(QStringLiteral("Caches")), QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(box.state().checkable && box.state().checked);
}

TEST(Controls, AToolTipWaitsForThePointerOrTheKeyboard)
{
    const Stage stage(QStringLiteral("PlainButton { x: 100; y: 100; text: \"Scan\"\n"
                                     "HoverHelp { text: \"Finds files\" } }"));
    QQuickItem& control = stage.control(QStringLiteral("Scan"));
    const QQuickItem& help = stage.item(QStringLiteral("HoverHelp"));
    const auto isWanted = [&] { return help.property("isWanted").toBool(); };
    control.forceActiveFocus(Qt::MouseFocusReason);
    EXPECT_FALSE(isWanted());
    QTest::mouseMove(&stage.window(), control.mapToScene({8, 8}).toPoint());
    EXPECT_TRUE(isWanted());
    QTest::mouseMove(&stage.window(), QPoint(0, 0));
    EXPECT_FALSE(isWanted());
    control.setFocus(false);
    control.forceActiveFocus(Qt::TabFocusReason);
    EXPECT_TRUE(isWanted());
}

TEST(Controls, ASpinnerTurnsOnlyWhereItCanBeSeen)
{
    const Stage stage(QStringLiteral("Spinner { Component.onCompleted: Theme.animated = true }"));
    QQuickItem& spinner = stage.item(QStringLiteral("Spinner"));
    for (const auto& [state, isShown] :
         {std::pair{Qt::WindowNoState, true}, std::pair{Qt::WindowMinimized, true},
          std::pair{Qt::WindowNoState, false}}) {
        stage.window().setWindowState(state);
        spinner.setVisible(isShown);
        EXPECT_EQ(spinner.property("turns").toBool(), state == Qt::WindowNoState && isShown);
    }
}

/// As one text, or letter by letter: nothing is replaced or moved beside its neighbours.
TEST(Controls, FiguresAndNamesTakeTheWidthOfTheirLetters)
{
    const char* const texts[][3] = {{"fileFont", "9", "x1"},
                                    {"numberFont", "·", " 6"},
                                    {"numberFont", "1111", "8888"},
                                    {"numberFont", "0000", "9999"}};
    for (const auto& [font, first, rest] : texts) {
        const Stage stage(QStringLiteral("property real apart: a.implicitWidth + b.implicitWidth\n"
                                         "property real together: c.implicitWidth\n"
                                         "property real first: a.implicitWidth * 2\n"
                                         "component Part: Text { font: Theme.%1(40, 400) }\n"
                                         "Part { id: a; text: \"%2\" } Part { id: b; text: \"%3\" }"
                                         "Part { id: c; text: a.text + b.text }")
                              .arg(font, first, rest));
        const auto width = [&](const char* name) { return stage.window().property(name).toReal(); };
        EXPECT_NEAR(width("together"), width("apart"), 1) << first << rest;
        if (QByteArray(first).size() == 4) {
            EXPECT_NEAR(width("first"), width("apart"), 1) << first << rest;
        }
    }
}

} // namespace
} // namespace ZorvaneTests
