#include "tests/Support/CleanableHome.h"

#include <gmock/gmock.h>

namespace CleanCoreTests {

using namespace CleanCore;

namespace {

/// A home with a base, a second base of the same rule, and what links can lead to.
struct LinkedHome : CleanableHome
{
    TemporaryFolder elsewhere;

    LinkedHome()
    {
        folder.makeFile(".cache/folder/x");
        folder.makeFile(".cache/file");
        folder.makeFile("second/file");
        folder.makeFile("Documents/x");
        folder.makeFile("plain/x");
        folder.makeFile(".ssh/id");
        elsewhere.makeFile("x");
    }
};

} // namespace

TEST(CleanEngineLinks, AreRemovedThemselvesOrLeft)
{
    const LinkedHome home;
    struct Case
    {
        const char* kind;
        std::string target;
        const char* outcome;
    };
    const std::vector<Case> cases = {
        {"to a file in the base", "file", "removed 0"},
        {"to a folder in the base", "folder", "removed 0"},
        {"to a file of another item", "folder/x", "removed 0"},
        {"absolute, inside the base", home.folder.path(".cache/folder"), "removed 0"},
        {"to a folder by way of its slash", "folder/", "removed 0"},
        {"to another base of the area", "../second/file", "removed 0"},
        {"dangling inside the base", "nothing/here", "removed 0"},
        {"to itself", "link", "removed 0"},
        {"in a circle by way of a folder", "folder/../link", "removed 0"},
        {"dangling outside", "../nothing", "blocked"},
        {"to the base", ".", "blocked"},
        {"to the other base itself", "../second", "blocked"},
        {"to home", "..", "blocked"},
        {"to the root", "/", "blocked"},
        {"to the folder of temporary files", "/tmp", "blocked"},
        {"to a protected folder", "../Documents", "blocked"},
        {"into a protected folder", "../Documents/x", "blocked"},
        {"to a secret", "../.ssh", "blocked"},
        {"to a folder beside the base", "../plain", "blocked"},
        {"out of home", home.elsewhere.path(), "blocked"},
        {"into the process's own descriptors", "/proc/self/cwd", "blocked"},
    };
    const std::string before = snapshot(home.folder.path());
    const std::string beforeElsewhere = snapshot(home.elsewhere.path());
    for (const Case& each : cases) {
        home.folder.makeLink(".cache/link", each.target);
        EXPECT_EQ(home.outcomeOf(".cache/link", {"~/.cache", "~/second"}), each.outcome)
            << each.kind;
        const bool isKept = std::string_view(each.outcome) == "blocked";
        EXPECT_EQ(home.folder.has(".cache/link"), isKept) << each.kind;
        if (isKept) {
            ASSERT_EQ(::unlink(home.folder.path(".cache/link").c_str()), 0);
        }
        // Nothing that a link leads to has changed.
        ASSERT_EQ(snapshot(home.folder.path()), before) << each.kind;
        ASSERT_EQ(snapshot(home.elsewhere.path()), beforeElsewhere) << each.kind;
    }
}

TEST(CleanEngineLinks, GoBesideWhatTheyLeadTo)
{
    const CleanableHome home;
    home.folder.makeFile(".cache/m/x");
    home.folder.makeLink(".cache/a-before", "m");
    home.folder.makeLink(".cache/z-after", "m");
    const CleaningSelection selection = home.scan();
    ASSERT_EQ(selection.items.size(), 3U);
    const CleaningReport report = home.clean(selection);
    EXPECT_TRUE(report.skipped.empty());
    EXPECT_EQ(report.totalBytesFreed(), selection.items[1].sizeBytes);
    EXPECT_EQ(snapshot(home.folder.path(".cache")), "");
}

TEST(CleanEngineLinks, OnTheWayToAnItemAreNotFollowedOutOfItsBase)
{
    const CleanableHome home;
    home.folder.makeFile(".cache/app/x");
    home.folder.makeFile("plain/x");
    home.folder.makeFile("Documents/x");
    home.folder.makeLink(".cache/out", "../plain");
    home.folder.makeLink(".cache/in", "app");
    home.folder.makeLink(".cache/protected", "../Documents");
    const std::string before = snapshot(home.folder.path());
    for (const auto& [path, outcome] :
         {std::pair(".cache/out/x", "blocked"), std::pair(".cache/protected/x", "blocked"),
          std::pair(".cache/in/x", "failed"), std::pair(".cache/../plain/x", "blocked"),
          std::pair(".cache/app/../app/x", "failed")}) {
        CleaningSelection selection = home.select("plain/x");
        selection.items.front() = {home.folder.path(path)};
        EXPECT_EQ(home.outcomeOf(selection), outcome) << path;
    }
    EXPECT_EQ(snapshot(home.folder.path()), before);
}

} // namespace CleanCoreTests
