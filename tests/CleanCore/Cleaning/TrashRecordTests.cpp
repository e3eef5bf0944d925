#include "tests/Support/CleanableHome.h"

#include <gmock/gmock.h>

namespace CleanCoreTests {

using namespace CleanCore;

namespace {

const std::string trash = ".local/share/Trash";

std::string fileOf(const std::string& name)
{
    return trash + "/files/" + name;
}

std::string recordOf(const std::string& name)
{
    return trash + "/info/" + name + ".trashinfo";
}

struct TrashHome : CleanableHome
{
    TrashHome()
    {
        folder.makeFolder(trash + "/files");
        folder.makeFolder(trash + "/info");
        folder.makeFile("Documents/x");
    }
    void trashFile(const std::string& name) const
    {
        folder.makeFile(fileOf(name));
        folder.makeFile(recordOf(name));
    }
    [[nodiscard]] std::string empty(const std::string& name,
                                    const std::string& base = "~/.local/share/Trash/files") const
    {
        return outcomeOf(fileOf(name), {base});
    }
};

} // namespace

TEST(TrashRecord, GoesWithItsEntryAndNoOther)
{
    const TrashHome home;
    for (const char* name :
         {"a", "b", "two\nlines", "\xff", "a.trashinfo", "a.trashinfo.trashinfo"}) {
        home.trashFile(name);
    }
    home.folder.makeFile(fileOf("folder/a"));
    home.folder.makeFile(recordOf("folder"));
    home.folder.makeLink(fileOf("link"), "a");
    home.folder.makeFile(recordOf("link"));
    for (const char* name : {"a", "two\nlines", "\xff", "folder", "link"}) {
        EXPECT_EQ(home.folder.has(recordOf(name)), true) << name;
        EXPECT_THAT(home.empty(name), testing::StartsWith("removed")) << name;
        EXPECT_FALSE(home.folder.has(fileOf(name))) << name;
        EXPECT_FALSE(home.folder.has(recordOf(name))) << name;
    }
    for (const char* name : {"b", "a.trashinfo", "a.trashinfo.trashinfo"}) {
        EXPECT_TRUE(home.folder.has(fileOf(name))) << name;
        EXPECT_TRUE(home.folder.has(recordOf(name))) << name;
    }
}

TEST(TrashRecord, OfAnyFormOfTheBaseGoes)
{
    const TrashHome home;
    for (const char* base : {"~/.local/share/Trash/files/", "~/.local/*/Trash/files"}) {
        home.trashFile("a");
        EXPECT_EQ(home.empty("a", base), "removed all") << base;
        EXPECT_FALSE(home.folder.has(recordOf("a"))) << base;
    }
    // The nearest base counts, in whatever order the area names them.
    home.trashFile("a");
    EXPECT_EQ(home.outcomeOf(fileOf("a"), {"~/.local/share", "~/.local/share/Trash/files"}),
              "removed all");
    EXPECT_FALSE(home.folder.has(recordOf("a")));
}

TEST(TrashRecord, StaysAsLongAsItsEntryDoes)
{
    const TrashHome home;
    home.trashFile("replaced");
    CleaningSelection selection = home.select(fileOf("replaced"), {"~/.local/share/Trash/files"});
    ASSERT_EQ(::unlink(home.folder.path(fileOf("replaced")).c_str()), 0);
    EXPECT_EQ(home.outcomeOf(selection), "failed");
    home.folder.makeFolder(fileOf("replaced"));
    EXPECT_EQ(home.outcomeOf(selection), "failed");
    EXPECT_TRUE(home.folder.has(recordOf("replaced")));

    home.folder.makeLink(fileOf("blocked"), "../../../../Documents");
    home.folder.makeFile(recordOf("blocked"));
    EXPECT_EQ(home.empty("blocked"), "blocked");
    EXPECT_TRUE(home.folder.has(recordOf("blocked")));

    home.trashFile("read-only");
    home.folder.setMode(trash + "/files", 0500);
    EXPECT_EQ(home.empty("read-only"), "failed");
    EXPECT_TRUE(home.folder.has(recordOf("read-only")));
    home.folder.setMode(trash + "/files", 0700);

    // An entry of a folder in the Trash is no entry of the Trash.
    home.folder.makeFile(fileOf("folder/a"));
    home.folder.makeFile(recordOf("a"));
    EXPECT_EQ(home.outcomeOf(fileOf("folder/a"), {"~/.local/share/Trash/files"}), "removed all");
    EXPECT_TRUE(home.folder.has(recordOf("a")));
}

TEST(TrashRecord, ThatIsNoPlainFileOfTheTrashStays)
{
    const TrashHome home;
    home.folder.makeFile(fileOf("linked"));
    home.folder.makeLink(recordOf("linked"), home.folder.path("Documents/x"));
    home.folder.makeFile(fileOf("folder"));
    home.folder.makeFolder(recordOf("folder"));
    const std::string longest(255, 'n');
    home.folder.makeFile(fileOf(longest));
    for (const std::string& name : {std::string("linked"), std::string("folder"), longest}) {
        EXPECT_EQ(home.empty(name), "removed all") << name;
    }
    EXPECT_TRUE(home.folder.has(recordOf("linked")));
    EXPECT_TRUE(home.folder.has(recordOf("folder")));
    EXPECT_TRUE(home.folder.has("Documents/x"));
}

TEST(TrashRecord, IsLookedForBesideTheCleanedFolderAndThroughNoLink)
{
    const CleanableHome home;
    // The records' folder is a link.
    home.folder.makeFile("one/Trash/files/a");
    home.folder.makeFile("Documents/a.trashinfo");
    home.folder.makeLink("one/Trash/info", "../../Documents");
    EXPECT_EQ(home.outcomeOf("one/Trash/files/a", {"~/one/Trash/files"}), "removed all");
    // The cleaned folder is a link, so that the Trash around it is another's.
    home.folder.makeFile("two/place/a");
    home.folder.makeFile("two/Trash/info/a.trashinfo");
    home.folder.makeFile("two/info/a.trashinfo");
    home.folder.makeLink("two/Trash/files", "../place");
    EXPECT_EQ(home.outcomeOf("two/Trash/files/a", {"~/two/Trash/files"}), "removed all");
    // The folder is no Trash.
    home.folder.makeFile("MyTrash/files/a");
    home.folder.makeFile("MyTrash/info/a.trashinfo");
    EXPECT_EQ(home.outcomeOf("MyTrash/files/a", {"~/MyTrash/files"}), "removed all");
    for (const char* record : {"Documents/a.trashinfo", "two/Trash/info/a.trashinfo",
                               "two/info/a.trashinfo", "MyTrash/info/a.trashinfo"}) {
        EXPECT_TRUE(home.folder.has(record)) << record;
    }
}

TEST(TrashRecord, OutsideTheFolderThatARunIsConfinedToStays)
{
    const TemporaryFolder world;
    const std::string home = world.makeFolder("Trash/files");
    world.makeFile("Trash/files/a");
    world.makeFile("Trash/info/a.trashinfo");
    const auto pool = std::make_shared<TaskPool>(1);
    for (const bool isConfined : {true, false}) {
        const auto files = std::make_shared<LinuxFileManager>(
            UserFolders::confinedTo(home), isConfined ? std::optional(home) : std::nullopt, pool);
        CleaningSelection selection;
        selection.rule.basePaths = {"~"};
        selection.items = {{home + "/a", CleanableHome::selectedBytes}};
        world.makeFile("Trash/files/a");
        const CleaningReport report = CleanEngine(home, files).clean({&selection, 1}, false);
        EXPECT_EQ(describe(report, selection.items.front()), "removed all");
        EXPECT_EQ(world.has("Trash/info/a.trashinfo"), isConfined);
    }
}

} // namespace CleanCoreTests
