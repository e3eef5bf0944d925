#include "tests/Zorvane/Support/Gate.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"
#include "tests/Zorvane/Support/SignalLog.h"

#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

using CleanCore::RuleTier;
using Zorvane::AppState;
using Zorvane::BooleanBinding;

std::string itemPath(std::size_t item)
{
    return ScriptedApplication::itemPath("cache-a", item);
}

TEST(AppStateCleaning, BindingsPublishEachChangeOnceAndOutliveTheirScan)
{
    ScriptedApplication application;
    application.addArea("cache-a", RuleTier::safe, {1, 2, 4, 8, 16});
    application.addUnreadableArea("cache-empty");
    auto state = std::make_unique<AppState>(application.environment());
    scan(*state);
    const BooleanBinding all = state->categoryBinding(0);
    const BooleanBinding none = state->categoryBinding(1);
    const BooleanBinding item = state->itemBinding("cache-a", itemPath(2));
    SignalLog log;
    log.note(state.get(), &AppState::selectionChanged,
             [&] { return std::to_string(state->selectedBytes(0)); });
    const struct
    {
        const BooleanBinding& binding;
        bool isSelected;
        const char* published;
    } writes[] = {
        {item, true, ""}, {item, false, "27"}, {item, false, ""}, {all, true, "31"},
        {all, true, ""},  {all, false, "0"},   {item, true, "4"}, {all, false, "0"},
        {all, false, ""}, {none, false, ""},
    };
    for (const auto& [binding, isSelected, published] : writes) {
        binding.set(isSelected);
        EXPECT_EQ(binding.get(), isSelected);
        EXPECT_EQ(log.take(), published);
        EXPECT_EQ(all.get(), state->selectedBytes(0) == 31);
    }
    none.set(true);
    EXPECT_FALSE(none.get());
    scan(*state);
    all.set(false);
    EXPECT_FALSE(all.get());
    EXPECT_TRUE(item.get());
    state.reset();
    item.set(false);
    EXPECT_FALSE(item.get());
}

TEST(AppStateCleaning, CleansTheSelectionAndReports)
{
    ScriptedApplication application;
    application.addSnapshots({"2026-01-01-000000"});
    application.addArea("cache-a", RuleTier::safe, {30, 20, 10});
    application.addArea("cache-b", RuleTier::safe, {8});
    application.disk->irremovable = {itemPath(1)};
    application.disk->capacities = {1000, 1025};
    Gate gate;
    application.disk->onRemove = [&](const auto&) { gate.pass(); };
    AppState state(application.environment());
    EXPECT_FALSE(state.lastVisibleFreedBytes());
    scan(state);
    state.selectAll("tm-local-snapshots");
    state.deselectAll("cache-b");
    state.requestClean();
    EXPECT_TRUE(state.showConfirmation());
    SignalLog log;
    log.note(&state, &AppState::isCleaningChanged,
             [&] { return state.isCleaning() ? "cleaning" : "done"; });
    log.note(&state, &AppState::showConfirmationChanged,
             [&] { return state.showConfirmation() ? "asking" : "not asking"; });
    log.note(&state, &AppState::lastVisibleFreedBytesChanged,
             [&] { return "freed " + std::to_string(*state.lastVisibleFreedBytes()); });
    log.note(&state, &AppState::cleaningReportChanged,
             [&] { return std::to_string(state.cleaningReport()->totalBytesFreed()); });
    log.note(&state, &AppState::phaseChanged, "phase");
    log.note(&state, &AppState::categoriesChanged, "categories");
    state.performClean();
    // Meanwhile nothing else starts, and the clean keeps to the selection that it started with.
    state.performClean();
    state.startScan();
    state.selectAll("cache-b");
    gate.open();
    waitUntil([&] { return !state.isCleaning(); });
    EXPECT_EQ(log.take(), "cleaning, not asking, freed 25, 40, done");
    EXPECT_EQ(application.disk->removed(), (Strings{itemPath(0), itemPath(2)}));
    // Snapshots follow the files, in the same report.
    EXPECT_EQ(state.cleaningReport()->removed.size(), 3U);
    ASSERT_EQ(state.cleaningReport()->skipped.size(), 1U);
    EXPECT_EQ(state.cleaningReport()->skipped[0].path, itemPath(1));
    EXPECT_EQ(state.selection().selectedBytes(), 68);
    state.deselectAll("cache-a");
    state.deselectAll("cache-b");
    state.deselectAll("tm-local-snapshots");
    // A report of nothing is a report too.
    runClean(state);
    EXPECT_EQ(log.take(), "cleaning, not asking, freed 0, 0, done");
}

TEST(AppStateCleaning, ClosingWaitsForTheItemInHandOnly)
{
    for (const bool releases : {false, true}) {
        SCOPED_TRACE(releases);
        ScriptedApplication application;
        application.addArea("cache-a", RuleTier::safe, {3, 2, 1});
        application.addCloudFolder("a", 1, 20);
        application.addCloudFolder("b", 1, 10);
        Gate gate;
        application.disk->onRemove = application.drive->onRelease = [&](auto&&) { gate.pass(); };
        AppState state(application.environment());
        scan(state);
        measureCloud(state);
        SignalLog log;
        log.note(&state, &AppState::readyToClose, "ready");
        if (releases) {
            state.cloud()->setICloudSelected(ScriptedApplication::cloudPath("a"), true);
            state.cloud()->setICloudSelected(ScriptedApplication::cloudPath("b"), true);
            state.cloud()->requestEvict();
        } else {
            state.performClean();
        }
        gate.waitUntilReached();
        state.requestClose();
        EXPECT_TRUE(state.isClosing());
        EXPECT_EQ(log.take(), "");
        gate.open();
        waitUntil([&] { return !state.isCleaning() && !state.cloud()->isEvicting(); });
        EXPECT_EQ(log.take(), "ready");
        EXPECT_EQ(application.disk->removed().size() + application.drive->released.size(), 1U);
        // Nothing is in hand any more.
        state.requestClose();
        EXPECT_EQ(log.take(), "ready");
    }
}

} // namespace
} // namespace ZorvaneTests
