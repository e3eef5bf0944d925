#include "CleanCore/Cleaning/CleanEngine.h"
#include "CleanCore/Reclaim/LinuxVolumeFacts.h"
#include "CleanCore/Reclaim/ReclaimSurvey.h"
#include "CleanCore/Support/TaskPool.h"

#include "CleanCore/Cleaning/Clean.h"
#include "tests/Support/CleanableHome.h"
#include "tests/Support/ScriptedDisk.h"
#include "tests/Support/Table.h"

#include <gmock/gmock.h>

namespace CleanCoreTests {

using namespace CleanCore;
using enum CleaningReport::SkipReason;
using testing::ElementsAre;
using Removed = CleaningReport::RemovedItem;
using Skipped = CleaningReport::SkippedItem;

TEST(CleanEngine, RemovesEntriesOfEveryKindAndName)
{
    const CleanableHome home(
        "Documents/kept .cache/file:9k .cache/folder/a/b/c:9k .cache/fifo| "
        ".cache/folder/.hidden .cache/empty/ .cache/locked=0 "
        ".cache/folder/fifo| .cache/folder/link->~/Documents .cache/bare/=0500 "
        ".cache/bare/inner/ .cache/hard==Documents/kept "
        ".cache/folder/hard==Documents/kept");
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != '/') {
            const std::string name(2, static_cast<char>(byte));
            home.makeFile(".cache/n" + name.substr(1));
            home.makeFile(".cache/names/" + name + "/f");
        }
    }
    home.makeFile(".cache/" + std::string(255, 'l'));
    const CleaningSelection selection = home.scan();
    EXPECT_EQ(home.clean(selection).removed.size(), selection.items.size());
    EXPECT_EQ(home.tree(), ".cache/ Documents/kept");
}

TEST(CleanEngine, RemovesOnlyWhatTheGuardAllowsInOneOfTheBases)
{
    const CleanableHome home(
        ".cache/app/x .cache/folder/x Documents/x .ssh/id second/file plain/x "
        "linked->place/.cache place/.cache/x Music->. Movies->/ .cache/photos/in/x "
        ".cache/linked/desktop/x Desktop->.cache/linked/desktop");
    home.makeFile(".config/user-dirs.dirs", "XDG_PICTURES_DIR=\"$HOME/.cache/photos/in\"\n");
    std::vector<OutcomeRow> rows = {
        {".cache/", "~/.cache/app ~/.cache/", "blocked"},
        {".cache/app/", "~/.cache/../.cache/app", "blocked"},
        {".cache/app/", "", "blocked"},
        {"Documents/x", "~/Documents ~", "blocked"},
        {".ssh/", "~", "blocked"},
        // What holds a protected folder is one, whatever the guard can see of it.
        {".cache/photos/", "~/.cache", "blocked"},
        {".cache/linked/", "~/.cache", "blocked"},
        {".cache/new/", "~/nowhere ~/Documents ~/.cache/", "removed all"},
        {".cache/new/", "~/*", "removed all"},
        {"linked/new/", "~/linked", "removed all"},
        {"place/.cache/new/", "~/linked/", "removed all"},
    };
    // Links go themselves, if what they lead to could go as well; most bases are another's.
    for (const std::string target :
         {"plain", "~/.cache/folder", "../second/file", "none/x", "link"}) {
        rows.push_back({".cache/link->" + target, "~/.cache ~/second", "removed 0"});
    }
    for (const std::string target : {"../none", ".", "..", "/tmp", "../Documents/x", "../plain"}) {
        rows.push_back({".cache/link->" + target, "~/.cache ~/second", "blocked"});
    }
    home.expectOutcomes(rows);

    // No scan comes to these, by way of links and through one out of the confinement.
    const TemporaryFolder outside;
    outside.make("app/x");
    home.make(".cache/out->../plain .cache/in->app outside->" + outside.path());
    for (const std::vector<std::string>& row : table(R"(
.cache/out/x | ~/.cache | blocked
.cache/in/x | ~/.cache | failed
.cache/app/../app/x | ~/.cache | failed
outside/app | ~/outside | failed
)")) {
        CleaningSelection selection = home.select("plain/x", {row[1]});
        selection.items.front() = {home.path(row[0])};
        EXPECT_EQ(home.outcomeOf(selection), row[2]) << row[0];
    }
    EXPECT_TRUE(home.has("plain/x") && home.has(".cache/app/x") && outside.has("app/x"));
}

TEST(CleanEngine, FindsOutWhatChangedSinceTheScan)
{
    // What is moved away, what is made then, how the clean ends, and what is left.
    for (const std::vector<std::string>& row : table(R"(
.cache/item |  | failed | .cache/sibling/x Documents/x moved/in/file
.cache/item | .cache/item/in/file | failed
    | .cache/item/in/file .cache/sibling/x Documents/x moved/in/file
.cache/item | .cache/item->../Documents | blocked
    | .cache/item->../Documents .cache/sibling/x Documents/x moved/in/file
.cache | Documents/item/in/file .cache->Documents | blocked
    | .cache->Documents Documents/item/in/file Documents/x moved/item/in/file moved/sibling/x
.cache | .cache/item/in/file | failed
    | .cache/item/in/file Documents/x moved/item/in/file moved/sibling/x
- | .cache/=0500 | failed | .cache/=0500 .cache/item/in/file .cache/sibling/x Documents/x
- | .cache/item/new/file | removed all | .cache/sibling/x Documents/x
)")) {
        const CleanableHome home(".cache/item/in/file .cache/sibling/x Documents/x");
        const CleaningSelection selection = home.select(".cache/item");
        if (row[0] != "-") {
            home.move(row[0], "moved");
        }
        home.make(row[1]);
        const std::string outcome = home.outcomeOf(selection);
        EXPECT_EQ(outcome + " | " + home.tree(), row[2] + " | " + row[3]);
    }
}

