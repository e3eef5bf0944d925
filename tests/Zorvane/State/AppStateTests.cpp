#include "CleanCore/Support/TaskPool.h"
#include "Zorvane/State/MainThreadQueue.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

namespace ZorvaneTests {
namespace {

using Zorvane::AppState;
using Zorvane::BooleanBinding;
using Zorvane::MainThreadRunner;

/// A log of every published field of the state but the cloud drive's.
struct StateLog : SignalLog
{
    explicit StateLog(AppState& s)
    {
        const auto on = [&](void (AppState::*signal)(), std::function<std::string()> text) {
            note(&s, signal, std::move(text));
        };
        using std::to_string;
        on(&AppState::phaseChanged, [&] { return s.phaseName().toStdString(); });
        on(&AppState::hasFullDiskAccessChanged,
           [&] { return s.hasFullDiskAccess() ? "access" : "no access"; });
        on(&AppState::bytesFoundSoFarChanged,
           [&] { return "found " + to_string(s.bytesFoundSoFar()); });
        on(&AppState::currentRuleIdChanged,
           [&] { return "at " + s.currentRuleId().value_or("none"); });
        on(&AppState::categoriesChanged,
           [&] { return "total " + to_string(s.totalRecoverableBytes()); });
        on(&AppState::selectionChanged,
           [&] { return "selected " + to_string(s.selection().selectedBytes()); });
        on(&AppState::showConfirmationChanged,
           [&] { return s.showConfirmation() ? "asking" : "not asking"; });
        on(&AppState::isCleaningChanged, [&] { return s.isCleaning() ? "cleaning" : "done"; });
        on(&AppState::lastVisibleFreedBytesChanged,
           [&] { return "freed " + to_string(*s.lastVisibleFreedBytes()); });
        on(&AppState::cleaningReportChanged, [&] {
            return s.hasCleaningReport()
                       ? "report " + to_string(s.cleaningReport()->totalBytesFreed())
                       : "no report";
        });
        on(&AppState::readyToClose, [] { return "ready to close"; });
    }
};

TEST(AppStateScanning, TellsTheStepsAndReplacesTheResults)
{
    ScriptedApplication application;
    application.prepare(
        "area cache-a, safe, a, 0=7; area cache-b, safe, b, 0=11; unreadable logs-locked");
    Zorvane::Environment environment = application.environment();
    environment.home.pool = std::make_shared<CleanCore::TaskPool>(1);
    bool isCatalogBroken = true;
    environment.loadCatalog = [&, load = environment.loadCatalog] {
        return isCatalogBroken ? throw std::runtime_error("no catalog") : load();
    };
    AppState state(environment);
    StateLog log(state);
    state.startScan();
    waitUntil([&] { return state.phaseName() == QStringLiteral("ready"); });
    EXPECT_EQ(log.take(), "scanning, total 0, found 0, ready");

    isCatalogBroken = false;
    const std::string steps = "scanning, total 0, found 0, at cache-a, found 7, at cache-b, "
                              "found 18, at logs-locked, found 18, at none, ";
    scan(state);
    EXPECT_EQ(log.take(), steps + "total 18, selected 18, no report, at none, results");
    EXPECT_TRUE(state.anyAccessErrors());

    // The report and the selection stay until the next results.
    runClean(state);
    state.requestClean();
    (void)log.take();
    scan(state);
    EXPECT_EQ(log.take(), steps + "not asking, total 18, selected 18, no report, at none, results");
}

/// The next scan, or the end of the state, comes while the first still hangs.
TEST(AppStateScanning, ACancelledScanPublishesNothing)
{
    for (const auto& [hold, goes] : {std::pair{"hold a", false},
                                     {"hold tmutil", false},
                                     {"hold a", true},
                                     {"hold tmutil", true}}) {
        SCOPED_TRACE(hold);
        ScriptedApplication application;
        application.prepare("area cache-a, safe, a, 0=1; snapshots 1");
        application.prepare(hold);
        auto state = std::make_unique<AppState>(application.environment());
        state->startScan();
        application.gate.waitUntilReached();
        StateLog log(*state);
        state->startScan();
        EXPECT_EQ(log.take(), "");
        if (goes) {
            state.reset();
            application.gate.open();
            QCoreApplication::processEvents();
            continue;
        }
        state->cancelScan();
        EXPECT_EQ(log.take(), "at none, ready");
        application.disk->measures[inHome("a/0")].sizeBytes = 5;
        state->startScan();
        application.gate.open();
        waitUntil([&] { return state->phase() == Zorvane::Phase::results; });
        EXPECT_EQ(log.take(), "scanning, total 0, found 0, at cache-a, found 5, at none, total 5, "
                              "selected 5, no report, at none, results");
    }
}

TEST(AppStateCleaning, BindingsPublishEachChangeOnceAndOutliveTheirScan)
{
    ScriptedApplication application;
    application.prepare("area cache-a, safe, a, 0=1, 1=2, 2=4, 3=8, 4=16");
    auto state = std::make_unique<AppState>(application.environment());
    scan(*state);
    const BooleanBinding all = state->categoryBinding(0);
    const BooleanBinding item = state->itemBinding("cache-a", inHome("a/2"));
    StateLog log(*state);
    const struct
    {
        const BooleanBinding& binding;
        bool isSelected;
        const char* published;
    } writes[] = {
        {item, true, ""},           {item, false, "selected 27"},
        {all, true, "selected 31"}, {all, true, ""},
        {all, false, "selected 0"}, {item, true, "selected 4"},
        {all, false, "selected 0"}, {all, false, ""},
    };
    for (const auto& [binding, isSelected, published] : writes) {
        binding.set(isSelected);
        EXPECT_EQ(binding.get(), isSelected);
        EXPECT_EQ(log.take(), published);
        EXPECT_EQ(all.get(), state->selectedBytes(0) == 31);
    }
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
    application.prepare("snapshots 1; area cache-a, safe, a, 0=30, 1=20, 2=10;"
                        "area cache-b, safe, b, 0=8; hold 0; free 25");
    application.disk->irremovable = {inHome("a/1")};
    AppState state(application.environment());
    scan(state);
    state.selectAll("tm-local-snapshots");
    state.deselectAll("cache-b");
    StateLog log(state);
    state.requestClean();
    state.performClean();
    // Meanwhile nothing else starts, and the clean keeps to the selection that it started with.
    state.performClean();
    state.startScan();
    state.selectAll("cache-b");
    application.gate.open();
    waitUntil([&] { return !state.isCleaning(); });
    EXPECT_EQ(log.take(), "asking, cleaning, not asking, selected 68, freed 25, report 40, done");
    EXPECT_EQ(application.disk->removed(), (Strings{inHome("a/0"), inHome("a/2")}));
    // Snapshots follow the files, in the same report.
    EXPECT_EQ(state.cleaningReport()->removed.size(), 3U);
    ASSERT_EQ(state.cleaningReport()->skipped.size(), 1U);
    EXPECT_EQ(state.cleaningReport()->skipped[0].path, inHome("a/1"));
    EXPECT_EQ(state.selection().selectedBytes(), 68);
}

TEST(AppStateCleaning, ClosingWaitsForTheItemInHandOnly)
{
    for (const bool releases : {false, true}) {
        SCOPED_TRACE(releases);
        ScriptedApplication application;
        application.prepare("area cache-a, safe, a, 0=3, 1=2, 2=1; cloud a, 1, 20; cloud b, 1, 10");
        AppState state(application.environment());
        scan(state);
        measureCloud(state);
        application.prepare("hold");
        if (releases) {
            state.cloud()->setICloudSelected(inCloud("a"), true);
            state.cloud()->setICloudSelected(inCloud("b"), true);
            state.cloud()->requestEvict();
        } else {
            state.performClean();
        }
        application.gate.waitUntilReached();
        StateLog log(state);
        state.requestClose();
        EXPECT_TRUE(state.isClosing());
        EXPECT_EQ(log.take(), "");
        application.gate.open();
        waitUntil([&] { return !state.isCleaning() && !state.cloud()->isEvicting(); });
        EXPECT_TRUE(log.take().ends_with("ready to close"));
        EXPECT_EQ(application.disk->removed().size() + application.drive->released.size(), 1U);
        // Nothing is in hand any more.
        state.requestClose();
        EXPECT_EQ(log.take(), "ready to close");
    }
}

struct MainThreadQueue : testing::Test
{
    const std::shared_ptr<Zorvane::MainThreadQueue> queue =
        std::make_shared<Zorvane::MainThreadQueue>();
    std::unique_ptr<MainThreadRunner> runner = std::make_unique<MainThreadRunner>(queue);
    /// The tasks that ran.
    std::string order;
};

TEST_F(MainThreadQueue, DropsTasksWithoutARunner)
{
    const auto held = std::make_shared<int>(0);
    queue->post([&] { runner.reset(); });
    queue->post([&, held] { order += "second "; });
    waitUntil([&] { return runner == nullptr; });
    queue->post([&, held] { order += "third "; });
    QCoreApplication::processEvents();
    EXPECT_EQ(order, "");
    EXPECT_EQ(held.use_count(), 1);
}

} // namespace
} // namespace ZorvaneTests
