#include "CleanCore/Cleaning/CleanEngine.h"

#include "tests/Support/CleanableHome.h"
#include "tests/Support/StoppingFileManager.h"

#include <functional>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

namespace CleanCoreTests {

using namespace CleanCore;
using enum CleaningReport::SkipReason;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

std::vector<std::string> removedPaths(const CleaningReport& report)
{
    std::vector<std::string> paths;
    for (const CleaningReport::RemovedItem& item : report.removed) {
        paths.push_back(item.path);
    }
    return paths;
}

std::vector<std::string> pathsOf(const CleaningSelection& selection)
{
    std::vector<std::string> paths;
    for (const ScannedItem& item : selection.items) {
        paths.push_back(item.path);
    }
    return paths;
}

} // namespace

TEST(CleanEngine, RemovesEntriesOfEveryKindAndCreditsTheScannedSize)
{
    const CleanableHome home;
    home.folder.makeFile("Documents/kept", "linked twice");
    home.folder.makeFile(".cache/file", std::string(9000, 'x'));
    home.folder.makeFile(".cache/folder/a/b/c", std::string(9000, 'x'));
    home.folder.makeFile(".cache/folder/.hidden");
    home.folder.makeFolder(".cache/empty");
    home.folder.makeFile(".cache/locked");
    home.folder.setMode(".cache/locked", 0);
    ASSERT_EQ(::mkfifo(home.folder.path(".cache/fifo").c_str(), S_IRUSR | S_IWUSR), 0);
    ASSERT_EQ(::mkfifo(home.folder.path(".cache/folder/fifo").c_str(), S_IRUSR | S_IWUSR), 0);
    for (const char* name : {".cache/hard", ".cache/folder/hard"}) {
        ASSERT_EQ(
            ::link(home.folder.path("Documents/kept").c_str(), home.folder.path(name).c_str()), 0);
    }
    const std::string kept = snapshot(home.folder.path("Documents"));

    CleaningSelection selection = home.scan();
    selection.items.front().sizeBytes = CleanableHome::selectedBytes;
    home.folder.makeFile(".cache/file", "has shrunk since");
    const CleaningReport report = home.clean(selection);
    EXPECT_THAT(report.skipped, IsEmpty());
    ASSERT_THAT(report.removed, SizeIs(6));
    for (std::size_t i = 0; i < selection.items.size(); ++i) {
        EXPECT_EQ(report.removed[i].path, selection.items[i].path);
        EXPECT_EQ(report.removed[i].bytes, selection.items[i].sizeBytes);
    }
    EXPECT_EQ(snapshot(home.folder.path(".cache")), "");
    EXPECT_EQ(snapshot(home.folder.path("Documents")), kept);
}

TEST(CleanEngine, BlocksWhatLiesUnderNoBase)
{
    const CleanableHome home;
    home.folder.makeFile(".cache/app/x");
    home.folder.makeFile(".cache-old/x");
    home.folder.makeFile("Documents/x");
    home.folder.makeFile(".ssh/id");
    const std::string before = snapshot(home.folder.path());
    struct Case
    {
        std::string item;
        std::vector<std::string> bases;
    };
    const std::vector<Case> cases = {
        {".cache", {"~/.cache"}},
        {".cache", {"~/.cache/app", "~/.cache/"}},
        {".cache-old", {"~/.cache"}},
        {".cache-old/x", {"~/.cache"}},
        {".cache/app", {"~/.cache/app"}},
        {".cache/app", {"~/.cache/../.cache/app"}},
        {".cache/app", {"~/nowhere", "~/nowhere/*"}},
        {".cache/app", {}},
        {"Documents", {"~"}},
        {"Documents/x", {"~/Documents", "~"}},
        {".ssh", {"~"}},
        {".ssh/id", {"~/.ssh"}},
    };
    for (const auto& [item, bases] : cases) {
        EXPECT_EQ(home.outcomeOf(item, bases), "blocked") << item;
    }
    CleaningSelection homeItself = home.select(".cache", {"/", "/tmp", "~/.."});
    homeItself.items.front().path = home.folder.path();
    EXPECT_EQ(home.outcomeOf(homeItself), "blocked");
    EXPECT_EQ(snapshot(home.folder.path()), before);
}

TEST(CleanEngine, AsksForEveryBaseInTurn)
{
    const CleanableHome home;
    home.folder.makeFolder("Documents");
    for (const char* base : {"~/.cache/", "~/Documents/../.cache", "~/*"}) {
        home.folder.makeFile(".cache/app/x");
        EXPECT_EQ(home.outcomeOf(".cache/app", {"~/nowhere", "~/Documents", base}), "removed all")
            << base;
    }
    home.folder.makeFile("place/.cache/app/x");
    home.folder.makeLink("link", "place/.cache");
    EXPECT_EQ(home.outcomeOf("link/app", {"~/link"}), "removed all") << "a base that is a link";
    EXPECT_TRUE(home.folder.has("place/.cache"));
}

