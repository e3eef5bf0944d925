#include "CleanCore/Support/TaskPool.h"
#include "tests/Zorvane/Support/Gate.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

using CleanCore::RuleTier;
using Zorvane::AppState;
using Zorvane::Phase;

TEST(AppStateScanningTest, PublishesFilteredResultsLargestFirstFilesBeforeTools)
{
    ScriptedApplication application;
    application.addArea("cache-small", RuleTier::safe, {3, 2});
    application.addToolArea("brew-cleanup", RuleTier::safe);
    application.script[{"/opt/homebrew/bin/brew", "cleanup", "--dry-run", "-s"}] =
        "Would remove: /cellar/old (5B)\n";
    application.addArea("cache-empty", RuleTier::safe, {});
    application.addUnreadableArea("cache-locked");
    application.addArea("dev-large", RuleTier::reviewRequired, {100});
    application.addToolArea("docker-reclaimable", RuleTier::reviewRequired);
    AppState state(application.environment());
    scan(state);
    // The area of a tool is as large as that of files, and comes after it.
    EXPECT_EQ(categoryTexts(state),
              (Strings{"dev-large:100", "cache-small:5", "brew-cleanup:5", "cache-locked:0"}));
    EXPECT_TRUE(state.anyAccessErrors());
    EXPECT_EQ(state.totalRecoverableBytes(), 110);
    EXPECT_EQ(state.selection().selectedBytes(), 5);
    EXPECT_FALSE(state.currentRuleId());
    // The areas of tools do not count in what was found on the way.
    EXPECT_EQ(state.bytesFoundSoFar(), 105);
}

TEST(AppStateScanningTest, OffersWhatTwoAreasFindOnlyOnce)
{
    ScriptedApplication application;
    application.addArea("cache-a", RuleTier::safe, {8, 4});
    application.addArea("dev-b", RuleTier::reviewRequired, {});
    application.catalog.rules[1].basePaths = application.catalog.rules[0].basePaths;
    AppState state(application.environment());
    scan(state);
    EXPECT_EQ(categoryTexts(state), (Strings{"dev-b:12"}));
}

TEST(AppStateScanningTest, ABrokenCatalogLeadsBackToReadyAndMayBeMended)
{
    ScriptedApplication application;
    application.addArea("dev-y", RuleTier::safe, {0});
    *application.isCatalogBroken = true;
    AppState state(application.environment());
    state.startScan();
    EXPECT_EQ(state.phase(), Phase::scanning);
    waitUntil([&] { return state.phase() == Phase::ready; });
    *application.isCatalogBroken = false;
    scan(state);
    EXPECT_EQ(categoryTexts(state), (Strings{"dev-y:0"}));
    EXPECT_FALSE(state.anyAccessErrors());
    // What holds no bytes has no arc.
    EXPECT_TRUE(state.ringSegments().empty());
}

TEST(AppStateScanningTest, TellsTheStepsInOrder)
{
    ScriptedApplication application;
    application.addArea("cache-a", RuleTier::safe, {7});
    application.addArea("cache-b", RuleTier::safe, {11});
    application.pool = std::make_shared<CleanCore::TaskPool>(1);
    AppState state(application.environment());
    Strings steps;
    const auto note = [&](auto signal, const std::function<std::string()>& text) {
        QObject::connect(&state, signal, [&steps, text] { steps.push_back(text()); });
    };
    note(&AppState::phaseChanged, [&] { return state.phaseName().toStdString(); });
    note(&AppState::bytesFoundSoFarChanged,
         [&] { return "found " + std::to_string(state.bytesFoundSoFar()); });
    note(&AppState::currentRuleIdChanged,
         [&] { return "at " + state.currentRuleId().value_or("none"); });
    note(&AppState::categoriesChanged,
         [&] { return "categories " + std::to_string(state.categories().size()); });
    note(&AppState::selectionChanged,
         [&] { return "selected " + std::to_string(state.selection().selectedBytes()); });
    note(&AppState::cleaningReportChanged, [] { return "report"; });
    scan(state);

    EXPECT_EQ(steps, (Strings{"scanning", "categories 0", "found 0", "at cache-a", "found 7",
                              "at cache-b", "found 18", "at none", "categories 2", "selected 18",
                              "report", "at none", "results"}));
}

