#include "tests/Zorvane/Support/SheetStage.h"

#include <QSignalSpy>

#include <gmock/gmock.h>

namespace ZorvaneTests {
namespace {

using CleanCore::RuleTier;
using Zorvane::AppState;

const QString inUse = QStringLiteral("1 in use by an open app");
const QString blocked = QStringLiteral("1 protected by Zorvane");
const QString estimate = QStringLiteral("That's why the freed total is smaller than the estimate.");

/// A clean of three items of 100 bytes, of which some are left.
struct CleanedHome
{
    ScriptedApplication application;
    std::unique_ptr<AppState> state;

    CleanedHome(bool hasIrremovable, bool hasProtected)
    {
        application.addArea("caches", RuleTier::safe, {100, 100, 100});
        if (hasIrremovable) {
            application.disk->irremovable = {item(0)};
        }
        if (hasProtected) {
            application.disk->links[item(1)] = "/home/me/Documents/x";
        }
        state = std::make_unique<AppState>(application.environment());
        scan(*state);
    }

    void clean() const
    {
        state->performClean();
        waitUntil([&] { return !state->isCleaning(); });
    }

    [[nodiscard]] static std::string item(std::size_t index)
    {
        return ScriptedApplication::itemPath("caches", index);
    }
};

TEST(ReportSheetTest, SaysWhyItemsWereLeft)
{
    struct Case
    {
        bool hasIrremovable;
        bool hasProtected;
        const char* freed;
        const char* removed;
    };
    constexpr Case cases[] = {
        {false, false, "300 bytes", "freed — 3 items removed"},
        {true, false, "200 bytes", "freed — 2 items removed"},
        {false, true, "200 bytes", "freed — 2 items removed"},
        {true, true, "100 bytes", "freed — 1 items removed"},
    };
    for (const auto& entry : cases) {
        SCOPED_TRACE(entry.removed);
        const CleanedHome home(entry.hasIrremovable, entry.hasProtected);
        const SheetStage stage(*home.state);
        home.clean();
        const bool hasSkipped = entry.hasIrremovable || entry.hasProtected;
        EXPECT_TRUE(stage.shows(QString::fromUtf8(entry.freed)));
        EXPECT_TRUE(stage.shows(QString::fromUtf8(entry.removed)));
        EXPECT_EQ(stage.shows(inUse), entry.hasIrremovable);
        EXPECT_EQ(stage.shows(blocked), entry.hasProtected);
        EXPECT_EQ(stage.shows(estimate), hasSkipped);
        EXPECT_EQ(stage.hasControl(QStringLiteral("Details")), hasSkipped);
    }
}

TEST(ReportSheetTest, DetailsListEverySkippedPathInOrderAndCloseAgain)
{
    const CleanedHome home(true, true);
    const SheetStage stage(*home.state);
    home.clean();
    QStringList paths;
    for (const auto& item : home.state->cleaningReport()->skipped) {
        paths << QString::fromStdString(item.path);
    }
    const auto listed = [&] {
        (void)stage.window().grabWindow();
        QStringList names = stage.names();
        names.removeIf([&](const QString& name) { return !paths.contains(name); });
        return names;
    };
    ASSERT_EQ(paths.size(), 2);
    EXPECT_TRUE(listed().isEmpty());
    stage.click(QStringLiteral("Details"));
    EXPECT_EQ(listed(), paths);
    stage.click(QStringLiteral("Details"));
    EXPECT_TRUE(listed().isEmpty());
}

TEST(ReportSheetTest, OfManySkippedPathsOnlyThoseInSightExist)
{
    ScriptedApplication application;
    application.addArea("caches", RuleTier::safe, std::vector<std::int64_t>(2'000, 1));
    for (std::size_t index = 0; index < 2'000; ++index) {
        application.disk->irremovable.insert(ScriptedApplication::itemPath("caches", index));
    }
    AppState state(application.environment());
    scan(state);
    const SheetStage stage(state);
    state.performClean();
    waitUntil([&] { return !state.isCleaning(); });
    stage.click(QStringLiteral("Details"));
    (void)stage.window().grabWindow();
    const auto rows = stage.names().filter(QStringLiteral("item")).size();
    EXPECT_GE(rows, 5);
    EXPECT_LT(rows, 100);
}

TEST(ReportSheetTest, ScansAgainOrJustCloses)
{
    const CleanedHome home(false, false);
    const SheetStage stage(*home.state);
    home.clean();
    stage.press(Qt::Key_Escape);
    EXPECT_FALSE(home.state->hasCleaningReport());
    EXPECT_EQ(home.state->phase(), Zorvane::Phase::results);

    home.clean();
    const QSignalSpy phases(home.state.get(), &AppState::phaseChanged);
    stage.click(QStringLiteral("Scan again"));
    EXPECT_FALSE(home.state->hasCleaningReport());
    EXPECT_GE(phases.count(), 1);
}

} // namespace
} // namespace ZorvaneTests