TEST(CleanEngine, FindsOutWhatChangedSinceTheScan)
{
    using Change = std::function<void(const TemporaryFolder&)>;
    const auto expect = [](const char* what, const std::string& outcome,
                           const std::vector<std::string>& kept, const Change& change) {
        SCOPED_TRACE(what);
        const CleanableHome home;
        home.folder.makeFile(".cache/item/in/file");
        home.folder.makeFile(".cache/sibling/x");
        home.folder.makeFile("Documents/x");
        const CleaningSelection selection = home.select(".cache/item");
        change(home.folder);
        EXPECT_EQ(describe(home.clean(selection, true), selection.items.front()), outcome)
            << "in a dry run";
        EXPECT_EQ(home.outcomeOf(selection), outcome);
        for (const std::string& relative : kept) {
            EXPECT_TRUE(home.folder.has(relative)) << relative;
        }
        EXPECT_TRUE(outcome != "removed all" || !home.folder.has(".cache/item"));
    };
    const auto move = [](const TemporaryFolder& folder, const char* from) {
        ASSERT_EQ(::rename(folder.path(from).c_str(), folder.path("moved").c_str()), 0);
    };
    const Change away = [&](auto& folder) { move(folder, ".cache/item"); };
    expect("moved away", "failed", {"moved/in/file"}, away);
    expect("replaced by a file", "failed", {".cache/item", "moved/in/file"}, [&](auto& folder) {
        away(folder);
        folder.makeFile(".cache/item");
    });
    expect("replaced by a folder", "failed", {".cache/item/in/file", "moved/in/file"},
           [&](auto& folder) {
               away(folder);
               folder.makeFile(".cache/item/in/file");
           });
    expect("a link inside the base", "failed", {".cache/item", ".cache/sibling/x"},
           [&](auto& folder) {
               away(folder);
               folder.makeLink(".cache/item", "sibling");
           });
    expect("a link to a protected folder", "blocked", {".cache/item", "Documents/x"},
           [&](auto& folder) {
               away(folder);
               folder.makeLink(".cache/item", "../Documents");
           });
    expect("the base is a link to a protected folder", "blocked",
           {"Documents/item/in/file", "moved/item/in/file"}, [&](auto& folder) {
               move(folder, ".cache");
               folder.makeFile("Documents/item/in/file");
               folder.makeLink(".cache", "Documents");
           });
    expect("the base is another folder", "failed", {".cache/item/in/file", "moved/item/in/file"},
           [&](auto& folder) {
               move(folder, ".cache");
               folder.makeFile(".cache/item/in/file");
           });
    expect("the base is read-only", "failed", {".cache/item", ".cache/sibling/x"},
           [](auto& folder) { folder.setMode(".cache", 0500); });
    expect("the base is unreadable", "failed", {},
           [](auto& folder) { folder.setMode(".cache", 0); });
    // The owner may look into a folder of their own again, and so does the clean.
    expect("unreadable inside", "removed all", {".cache/sibling/x"},
           [](auto& folder) { folder.setMode(".cache/item/in", 0); });
    expect("grown", "removed all", {".cache/sibling/x"},
           [](auto& folder) { folder.makeFile(".cache/item/new/file"); });
}

TEST(CleanEngine, ListsTheSameItemsInADryRunAndChangesNothing)
{
    const CleanableHome home;
    home.folder.makeFile(".cache/app/x");
    home.folder.makeFile("Documents/x");
    home.folder.makeFile(".local/share/Trash/files/gone");
    home.folder.makeFile(".local/share/Trash/info/gone.trashinfo");
    home.folder.makeLink(".cache/link", "app");
    home.folder.makeLink(".cache/to-documents", "../Documents");
    home.folder.makeFile(".cache/read-only/x");
    home.folder.setMode(".cache/read-only", 0500);
    const CleaningSelection selection = home.scan({"~/.cache", "~/.local/share/Trash/files"});
    const std::string before = snapshot(home.folder.path());

    const CleaningReport dry = home.clean(selection, true);
    EXPECT_EQ(snapshot(home.folder.path()), before);
    const CleaningReport wet = home.clean(selection);
    EXPECT_EQ(removedPaths(dry), removedPaths(wet));
    EXPECT_EQ(dry.skipped, wet.skipped);
    EXPECT_THAT(dry.removed, SizeIs(4));
    // Only a dry run credits a link with what the scan measured.
    std::int64_t linkBytes = 0;
    for (const ScannedItem& item : selection.items) {
        linkBytes += item.path == home.folder.path(".cache/link") ? item.sizeBytes : 0;
    }
    EXPECT_EQ(dry.totalBytesFreed(), wet.totalBytesFreed() + linkBytes);
}