TEST(AppStateScanningTest, StartsNoSecondScan)
{
    ScriptedApplication application;
    Gate gate;
    application.addArea("cache-a", RuleTier::safe, {1});
    application.disk->onMeasure = [&](const auto&, const auto&) { gate.pass(); };
    AppState state(application.environment());
    state.startScan();
    gate.waitUntilReached();
    const QSignalSpy told(&state, &AppState::phaseChanged);
    state.startScan();
    EXPECT_EQ(told.size(), 0);
    gate.open();
    waitUntil([&] { return state.phase() == Phase::results; });
    EXPECT_EQ(told.size(), 1);
}

TEST(AppStateScanningTest, ACancelledScanPublishesNothingAndTheNextIsItsOwn)
{
    ScriptedApplication application;
    Gate gate;
    application.addArea("cache-old", RuleTier::safe, {1});
    application.disk->onMeasure = [&](const std::string& folder, const auto&) {
        if (folder == "/areas/cache-old") {
            gate.pass();
        }
    };
    AppState state(application.environment());
    state.startScan();
    gate.waitUntilReached();
    state.cancelScan();
    EXPECT_EQ(state.phase(), Phase::ready);
    EXPECT_FALSE(state.currentRuleId());

    // The next scan starts while the first still hangs, and finds what there is by then.
    application.disk->measures[ScriptedApplication::itemPath("cache-old", 0)].sizeBytes = 5;
    Strings rules;
    QObject::connect(&state, &AppState::currentRuleIdChanged,
                     [&] { rules.push_back(state.currentRuleId().value_or("none")); });
    state.startScan();
    gate.open();
    waitUntil([&] { return state.phase() == Phase::results; });
    EXPECT_EQ(categoryTexts(state), (Strings{"cache-old:5"}));
    EXPECT_EQ(rules, (Strings{"cache-old", "none", "none"}));
}

TEST(AppStateScanningTest, ACancelWhileAToolListsPublishesNothing)
{
    ScriptedApplication application;
    Gate gate;
    application.addArea("cache-a", RuleTier::safe, {1});
    application.addSnapshots({"2026-01-01-000000"});
    application.whenToolRuns = [&] { gate.pass(); };
    AppState state(application.environment());
    state.startScan();
    gate.waitUntilReached();
    state.cancelScan();
    EXPECT_EQ(state.phase(), Phase::ready);
    const QSignalSpy told(&state, &AppState::phaseChanged);
    gate.open();
    // What a later scan posts comes after whatever the cancelled one did.
    scan(state);
    EXPECT_EQ(told.size(), 2);
    EXPECT_EQ(categoryTexts(state), (Strings{"cache-a:1", "tm-local-snapshots:0"}));
}

TEST(AppStateScanningTest, ANewScanEmptiesTheListAndLeavesTheRest)
{
    ScriptedApplication application;
    application.addArea("cache-a", RuleTier::safe, {4});
    AppState state(application.environment());
    scan(state);
    runClean(state);
    state.startScan();
    EXPECT_TRUE(state.categories().empty());
    EXPECT_EQ(state.bytesFoundSoFar(), 0);
    EXPECT_TRUE(state.hasCleaningReport());
    EXPECT_EQ(state.selection().selectedBytes(), 4);
    waitUntil([&] { return state.phase() == Phase::results; });
    EXPECT_FALSE(state.hasCleaningReport());
}

TEST(AppStateScanningTest, TheStateMayGoWhileAScanOrAToolHangs)
{
    for (const bool inTool : {false, true}) {
        ScriptedApplication application;
        const auto gate = std::make_shared<Gate>();
        application.addArea("cache-a", RuleTier::safe, {1});
        application.addSnapshots({"2026-01-01-000000"});
        if (inTool) {
            application.whenToolRuns = [gate] { gate->pass(); };
        } else {
            application.disk->onMeasure = [gate](const auto&, const auto&) { gate->pass(); };
        }
        auto state = std::make_unique<AppState>(application.environment());
        state->startScan();
        gate->waitUntilReached();
        state.reset();
        gate->open();
        QCoreApplication::processEvents();
    }
}

} // namespace
} // namespace ZorvaneTests
