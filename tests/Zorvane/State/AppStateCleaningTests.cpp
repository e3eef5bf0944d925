#include "Zorvane/State/Models/ReportModel.h"
#include "tests/Zorvane/Support/Gate.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

using CleanCore::RuleTier;
using Zorvane::AppState;
using Zorvane::BooleanBinding;
using Zorvane::Phase;

template <typename Items>
Strings pathsOf(const Items& items)
{
    Strings paths;
    for (const auto& item : items) {
        paths.push_back(item.path);
    }
    return paths;
}

TEST(AppStateCleaningTest, BindingsPublishEachChangeOnce)
{
    ScriptedApplication application;
    application.addArea("cache-a", RuleTier::safe, {1, 2, 4, 8, 16});
    application.addUnreadableArea("cache-empty");
    AppState state(application.environment());
    scan(state);
    const QSignalSpy told(&state, &AppState::selectionChanged);
    const BooleanBinding category = state.categoryBinding(0);
    const BooleanBinding empty = state.categoryBinding(1);
    const BooleanBinding item =
        state.itemBinding("cache-a", ScriptedApplication::itemPath("cache-a", 2));
    const struct
    {
        const BooleanBinding& binding;
        bool isSelected;
        std::int64_t bytes;
        int told;
    } writes[] = {
        {item, true, 31, 0},     {item, false, 27, 1},    {item, false, 27, 1},
        {category, true, 31, 2}, {category, true, 31, 2}, {category, false, 0, 3},
        {item, true, 4, 4},      {category, false, 0, 5}, {category, false, 0, 5},
        {empty, false, 0, 5},
    };
    for (const auto& [binding, isSelected, bytes, changes] : writes) {
        binding.set(isSelected);
        EXPECT_EQ(binding.get(), isSelected);
        EXPECT_EQ(state.selectedBytes(0), bytes);
        EXPECT_EQ(told.size(), changes);
        EXPECT_EQ(category.get(), bytes == 31);
    }
    empty.set(true);
    EXPECT_FALSE(empty.get());
    EXPECT_EQ(told.size(), 5);
}

TEST(AppStateCleaningTest, BindingsOutliveTheirScanAndTheState)
{
    ScriptedApplication application;
    application.addArea("cache-a", RuleTier::safe, {1});
    auto state = std::make_unique<AppState>(application.environment());
    scan(*state);
    const BooleanBinding category = state->categoryBinding(0);
    const BooleanBinding item =
        state->itemBinding("cache-a", ScriptedApplication::itemPath("cache-a", 0));
    scan(*state);
    category.set(false);
    EXPECT_FALSE(category.get());
    EXPECT_TRUE(item.get());
    state.reset();
    category.set(true);
    item.set(false);
    EXPECT_FALSE(category.get());
    EXPECT_FALSE(item.get());
}

TEST(AppStateCleaningTest, CleansFilesThenToolsAndMergesTheirReports)
{
    ScriptedApplication application;
    application.addSnapshots({"2026-01-01-000000", "2026-02-02-000000"});
    application.script.erase({"/usr/bin/tmutil", "deletelocalsnapshots", "2026-02-02-000000"});
    application.addArea("cache-a", RuleTier::safe, {30, 20, 10});
    application.disk->irremovable = {ScriptedApplication::itemPath("cache-a", 1)};
    application.disk->capacities = {1000, 1025};
    AppState state(application.environment());
    scan(state);
    state.selectAll("tm-local-snapshots");
    state.requestClean();
    EXPECT_TRUE(state.showConfirmation());

    Strings steps;
    const auto note = [&](auto signal, const std::string& step) {
        QObject::connect(&state, signal, [&steps, step] { steps.push_back(step); });
    };
    note(&AppState::isCleaningChanged, "cleaning");
    note(&AppState::showConfirmationChanged, "confirmation");
    note(&AppState::lastVisibleFreedBytesChanged, "freed");
    note(&AppState::cleaningReportChanged, "report");
    runClean(state);
    EXPECT_EQ(steps, (Strings{"cleaning", "confirmation", "freed", "report", "cleaning"}));
    EXPECT_FALSE(state.showConfirmation());
    const auto file = [](std::size_t item) {
        return ScriptedApplication::itemPath("cache-a", item);
    };
    const Strings removed = pathsOf(state.cleaningReport()->removed);
    ASSERT_EQ(removed.size(), 3U);
    EXPECT_EQ(removed[0], file(0));
    EXPECT_EQ(removed[1], file(2));
    EXPECT_NE(removed[2].find("2026-01-01-000000"), std::string::npos);
    const Strings skipped = pathsOf(state.cleaningReport()->skipped);
    ASSERT_EQ(skipped.size(), 2U);
    EXPECT_EQ(skipped[0], file(1));
    EXPECT_NE(skipped[1].find("2026-02-02-000000"), std::string::npos);
    EXPECT_EQ(state.cleaningReport()->totalBytesFreed(), 40);
    Zorvane::ReportModel report;
    report.setAppState(&state);
    EXPECT_EQ(report.visibleFreedText(), QStringLiteral("Visible in Finder right now: 25 bytes"));
    // Neither the list nor the selection follows; the next scan does that.
    EXPECT_EQ(state.phase(), Phase::results);
    EXPECT_EQ(state.categories().size(), 2U);
    EXPECT_EQ(state.selectedBytes(0), 60);
}

