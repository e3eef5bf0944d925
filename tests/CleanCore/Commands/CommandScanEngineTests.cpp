#include "CleanCore/Commands/CommandScanEngine.h"
#include "tests/Support/ScriptedCommandRunner.h"

#include <algorithm>
#include <gtest/gtest.h>

using namespace CleanCore;
using namespace CleanCoreTests;

namespace {

using Item = std::pair<std::string, std::int64_t>;
using Items = std::vector<Item>;
using Script = ScriptedCommandRunner::Script;

const Call tmutil = {"/usr/bin/tmutil", "listlocalsnapshots", "/"};
const Call xcrun = {"/usr/bin/xcrun", "simctl", "list", "devices", "unavailable", "-j"};
const Call armBrew = {"/opt/homebrew/bin/brew", "cleanup", "--dry-run", "-s"};
const Call intelBrew = {"/usr/local/bin/brew", "cleanup", "--dry-run", "-s"};
const Call linuxBrew = {"/home/linuxbrew/.linuxbrew/bin/brew", "cleanup", "--dry-run", "-s"};
const Call docker = {"/usr/local/bin/docker", "system", "df", "--format", "{{json .}}"};
const Call linuxDocker = {"/usr/bin/docker", "system", "df", "--format", "{{json .}}"};

/// JSON with its quotation marks written as apostrophes.
std::string json(std::string text)
{
    std::replace(text.begin(), text.end(), '\'', '"');
    return text;
}

struct Case
{
    std::string what;
    Script script;
    Items items;
    std::vector<Call> calls;
};

void check(const std::string& ruleId, const std::vector<Case>& cases)
{
    for (const Case& row : cases) {
        SCOPED_TRACE(row.what);
        const auto runner = std::make_shared<ScriptedCommandRunner>(row.script);
        const auto results = CommandScanEngine(runner).scan(std::vector{commandRule(ruleId)});
        ASSERT_EQ(results.size(), 1U);
        EXPECT_FALSE(results[0].hadAccessErrors);
        Items items;
        for (const ScannedItem& item : results[0].items) {
            items.emplace_back(item.path, item.sizeBytes);
            EXPECT_EQ(item.modifiedAt, distantPast);
            EXPECT_FALSE(item.identity);
        }
        EXPECT_EQ(items, row.items);
        EXPECT_EQ(runner->calls(), row.calls);
    }
}

/// One answer of one tool, and the items that it gives.
struct Answer
{
    std::string output;
    Items items;
};

void check(const std::string& ruleId, const Call& call, const std::vector<Answer>& answers)
{
    for (const auto& [output, items] : answers) {
        check(ruleId, {{output, {{call, output}}, items, {call}}});
    }
}

} // namespace

TEST(CommandScanEngine, ListsLocalSnapshots)
{
    const std::string heading = "Snapshots for disk /:\n";
    const std::string first = "com.apple.TimeMachine.2024-05-01-101500.local";
    const std::string second = "com.apple.TimeMachine.2024-05-02-101500.local ";
    check("tm-local-snapshots", tmutil,
          {{heading + first + "\n" + second + "\n", {{first, 0}, {second, 0}}},
           {" com.apple.TimeMachine.x\ncom.apple.timemachine.y\n", {}}});
    check("tm-local-snapshots", {{"missing tool", {}, {}, {tmutil}},
                                 {"failing tool", {{tmutil, std::nullopt}}, {}, {tmutil}}});
}

TEST(CommandScanEngine, ListsUnavailableSimulators)
{
    const std::string device = "{'name':'A','udid':'1','isAvailable':false}";
    for (const auto& [output, items] : std::vector<Answer>{
             {"{'devices':{'r1':[" + device +
                  ",{'name':'B (2)','udid':'2'}],'r2':[{'name':'ü','udid':'3'}]},'more':1}",
              {{"A (1)", 0}, {"B (2) (2)", 0}, {"ü (3)", 0}}},
             {"{'devices':{'r1':[" + device + ",{'name':'B'}]}}", {}},
             {"{'devices':{'r1':[{'name':1,'udid':'1'}]}}", {}},
             {"{}", {}},
             {"{'devices':[" + device + "]}", {}},
             {"{'devices':{'r1':" + device + "}}", {}},
             {"{'devices':{'r1':[" + device + "]}} x", {}},
             {"", {}}}) {
        check("dev-unavailable-simulators", xcrun, {{json(output), items}});
    }
}

