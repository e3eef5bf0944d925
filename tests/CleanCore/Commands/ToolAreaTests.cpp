#include "CleanCore/Commands/CommandCleanEngine.h"
#include "CleanCore/Commands/CommandScanEngine.h"
#include "tests/Support/ScriptedCommandRunner.h"
#include "tests/Support/Table.h"
#include "tests/Support/TemporaryFolder.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
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
    Call call = words(line);
    for (std::string& word : call) {
        std::replace(word.begin(), word.end(), '~', ' ');
    }
    return call;
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

/// "path size, path size"
std::string text(const std::vector<ScannedItem>& items)
{
    std::string all;
    for (const ScannedItem& item : items) {
        EXPECT_EQ(item.modifiedAt, distantPast);
        EXPECT_FALSE(item.identity);
        all += (all.empty() ? "" : ", ") + item.path + ' ' + std::to_string(item.sizeBytes);
    }
    return all;
}

/// "path credit, path credit, not path, not path"
std::string text(const CleaningReport& report)
{
    std::vector<ScannedItem> removed;
    for (const auto& item : report.removed) {
        removed.push_back({.path = item.path, .sizeBytes = item.bytes});
    }
    std::string all = text(removed);
    for (const auto& item : report.skipped) {
        EXPECT_EQ(item.reason, CleaningReport::SkipReason::removalFailed);
        all += (all.empty() ? "not " : ", not ") + item.path;
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

/// An area, what its listings print, and its items. Quotation marks are written as apostrophes; a
/// tilde is the no-break space.
const char* const listings = R"(
tm-local-snapshots
    | Snapshots for disk /:\ncom.apple.TimeMachine.1.local\n com.apple.TimeMachine.x\ncom.apple.timemachine.y\n
    | com.apple.TimeMachine.1.local 0
dev-unavailable-simulators
    | {'devices':{'r1':[DEVICE,{'name':'B (2)','udid':'2'}],'r2':[{'name':'ü','udid':'3'}]},'more':1}
    | A (1) 0, B (2) (2) 0, ü (3) 0
dev-unavailable-simulators | {'devices':{'r1':[DEVICE,{'name':'B'}]}} |
dev-unavailable-simulators | {'devices':{'r1':[{'name':1,'udid':'1'}]}} |
dev-unavailable-simulators | {'devices':[DEVICE]} |
dev-unavailable-simulators | {'devices':{'r1':DEVICE}} |
dev-unavailable-simulators | {'devices':{'r1':[DEVICE]}} x |
dev-unavailable-simulators | {} |
dev-unavailable-simulators |  |
brew-cleanup | Would remove: /cache/pkg--1.2.3.tar.gz (4.5MB) | /cache/pkg--1.2.3.tar.gz 4500000
brew-cleanup | Would remove: /cache/7b (12 files, 3.4MB)\n==> 51.6MB | /cache/7b 7
brew-cleanup | Would remove: /a (b) (1kB) | /a 1000
brew-cleanup | Would remove:  (1kB) | 1kB) 1000
brew-cleanup | Would remove:  ( |  ( 0
brew-cleanup | Would remove: \nwould remove: /a (1kB)\n Would remove: /b (1kB) |  0
docker-reclaimable
    | {'Type':'Images','Reclaimable':'2.1GB (45%)','Size':'4GB'}\n{'Type':'x','Reclaimable'\n\n[]\n1\n{'Type':1,'Reclaimable':'1B'}\n{'Type':'x'}\n{'Type':'Build Cache','Reclaimable':'125.4kB'}
    | Docker — Images 2100000000, Docker — Build Cache 125400
dev-flatpak-unused | APP | org.gnome.Platform/x86_64/46\t935.0~MB\t\nGNOME\t865.2~MB\t\n |  | GNOME 865200000
dev-flatpak-unused |  | org.kde.Platform/x86_64/5.15\t1.0?GB | No pinned patterns\n
    | org.kde.Platform/x86_64/5.15 1000000000
# Translations go with their platform.
dev-flatpak-unused | APP | org.gnome.Platform.Locale/x86_64/46\t1 MB\norg.gnome.Platform.Locale/x86_64/43\t2 MB\t
    |  | org.gnome.Platform.Locale/x86_64/43 2000000
# Needed by another runtime, and by itself alone.
dev-flatpak-unused |  | org.gnome.Sdk/x86_64/43\t1 GB\tGNOME\norg.kde.Platform/x86_64/6.5\t1 GB\torg.kde.Platform/x86_64/6.5\nGNOME\t1 GB
    |  | org.kde.Platform/x86_64/6.5 1000000000
dev-flatpak-unused |  | GNOME\t1 GB |   runtime/org.gnome.Plat/*\n  *.Sdk\n | GNOME 1000000000
# Kits, extensions and apps are never offered; no more is what is pinned.
dev-flatpak-unused |  | org.gnome.Sdk/x86_64/43\t1 GB\norg.freedesktop.Platform.GL.default/x86_64/22.08\t1 GB\nAPP |  |
dev-flatpak-unused |  | GNOME\t1 GB | Pinned patterns:\n  runtime/org.gnome.Platform/x86_64/42\n |
dev-flatpak-unused |  | GNOME\t1 GB |   org.*.Plat*\n |
dev-flatpak-unused |  | org.gnome.Platform.Locale/x86_64/43\t2 MB |   runtime/GNOME\n |
# Where an app cannot be read, nothing is certain.
dev-flatpak-unused | APPorg.example.Other/x86_64/stable\t\n | GNOME\t1 GB |  |
dev-flatpak-unused | Ref   Runtime\norg.example.App/x86_64/stable   GNOME\n | GNOME\t1 GB |  |
# References that are none.
dev-flatpak-unused |  | -x.Platform/x86_64/43\t1 GB\na.Platform/x86_64\t1 GB\na.Platform/x y/1\t1 GB\na.Platform//1\t1 GB\na.Platform/x86_64/1/2\t1 GB |  |
podman-reclaimable | sha256:IMAGE\n | USAGE | Podman — image 3f53bb00af94 400000000
podman-reclaimable | IMAGE\n | USAGE | Podman — image 3f53bb00af94 400000000
podman-reclaimable | IMAGE\n |  | Podman — image 3f53bb00af94 0
podman-reclaimable | a4d2f91c0b780000000000000000\n | USAGE |
podman-reclaimable | 3f53\nWARNING\n--all\n3f53bb00af94 x | USAGE |
)";

/// A cell of the listings with what its words stand for.
std::string meaning(std::string cell)
{
    for (const auto& [name, text] : std::vector<std::pair<std::string, std::string>>{
             {"DEVICE", "{'name':'A','udid':'1','isAvailable':false}"},
             {"APP", app},
             {"GNOME", gnome},
             {"IMAGE", imageId},
             {"USAGE", usage},
             {"\\n", "\n"},
             {"\\t", "\t"},
             {"'", "\""},
             {"~", "\u00a0"}}) {
        for (auto at = cell.find(name); at != std::string::npos; at = cell.find(name, at)) {
            cell.replace(at, name.size(), text);
        }
    }
    return cell;
}

} // namespace

TEST(ToolAreas, OfferWhatTheirToolsList)
{
    const std::map<std::string, std::vector<std::string>> lines = {
        {"tm-local-snapshots", {snapshots}},
        {"dev-unavailable-simulators", {simulators}},
        {"brew-cleanup", {brew}},
        {"docker-reclaimable", {docker}},
        {"dev-flatpak-unused", {std::begin(flatpak), std::end(flatpak)}},
        {"podman-reclaimable", {std::begin(podman), std::end(podman)}}};
    const auto check = [](const std::string& rule, const Runs& runs, const std::string& items) {
        const auto runner = runnerFor(runs);
        const auto results = CommandScanEngine(runner).scan(std::vector{commandRule(rule)});
        ASSERT_EQ(results.size(), 1U);
        EXPECT_FALSE(results[0].hadAccessErrors);
        EXPECT_EQ(text(results[0].items), items) << testing::PrintToString(runs);
        EXPECT_EQ(runner->calls(), callsOf(runs)) << rule;
    };
    for (const std::vector<std::string>& row : table(listings)) {
        const std::vector<std::string>& commands = lines.at(row[0]);
        ASSERT_EQ(row.size(), commands.size() + 2) << row[0];
        Runs runs;
        for (std::size_t i = 0; i < commands.size(); ++i) {
            runs.emplace_back(commands[i], meaning(row[i + 1]));
        }
        check(row[0], runs, meaning(row.back()));
    }
    // Every place of a tool is tried, and all listings of an area must succeed.
    const std::string dry = " --dry-run -s";
    check("tm-local-snapshots", {{snapshots, missing}}, "");
    check("Tm-local-snapshots", {}, "");
    check("brew-cleanup", {{brew, fails}, {brews[1] + dry, "Would remove: /a\n"}}, "/a 0");
    check("brew-cleanup",
          {{brew, missing}, {brews[1] + dry, missing}, {brews[2] + dry, "Would remove: /a\n"}},
          "/a 0");
    check("docker-reclaimable",
          {{docker, fails}, {"/usr/bin/docker system df --format {{json~.}}", fails}}, "");
    Runs runs;
    for (const std::string& line : flatpak) {
        runs.emplace_back(line, fails);
        check("dev-flatpak-unused", runs, "");
        runs.back().second = "";
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
         "/a 5, /b 7"},
        {{selection("brew-cleanup", files)},
         {{brews[0] + " -s", missing}, {brews[1] + " -s", missing}, {brews[2] + " -s", missing}},
         "not /a, not /b"},
        {{selection("dev-unavailable-simulators", {{"A (1)"}, {"B (2)"}})},
         {{"/usr/bin/xcrun simctl delete unavailable", ""}},
         "A (1) 0, B (2) 0"},
        // A part of an area that goes only as a whole stays.
        {{selection("dev-unavailable-simulators", {{"A (1)"}}, 1),
          selection("tm-local-snapshots", {{"com.apple.TimeMachine.1.local"}}, 1)},
         {{deletion + "1", ""}},
         "com.apple.TimeMachine.1.local 0, not A (1)"},
        {{selection("tm-local-snapshots",
                    {{"com.apple.TimeMachine.1.local"}, {"com.apple.TimeMachine.2.local"}, {odd}})},
         {{deletion + "1", ""}, {deletion + "2", fails}, {deletion + "a.b.", ""}},
         "com.apple.TimeMachine.1.local 0, " + odd + " 0, not com.apple.TimeMachine.2.local"},
        {{selection("docker-reclaimable", {{"x"}}),
          selection("unknown", {{"y"}}),
          {commandRule("brew-cleanup", RuleKind::fileSystem), files},
          selection("tm-local-snapshots", {})},
         {},
         "not x, not y"},
        // Runtimes share files, so their sizes are not what is freed.
        {{selection("dev-flatpak-unused", {{gnome, 1}, {kde, 2}, {old, 3}})},
         runtimes,
         kde + " 0, not " + gnome + ", not " + old},
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
         {std::tuple("tm-local-snapshots", "/a 5, /b 7", false),
          {"brew-cleanup", "/a 5, /b 7", true},
          {"dev-unavailable-simulators", "/a 5, /b 7", true},
          {"docker-reclaimable", "not /a, not /b", false},
          {"dev-flatpak-unused", "/a 0, /b 0", false},
          {"podman-reclaimable", "/a 5, /b 7", false},
          {"unknown", "not /a, not /b", false}}) {
        EXPECT_EQ(text(engine.run(std::vector{selection(rule, files)}, true, {})), report);
        EXPECT_EQ(text(engine.run(std::vector{selection(rule, files, 1)}, true, {})),
                  isWhole ? "not /a, not /b" : report);
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
