#include "tests/Zorvane/Support/SheetStage.h"

#include <gmock/gmock.h>

namespace ZorvaneTests {
namespace {

using CleanCore::RuleTier;
using Zorvane::AppState;

const QString destructive = QStringLiteral("Delete 300 bytes permanently");
const QString acknowledgement =
    QStringLiteral("I understand that the selected review required items (Movies) may not be "
                   "recoverable.");

/// A safe area of 100 bytes and one to be reviewed of 200 bytes, both chosen.
struct ScannedHome
{
    ScriptedApplication application;
    std::unique_ptr<AppState> state;

    ScannedHome()
    {
        application.texts = {{"rule.movies.title", "Movies"},
                             {"category.warning.movies", "You might want to keep them."}};
        application.addArea("caches", RuleTier::safe, {100});
        application.addArea("movies", RuleTier::reviewRequired, {200});
        state = std::make_unique<AppState>(application.environment());
        scan(*state);
        state->selectAll("movies");
    }
};

TEST(ConfirmationSheetTest, WhatWantsReviewIsSaidAndAcknowledgedEachTime)
{
    const ScannedHome home;
    const SheetStage stage(*home.state);
    for (const char* opening : {"first", "second"}) {
        SCOPED_TRACE(opening);
        home.state->requestClean();
        EXPECT_TRUE(stage.shows(QStringLiteral("review required")));
        EXPECT_TRUE(stage.shows(QStringLiteral("You might want to keep them.")));
        QQuickItem& button = stage.control(destructive);
        EXPECT_FALSE(button.isEnabled());
        EXPECT_EQ(button.opacity(), 0.5);
        stage.control(acknowledgement).forceActiveFocus();
        stage.press(Qt::Key_Space);
        EXPECT_TRUE(button.isEnabled());
        EXPECT_EQ(button.opacity(), 1);
        stage.press(Qt::Key_Escape);
        EXPECT_FALSE(home.state->showConfirmation());
    }
    EXPECT_TRUE(home.application.disk->removed().empty());
}

TEST(ConfirmationSheetTest, SafeAreasNeedNoAcknowledgement)
{
    const ScannedHome home;
    const SheetStage stage(*home.state);
    home.state->deselectAll("movies");
    home.state->requestClean();
    EXPECT_TRUE(stage.checkBoxes().isEmpty());
    EXPECT_FALSE(stage.shows(QStringLiteral("review required")));
    EXPECT_FALSE(stage.shows(QStringLiteral("Movies")));
    const QString button = QStringLiteral("Delete 100 bytes permanently");
    EXPECT_TRUE(stage.control(button).isEnabled());
    stage.click(button);
    EXPECT_FALSE(home.state->showConfirmation());
    waitUntil([&] { return home.state->hasCleaningReport(); });
    EXPECT_EQ(home.application.disk->removed(),
              Strings{ScriptedApplication::itemPath("caches", 0)});
}

TEST(ConfirmationSheetTest, ReturnNeverConfirms)
{
    const ScannedHome home;
    const SheetStage stage(*home.state);
    home.state->deselectAll("movies");
    home.state->requestClean();
    stage.control(QStringLiteral("Delete")).forceActiveFocus();
    stage.press(Qt::Key_Return);
    stage.press(Qt::Key_Enter);
    EXPECT_TRUE(home.state->showConfirmation());
    EXPECT_FALSE(home.state->isCleaning());
    home.state->setShowConfirmation(false);

    home.state->requestClean();
    stage.press(Qt::Key_Return);
    EXPECT_FALSE(home.state->showConfirmation());
    EXPECT_FALSE(home.state->isCleaning());
}

TEST(ConfirmationSheetTest, FiguresFollowTheSelection)
{
    const ScannedHome home;
    const SheetStage stage(*home.state);
    home.state->requestClean();
    EXPECT_TRUE(stage.hasControl(destructive));
    home.state->deselectAll("caches");
    EXPECT_TRUE(stage.hasControl(QStringLiteral("Delete 200 bytes permanently")));
    home.state->deselectAll("movies");
    EXPECT_TRUE(stage.hasControl(QStringLiteral("Delete Zero KB permanently")));
    EXPECT_FALSE(stage.hasControl(acknowledgement));
}

} // namespace
} // namespace ZorvaneTests
