#include "CleanCore/Commands/CommandScanEngine.h"
#include "tests/CleanCore/Support/ScriptedCommandRunner.h"

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
    std::string ruleId;
    Script script;
    Items items;
    std::vector<Call> calls;
};

void check(const Case& row)
{
    SCOPED_TRACE(row.what);
    const auto runner = std::make_shared<ScriptedCommandRunner>(row.script);
    const auto results = CommandScanEngine(runner).scan(std::vector{commandRule(row.ruleId)});
    ASSERT_EQ(results.size(), 1U);
    EXPECT_EQ(results[0].rule.id, row.ruleId);
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

} // namespace

TEST(CommandScanEngine, ListsLocalSnapshots)
{
    const std::string id = "tm-local-snapshots";
    const std::string heading = "Snapshots for disk /:\n";
    const std::string snapshots = "com.apple.TimeMachine.2024-05-01-101500.local\n"
                                  "com.apple.TimeMachine.2024-05-02-101500.local\n";
    for (const Case& row : std::vector<Case>{
             {"snapshots",
              id,
              {{tmutil, heading + snapshots}},
              {{snapshots.substr(0, 45), 0}, {snapshots.substr(46, 45), 0}},
              {tmutil}},
             {"only the heading", id, {{tmutil, heading}}, {}, {tmutil}},
             {"other beginnings",
              id,
              {{tmutil, " com.apple.TimeMachine.x\ncom.apple.timemachine.y\n"}},
              {},
              {tmutil}},
             {"untrimmed",
              id,
              {{tmutil, "com.apple.TimeMachine.x \n"}},
              {{"com.apple.TimeMachine.x ", 0}},
              {tmutil}},
             {"missing tool", id, {}, {}, {tmutil}},
             {"failing tool", id, {{tmutil, std::nullopt}}, {}, {tmutil}},
         }) {
        check(row);
    }
}

TEST(CommandScanEngine, ListsUnavailableSimulators)
{
    struct Row
    {
        std::string what;
        std::string output;
        Items items;
    };
    const std::string device = "{'name':'A','udid':'1','isAvailable':false}";
    for (const Row& row : std::vector<Row>{
             {"two runtimes",
              "{'devices':{'r1':[" + device +
                  ",{'name':'B (2)','udid':'2'}],'r2':[{'name':'ü','udid':'3'}]},'more':1}",
              {{"A (1)", 0}, {"B (2) (2)", 0}, {"ü (3)", 0}}},
             {"no devices", "{'devices':{'r1':[]}}", {}},
             {"a device without udid", "{'devices':{'r1':[" + device + ",{'name':'B'}]}}", {}},
             {"a name that is no text", "{'devices':{'r1':[{'name':1,'udid':'1'}]}}", {}},
             {"devices missing", "{}", {}},
             {"devices in a list", "{'devices':[" + device + "]}", {}},
             {"a runtime that is no list", "{'devices':{'r1':" + device + "}}", {}},
             {"text after the document", "{'devices':{'r1':[" + device + "]}} x", {}},
             {"no output", "", {}},
         }) {
        check({row.what,
               "dev-unavailable-simulators",
               {{xcrun, json(row.output)}},
               row.items,
               {xcrun}});
    }
    check({"failing tool", "dev-unavailable-simulators", {{xcrun, std::nullopt}}, {}, {xcrun}});
}

TEST(CommandScanEngine, ListsWhatThePackageManagerWouldRemove)
{
    const std::string id = "brew-cleanup";
    const auto line = [](const std::string& rest) {
        return Script{{armBrew, "Would remove: " + rest + "\n"}};
    };
    for (const Case& row : std::vector<Case>{
             {"a file",
              id,
              line("/cache/pkg--1.2.3.tar.gz (4.5MB)"),
              {{"/cache/pkg--1.2.3.tar.gz", 4'500'000}},
              {armBrew}},
             {"a folder",
              id,
              line("/cache/dir (12 files, 3.4MB)"),
              {{"/cache/dir", 3'400'000}},
              {armBrew}},
             {"no size", id, line("/cache/link"), {{"/cache/link", 0}}, {armBrew}},
             {"a size in the name", id, line("/cache/7b (4.5MB)"), {{"/cache/7b", 7}}, {armBrew}},
             {"more parentheses", id, line("/a (b) (1kB)"), {{"/a", 1'000}}, {armBrew}},
             {"only a size", id, line(" (1kB)"), {{"1kB)", 1'000}}, {armBrew}},
             {"only a separator", id, line(" ("), {{" (", 0}}, {armBrew}},
             {"nothing", id, line(""), {{"", 0}}, {armBrew}},
             {"other lines",
              id,
              {{armBrew, "would remove: /a (1kB)\n Would remove: /b (1kB)\n==> 51.6MB\n"}},
              {},
              {armBrew}},
             {"the second place",
              id,
              {{intelBrew, "Would remove: /a (1kB)\n"}},
              {{"/a", 1'000}},
              {armBrew, intelBrew}},
             {"the first fails",
              id,
              {{armBrew, std::nullopt}, {intelBrew, "Would remove: /a\n"}},
              {{"/a", 0}},
              {armBrew, intelBrew}},
             {"this platform's place",
              id,
              {{linuxBrew, "Would remove: /a\n"}},
              {{"/a", 0}},
              {armBrew, intelBrew, linuxBrew}},
             {"nowhere", id, {}, {}, {armBrew, intelBrew, linuxBrew}},
         }) {
        check(row);
    }
}

TEST(CommandScanEngine, ListsWhatTheContainerEngineCouldReclaim)
{
    const std::string id = "docker-reclaimable";
    const std::string images = json("{'Type':'Images','Reclaimable':'2.1GB (45%)','Size':'4GB'}");
    const std::string output = images + json("\n{'Type':'Containers','Reclaimable':'0B (0%)'}\n"
                                             "{'Type':'Local Volumes','Reclaimable'\n\n"
                                             "{'Type':'Build Cache','Reclaimable':'125.4kB'}");
    check({"rows, one malformed",
           id,
           {{docker, output}},
           {{"Docker — Images", 2'100'000'000},
            {"Docker — Containers", 0},
            {"Docker — Build Cache", 125'400}},
           {docker}});
    check({"rows of other types",
           id,
           {{docker, json("[]\n1\n{'Type':1,'Reclaimable':'1B'}\n{'Type':'x'}\n")}},
           {},
           {docker}});
    check({"this platform's place",
           id,
           {{linuxDocker, images}},
           {{"Docker — Images", 2'100'000'000}},
           {docker, linuxDocker}});
    check({"failing tool", id, {{docker, std::nullopt}}, {}, {docker, linuxDocker}});
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

TEST(CommandScanEngine, RunsNoToolWithoutLocations)
{
    const auto runner = std::make_shared<ScriptedCommandRunner>(Script{{tmutil, "x"}});
    const CommandScanEngine engine(runner, ToolLocations::none());
    for (const CommandArea& area : commandAreas()) {
        EXPECT_EQ(engine.scan(std::vector{commandRule(std::string(area.ruleId))}).size(), 1U);
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
