#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <QSignalSpy>
#include <gtest/gtest.h>
#include <thread>

namespace ZorvaneTests {
namespace {

using CleanCore::RuleTier;
using Zorvane::AppState;
using Zorvane::BooleanBinding;
using Zorvane::Phase;

Strings removedPaths(const AppState& state)
{
    Strings paths;
    for (const auto& item : state.cleaningReport()->removed) {
        paths.push_back(item.path);
    }
    return paths;
}

Strings skippedPaths(const AppState& state)
{
    Strings paths;
    for (const auto& item : state.cleaningReport()->skipped) {
        paths.push_back(item.path);
    }
    return paths;
}

void clean(AppState& state)
{
    state.performClean();
    waitUntil([&] { return !state.isCleaning(); });
}

TEST(AppStateCleaningTest, AnItemsBindingPublishesEachChangeOnce)
{
    ScriptedApplication application;
    application.addArea("cache-a", RuleTier::safe, {1});
    AppState state(application.environment());
    scan(state);
    const QSignalSpy told(&state, &AppState::selectionChanged);
    const BooleanBinding binding =
        state.itemBinding("cache-a", ScriptedApplication::itemPath("cache-a", 0));
    EXPECT_TRUE(binding.get());
    binding.set(true);
    EXPECT_EQ(told.size(), 0);
    binding.set(false);
    EXPECT_FALSE(binding.get());
    binding.set(false);
    EXPECT_EQ(told.size(), 1);
}

TEST(AppStateCleaningTest, ACategorysBindingChoosesAllOrNoneAtOnce)
{
    ScriptedApplication application;
    application.addArea("cache-a", RuleTier::safe, {1, 2, 4, 8, 16});
    application.addUnreadableArea("cache-empty");
    AppState state(application.environment());
    scan(state);
    for (const std::size_t item : {0U, 2U, 4U}) {
        state.itemBinding("cache-a", ScriptedApplication::itemPath("cache-a", item)).set(false);
    }
    EXPECT_EQ(state.selectedBytes(0), 10);
    const QSignalSpy told(&state, &AppState::selectionChanged);
    const BooleanBinding binding = state.categoryBinding(0);
    EXPECT_FALSE(binding.get());
    // A second write changes nothing.
    for (const int repetition : {1, 2}) {
        SCOPED_TRACE(repetition);
        binding.set(true);
        EXPECT_TRUE(binding.get());
        EXPECT_EQ(state.selectedBytes(0), 31);
        EXPECT_EQ(told.size(), 1);
    }
    for (const int repetition : {1, 2}) {
        SCOPED_TRACE(repetition);
        binding.set(false);
        EXPECT_EQ(state.selectedBytes(0), 0);
        EXPECT_EQ(told.size(), 2);
    }
    const BooleanBinding empty = state.categoryBinding(1);
    empty.set(true);
    EXPECT_FALSE(empty.get());
    empty.set(false);
    EXPECT_EQ(told.size(), 2);
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

TEST(AppStateCleaningTest, RemovesWhatWasChosenWhenItBegan)
{
    ScriptedApplication application;
    application.addArea("cache-a", RuleTier::safe, {1, 2});
    AppState state(application.environment());
    scan(state);
    state.itemBinding("cache-a", ScriptedApplication::itemPath("cache-a", 0)).set(false);
    state.performClean();
    state.selectAll("cache-a");
    waitUntil([&] { return !state.isCleaning(); });
    EXPECT_EQ(removedPaths(state), (Strings{ScriptedApplication::itemPath("cache-a", 1)}));
}

TEST(AppStateCleaningTest, WarnsOfChosenReviewAreasThatHaveAText)
{
    ScriptedApplication application;
    application.addArea("cache-a", RuleTier::safe, {100});
    application.addArea("dev-told", RuleTier::reviewRequired, {20, 5});
    application.addArea("dev-silent", RuleTier::reviewRequired, {10});
    application.addArea("dev-unchosen", RuleTier::reviewRequired, {1});
    application.texts = {{"category.warning.dev-told", "Think twice."},
                         {"category.warning.dev-unchosen", "Never shown."},
                         {"category.warning.cache-a", "Never shown either."},
                         {"rule.dev-told.title", "Told"}};
    AppState state(application.environment());
    scan(state);
    EXPECT_TRUE(state.selectedTierBWarnings().empty());
    EXPECT_TRUE(state.selectedTierBCategories().empty());

    state.itemBinding("dev-told", ScriptedApplication::itemPath("dev-told", 1)).set(true);
    state.selectAll("dev-silent");
    EXPECT_EQ(state.selectedTierBWarnings(), (std::vector{QStringLiteral("Think twice.")}));
    const auto summary = state.selectedTierBCategories();
    ASSERT_EQ(summary.size(), 2U);
    EXPECT_EQ(summary[0].title, QStringLiteral("Told"));
    EXPECT_EQ(summary[0].bytes, 5);
    EXPECT_EQ(summary[0].count, 1);
    EXPECT_EQ(summary[1].title, QStringLiteral("dev-silent"));

    state.deselectAll("dev-told");
    EXPECT_TRUE(state.selectedTierBWarnings().empty());
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
    clean(state);
    EXPECT_EQ(steps, (Strings{"cleaning", "confirmation", "freed", "report", "cleaning"}));
    EXPECT_FALSE(state.showConfirmation());
    const auto file = [](std::size_t item) {
        return ScriptedApplication::itemPath("cache-a", item);
    };
    const Strings removed = removedPaths(state);
    ASSERT_EQ(removed.size(), 3U);
    EXPECT_EQ(removed[0], file(0));
    EXPECT_EQ(removed[1], file(2));
    EXPECT_NE(removed[2].find("2026-01-01-000000"), std::string::npos);
    const Strings skipped = skippedPaths(state);
    ASSERT_EQ(skipped.size(), 2U);
    EXPECT_EQ(skipped[0], file(1));
    EXPECT_NE(skipped[1].find("2026-02-02-000000"), std::string::npos);
    EXPECT_EQ(state.cleaningReport()->totalBytesFreed(), 40);
    EXPECT_EQ(state.lastVisibleFreedBytes(), 25);
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
        clean(state);
        ASSERT_TRUE(state.hasCleaningReport());
        EXPECT_TRUE(removedPaths(state).empty());
        EXPECT_TRUE(skippedPaths(state).empty());
        EXPECT_EQ(state.lastVisibleFreedBytes(), freed);
    }
}

TEST(AppStateCleaningTest, StartsNothingElseAndKeepsToWhatWasChosenAtFirst)
{
    ScriptedApplication application;
    application.addArea("cache-a", RuleTier::safe, {2, 1});
    std::atomic<bool> isOpen = false;
    application.disk->onRemove = [&](const auto&) { isOpen.wait(false); };
    AppState state(application.environment());
    scan(state);
    state.performClean();
    EXPECT_TRUE(state.isCleaning());
    const QSignalSpy told(&state, &AppState::isCleaningChanged);
    const QSignalSpy moved(&state, &AppState::phaseChanged);
    state.performClean();
    state.startScan();
    EXPECT_EQ(told.size(), 0);
    EXPECT_EQ(moved.size(), 0);
    state.deselectAll("cache-a");
    isOpen = true;
    isOpen.notify_all();
    waitUntil([&] { return !state.isCleaning(); });
    EXPECT_EQ(told.size(), 1);
    EXPECT_EQ(application.disk->removed().size(), 2U);
}

TEST(AppStateCleaningTest, ClosingFinishesTheItemInHandAndNoMore)
{
    ScriptedApplication application;
    application.addArea("cache-a", RuleTier::safe, {3, 2, 1});
    std::atomic<bool> hasBegun = false;
    std::atomic<bool> isOpen = false;
    application.disk->onRemove = [&](const auto&) {
        hasBegun = true;
        hasBegun.notify_all();
        isOpen.wait(false);
    };
    AppState state(application.environment());
    scan(state);
    const QSignalSpy ready(&state, &AppState::readyToClose);
    state.performClean();
    hasBegun.wait(false);
    state.requestClose();
    EXPECT_TRUE(state.isClosing());
    EXPECT_EQ(ready.size(), 0);
    isOpen = true;
    isOpen.notify_all();
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

TEST(AppStateCleaningTest, TheReportGoesWhenItIsClosed)
{
    ScriptedApplication application;
    AppState state(application.environment());
    clean(state);
    state.closeReport();
    EXPECT_FALSE(state.hasCleaningReport());
}

} // namespace
} // namespace ZorvaneTests
