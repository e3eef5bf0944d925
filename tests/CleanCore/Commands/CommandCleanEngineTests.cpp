#include "CleanCore/Commands/CommandCleanEngine.h"
#include "tests/Support/ScriptedCommandRunner.h"

#include <gtest/gtest.h>

using namespace CleanCore;
using namespace CleanCoreTests;

namespace {

using Removed = std::vector<CleaningReport::RemovedItem>;
using Script = ScriptedCommandRunner::Script;
using Paths = std::vector<std::string>;

const Call armBrew = {"/opt/homebrew/bin/brew", "cleanup", "-s"};
const Call intelBrew = {"/usr/local/bin/brew", "cleanup", "-s"};
const Call linuxBrew = {"/home/linuxbrew/.linuxbrew/bin/brew", "cleanup", "-s"};
const Call xcrun = {"/usr/bin/xcrun", "simctl", "delete", "unavailable"};

Call deletion(const std::string& stamp)
{
    return {"/usr/bin/tmutil", "deletelocalsnapshots", stamp};
}

std::string snapshot(const std::string& stamp)
{
    return "com.apple.TimeMachine." + stamp + ".local";
}

CleaningSelection selection(const std::string& ruleId, std::vector<ScannedItem> items)
{
    return {commandRule(ruleId), std::move(items)};
}

Paths skippedPaths(const CleaningReport& report)
{
    Paths paths;
    for (const auto& item : report.skipped) {
        EXPECT_EQ(item.reason, CleaningReport::SkipReason::removalFailed);
        paths.push_back(item.path);
    }
    return paths;
}

void check(const char* what, const std::vector<CleaningSelection>& selections, const Script& script,
           const Removed& removed, const Paths& skipped, const std::vector<Call>& calls)
{
    SCOPED_TRACE(what);
    const auto runner = std::make_shared<ScriptedCommandRunner>(script);
    const CleaningReport report = CommandCleanEngine(runner).clean(selections);
    EXPECT_EQ(report.removed, removed);
    EXPECT_EQ(skippedPaths(report), skipped);
    EXPECT_EQ(runner->calls(), calls);
}

} // namespace

TEST(CommandCleanEngine, RunsEachAreasToolAndRecordsEveryChosenItem)
{
    const std::vector<ScannedItem> files = {{.path = "/a", .sizeBytes = 5},
                                            {.path = "/b", .sizeBytes = 7}};
    const Removed filesRemoved = {{"/a", 5}, {"/b", 7}};
    check("packages, this platform's place", {selection("brew-cleanup", files)},
          {{armBrew, std::nullopt}, {linuxBrew, ""}}, filesRemoved, {},
          {armBrew, intelBrew, linuxBrew});
    check("packages, nowhere", {selection("brew-cleanup", files)}, {}, {}, {"/a", "/b"},
          {armBrew, intelBrew, linuxBrew});
    check("one of three simulators", {selection("dev-unavailable-simulators", {{.path = "A (1)"}})},
          {{xcrun, ""}}, {{"A (1)", 0}}, {}, {xcrun});
    check("simulators, failing",
          {selection("dev-unavailable-simulators", {{.path = "A (1)"}, {.path = "B (2)"}})},
          {{xcrun, std::nullopt}}, {}, {"A (1)", "B (2)"}, {xcrun});
    check("snapshots, the second failing",
          {selection("tm-local-snapshots",
                     {{.path = snapshot("1")}, {.path = snapshot("2")}, {.path = snapshot("3")}})},
          {{deletion("1"), ""}, {deletion("2"), std::nullopt}, {deletion("3"), ""}},
          {{snapshot("1"), 0}, {snapshot("3"), 0}}, {snapshot("2")},
          {deletion("1"), deletion("2"), deletion("3")});
    check("every occurrence in a snapshot's name",
          {selection("tm-local-snapshots",
                     {{.path = "com.apple.TimeMachine.a.local.b.com.apple.TimeMachine..local"}})},
          {{deletion("a.b."), ""}},
          {{"com.apple.TimeMachine.a.local.b.com.apple.TimeMachine..local", 0}}, {},
          {deletion("a.b.")});
    check("container space, an unknown area, packages",
          {selection("docker-reclaimable", {{.path = "x"}}), selection("unknown", {{.path = "y"}}),
           selection("brew-cleanup", files)},
          {{armBrew, ""}}, filesRemoved, {"x", "y"}, {armBrew});
    check("other kinds and empty selections",
          {{commandRule("brew-cleanup", RuleKind::fileSystem), files},
           selection("brew-cleanup", {}),
           selection("tm-local-snapshots", {})},
          {{armBrew, ""}}, {}, {}, {});
}

TEST(CommandCleanEngine, PreviewsTheReportOfACleanAndRunsNothing)
{
    const std::vector<ScannedItem> items = {{.path = "/a", .sizeBytes = 5}};
    for (const CommandArea& area : commandAreas()) {
        SCOPED_TRACE(area.ruleId);
        const auto runner = std::make_shared<ScriptedCommandRunner>(Script{});
        const CleaningReport report = CommandCleanEngine(runner).preview(
            std::vector{selection(std::string(area.ruleId), items)});
        const bool isRemoved = area.clearing != CommandArea::Clearing::never;
        EXPECT_EQ(report.removed.size(), isRemoved ? 1U : 0U);
        EXPECT_EQ(report.skipped.size(), isRemoved ? 0U : 1U);
        EXPECT_EQ(report.totalBytesFreed(),
                  isRemoved && area.credit == CommandArea::Credit::scannedSize ? 5 : 0);
        EXPECT_TRUE(runner->calls().empty());
    }
}

TEST(CommandCleanEngine, StopsBeforeTheNextItemAndKeepsWhatWasDone)
{
    std::stop_source source;
    const auto runner =
        std::make_shared<ScriptedCommandRunner>(Script{{deletion("1"), ""}, {armBrew, ""}});
    runner->whenCalled = [&](const Call&) { source.request_stop(); };
    const CleaningReport report = CommandCleanEngine(runner).clean(
        std::vector{
            selection("tm-local-snapshots", {{.path = snapshot("1")}, {.path = snapshot("2")}}),
            selection("brew-cleanup", {{.path = "/a"}})},
        source.get_token());
    EXPECT_EQ(report.removed, (Removed{{snapshot("1"), 0}}));
    EXPECT_TRUE(report.skipped.empty());
    EXPECT_EQ(runner->calls(), std::vector<Call>{deletion("1")});
}

TEST(CommandCleanEngine, RefusesAPartOfAnAreaThatIsClearedAsAWhole)
{
    for (const bool dryRun : {false, true}) {
        const auto runner = std::make_shared<ScriptedCommandRunner>(
            Script{{armBrew, ""}, {xcrun, ""}, {deletion("1"), ""}});
        std::vector selections = {selection("brew-cleanup", {{.path = "/a"}}),
                                  selection("dev-unavailable-simulators", {{.path = "A (1)"}}),
                                  selection("tm-local-snapshots", {{.path = snapshot("1")}})};
        for (CleaningSelection& each : selections) {
            each.itemsLeftOut = 1;
        }
        const CleaningReport report = CommandCleanEngine(runner).run(selections, dryRun, {});
        EXPECT_EQ(skippedPaths(report), (Paths{"/a", "A (1)"}));
        EXPECT_EQ(report.removed, (Removed{{snapshot("1"), 0}}));
        EXPECT_EQ(runner->calls(),
                  dryRun ? std::vector<Call>() : std::vector<Call>({deletion("1")}));
    }
}
