#include "tests/Zorvane/Support/SheetStage.h"

#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

#include <latch>

namespace ZorvaneTests {
namespace {

using CleanCore::RuleTier;
using Zorvane::AppState;

struct Opening
{
    const char* sheet;
    std::function<void(AppState&)> open;
    const char* firstFocus;
    QStringList tabbedTo;
};

const std::vector<Opening>& openings()
{
    static const std::vector<Opening> all = {
        {"confirmation",
         [](AppState& state) { state.requestClean(); },
         "Cancel",
         {QStringLiteral("Delete 1 byte permanently"), QStringLiteral("Cancel")}},
        {"report",
         [](AppState& state) {
             state.performClean();
             waitUntil([&] { return !state.isCleaning(); });
         },
         "Scan again",
         {QStringLiteral("Close"), QStringLiteral("Scan again")}},
        {"cloud drive",
         [](AppState& state) { state.cloud()->openICloud(); },
         "Close",
         {QStringLiteral("Rescan"), QStringLiteral("Close")}},
    };
    return all;
}

struct Scanned
{
    ScriptedApplication application;
    std::unique_ptr<AppState> state;

    Scanned()
    {
        application.addArea("caches", RuleTier::safe, {1});
        state = std::make_unique<AppState>(application.environment());
        scan(*state);
    }
};

TEST(SheetFocusTest, KeepsTheKeyboardAndGivesItBack)
{
    for (const Opening& opening : openings()) {
        SCOPED_TRACE(opening.sheet);
        const Scanned scanned;
        const SheetStage stage(*scanned.state);
        opening.open(*scanned.state);
        EXPECT_EQ(stage.focusedName(), QLatin1String(opening.firstFocus));
        for (int round = 0; round < 2; ++round) {
            for (const QString& name : opening.tabbedTo) {
                stage.press(Qt::Key_Tab);
                EXPECT_EQ(stage.focusedName(), name);
            }
        }
        QTest::keyClick(&stage.window(), Qt::Key_Tab, Qt::ShiftModifier);
        EXPECT_EQ(stage.focusedName(), opening.tabbedTo.front());
        stage.press(Qt::Key_Escape);
        EXPECT_TRUE(stage.names().isEmpty()) << stage.names().join(u'|').toStdString();
        EXPECT_TRUE(stage.below().hasActiveFocus());
    }
}

TEST(SheetFocusTest, TabFindsBackWhenTheFocusedButtonGoes)
{
    const Scanned scanned;
    const std::string container = "/home/me/Library/Mobile Documents/com~apple~CloudDocs";
    scanned.application.disk->folders[container].names = {"a"};
    scanned.application.disk->trees[container + "/a"] = {};
    std::latch mayMeasure(1);
    scanned.application.disk->onVisit = [&](const std::string&) { mayMeasure.wait(); };
    const SheetStage stage(*scanned.state);
    scanned.state->cloud()->openICloud();
    stage.control(QStringLiteral("Rescan")).forceActiveFocus(Qt::TabFocusReason);
    stage.press(Qt::Key_Space);
    EXPECT_FALSE(stage.hasControl(QStringLiteral("Rescan")));
    stage.press(Qt::Key_Tab);
    EXPECT_EQ(stage.focusedName(), QStringLiteral("Close"));
    mayMeasure.count_down();
    waitUntil([&] { return scanned.state->cloud()->icloudPending() == 0; });
}

TEST(SheetFocusTest, WhatTookTheKeyboardMeanwhileKeepsIt)
{
    const Scanned scanned;
    const SheetStage stage(*scanned.state);
    scanned.state->requestClean();
    QQuickItem other(stage.window().contentItem());
    other.forceActiveFocus();
    scanned.state->setShowConfirmation(false);
    EXPECT_TRUE(other.hasActiveFocus());
}

TEST(SheetFocusTest, NothingBelowIsClickedWhileASheetIsShown)
{
    const Scanned scanned;
    const SheetStage stage(*scanned.state);
    const QSignalSpy clicks(&stage.below(), SIGNAL(clicked()));
    const auto clickCorner = [&] {
        QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, QPoint(5, 5));
    };
    scanned.state->requestClean();
    clickCorner();
    EXPECT_EQ(clicks.count(), 0);
    EXPECT_TRUE(scanned.state->showConfirmation());
    EXPECT_EQ(stage.focusedName(), QStringLiteral("Cancel"));
    scanned.state->setShowConfirmation(false);
    clickCorner();
    EXPECT_EQ(clicks.count(), 1);
}

} // namespace
} // namespace ZorvaneTests