TEST(CommandScanEngine, ListsWhatThePackageManagerWouldRemove)
{
    for (const auto& [rest, items] : std::vector<Answer>{
             {"/cache/pkg--1.2.3.tar.gz (4.5MB)", {{"/cache/pkg--1.2.3.tar.gz", 4'500'000}}},
             {"/cache/dir (12 files, 3.4MB)", {{"/cache/dir", 3'400'000}}},
             {"/cache/link", {{"/cache/link", 0}}},
             {"/cache/7b (4.5MB)", {{"/cache/7b", 7}}},
             {"/a (b) (1kB)", {{"/a", 1'000}}},
             {" (1kB)", {{"1kB)", 1'000}}},
             {" (", {{" (", 0}}},
             {"", {{"", 0}}}}) {
        check("brew-cleanup", armBrew, {{"Would remove: " + rest + "\n", items}});
    }
    check("brew-cleanup", armBrew,
          {{"would remove: /a (1kB)\n Would remove: /b (1kB)\n==> 51.6MB\n", {}}});
    const std::string line = "Would remove: /a\n";
    check("brew-cleanup", {{"the first fails",
                            {{armBrew, std::nullopt}, {intelBrew, line}, {linuxBrew, line}},
                            {{"/a", 0}},
                            {armBrew, intelBrew}},
                           {"this platform's place",
                            {{linuxBrew, line}},
                            {{"/a", 0}},
                            {armBrew, intelBrew, linuxBrew}},
                           {"nowhere", {}, {}, {armBrew, intelBrew, linuxBrew}}});
}

TEST(CommandScanEngine, ListsWhatTheContainerEngineCouldReclaim)
{
    const std::string images = json("{'Type':'Images','Reclaimable':'2.1GB (45%)','Size':'4GB'}");
    const std::string output = images + json("\n{'Type':'Containers','Reclaimable':'0B (0%)'}\n"
                                             "{'Type':'Local Volumes','Reclaimable'\n\n"
                                             "[]\n1\n{'Type':1,'Reclaimable':'1B'}\n{'Type':'x'}\n"
                                             "{'Type':'Build Cache','Reclaimable':'125.4kB'}");
    const Items items = {{"Docker — Images", 2'100'000'000},
                         {"Docker — Containers", 0},
                         {"Docker — Build Cache", 125'400}};
    check("docker-reclaimable", {{"rows, some malformed", {{docker, output}}, items, {docker}},
                                 {"this platform's place",
                                  {{docker, std::nullopt}, {linuxDocker, output}},
                                  items,
                                  {docker, linuxDocker}}});
}

TEST(CommandScanEngine, GivesEveryCommandRuleOneResultInOrder)
{
    const auto runner =
        std::make_shared<ScriptedCommandRunner>(Script{{tmutil, "com.apple.TimeMachine.x"}});
    const CommandScanEngine engine(runner);

    EXPECT_TRUE(engine.scan(std::vector{commandRule("trash-user", RuleKind::fileSystem)}).empty());
    EXPECT_TRUE(runner->calls().empty());

    const auto results = engine.scan(
        std::vector{commandRule("unknown"), commandRule("Tm-local-snapshots"),
                    commandRule("cache", RuleKind::fileSystem), commandRule("tm-local-snapshots")});
    ASSERT_EQ(results.size(), 3U);
    EXPECT_EQ(results[0].rule.id, "unknown");
    EXPECT_TRUE(results[0].items.empty());
    EXPECT_TRUE(results[1].items.empty());
    EXPECT_EQ(results[2].items.size(), 1U);
    EXPECT_EQ(runner->calls(), std::vector<Call>{tmutil});
}

TEST(CommandScanEngine, RunsNoToolWithoutLocationsAndTellsWhatIsClearedAsAWhole)
{
    const auto runner = std::make_shared<ScriptedCommandRunner>(Script{{tmutil, "x"}});
    const CommandScanEngine engine(runner, ToolLocations::none());
    for (const CommandArea& area : commandAreas()) {
        const auto results = engine.scan(std::vector{commandRule(std::string(area.ruleId))});
        ASSERT_EQ(results.size(), 1U);
        EXPECT_EQ(results[0].isClearedAsWhole,
                  area.ruleId == "brew-cleanup" || area.ruleId == "dev-unavailable-simulators");
    }
    EXPECT_TRUE(runner->calls().empty());
}

TEST(CommandScanEngine, LeavesOutWhatAStopRequestKeptItFrom)
{
    std::stop_source source;
    const auto runner = std::make_shared<ScriptedCommandRunner>(
        Script{{tmutil, "com.apple.TimeMachine.x"}, {xcrun, std::nullopt}});
    const std::vector rules = {commandRule("tm-local-snapshots"),
                               commandRule("dev-unavailable-simulators"),
                               commandRule("docker-reclaimable")};
    // The second tool's run is what the request ends.
    runner->whenCalled = [&](const Call& call) {
        if (call == xcrun) {
            source.request_stop();
        }
    };
    const auto results = CommandScanEngine(runner).scan(rules, source.get_token());
    ASSERT_EQ(results.size(), 1U);
    EXPECT_EQ(results[0].rule.id, "tm-local-snapshots");
    EXPECT_EQ(runner->calls(), (std::vector<Call>{tmutil, xcrun}));
}
