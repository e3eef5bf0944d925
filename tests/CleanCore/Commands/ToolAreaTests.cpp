#include "CleanCore/Commands/CommandCleanEngine.h"
#include "CleanCore/Commands/CommandScanEngine.h"
#include "CleanCore/Commands/Running/SystemCommandRunner.h"
#include "tests/Support/ScriptedCommandRunner.h"
#include "tests/Support/TemporaryFolder.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>

namespace CleanCoreTests {

using namespace CleanCore;

namespace {

/// A command line, "~" for a blank in a word, and what it prints.
using Run = std::pair<std::string, std::optional<std::string>>;
using Runs = std::vector<Run>;

const std::optional<std::string> fails;
/// There is no such program.
const std::string missing = "\x01";

Call callOf(const std::string& line)
{
    std::istringstream stream(line);
    Call words{std::istream_iterator<std::string>(stream), {}};
    for (std::string& word : words) {
        std::replace(word.begin(), word.end(), '~', ' ');
    }
    return words;
}

std::shared_ptr<ScriptedCommandRunner> runnerFor(const Runs& runs)
{
    ScriptedCommandRunner::Script script;
    for (const auto& [line, output] : runs) {
        if (output != missing) {
            script[callOf(line)] = output;
        }
    }
    return std::make_shared<ScriptedCommandRunner>(script);
}

std::vector<Call> callsOf(const Runs& runs)
{
    std::vector<Call> calls;
    for (const Run& run : runs) {
        calls.push_back(callOf(run.first));
    }
    return calls;
}

/// "path size | path size"
std::string text(const std::vector<ScannedItem>& items)
{
    std::string all;
    for (const ScannedItem& item : items) {
        EXPECT_EQ(item.modifiedAt, distantPast);
        EXPECT_FALSE(item.identity);
        all += (all.empty() ? "" : " | ") + item.path + ' ' + std::to_string(item.sizeBytes);
    }
    return all;
}

/// "path credit | path credit, not path | path"
std::string text(const CleaningReport& report)
{
    std::vector<ScannedItem> removed;
    for (const auto& item : report.removed) {
        removed.push_back({.path = item.path, .sizeBytes = item.bytes});
    }
    std::string all = text(removed);
    for (const auto& item : report.skipped) {
        EXPECT_EQ(item.reason, CleaningReport::SkipReason::removalFailed);
        all += (&item == report.skipped.data() ? ", not " : " | ") + item.path;
    }
    return all;
}

CleaningSelection selection(const std::string& rule, std::vector<ScannedItem> items,
                            std::size_t itemsLeftOut = 0)
{
    return {commandRule(rule), std::move(items), itemsLeftOut};
}

const std::string snapshots = "/usr/bin/tmutil listlocalsnapshots /";
const std::string simulators = "/usr/bin/xcrun simctl list devices unavailable -j";
const std::string brews[] = {"/opt/homebrew/bin/brew cleanup", "/usr/local/bin/brew cleanup",
                             "/home/linuxbrew/.linuxbrew/bin/brew cleanup"};
const std::string brew = brews[0] + " --dry-run -s";
const std::string docker = "/usr/local/bin/docker system df --format {{json~.}}";
const std::string flatpak[] = {
    "/usr/bin/flatpak list --app --columns=ref,runtime",
    "/usr/bin/flatpak list --user --runtime --all --columns=ref,size,runtime",
    "/usr/bin/flatpak pin --user"};
const std::string podman[] = {
    "/usr/bin/podman --remote=false images --filter dangling=true --quiet --no-trunc",
    "/usr/bin/podman --remote=false system df --verbose"};

/// A tool's listings with these outputs.
template <std::size_t count>
Runs listing(const std::string (&lines)[count], const std::vector<std::string>& outputs)
{
    Runs runs;
    for (std::size_t i = 0; i < count; ++i) {
        runs.emplace_back(lines[i], outputs[i]);
    }
    return runs;
}

const std::string gnome = "org.gnome.Platform/x86_64/43";
const std::string gnomeRow = gnome + "\t865.2\u00a0MB\t\n";
const std::string app = "org.example.App/x86_64/stable\torg.gnome.Platform/x86_64/46\n";
const std::string imageId = "3f53bb00af943dfdf815650be70c0fa7b426e56a66f5e3362b47a129d57d5991";
const std::string usage =
    "REPOSITORY  TAG  IMAGE ID  CREATED  SIZE  SHARED SIZE  UNIQUE SIZE  CONTAINERS\n"
    "<none>                    <none>      3f53bb00af94  2 weeks ago  1.2GB       800MB        "
    "400MB        0\n"
    "<none>                    <none>      a4d2f91c0b78  3 weeks ago  120MB  0B  120MB  1\n"
    "\nContainers space usage:\n\n"
    "5e6f7a8b9c0d  x      3f53bb00af94  0  9GB  2 weeks ago  777GB  y\n";

/// One listing of a tool as a row: what it prints, apostrophes for quotation marks, and the items.
struct Listing
{
    std::string rule;
    Runs runs;
    std::string items;
};

std::vector<Listing> listings()
{
    std::vector<Listing> rows = {
        {"tm-local-snapshots",
         {{snapshots, "Snapshots for disk /:\ncom.apple.TimeMachine.1.local\n com.apple."
                      "TimeMachine.x\ncom.apple.timemachine.y\ncom.apple.TimeMachine.2.local \n"}},
         "com.apple.TimeMachine.1.local 0 | com.apple.TimeMachine.2.local  0"},
        {"tm-local-snapshots", {{snapshots, missing}}, ""},
        {"tm-local-snapshots", {{snapshots, fails}}, ""},
        {"Tm-local-snapshots", {}, ""},
        {"brew-cleanup",
         {{brew, fails}, {brews[1] + " --dry-run -s", "Would remove: /a\n"}},
         "/a 0"},
        {"brew-cleanup",
         {{brew, missing},
          {brews[1] + " --dry-run -s", missing},
          {brews[2] + " --dry-run -s", "Would remove: /a\n"}},
         "/a 0"},
        {"docker-reclaimable",
         {{docker, fails},
          {"/usr/bin/docker system df --format {{json~.}}",
           "{'Type':'Images','Reclaimable':'2.1GB (45%)','Size':'4GB'}\n"
           "{'Type':'Local Volumes','Reclaimable'\n\n[]\n1\n{'Type':1,'Reclaimable':'1B'}\n"
           "{'Type':'x'}\n{'Type':'Build Cache','Reclaimable':'125.4kB'}"}},
         "Docker — Images 2100000000 | Docker — Build Cache 125400"},
    };
    const std::string device = "{'name':'A','udid':'1','isAvailable':false}";
    for (const auto& [output, items] : std::vector<std::pair<std::string, std::string>>{
             {"{'devices':{'r1':[" + device +
                  ",{'name':'B (2)','udid':'2'}],'r2':[{'name':'ü',"
                  "'udid':'3'}]},'more':1}",
              "A (1) 0 | B (2) (2) 0 | ü (3) 0"},
             {"{'devices':{'r1':[" + device + ",{'name':'B'}]}}", ""},
             {"{'devices':{'r1':[{'name':1,'udid':'1'}]}}", ""},
             {"{'devices':[" + device + "]}", ""},
             {"{'devices':{'r1':" + device + "}}", ""},
             {"{'devices':{'r1':[" + device + "]}} x", ""},
             {"{}", ""},
             {"", ""}}) {
        rows.push_back({"dev-unavailable-simulators", {{simulators, output}}, items});
    }
    for (const auto& [rest, items] : std::vector<std::pair<std::string, std::string>>{
             {"/cache/pkg--1.2.3.tar.gz (4.5MB)", "/cache/pkg--1.2.3.tar.gz 4500000"},
             {"/cache/7b (12 files, 3.4MB)", "/cache/7b 7"},
             {"/a (b) (1kB)", "/a 1000"},
             {" (1kB)", "1kB) 1000"},
             {" (", " ( 0"},
             {"\nwould remove: /a (1kB)\n Would remove: /b (1kB)", " 0"}}) {
        rows.push_back(
            {"brew-cleanup", {{brew, "Would remove: " + rest + "\n==> 51.6MB\n"}}, items});
    }
    for (const auto& [outputs, items] :
         std::vector<std::pair<std::vector<std::string>, std::string>>{
             {{app, "org.gnome.Platform/x86_64/46\t935.0\u00a0MB\t\n" + gnomeRow, ""},
              gnome + " 865200000"},
             {{"", "org.kde.Platform/x86_64/5.15\t1.0?GB", "No pinned patterns\n"},
              "org.kde.Platform/x86_64/5.15 1000000000"},
             // Translations go with their platform.
             {{app,
               "org.gnome.Platform.Locale/x86_64/46\t1 MB\t\n"
               "org.gnome.Platform.Locale/x86_64/43\t2 MB\t\n",
               ""},
              "org.gnome.Platform.Locale/x86_64/43 2000000"},
             // Needed by another runtime, and by itself alone.
             {{"",
               "org.gnome.Sdk/x86_64/43\t1 GB\t" + gnome + "\n" +
                   "org.kde.Platform/x86_64/6.5\t1 GB\torg.kde.Platform/x86_64/6.5\n" + gnomeRow,
               ""},
              "org.kde.Platform/x86_64/6.5 1000000000"},
             {{"", gnomeRow, "  runtime/org.gnome.Plat/*\n  *.Sdk\n"}, gnome + " 865200000"},
             // Kits, extensions and apps are never offered; no more is what is pinned.
             {{"",
               "org.gnome.Sdk/x86_64/43\t1 GB\t\n"
               "org.freedesktop.Platform.GL.default/x86_64/22.08\t1 GB\t\n" +
                   app,
               ""},
              ""},
             {{"", gnomeRow, "Pinned patterns:\n  runtime/org.gnome.Platform/x86_64/42\n"}, ""},
             {{"", gnomeRow, "  org.*.Plat*\n"}, ""},
             {{"", "org.gnome.Platform.Locale/x86_64/43\t2 MB\t\n", "  runtime/" + gnome + "\n"},
              ""},
             // Where an app cannot be read, nothing is certain.
             {{app + "org.example.Other/x86_64/stable\t\n", gnomeRow, ""}, ""},
             {{"Ref   Runtime\norg.example.App/x86_64/stable   " + gnome + "\n", gnomeRow, ""}, ""},
             // References that are none.
             {{"",
               "-x.Platform/x86_64/43\t1 GB\na.Platform/x86_64\t1 GB\na.Platform/x y/1\t1 GB\n"
               "a.Platform//1\t1 GB\na.Platform/x86_64/1/2\t1 GB\n",
               ""},
              ""}}) {
        rows.push_back({"dev-flatpak-unused", listing(flatpak, outputs), items});
    }
    for (const auto& [ids, table, items] :
         std::vector<std::tuple<std::string, std::string, std::string>>{
             {"sha256:" + imageId, usage, "Podman — image 3f53bb00af94 400000000"},
             {imageId, usage, "Podman — image 3f53bb00af94 400000000"},
             {imageId, "", "Podman — image 3f53bb00af94 0"},
             {"a4d2f91c0b78" + std::string(52, '0'), usage, ""},
             {std::string(64, 'e'), usage, "Podman — image eeeeeeeeeeee 0"},
             {"3f53\nWARNING\n--all\n3f53bb00af94 x", usage, ""}}) {
        rows.push_back({"podman-reclaimable", listing(podman, {ids + "\n", table}), items});
    }
    return rows;
}

} // namespace

TEST(ToolAreas, OfferWhatTheirToolsList)
{
    for (Listing row : listings()) {
        for (auto& [line, output] : row.runs) {
            if (output) {
                std::replace(output->begin(), output->end(), '\'', '"');
            }
        }
        const auto runner = runnerFor(row.runs);
        const auto results = CommandScanEngine(runner).scan(std::vector{commandRule(row.rule)});
        ASSERT_EQ(results.size(), 1U);
        EXPECT_FALSE(results[0].hadAccessErrors);
        EXPECT_EQ(text(results[0].items), row.items) << testing::PrintToString(row.runs);
        EXPECT_EQ(runner->calls(), callsOf(row.runs)) << row.rule;
    }
    // All listings of an area must succeed.
    for (std::size_t failing = 0; failing < std::size(flatpak); ++failing) {
        Runs runs = listing(flatpak, {"", gnomeRow, ""});
        runs[failing].second = fails;
        const auto results =
            CommandScanEngine(runnerFor(runs)).scan(std::vector{commandRule("dev-flatpak-unused")});
        EXPECT_EQ(text(results.at(0).items), "");
    }
}

TEST(ToolAreas, AreScannedInOrderUntilAStop)
{
    const Runs runs = {{snapshots, "com.apple.TimeMachine.x"}, {simulators, fails}};
    const auto runner = runnerFor(runs);
    std::stop_source source;
    // The second tool's run is what the request ends.
    runner->whenCalled = [&](const Call& call) {
        if (call == callOf(simulators)) {
            source.request_stop();
        }
    };
    const std::vector rules = {commandRule("unknown"), commandRule("cache", RuleKind::fileSystem),
                               commandRule("tm-local-snapshots"),
                               commandRule("dev-unavailable-simulators"),
                               commandRule("docker-reclaimable")};
    const auto results = CommandScanEngine(runner).scan(rules, source.get_token());
    ASSERT_EQ(results.size(), 2U);
    EXPECT_EQ(results[0].rule.id, "unknown");
    EXPECT_EQ(text(results[1].items), "com.apple.TimeMachine.x 0");
    EXPECT_EQ(runner->calls(), callsOf(runs));
    EXPECT_EQ(CommandScanEngine(runner, ToolLocations::none()).scan(rules).size(), 4U);
    EXPECT_EQ(runner->calls(), callsOf(runs));
}

TEST(ToolAreas, AreClearedByTheirTools)
{
    const std::string deletion = "/usr/bin/tmutil deletelocalsnapshots ";
    const std::string odd = "com.apple.TimeMachine.a.local.b.com.apple.TimeMachine..local";
    const std::string kde = "org.kde.Platform/x86_64/5.15";
    const std::string old = "org.kde.Platform/x86_64/5.12";
    const std::string uninstall =
        "/usr/bin/flatpak uninstall --user --noninteractive --no-related runtime/";
    // Since the scan an app was installed that needs the first of three.
    Runs runtimes = listing(flatpak, {"org.example.App/x86_64/stable\t" + gnome + "\n",
                                      gnomeRow + kde + "\t2 GB\n" + old + "\t3 GB\n", ""});
    runtimes.emplace_back(uninstall + kde, "");
    runtimes.emplace_back(uninstall + old, fails);
    Runs images = listing(podman, {imageId + "\n", usage});
    images.emplace_back("/usr/bin/podman --remote=false image rm 3f53bb00af94", "");
    const std::vector<ScannedItem> files = {{"/a", 5}, {"/b", 7}};
    const struct
    {
        std::vector<CleaningSelection> selections;
        Runs runs;
        std::string report;
    } rows[] = {
        {{selection("brew-cleanup", files)},
         {{brews[0] + " -s", fails}, {brews[1] + " -s", missing}, {brews[2] + " -s", ""}},
         "/a 5 | /b 7"},
        {{selection("brew-cleanup", files)},
         {{brews[0] + " -s", missing}, {brews[1] + " -s", missing}, {brews[2] + " -s", missing}},
         ", not /a | /b"},
        {{selection("dev-unavailable-simulators", {{"A (1)"}, {"B (2)"}})},
         {{"/usr/bin/xcrun simctl delete unavailable", ""}},
         "A (1) 0 | B (2) 0"},
        // A part of an area that goes only as a whole stays.
        {{selection("dev-unavailable-simulators", {{"A (1)"}}, 1),
          selection("tm-local-snapshots", {{"com.apple.TimeMachine.1.local"}}, 1)},
         {{deletion + "1", ""}},
         "com.apple.TimeMachine.1.local 0, not A (1)"},
        {{selection("tm-local-snapshots",
                    {{"com.apple.TimeMachine.1.local"}, {"com.apple.TimeMachine.2.local"}, {odd}})},
         {{deletion + "1", ""}, {deletion + "2", fails}, {deletion + "a.b.", ""}},
         "com.apple.TimeMachine.1.local 0 | " + odd + " 0, not com.apple.TimeMachine.2.local"},
        {{selection("docker-reclaimable", {{"x"}}),
          selection("unknown", {{"y"}}),
          {commandRule("brew-cleanup", RuleKind::fileSystem), files},
          selection("tm-local-snapshots", {})},
         {},
         ", not x | y"},
        // Runtimes share files, so their sizes are not what is freed.
        {{selection("dev-flatpak-unused", {{gnome, 1}, {kde, 2}, {old, 3}})},
         runtimes,
         kde + " 0, not " + gnome + " | " + old},
        {{selection("podman-reclaimable",
                    {{"Podman — image 3f53bb00af94", 400}, {"Podman — image a4d2f91c0b78", 120}})},
         images,
         "Podman — image 3f53bb00af94 400, not Podman — image a4d2f91c0b78"},
    };
    for (const auto& [selections, runs, report] : rows) {
        const auto runner = runnerFor(runs);
        EXPECT_EQ(text(CommandCleanEngine(runner).clean(selections)), report);
        EXPECT_EQ(runner->calls(), callsOf(runs)) << report;
    }
    // A dry run tells what a clean does when every tool succeeds, and runs none.
    const auto runner = runnerFor({});
    const CommandCleanEngine engine(runner);
    for (const auto& [rule, report, isWhole] :
         {std::tuple("tm-local-snapshots", "/a 5 | /b 7", false),
          {"brew-cleanup", "/a 5 | /b 7", true},
          {"dev-unavailable-simulators", "/a 5 | /b 7", true},
          {"docker-reclaimable", ", not /a | /b", false},
          {"dev-flatpak-unused", "/a 0 | /b 0", false},
          {"podman-reclaimable", "/a 5 | /b 7", false},
          {"unknown", ", not /a | /b", false}}) {
        EXPECT_EQ(text(engine.run(std::vector{selection(rule, files)}, true, {})), report);
        EXPECT_EQ(text(engine.run(std::vector{selection(rule, files, 1)}, true, {})),
                  isWhole ? ", not /a | /b" : report);
        const CommandScanEngine scanner(runnerFor({}));
        EXPECT_EQ(scanner.scan(std::vector{commandRule(rule)}).at(0).isClearedAsWhole, isWhole);
    }
    EXPECT_TRUE(runner->calls().empty());
    // A stop comes before the next item; what was done stays.
    std::stop_source source;
    const Runs first = {{deletion + "1", ""}};
    const auto stopping = runnerFor(first);
    stopping->whenCalled = [&](const Call&) { source.request_stop(); };
    EXPECT_EQ(text(CommandCleanEngine(stopping).clean(
                  std::vector{rows[4].selections[0], rows[0].selections[0]}, source.get_token())),
              "com.apple.TimeMachine.1.local 0");
    EXPECT_EQ(stopping->calls(), callsOf(first));
}

TEST(ToolAreas, AreListedAndClearedThroughRealChildrenOfAnotherRoot)
{
    const TemporaryFolder root;
    root.makeFile("usr/bin/tmutil", "#!/bin/sh\n"
                                    "cd \"$(dirname \"$0\")\" || exit 1\n"
                                    "case \"$1\" in\n"
                                    "listlocalsnapshots) cat snapshots ;;\n"
                                    "*) grep -q -- \"$2\" snapshots && sed -i \"/$2/d\" snapshots\n"
                                    "esac\n");
    root.makeFile("usr/bin/snapshots", "com.apple.TimeMachine.1.local\n"
                                       "com.apple.TimeMachine.2.local\n");
    root.setMode("usr/bin/tmutil", 0755);
    const auto locations = ToolLocations::forHome(true, root.path());
    const auto runner = std::make_shared<SystemCommandRunner>();
    const std::vector rules = {commandRule("tm-local-snapshots"), commandRule("brew-cleanup")};
    const CommandScanEngine scanner(runner, locations);
    EXPECT_EQ(text(scanner.scan(rules).at(0).items),
              "com.apple.TimeMachine.1.local 0 | com.apple.TimeMachine.2.local 0");
    const CommandCleanEngine cleaner(runner, locations);
    const std::vector chosen = {
        selection("tm-local-snapshots", {{"com.apple.TimeMachine.2.local"}})};
    EXPECT_EQ(text(cleaner.clean(chosen)), "com.apple.TimeMachine.2.local 0");
    EXPECT_EQ(text(cleaner.clean(chosen)), ", not com.apple.TimeMachine.2.local");
    EXPECT_EQ(text(scanner.scan(rules).at(0).items), "com.apple.TimeMachine.1.local 0");
}

TEST(ToolLocations, NameNoRealToolInAConfinedHome)
{
    using Paths = std::vector<std::string>;
    EXPECT_EQ(ToolLocations::forHome(true, std::nullopt).paths(Tool::brew), Paths{});
    EXPECT_EQ(ToolLocations::forHome(true, "/tools//").paths(Tool::docker),
              (Paths{"/tools/usr/local/bin/docker", "/tools/usr/bin/docker"}));
    EXPECT_EQ(ToolLocations::forHome(false, "/tools").paths(Tool::podman),
              Paths{"/tools/usr/bin/podman"});
    const TemporaryFolder folder;
    folder.make("link->/");
    for (const std::string& root :
         {std::string(), std::string("tools"), std::string("/"), std::string("//"),
          std::string("/usr/.."), folder.path("link")}) {
        EXPECT_THROW(static_cast<void>(ToolLocations::forHome(true, root)), std::invalid_argument)
            << root;
    }
}

} // namespace CleanCoreTests
