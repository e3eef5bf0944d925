#include "CleanCore/Commands/CommandCleanEngine.h"
#include "CleanCore/Commands/CommandScanEngine.h"
#include "tests/Support/ScriptedCommandRunner.h"
#include "tests/Support/Table.h"
#include "tests/Support/TemporaryFolder.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <stdexcept>

namespace CleanCoreTests {

using namespace CleanCore;

namespace {

/// An area, "scan" or its chosen items ("part": not all; "dry": a dry run), each call with its
/// output, and the result: items with their sizes or credits. FAILS and MISSING stand for a run
/// that fails and a tool that is not there; "`" is a quotation mark, "~" a blank in a word of a
/// call.
const char* const rows = R"(
tm-local-snapshots | scan | SNAPSHOTS: Snapshots for disk /:\ncom.apple.TimeMachine.1.local\n com.apple.TimeMachine.x\ncom.apple.timemachine.y\n | com.apple.TimeMachine.1.local 0
tm-local-snapshots | scan | SNAPSHOTS: MISSING |
Tm-local-snapshots | scan |
tm-local-snapshots | com.apple.TimeMachine.1.local 0, com.apple.TimeMachine.2.local 0, com.apple.TimeMachine.a.local.b.com.apple.TimeMachine..local 0, part | DELETION 1: | DELETION 2: FAILS | DELETION a.b.: | com.apple.TimeMachine.1.local 0, com.apple.TimeMachine.a.local.b.com.apple.TimeMachine..local 0, not com.apple.TimeMachine.2.local
dev-unavailable-simulators | scan | SIMULATORS: {`devices`:{`r1`:[DEVICE,{`name`:`B (2)`,`udid`:`2`}],`r2`:[{`name`:`ü`,`udid`:`3`}]},`more`:1} | A (1) 0, B (2) (2) 0, ü (3) 0
dev-unavailable-simulators | scan | SIMULATORS: {`devices`:{`r1`:[DEVICE,{`name`:`B`}]}} |
dev-unavailable-simulators | scan | SIMULATORS: {`devices`:{`r1`:[{`name`:1,`udid`:`1`}]}} |
dev-unavailable-simulators | scan | SIMULATORS: {`devices`:[DEVICE]} |
dev-unavailable-simulators | scan | SIMULATORS: {`devices`:{`r1`:DEVICE}} |
dev-unavailable-simulators | scan | SIMULATORS: {`devices`:{`r1`:[DEVICE]}} x |
dev-unavailable-simulators | A (1) 0, B (2) 0 | /usr/bin/xcrun simctl delete unavailable: | A (1) 0, B (2) 0
# A part of an area that goes only as a whole stays.
dev-unavailable-simulators | A (1) 0, part | not A (1)
brew-cleanup | scan | BREW1 --dry-run -s: Would remove: /cache/pkg--1.2.3.tar.gz (4.5MB)\nWould remove: /a (b) (1kB)\n==> 51.6MB | /cache/pkg--1.2.3.tar.gz 4500000, /a 1000
brew-cleanup | scan | BREW1 --dry-run -s: Would remove:  (1kB)\nwould remove: /a (1kB)\n Would remove: /b (1kB) | 1kB) 1000
# Every place of a tool is tried.
brew-cleanup | scan | BREW1 --dry-run -s: MISSING | BREW2 --dry-run -s: FAILS | BREW3 --dry-run -s: Would remove: /a\n | /a 0
brew-cleanup | /a 5, /b 7 | BREW1 -s: FAILS | BREW2 -s: MISSING | BREW3 -s: | /a 5, /b 7
brew-cleanup | /a 5, /b 7 | BREW1 -s: MISSING | BREW2 -s: MISSING | BREW3 -s: FAILS | not /a, not /b
docker-reclaimable | scan | /usr/local/bin/DOCKER: {`Type`:`Images`,`Reclaimable`:`2.1GB (45%)`,`Size`:`4GB`}\n{`Type`:`x`,`Reclaimable`\n\n[]\n1\n{`Type`:1,`Reclaimable`:`1B`}\n{`Type`:`x`}\n{`Type`:`Build Cache`,`Reclaimable`:`125.4kB`} | Docker — Images 2100000000, Docker — Build Cache 125400
docker-reclaimable | scan | /usr/local/bin/DOCKER: FAILS | /usr/bin/DOCKER: FAILS |
docker-reclaimable | x 0 | not x
unknown | y 0 | not y
# A dry run tells what a clean does when every tool succeeds, and runs none.
tm-local-snapshots | x 1, part, dry | x 1
dev-unavailable-simulators | x 1, dry | x 1
brew-cleanup | x 1, y 2, dry | x 1, y 2
brew-cleanup | x 1, part, dry | not x
docker-reclaimable | x 1, dry | not x
dev-flatpak-unused | x 1, dry | x 0
podman-reclaimable | x 1, part, dry | x 1
unknown | x 1, dry | not x
dev-flatpak-unused | scan | APPS: APP | RUNTIMES: org.gnome.Platform/x86_64/46\t935.0 MB\t\nGNOME\t865.2 MB\t\n | PINS: | GNOME 865200000
dev-flatpak-unused | scan | APPS: | RUNTIMES: org.kde.Platform/x86_64/5.15\t1.0?GB | PINS: No pinned patterns\n | org.kde.Platform/x86_64/5.15 1000000000
# Translations go with their platform.
dev-flatpak-unused | scan | APPS: APP | RUNTIMES: org.gnome.Platform.Locale/x86_64/46\t1 MB\norg.gnome.Platform.Locale/x86_64/43\t2 MB\t | PINS: | org.gnome.Platform.Locale/x86_64/43 2000000
# Needed by another runtime, and by itself alone.
dev-flatpak-unused | scan | APPS: | RUNTIMES: org.gnome.Sdk/x86_64/43\t1 GB\tGNOME\norg.kde.Platform/x86_64/6.5\t1 GB\torg.kde.Platform/x86_64/6.5\nGNOME\t1 GB | PINS: | org.kde.Platform/x86_64/6.5 1000000000
dev-flatpak-unused | scan | APPS: | RUNTIMES: GNOME\t1 GB | PINS:   runtime/org.gnome.Plat/*\n  *.Sdk\n | GNOME 1000000000
# Kits and extensions are never offered; no more is a pinned runtime.
dev-flatpak-unused | scan | APPS: | RUNTIMES: org.gnome.Sdk/x86_64/43\t1 GB\norg.freedesktop.Platform.GL.default/x86_64/22.08\t1 GB\n | PINS: |
dev-flatpak-unused | scan | APPS: | RUNTIMES: GNOME\t1 GB | PINS: Pinned patterns:\n  runtime/org.gnome.Platform/x86_64/42\n |
dev-flatpak-unused | scan | APPS: | RUNTIMES: GNOME\t1 GB | PINS:   org.*.Plat*\n |
dev-flatpak-unused | scan | APPS: | RUNTIMES: org.gnome.Platform.Locale/x86_64/43\t2 MB | PINS:   runtime/GNOME\n |
# Where an app or a listing cannot be read, nothing is certain.
dev-flatpak-unused | scan | APPS: APPorg.example.Other/x86_64/stable\t\n | RUNTIMES: GNOME\t1 GB | PINS: |
dev-flatpak-unused | scan | APPS: org.example.App/x86_64/stable   GNOME\n | RUNTIMES: GNOME\t1 GB | PINS: |
dev-flatpak-unused | scan | APPS: FAILS |
dev-flatpak-unused | scan | APPS: | RUNTIMES: GNOME\t1 GB | PINS: FAILS |
dev-flatpak-unused | scan | APPS: | RUNTIMES: -x.Platform/x86_64/43\t1 GB\na.Platform/x86_64\t1 GB\na.Platform/x y/1\t1 GB\na.Platform//1\t1 GB\na.Platform/x86_64/1/2\t1 GB | PINS: |
# Since the scan, an app was installed that needs the first. Runtimes share files, so their sizes
# are not what is freed.
dev-flatpak-unused | GNOME 1, org.kde.Platform/x86_64/5.15 2, org.kde.Platform/x86_64/5.12 3 | APPS: org.example.App/x86_64/stable\tGNOME\n | RUNTIMES: GNOME\t1 GB\norg.kde.Platform/x86_64/5.15\t2 GB\norg.kde.Platform/x86_64/5.12\t3 GB\n | PINS: | UNINSTALLATION/org.kde.Platform/x86_64/5.15: | UNINSTALLATION/org.kde.Platform/x86_64/5.12: FAILS | org.kde.Platform/x86_64/5.15 0, not GNOME, not org.kde.Platform/x86_64/5.12
podman-reclaimable | scan | IMAGES: sha256:IMAGE\n | USAGE: TABLE | Podman — image 3f53bb00af94 400000000
podman-reclaimable | scan | IMAGES: IMAGE\n | USAGE: | Podman — image 3f53bb00af94 0
podman-reclaimable | scan | IMAGES: a4d2f91c0b780000000000000000\n3f53\nWARNING\n--all\n3f53bb00af94 x | USAGE: TABLE |
podman-reclaimable | Podman — image 3f53bb00af94 400, Podman — image a4d2f91c0b78 120 | IMAGES: IMAGE\n | USAGE: TABLE | /usr/bin/podman --remote=false image rm 3f53bb00af94: | Podman — image 3f53bb00af94 400, not Podman — image a4d2f91c0b78
)";

const std::pair<std::string, std::string> meanings[] = {
    {"SNAPSHOTS", "/usr/bin/tmutil listlocalsnapshots /"},
    {"DELETION", "/usr/bin/tmutil deletelocalsnapshots"},
    {"SIMULATORS", "/usr/bin/xcrun simctl list devices unavailable -j"},
    {"DEVICE", "{`name`:`A`,`udid`:`1`,`isAvailable`:false}"},
    {"BREW1", "/opt/homebrew/bin/brew cleanup"},
    {"BREW2", "/usr/local/bin/brew cleanup"},
    {"BREW3", "/home/linuxbrew/.linuxbrew/bin/brew cleanup"},
    {"DOCKER", "docker system df --format {{json~.}}"},
    {"APPS", "/usr/bin/flatpak list --app --columns=ref,runtime"},
    {"RUNTIMES", "/usr/bin/flatpak list --user --runtime --all --columns=ref,size,runtime"},
    {"PINS", "/usr/bin/flatpak pin --user"},
    {"UNINSTALLATION", "/usr/bin/flatpak uninstall --user --noninteractive --no-related runtime"},
    {"APP", "org.example.App/x86_64/stable\torg.gnome.Platform/x86_64/46\n"},
    {"GNOME", "org.gnome.Platform/x86_64/43"},
    {"IMAGES", "/usr/bin/podman --remote=false images --filter dangling=true --quiet --no-trunc"},
    {"IMAGE", "3f53bb00af943dfdf815650be70c0fa7b426e56a66f5e3362b47a129d57d5991"},
    {"USAGE", "/usr/bin/podman --remote=false system df --verbose"},
    {"TABLE",
     "REPOSITORY  TAG  IMAGE ID  CREATED  SIZE  SHARED SIZE  UNIQUE SIZE  CONTAINERS\n"
     "<none>           <none>      3f53bb00af94  2 weeks ago  1.2GB   800MB   400MB        0\n"
     "<none>           <none>      a4d2f91c0b78  3 weeks ago  120MB  0B  120MB  1\n"
     "\nContainers space usage:\n\n"
     "5e6f7a8b9c0d  x      3f53bb00af94  0  9GB  2 weeks ago  777GB  y\n"},
    {"\\n", "\n"},
    {"\\t", "\t"},
    {"`", "\""}};

std::string meaning(std::string cell)
{
    for (const auto& [name, text] : meanings) {
        for (auto at = cell.find(name); at != std::string::npos; at = cell.find(name, at)) {
            cell.replace(at, name.size(), text);
        }
    }
    return cell;
}

/// The calls of a row, and a runner that answers them and adds those that it gets to `made`.
std::shared_ptr<ScriptedCommandRunner> runnerFor(const std::vector<std::string>& cells,
                                                 std::vector<Call>& calls, std::vector<Call>& made)
{
    ScriptedCommandRunner::Script script;
    for (const std::string& cell : cells) {
        const std::size_t colon = cell.find(':');
        Call& call = calls.emplace_back(words(meaning(cell.substr(0, colon))));
        std::replace(call.back().begin(), call.back().end(), '~', ' ');
        const std::string output = cell.substr(std::min(colon + 2, cell.size()));
        if (output != "MISSING") {
            script[call] = output == "FAILS" ? std::nullopt : std::optional(meaning(output));
        }
    }
    auto runner = std::make_shared<ScriptedCommandRunner>(script);
    runner->whenCalled = [&made](const Call& call) { made.push_back(call); };
    return runner;
}

CleaningSelection selection(const std::string& rule, std::string items)
{
    CleaningSelection result = {commandRule(rule), {}, 0};
    for (items += ", "; !items.empty(); items.erase(0, items.find(", ") + 2)) {
        const std::string item = items.substr(0, items.find(", "));
        const std::size_t blank = item.rfind(' ');
        if (blank != std::string::npos) {
            result.items.push_back({item.substr(0, blank), std::stoll(item.substr(blank))});
        }
        result.itemsLeftOut += item == "part" ? 1 : 0;
    }
    return result;
}

std::string text(const std::vector<ScannedItem>& items)
{
    std::string all;
    for (const ScannedItem& item : items) {
        EXPECT_EQ(item.modifiedAt, distantPast);
        all += (all.empty() ? "" : ", ") + item.path + ' ' + std::to_string(item.sizeBytes);
    }
    return all;
}

std::string text(const CleaningReport& report)
{
    std::vector<ScannedItem> removed;
    for (const auto& item : report.removed) {
        removed.push_back({item.path, item.bytes});
    }
    std::string all = text(removed);
    for (const auto& item : report.skipped) {
        EXPECT_EQ(item.reason, CleaningReport::SkipReason::removalFailed);
        all += (all.empty() ? "not " : ", not ") + item.path;
    }
    return all;
}

} // namespace

TEST(ToolAreas, AreListedAndClearedByTheirTools)
{
    for (const std::vector<std::string>& row : table(rows)) {
        SCOPED_TRACE(testing::PrintToString(row));
        const std::string& rule = row[0];
        std::vector<Call> calls;
        std::vector<Call> made;
        const auto runner = runnerFor({row.begin() + 2, row.end() - 1}, calls, made);
        if (row[1] == "scan") {
            const auto results = CommandScanEngine(runner).scan(std::vector{commandRule(rule)});
            EXPECT_EQ(text(results.at(0).items), meaning(row.back()));
            EXPECT_EQ(results[0].isClearedAsWhole,
                      rule == "brew-cleanup" || rule == "dev-unavailable-simulators");
        } else {
            const std::vector chosen = {selection(rule, meaning(row[1]))};
            const bool isDry = row[1].ends_with("dry");
            EXPECT_EQ(text(CommandCleanEngine(runner).run(chosen, isDry, {})), meaning(row.back()));
        }
        EXPECT_EQ(made, calls);
    }
}

TEST(ToolAreas, AreScannedAndClearedInOrderUntilAStop)
{
    std::vector<Call> calls;
    std::vector<Call> made;
    std::stop_source source;
    auto runner =
        runnerFor({"SNAPSHOTS: com.apple.TimeMachine.x", "SIMULATORS: FAILS"}, calls, made);
    // The second tool's run is what the request ends.
    runner->whenCalled = [&](const Call& call) {
        made.push_back(call);
        static_cast<void>(made.size() == 2 && source.request_stop());
    };
    const std::vector rules = {commandRule("unknown"), commandRule("cache", RuleKind::fileSystem),
                               commandRule("tm-local-snapshots"),
                               commandRule("dev-unavailable-simulators"),
                               commandRule("docker-reclaimable")};
    const auto results = CommandScanEngine(runner).scan(rules, source.get_token());
    ASSERT_EQ(results.size(), 2U);
    EXPECT_EQ(results[0].rule.id, "unknown");
    EXPECT_EQ(text(results[1].items), "com.apple.TimeMachine.x 0");
    EXPECT_EQ(CommandScanEngine(runner, ToolLocations::none()).scan(rules).size(), 4U);

    // What was done before a stop stays; files and areas without a choice are nothing to do.
    source = {};
    runner = runnerFor({"DELETION 1:"}, calls, made);
    runner->whenCalled = [&](const Call& call) {
        made.push_back(call);
        source.request_stop();
    };
    std::vector chosen = {selection("brew-cleanup", "/a 5"), selection("brew-cleanup", "/a 5"),
                          selection("tm-local-snapshots", "1 0, 2 0")};
    chosen[0].rule.kind = RuleKind::fileSystem;
    chosen[1].items.clear();
    EXPECT_EQ(text(CommandCleanEngine(runner).clean(chosen, source.get_token())), "1 0");
    EXPECT_EQ(made, calls);
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
         {std::string(), std::string("tools"), std::string("//"), folder.path("link")}) {
        EXPECT_THROW(static_cast<void>(ToolLocations::forHome(true, root)), std::invalid_argument);
    }
}

} // namespace CleanCoreTests