TEST(AppStateCleaningTest, AConfirmationGoesWithTheResultsThatItIsAbout)
{
    ScriptedApplication application;
    application.addArea("cache-a", RuleTier::safe, {1});
    AppState state(application.environment());
    scan(state);
    state.requestClean();
    scan(state);
    EXPECT_FALSE(state.showConfirmation());
}

TEST(AppStateCleaningTest, MeasuresTheGrowthOfFreeSpaceAndNeverLess)
{
    using Capacities = std::vector<std::optional<std::int64_t>>;
    const struct
    {
        Capacities capacities;
        std::int64_t freed;
    } cases[] = {
        {{100, 160}, 60},         {{100, 90}, 0},          {{100, 100}, 0},
        {{std::nullopt, 70}, 70}, {{70, std::nullopt}, 0},
    };
    for (const auto& [capacities, freed] : cases) {
        ScriptedApplication application;
        application.disk->capacities = capacities;
        AppState state(application.environment());
        EXPECT_FALSE(state.lastVisibleFreedBytes());
        // Nothing is chosen: the report is empty, and there is one.
        runClean(state);
        ASSERT_TRUE(state.hasCleaningReport());
        EXPECT_TRUE(pathsOf(state.cleaningReport()->removed).empty());
        EXPECT_TRUE(pathsOf(state.cleaningReport()->skipped).empty());
        EXPECT_EQ(state.lastVisibleFreedBytes(), freed);
    }
}

TEST(AppStateCleaningTest, StartsNothingElseAndKeepsToWhatWasChosenAtFirst)
{
    ScriptedApplication application;
    application.addArea("cache-a", RuleTier::safe, {2, 1});
    application.addArea("cache-b", RuleTier::safe, {8});
    Gate gate;
    application.disk->onRemove = [&](const auto&) { gate.pass(); };
    AppState state(application.environment());
    scan(state);
    state.itemBinding("cache-a", ScriptedApplication::itemPath("cache-a", 0)).set(false);
    state.performClean();
    EXPECT_TRUE(state.isCleaning());
    const QSignalSpy told(&state, &AppState::isCleaningChanged);
    const QSignalSpy moved(&state, &AppState::phaseChanged);
    state.performClean();
    state.startScan();
    EXPECT_EQ(told.size(), 0);
    EXPECT_EQ(moved.size(), 0);
    state.selectAll("cache-a");
    state.deselectAll("cache-b");
    gate.open();
    waitUntil([&] { return !state.isCleaning(); });
    EXPECT_EQ(told.size(), 1);
    EXPECT_EQ(application.disk->removed(), (Strings{ScriptedApplication::itemPath("cache-b", 0),
                                                    ScriptedApplication::itemPath("cache-a", 1)}));
}

TEST(AppStateCleaningTest, ClosingFinishesTheItemInHandAndNoMore)
{
    ScriptedApplication application;
    application.addArea("cache-a", RuleTier::safe, {3, 2, 1});
    Gate gate;
    application.disk->onRemove = [&](const auto&) { gate.pass(); };
    AppState state(application.environment());
    scan(state);
    const QSignalSpy ready(&state, &AppState::readyToClose);
    state.performClean();
    gate.waitUntilReached();
    state.requestClose();
    EXPECT_TRUE(state.isClosing());
    EXPECT_EQ(ready.size(), 0);
    gate.open();
    waitUntil([&] { return ready.size() == 1; });
    EXPECT_EQ(application.disk->removed(), (Strings{ScriptedApplication::itemPath("cache-a", 0)}));
}

TEST(AppStateCleaningTest, ClosesAtOnceWhenNothingIsInHand)
{
    ScriptedApplication application;
    AppState state(application.environment());
    const QSignalSpy ready(&state, &AppState::readyToClose);
    state.requestClose();
    EXPECT_EQ(ready.size(), 1);
}

} // namespace
} // namespace ZorvaneTests
