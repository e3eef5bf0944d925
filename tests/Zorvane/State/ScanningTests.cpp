#include "CleanCore/Support/TaskPool.h"
#include "tests/Zorvane/Support/Gate.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"
#include "tests/Zorvane/Support/SignalLog.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

using CleanCore::RuleTier;
using Zorvane::AppState;
using Zorvane::Phase;

/// Notes every published field of a scan.
void noteScan(SignalLog& log, AppState& state)
{
    log.note(&state, &AppState::phaseChanged, [&] { return state.phaseName().toStdString(); });
    log.note(&state, &AppState::bytesFoundSoFarChanged,
             [&] { return "found " + std::to_string(state.bytesFoundSoFar()); });
    log.note(&state, &AppState::currentRuleIdChanged,
             [&] { return "at " + state.currentRuleId().value_or("none"); });
    log.note(&state, &AppState::categoriesChanged,
             [&] { return "total " + std::to_string(state.totalRecoverableBytes()); });
    log.note(&state, &AppState::selectionChanged,
             [&] { return "selected " + std::to_string(state.selection().selectedBytes()); });
    log.note(&state, &AppState::showConfirmationChanged,
             [&] { return state.showConfirmation() ? "asking" : "not asking"; });
    log.note(&state, &AppState::cleaningReportChanged,
             [&] { return state.hasCleaningReport() ? "report" : "no report"; });
}

TEST(AppStateScanning, TellsTheStepsAndReplacesTheResults)
{
    ScriptedApplication application;
    application.addArea("cache-a", RuleTier::safe, {7});
    application.addArea("cache-b", RuleTier::safe, {11});
    application.addToolArea("brew-cleanup", RuleTier::safe);
    application.script[{"/opt/homebrew/bin/brew", "cleanup", "--dry-run", "-s"}] =
        "Would remove: /cellar/old (5B)\n";
    application.addUnreadableArea("logs-locked");
    application.pool = std::make_shared<CleanCore::TaskPool>(1);
    *application.isCatalogBroken = true;
    AppState state(application.environment());
    SignalLog log;
    noteScan(log, state);
    state.startScan();
    waitUntil([&] { return state.phase() == Phase::ready; });
    EXPECT_EQ(log.take(), "scanning, total 0, found 0, ready");

    // The size of a tool's area is not known while it runs, and none of its items is selected.
    *application.isCatalogBroken = false;
    const std::string steps =
        "at cache-a, found 7, at cache-b, found 18, at logs-locked, found 18, "
        "at none, total 23, selected 18, ";
    scan(state);
    EXPECT_EQ(log.take(), "scanning, total 0, found 0, " + steps + "no report, at none, results");
    EXPECT_TRUE(state.anyAccessErrors());

    // The report and the selection stay until the next results.
    runClean(state);
    state.requestClean();
    (void)log.take();
    scan(state);
    std::string again = steps;
    again.insert(again.find("total 23"), "not asking, ");
    EXPECT_EQ(log.take(), "scanning, total 0, found 0, " + again + "no report, at none, results");
}

TEST(AppStateScanning, StartsNoSecondScan)
{
    ScriptedApplication application;
    Gate gate;
    application.addArea("cache-a", RuleTier::safe, {1});
    application.disk->onMeasure = [&](auto&&...) { gate.pass(); };
    AppState state(application.environment());
    state.startScan();
    gate.waitUntilReached();
    SignalLog log;
    noteScan(log, state);
    state.startScan();
    EXPECT_EQ(log.take(), "");
    gate.open();
    waitUntil([&] { return state.phase() == Phase::results; });
}

TEST(AppStateScanning, ACancelledScanPublishesNothing)
{
    for (const bool inTool : {false, true}) {
        SCOPED_TRACE(inTool);
        ScriptedApplication application;
        Gate gate;
        application.addArea("cache-a", RuleTier::safe, {1});
        application.addSnapshots({"2026-01-01-000000"});
        if (inTool) {
            application.whenToolRuns = [&] { gate.pass(); };
        } else {
            application.disk->onMeasure = [&](auto&&...) { gate.pass(); };
        }
        AppState state(application.environment());
        state.startScan();
        gate.waitUntilReached();
        SignalLog log;
        noteScan(log, state);
        state.cancelScan();
        EXPECT_EQ(log.take(), "at none, ready");

        // The next scan starts while the first still hangs.
        application.disk->measures[ScriptedApplication::itemPath("cache-a", 0)].sizeBytes = 5;
        state.startScan();
        gate.open();
        waitUntil([&] { return state.phase() == Phase::results; });
        EXPECT_EQ(log.take(), "scanning, total 0, found 0, at cache-a, found 5, at none, total 5, "
                              "selected 5, no report, at none, results");
    }
}

TEST(AppStateScanning, TheStateMayGoWhileAScanOrAToolHangs)
{
    for (const bool inTool : {false, true}) {
        ScriptedApplication application;
        const auto gate = std::make_shared<Gate>();
        application.addArea("cache-a", RuleTier::safe, {1});
        application.addSnapshots({"2026-01-01-000000"});
        if (inTool) {
            application.whenToolRuns = [gate] { gate->pass(); };
        } else {
            application.disk->onMeasure = [gate](auto&&...) { gate->pass(); };
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
