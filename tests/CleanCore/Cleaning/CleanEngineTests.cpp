#include "CleanCore/Cleaning/CleanEngine.h"

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
    const CleanableHome home("Documents/kept .cache/file:9k .cache/folder/a/b/c:9k .cache/fifo| "
                             ".cache/folder/.hidden .cache/empty/ .cache/locked=0 "
                             ".cache/folder/fifo| .cache/hard==Documents/kept "
                             ".cache/folder/hard==Documents/kept .cache/caf\u00e9");
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != '/') {
            const auto name = static_cast<char>(byte);
            home.makeFile(std::string(".cache/n") + name);
            home.makeFile(std::string(".cache/names/") + std::string(2, name) + "/f");
        }
    }
    home.makeFile(".cache/" + std::string(255, 'l'));
    home.makeFile(".cache/cafe\u0301");
    const std::string kept = snapshot(home.path("Documents"));
    CleaningSelection selection = home.scan();
    std::erase_if(selection.items, [&](const ScannedItem& item) {
        return item.path == home.path(".cache/caf\u00e9");
    });
    home.makeFile(".cache/file", "has shrunk since");
    std::vector<Removed> expected;
    for (const ScannedItem& item : selection.items) {
        expected.push_back({item.path, item.sizeBytes});
    }
    const CleaningReport report = home.clean(selection);
    EXPECT_EQ(report.removed, expected);
    EXPECT_EQ(report.skipped, std::vector<Skipped>());
    EXPECT_EQ(home.tree(), ".cache/caf\u00e9 Documents/kept");
    EXPECT_EQ(snapshot(home.path("Documents")), kept);
}

TEST(CleanEngine, RemovesOnlyWhatTheGuardAllowsInOneOfTheBases)
{
    const CleanableHome home(".cache/app/x .cache/folder/x .cache/plain .cache-old/x Documents/x "
                             ".ssh/id second/file plain/x place/.cache/app/x linked->place/.cache "
                             ".cache/photos/in/x .config/user-dirs.dirs .cache/linked/desktop/x "
                             "Desktop->.cache/linked/desktop");
    home.makeFile(".config/user-dirs.dirs", "XDG_PICTURES_DIR=\"$HOME/.cache/photos/in\"\n");
    const TemporaryFolder elsewhere;
    std::vector<OutcomeRow> rows = {
        {".cache/", "~/.cache", "blocked"},
        {".cache/", "~/.cache/app ~/.cache/", "blocked"},
        {".cache-old/", "~/.cache", "blocked"},
        {".cache-old/x", "~/.cache", "blocked"},
        {".cache/app/", "~/.cache/app", "blocked"},
        {".cache/app/", "~/.cache/../.cache/app", "blocked"},
        {".cache/app/", "~/nowhere ~/nowhere/*", "blocked"},
        {".cache/app/", "", "blocked"},
        {"Documents/", "~", "blocked"},
        {"Documents/x", "~/Documents ~", "blocked"},
        {".ssh/", "~", "blocked"},
        {".ssh/id", "~/.ssh", "blocked"},
        // What holds a protected folder is one, whatever the guard can see of it.
        {".cache/photos/", "~/.cache", "blocked"},
        {".cache/photos/in/", "~/.cache/photos", "blocked"},
        {".cache/linked/", "~/.cache", "blocked"},
        {".cache/new/", "~/nowhere ~/Documents ~/.cache/", "removed all"},
        {".cache/new/", "~/Documents/../.cache", "removed all"},
        {".cache/new/", "~/*", "removed all"},
        {"linked/new/", "~/linked", "removed all"},
    };
    // Links go themselves, if what they lead to could go as well; most bases are another's.
    for (const char* const target : {"plain", "folder", "folder/x", "~/.cache/folder", "folder/",
                                     "../second/file", "nothing/here", "link", "folder/../link"}) {
        rows.push_back({".cache/link->" + std::string(target), "~/.cache ~/second", "removed 0"});
    }
    for (const std::string target :
         {"../nothing", ".", "../second", "..", "/", "/tmp", "../Documents", "../Documents/x",
          "../.ssh", "../plain", elsewhere.path().c_str(), "/proc/self/cwd"}) {
        rows.push_back({".cache/link->" + target, "~/.cache ~/second", "blocked"});
    }
    home.expectOutcomes(rows);

    home.make(".cache/out->../plain .cache/in->app .cache/protected->../Documents");
    for (const auto& [path, outcome] :
         {std::pair(".cache/out/x", "blocked"), std::pair(".cache/protected/x", "blocked"),
          std::pair(".cache/in/x", "failed"), std::pair(".cache/../plain/x", "blocked"),
          std::pair(".cache/app/../app/x", "failed"), std::pair("", "blocked")}) {
        CleaningSelection selection = home.select("plain/x", {"~/.cache", "/", "/tmp", "~/.."});
        selection.rule.basePaths.resize(*path == '\0' ? 4 : 1);
        selection.items.front() = {home.path(path)};
        EXPECT_EQ(home.outcomeOf(selection), outcome) << path;
    }
    EXPECT_TRUE(home.has("plain/x") && home.has("Documents/x") && home.has(".cache/app/x"));
}