TEST(CleanEngine, CreditsEachItemInOrderAndALinkOnlyInADryRun)
{
    const CleanableHome home(".cache/a-before->m .cache/app/x .cache/m/x:5k .cache/z-after->m "
                             ".cache/to-documents->../Documents Documents/x "
                             ".local/share/Trash/files/gone .local/share/Trash/info/gone.trashinfo "
                             ".cache/read-only/=0500 .cache/read-only/x");
    const CleaningSelection selection = home.scan({"~/.cache", "~/.local/share/Trash/files"});
    home.makeFile(".cache/m/x", "has shrunk since");
    const std::string before = snapshot(home.path());
    const CleaningReport dry = home.clean(selection, true);
    EXPECT_EQ(snapshot(home.path()), before);
    CleaningReport wet = home.clean(selection);
    EXPECT_EQ(home.tree(), ".cache/to-documents->../Documents .local/share/Trash/files/ "
                           ".local/share/Trash/info/ Documents/x");
    EXPECT_EQ(dry.skipped, wet.skipped);
    std::vector<Removed> expected;
    for (const ScannedItem& item : selection.items) {
        if (!item.path.ends_with("documents")) {
            expected.push_back({item.path, item.sizeBytes});
        }
    }
    EXPECT_EQ(dry.removed, expected);
    expected.front().bytes = 0;
    expected[expected.size() - 2].bytes = 0;
    EXPECT_EQ(wet.removed, expected);
}

TEST(CleanEngine, GoesThroughTheSelectionsInOrderAndStopsBetweenTwoItems)
{
    const auto disk = std::make_shared<ScriptedDisk>();
    const CleanEngine engine("/home/me", disk);
    std::vector<CleaningSelection> selections(2);
    // Bases are looked for when their selection is reached.
    selections[0].rule.basePaths = {"/first"};
    selections[0].items = {{"/first/b/x", 3'000'000'000}, {"/first/a/x", 2}, {"/first/busy/x", 1}};
    selections[1].rule.basePaths = {"/late/*"};
    selections[1].items = {{"/late/base/d", 1}, {"/late/other/c", 2}};
    disk->irremovable = {"/first/busy/x"};
    disk->onRemove = [&](const std::string&) { disk->add("/late", "base", 1); };
    const CleaningReport report = engine.clean(selections, false);
    EXPECT_THAT(report.removed, ElementsAre(Removed{"/first/b/x", 3'000'000'000},
                                            Removed{"/first/a/x", 2}, Removed{"/late/base/d", 1}));
    EXPECT_THAT(report.skipped, ElementsAre(Skipped{"/first/busy/x", removalFailed},
                                            Skipped{"/late/other/c", blockedBySafetyGuard}));
    EXPECT_EQ(report.totalBytesFreed(), 3'000'000'003);

    std::stop_source stop;
    disk->onRemove = [&](const std::string& path) {
        if (path == "/first/a/x") {
            stop.request_stop();
        }
    };
    const CleaningReport stopped = engine.clean(selections, false, stop.get_token());
    EXPECT_EQ(stopped.removed.back().path, "/first/a/x");
    EXPECT_TRUE(stopped.skipped.empty());
    EXPECT_TRUE(engine.clean(selections, true, stop.get_token()).removed.empty());
}

TEST(Clean, ClearsFilesThenToolsAndMeasuresTheFreeSpaceAroundThem)
{
    CleaningSelection file;
    file.rule.basePaths = {"/area"};
    file.items = {{"/area/file", 1}, {"/area/kept/x", 1}};
    CleaningSelection tool;
    tool.rule.kind = RuleKind::command;
    tool.items = {{"label", 1}};
    const std::tuple<std::vector<std::optional<std::int64_t>>, bool, std::vector<CleaningSelection>,
                     const char*, std::int64_t>
        rows[] = {
            {{100, 150}, false, {tool, file}, "file tools-1 2+2", 50},
            {{100, 150}, true, {tool, file}, "dry-tools-1 2+2", 0},
            {{150, 100}, false, {file}, "file 1+1", 0},
            {{std::nullopt, 50}, false, {tool}, "tools-1 1+1", 50},
            {{100, std::nullopt}, false, {}, "0+0", 0},
        };
    for (const auto& [freeBytes, isDry, chosen, expected, grown] : rows) {
        std::string log;
        const auto disk = std::make_shared<ScriptedDisk>();
        disk->capacities = freeBytes;
        disk->onRemove = [&](const std::string&) { log += "file "; };
        const Clean clean(
            "/home/me", disk, {"/area/kept"},
            [&](auto selections, bool dryRun, auto&&) {
                log += (dryRun ? "dry-tools-" : "tools-") + std::to_string(selections.size()) + ' ';
                return CleaningReport{{{"label", INT64_MAX}},
                                      {{"busy", CleaningReport::SkipReason::removalFailed}}};
            },
            std::make_shared<ReclaimSurvey>(disk, std::make_shared<LinuxVolumeFacts>(),
                                            std::make_shared<TaskPool>(1)));
        const Clean::Outcome outcome = clean.run(chosen, isDry, {});
        const CleaningReport& report = outcome.report;
        log += std::to_string(report.removed.size()) + '+' + std::to_string(report.skipped.size());
        EXPECT_EQ(log, expected);
        EXPECT_GE(report.totalBytesFreed(), 0) << "a sum beyond 64 bits";
        EXPECT_EQ(outcome.growth.bytes(), grown);
    }
}

} // namespace CleanCoreTests
