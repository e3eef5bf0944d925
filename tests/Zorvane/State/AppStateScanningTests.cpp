#include "CleanCore/Support/TaskPool.h"
#include "tests/Zorvane/Support/ScriptedApplication.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <future>
#include <gtest/gtest.h>
#include <numeric>

namespace ZorvaneTests {
namespace {

using CleanCore::RuleTier;
using Zorvane::AppState;
using Zorvane::Phase;

/// Holds workers at a place until it is opened.
class Gate
{
public:
    void pass()
    {
        m_arrived.store(true);
        m_arrived.notify_all();
        m_open.wait(false);
    }
    void open()
    {
        m_open.store(true);
        m_open.notify_all();
    }
    /// Waits for the first worker.
    void waitForArrival() { m_arrived.wait(false); }

private:
    std::atomic<bool> m_arrived = false;
    std::atomic<bool> m_open = false;
};

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

TEST(AppStateScanningTest, AScanThatFindsNothingEndsInResults)
{
    ScriptedApplication application;
    application.addArea("cache-empty", RuleTier::safe, {});
    AppState state(application.environment());
    scan(state);
    EXPECT_TRUE(state.categories().empty());
    EXPECT_EQ(state.totalRecoverableBytes(), 0);
    EXPECT_FALSE(state.anyAccessErrors());
    EXPECT_TRUE(state.ringSegments().empty());
}

TEST(AppStateScanningTest, ABrokenCatalogLeadsBackToReady)
{
    ScriptedApplication application;
    *application.isCatalogBroken = true;
    AppState state(application.environment());
    state.startScan();
    EXPECT_EQ(state.phase(), Phase::scanning);
    waitUntil([&] { return state.phase() == Phase::ready; });
    // And it may be mended.
    *application.isCatalogBroken = false;
    scan(state);
}

TEST(AppStateScanningTest, TellsTheStepsInOrder)
{
    ScriptedApplication application;
    application.addArea("cache-a", RuleTier::safe, {7});
    application.addArea("cache-b", RuleTier::safe, {11});
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

    const Strings first = {"scanning", "categories 0", "found 0"};
    const Strings last = {"at none", "categories 2", "selected 18", "report", "at none", "results"};
    ASSERT_GE(steps.size(), first.size() + last.size());
    EXPECT_TRUE(std::ranges::equal(first, std::span(steps).first(first.size())));
    EXPECT_TRUE(std::ranges::equal(last, std::span(steps).last(last.size())));
    const Strings middle(steps.begin() + 3, steps.end() - 6);
    EXPECT_EQ(std::ranges::count(middle, "at cache-a"), 1);
    EXPECT_EQ(std::ranges::count(middle, "at cache-b"), 1);
    EXPECT_EQ(std::ranges::count(middle, "found 18"), 1);
    EXPECT_EQ(std::ranges::count(middle, "found 7") + std::ranges::count(middle, "found 11"), 1);
    EXPECT_EQ(middle.size(), 4U);
}

TEST(AppStateScanningTest, StartsNoSecondScan)
{
    ScriptedApplication application;
    Gate gate;
    application.addArea("cache-a", RuleTier::safe, {1});
    application.disk->onMeasure = [&](const auto&, const auto&) { gate.pass(); };
    AppState state(application.environment());
    state.startScan();
    gate.waitForArrival();
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
    gate.waitForArrival();
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
    gate.waitForArrival();
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
    state.performClean();
    waitUntil([&] { return state.hasCleaningReport(); });
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
        gate->waitForArrival();
        state.reset();
        gate->open();
        QCoreApplication::processEvents();
    }
}

TEST(AppStateScanningTest, GroupsTheRingByRuleId)
{
    ScriptedApplication application;
    application.addArea("whatsapp-media", RuleTier::reviewRequired, {10});
    application.addArea("cache-x", RuleTier::safe, {5});
    application.addArea("trash-user", RuleTier::reviewRequired, {1});
    application.addArea("dev-y", RuleTier::safe, {0});
    application.addArea("brew-cleanup", RuleTier::safe, {2});
    application.addArea("zz", RuleTier::safe, {3});
    application.addArea("logs-a", RuleTier::safe, {20});
    application.addArea("temp-a", RuleTier::safe, {40});
    application.addArea("whatsapp-media-2", RuleTier::safe, {100});
    AppState state(application.environment());
    scan(state);
    Strings segments;
    for (const Zorvane::RingSegment& segment : state.ringSegments()) {
        segments.push_back(std::string(segment.id) + ' ' + segment.label + ' ' +
                           std::string(segment.color) + ' ' + std::to_string(segment.bytes));
    }
    EXPECT_EQ(segments, (Strings{"whats WhatsApp catWhatsApp 10", "caches Caches catCaches 66",
                                 "dev Dev (npm, brew) catDev 2", "other Other catOther 103"}));
}

TEST(AppStateScanningTest, LeavesGroupsWithoutBytesOut)
{
    ScriptedApplication application;
    application.addArea("dev-y", RuleTier::safe, {0});
    AppState state(application.environment());
    scan(state);
    EXPECT_EQ(state.categories().size(), 1U);
    EXPECT_TRUE(state.ringSegments().empty());
}

} // namespace
} // namespace ZorvaneTests
