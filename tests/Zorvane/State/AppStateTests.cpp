#include "CleanCore/Support/TaskPool.h"
#include "tests/Zorvane/Support/Gate.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"
#include "tests/Zorvane/Support/SignalLog.h"

#include <QCoreApplication>
#include <QSettings>
#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

using CleanCore::RuleTier;
using Zorvane::AppState;
using Zorvane::BooleanBinding;
using Zorvane::Phase;

std::string itemPath(std::size_t item)
{
    return ScriptedApplication::itemPath("cache-a", item);
}

/// A log of every published field of the state but the cloud drive's.
struct StateLog : SignalLog
{
    explicit StateLog(AppState& state)
    {
        note(&state, &AppState::phaseChanged, [&] { return state.phaseName().toStdString(); });
        note(&state, &AppState::hasFullDiskAccessChanged,
             [&] { return state.hasFullDiskAccess() ? "access" : "no access"; });
        note(&state, &AppState::bytesFoundSoFarChanged,
             [&] { return "found " + std::to_string(state.bytesFoundSoFar()); });
        note(&state, &AppState::currentRuleIdChanged,
             [&] { return "at " + state.currentRuleId().value_or("none"); });
        note(&state, &AppState::categoriesChanged,
             [&] { return "total " + std::to_string(state.totalRecoverableBytes()); });
        note(&state, &AppState::selectionChanged,
             [&] { return "selected " + std::to_string(state.selection().selectedBytes()); });
        note(&state, &AppState::showConfirmationChanged,
             [&] { return state.showConfirmation() ? "asking" : "not asking"; });
        note(&state, &AppState::isCleaningChanged,
             [&] { return state.isCleaning() ? "cleaning" : "done"; });
        note(&state, &AppState::lastVisibleFreedBytesChanged,
             [&] { return "freed " + std::to_string(*state.lastVisibleFreedBytes()); });
        note(&state, &AppState::cleaningReportChanged, [&] {
            const auto& report = state.cleaningReport();
            return report ? "report " + std::to_string(report->totalBytesFreed()) : "no report";
        });
        note(&state, &AppState::readyToClose, "ready to close");
    }
};

constexpr const char* probe = "/home/me/.cache";

TEST(AppStateFirstRun, StartsByTheStoredTermsVersion)
{
    const struct
    {
        QVariant version;
        Phase phase;
    } cases[] = {
        {"0.1", Phase::needsPermission},
        {QVariant(), Phase::termsAcceptance},
        {"0.1 ", Phase::termsAcceptance},
        {"0.2", Phase::termsAcceptance},
        {QStringList{QStringLiteral("0.1"), QStringLiteral("0.1")}, Phase::termsAcceptance},
    };
    for (const auto& [version, phase] : cases) {
        ScriptedApplication application;
        application.disk->folders[probe];
        QSettings(application.preferencesFile(), QSettings::IniFormat)
            .setValue(QStringLiteral("zorvane.acceptedTermsVersion"), version);
        const AppState state(application.environment());
        EXPECT_EQ(state.phase(), phase) << version.toString().toStdString();
        EXPECT_FALSE(state.hasFullDiskAccess());
    }
}

TEST(AppStateFirstRun, AcceptsTheTermsAndProbesTheDisk)
{
    ScriptedApplication application;
    application.addArea("cache-x", CleanCore::RuleTier::safe, {1});
    const QString file = application.preferencesFile();
    Zorvane::Preferences(file).storeAcceptedTerms(QStringLiteral("1.0"), {});
    AppState state(application.environment());
    StateLog log(state);
    const struct
    {
        void (AppState::*operation)();
        /// What listing the probed folder fails with.
        int error;
        const char* told;
    } steps[] = {
        {&AppState::refreshPermissionState, 0, "access"},
        {&AppState::acceptTerms, ENOENT, "needsPermission, no access"},
        {&AppState::refreshPermissionState, EACCES, "no access"},
        {&AppState::continueWithoutPermission, EACCES, "ready"},
        {&AppState::acceptTerms, 0, "needsPermission, access, ready"},
        {&AppState::refreshPermissionState, EACCES, "no access"},
    };
    for (const auto& [operation, error, expected] : steps) {
        application.disk->folders[probe].error = error;
        (state.*operation)();
        EXPECT_EQ(log.take(), expected);
    }
    const QSettings settings(file, QSettings::IniFormat);
    EXPECT_EQ(settings.value(QStringLiteral("zorvane.acceptedTermsVersion")), "0.1");
    // A million hours after 1970.
    EXPECT_EQ(settings.value(QStringLiteral("zorvane.acceptedTermsDate")),
              "2084-01-29T16:00:00.000Z");
    scan(state);
    state.refreshPermissionState();
    EXPECT_EQ(state.phase(), Phase::results);
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
    StateLog log(state);
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
    StateLog log(state);
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
        StateLog log(state);
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
    StateLog log(*state);
    const struct
    {
        const BooleanBinding& binding;
        bool isSelected;
        const char* published;
    } writes[] = {
        {item, true, ""},
        {item, false, "selected 27"},
        {item, false, ""},
        {all, true, "selected 31"},
        {all, true, ""},
        {all, false, "selected 0"},
        {item, true, "selected 4"},
        {all, false, "selected 0"},
        {all, false, ""},
        {none, false, ""},
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
    StateLog log(state);
    state.performClean();
    // Meanwhile nothing else starts, and the clean keeps to the selection that it started with.
    state.performClean();
    state.startScan();
    state.selectAll("cache-b");
    gate.open();
    waitUntil([&] { return !state.isCleaning(); });
    EXPECT_EQ(log.take(), "cleaning, not asking, selected 68, freed 25, report 40, done");
    EXPECT_EQ(application.disk->removed(), (Strings{itemPath(0), itemPath(2)}));
    // Snapshots follow the files, in the same report.
    EXPECT_EQ(state.cleaningReport()->removed.size(), 3U);
    ASSERT_EQ(state.cleaningReport()->skipped.size(), 1U);
    EXPECT_EQ(state.cleaningReport()->skipped[0].path, itemPath(1));
    EXPECT_EQ(state.selection().selectedBytes(), 68);
    state.deselectAll("cache-a");
    state.deselectAll("cache-b");
    state.deselectAll("tm-local-snapshots");
    (void)log.take();
    // A report of nothing is a report too.
    runClean(state);
    EXPECT_EQ(log.take(), "cleaning, not asking, freed 0, report 0, done");
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
        if (releases) {
            state.cloud()->setICloudSelected(ScriptedApplication::cloudPath("a"), true);
            state.cloud()->setICloudSelected(ScriptedApplication::cloudPath("b"), true);
            state.cloud()->requestEvict();
        } else {
            state.performClean();
        }
        gate.waitUntilReached();
        StateLog log(state);
        state.requestClose();
        EXPECT_TRUE(state.isClosing());
        EXPECT_EQ(log.take(), "");
        gate.open();
        waitUntil([&] { return !state.isCleaning() && !state.cloud()->isEvicting(); });
        EXPECT_TRUE(log.take().ends_with("ready to close"));
        EXPECT_EQ(application.disk->removed().size() + application.drive->released.size(), 1U);
        // Nothing is in hand any more.
        state.requestClose();
        EXPECT_EQ(log.take(), "ready to close");
    }
}

} // namespace
} // namespace ZorvaneTests