TEST(CleanEngine, HandlesSelectionsInOrderAndExpandsBasesWhenItReachesThem)
{
    const CleanableHome home;
    for (const char* file : {"one/b", "one/a", "two/d", "two/c"}) {
        home.folder.makeFile(file);
    }
    CleaningSelection first = home.scan({"~/one"});
    std::swap(first.items.front(), first.items.back());
    const CleaningSelection second = home.scan({"~/two"});
    const std::vector<CleaningSelection> selections = {first, second, first};
    const CleaningReport report = home.engine().clean(selections, false);
    std::vector<std::string> expected = pathsOf(first);
    for (const std::string& path : pathsOf(second)) {
        expected.push_back(path);
    }
    EXPECT_EQ(removedPaths(report), expected);
    // What was removed a moment ago is not there to be removed again.
    EXPECT_THAT(report.skipped, SizeIs(2));

    home.folder.makeFile("late/base/x");
    CleaningSelection late = home.scan({"~/late/base"});
    late.rule.basePaths = {"~/*/base"};
    EXPECT_EQ(home.outcomeOf(late), "removed all");
}

TEST(CleanEngine, StopsBetweenTwoItemsAndReportsWhatItDid)
{
    const CleanableHome home;
    for (const char* name : {"a", "b", "c", "d"}) {
        home.folder.makeFile(std::string(".cache/") + name + "/file");
    }
    const CleaningSelection selection = home.scan();
    std::stop_source stop;
    const auto files =
        std::make_shared<StoppingFileManager>(home.folder.path(), home.pool, stop, 2);
    const CleanEngine engine(home.folder.path(), files);
    const CleaningReport report = engine.clean({&selection, 1}, false, stop.get_token());
    EXPECT_THAT(removedPaths(report),
                testing::ElementsAre(home.folder.path(".cache/a"), home.folder.path(".cache/b")));
    EXPECT_THAT(report.skipped, IsEmpty());
    EXPECT_FALSE(home.folder.has(".cache/b"));
    EXPECT_TRUE(home.folder.has(".cache/c/file"));
    const CleaningReport none = engine.clean({&selection, 1}, true, stop.get_token());
    EXPECT_TRUE(none.removed.empty() && none.skipped.empty());
}

TEST(CleanEngine, RemovesNamesOfAnyBytes)
{
    const CleanableHome home;
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != '/') {
            const auto name = static_cast<char>(byte);
            home.folder.makeFile(std::string(".cache/n") + name);
            home.folder.makeFile(std::string(".cache/folder/") + std::string(2, name) + "/f");
        }
    }
    home.folder.makeFile(".cache/" + std::string(255, 'l'));
    home.folder.makeFile(".cache/caf\u00e9", "kept");
    home.folder.makeFile(".cache/cafe\u0301", "goes");
    CleaningSelection selection = home.scan();
    std::erase_if(selection.items, [&](const ScannedItem& item) {
        return item.path == home.folder.path(".cache/caf\u00e9");
    });
    EXPECT_EQ(removedPaths(home.clean(selection)), pathsOf(selection));
    EXPECT_THAT(pathsOf(home.scan()), testing::ElementsAre(home.folder.path(".cache/caf\u00e9")));
}

TEST(CleanEngine, KeepsAnItemThatHoldsAProtectedFolder)
{
    const CleanableHome home;
    home.folder.makeFile(".cache/app/photos/x");
    home.folder.makeFile(".cache/app/other");
    home.folder.makeFile(".config/user-dirs.dirs",
                         "XDG_PICTURES_DIR=\"$HOME/.cache/app/photos\"\n");
    home.folder.makeFile(".cache/linked/desktop/x");
    home.folder.makeLink("Desktop", ".cache/linked/desktop");
    const std::string before = snapshot(home.folder.path());
    for (const auto& [item, base] :
         {std::pair(".cache/app", "~/.cache"), std::pair(".cache/linked", "~/.cache"),
          std::pair(".cache/app/photos", "~/.cache/app")}) {
        const CleaningSelection selection = home.select(item, {base});
        EXPECT_EQ(describe(home.clean(selection, true), selection.items.front()), "blocked")
            << item << ", in a dry run";
        EXPECT_EQ(home.outcomeOf(selection), "blocked") << item;
    }
    EXPECT_EQ(snapshot(home.folder.path()), before);
}

TEST(CleanEngine, TouchesNothingOutsideTheFolderThatItIsConfinedTo)
{
    const CleanableHome home;
    const TemporaryFolder outside;
    outside.makeFile("cache/app/x");
    outside.makeFile("Trash/files/x");
    outside.makeFile("Trash/info/x.trashinfo");
    home.folder.makeLink(".cache", outside.path("cache"));
    home.folder.makeLink("Trash", outside.path("Trash"));
    const std::string before = snapshot(outside.path());
    for (const auto& [base, name] :
         {std::pair(home.folder.path(".cache"), "app"), std::pair(outside.path("cache"), "app"),
          std::pair(home.folder.path("Trash/files"), "x"),
          std::pair(home.folder.path() + "/../" + outside.path("cache").substr(5), "app")}) {
        CleaningSelection selection;
        selection.rule.basePaths = {base};
        selection.items = {{base + "/" + name, CleanableHome::selectedBytes}};
        EXPECT_EQ(home.outcomeOf(selection), "failed") << base;
    }
    EXPECT_EQ(snapshot(outside.path()), before);
}

} // namespace CleanCoreTests