TEST(CleanEngine, FindsOutWhatChangedSinceTheScan)
{
    // What is moved away, what is made then, how the clean ends, and what is left.
    for (const std::vector<std::string>& row : table(R"(
.cache/item |  | failed | .cache/sibling/x Documents/x moved/in/file
.cache/item | .cache/item | failed | .cache/item .cache/sibling/x Documents/x moved/in/file
.cache/item | .cache/item/in/file | failed
    | .cache/item/in/file .cache/sibling/x Documents/x moved/in/file
.cache/item | .cache/item->sibling | failed
    | .cache/item->sibling .cache/sibling/x Documents/x moved/in/file
.cache/item | .cache/item->../Documents | blocked
    | .cache/item->../Documents .cache/sibling/x Documents/x moved/in/file
.cache | Documents/item/in/file .cache->Documents | blocked
    | .cache->Documents Documents/item/in/file Documents/x moved/item/in/file moved/sibling/x
.cache | .cache/item/in/file | failed
    | .cache/item/in/file Documents/x moved/item/in/file moved/sibling/x
- | .cache/=0500 | failed | .cache/=0500 .cache/item/in/file .cache/sibling/x Documents/x
- | .cache/=0 | failed | .cache/=00 Documents/x
- | .cache/item/new/file | removed all | .cache/sibling/x Documents/x
)")) {
        const CleanableHome home(".cache/item/in/file .cache/sibling/x Documents/x");
        const CleaningSelection selection = home.select(".cache/item");
        if (row[0] != "-") {
            home.move(row[0], "moved");
        }
        home.make(row[1]);
        EXPECT_EQ(home.outcomeOf(selection), row[2]) << row[0] << " then " << row[1];
        EXPECT_EQ(home.tree(), row[3]) << row[0] << " then " << row[1];
    }
}

TEST(CleanEngine, CreditsEachItemInOrderAndALinkOnlyInADryRun)
{
    const CleanableHome home(".cache/a-before->m .cache/app/x .cache/m/x:5k .cache/z-after->m "
                             ".cache/to-documents->../Documents Documents/x "
                             ".local/share/Trash/files/gone .local/share/Trash/info/gone.trashinfo "
                             ".cache/read-only/=0500 .cache/read-only/x");
    const CleaningSelection selection = home.scan({"~/.cache", "~/.local/share/Trash/files"});
    const std::string before = snapshot(home.path());
    const CleaningReport dry = home.clean(selection, true);
    EXPECT_EQ(snapshot(home.path()), before);
    CleaningReport wet = home.clean(selection);
    EXPECT_EQ(home.tree(), ".cache/to-documents->../Documents .local/share/Trash/files/ "
                           ".local/share/Trash/info/ Documents/x");
    EXPECT_EQ(dry.skipped, wet.skipped);
    std::vector<Removed> expected;
    for (const ScannedItem& item : selection.items) {
        expected.push_back({item.path, item.sizeBytes});
    }
    std::erase_if(expected, [](const Removed& item) { return item.path.ends_with("documents"); });
    EXPECT_EQ(dry.removed, expected);
    expected.front().bytes = 0;
    expected[expected.size() - 2].bytes = 0;
    EXPECT_EQ(wet.removed, expected);
}

TEST(CleanEngine, GoesThroughTheSelectionsInOrderAndStopsBetweenTwoItems)
{
    const auto disk = std::make_shared<ScriptedDisk>();
    const CleanEngine engine("/home/me", disk);
    const std::int64_t large = 3'000'000'000;
    std::vector<CleaningSelection> selections(2);
    // Bases are looked for when their selection is reached.
    selections[0].rule.basePaths = {"/first"};
    selections[0].items = {{"/first/b/x", large}, {"/first/a/x", large}, {"/first/busy/x", 1}};
    selections[1].rule.basePaths = {"/late/*"};
    selections[1].items = {{"/late/base/d", 1}, {"/late/other/c", 2}};
    disk->irremovable = {"/first/busy/x"};
    disk->onRemove = [&](const std::string&) {
        disk->folders["/late"] = {{"base"}, 0};
        disk->folders["/late/base"] = {};
    };
    const CleaningReport report = engine.clean(selections, false);
    EXPECT_THAT(report.removed,
                ElementsAre(Removed{"/first/b/x", large}, Removed{"/first/a/x", large},
                            Removed{"/late/base/d", 1}));
    EXPECT_THAT(report.skipped, ElementsAre(Skipped{"/first/busy/x", removalFailed},
                                            Skipped{"/late/other/c", blockedBySafetyGuard}));
    EXPECT_EQ(report.totalBytesFreed(), 2 * large + 1);
    const CleaningReport merged = report.merging({{{"/tool", INT64_MAX}}, {{"/y", removalFailed}}});
    EXPECT_EQ(merged.removed.back(), (Removed{"/tool", INT64_MAX}));
    EXPECT_EQ(merged.removed.front(), report.removed.front());
    EXPECT_EQ(merged.skipped.back(), (Skipped{"/y", removalFailed}));
    EXPECT_EQ(merged.totalBytesFreed(), INT64_MAX);

    std::stop_source stop;
    disk->onRemove = [&](const std::string& path) {
        if (path == "/first/a/x") {
            stop.request_stop();
        }
    };
    const CleaningReport stopped = engine.clean(selections, false, stop.get_token());
    EXPECT_THAT(stopped.removed,
                ElementsAre(Removed{"/first/b/x", large}, Removed{"/first/a/x", large}));
    EXPECT_THAT(stopped.skipped, ElementsAre());
    const CleaningReport none = engine.clean(selections, true, stop.get_token());
    EXPECT_TRUE(none.removed.empty() && none.skipped.empty());
}

TEST(CleanEngine, TouchesNothingOutsideTheFolderThatItIsConfinedTo)
{
    const TemporaryFolder outside;
    outside.make("cache/app/x Trash/files/x Trash/info/x.trashinfo");
    const CleanableHome home;
    home.makeLink(".cache", outside.path("cache"));
    home.makeLink("Trash", outside.path("Trash"));
    const std::string before = snapshot(outside.path());
    for (const auto& [base, name] :
         {std::pair(home.path(".cache"), "app"), std::pair(outside.path("cache"), "app"),
          std::pair(home.path("Trash/files"), "x"),
          std::pair(home.path() + "/../" + outside.path("cache").substr(5), "app")}) {
        CleaningSelection selection;
        selection.rule.basePaths = {base};
        selection.items = {{base + "/" + name, CleanableHome::selectedBytes}};
        EXPECT_EQ(home.outcomeOf(selection), "failed") << base;
    }
    EXPECT_EQ(snapshot(outside.path()), before);
}

} // namespace CleanCoreTests
