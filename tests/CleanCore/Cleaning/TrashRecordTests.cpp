#include "tests/Support/CleanableHome.h"

#include <gmock/gmock.h>

namespace CleanCoreTests {

using namespace CleanCore;

TEST(TrashRecord, GoesWithItsOwnEntryAlone)
{
    const std::string longest(255, 'n');
    const struct
    {
        std::string tree;
        std::string item;
        std::vector<std::string> bases;
        const char* outcome;
        std::string left;
    } rows[] = {
        {"Trash/files/a Trash/info/a.trashinfo Trash/files/b Trash/info/b.trashinfo "
         "Trash/files/a.trashinfo Trash/info/a.trashinfo.trashinfo",
         "Trash/files/a",
         {"~/Trash/files"},
         "removed all",
         "Trash/files/a.trashinfo Trash/files/b Trash/info/a.trashinfo.trashinfo "
         "Trash/info/b.trashinfo"},
        {"Trash/files/'two\nlines' Trash/info/'two\nlines.trashinfo'",
         "Trash/files/two\nlines",
         {"~/Trash/files/"},
         "removed all",
         "Trash/files/ Trash/info/"},
        {"Trash/files/\xff Trash/info/\xff.trashinfo",
         "Trash/files/\xff",
         {"~/*/files"},
         "removed all",
         "Trash/files/ Trash/info/"},
        {"x/Trash/files/a/b x/Trash/info/a.trashinfo",
         "x/Trash/files/a",
         // The nearest base counts, in whatever order the area names them.
         {"~/x", "~/x/Trash/files"},
         "removed all",
         "x/Trash/files/ x/Trash/info/"},
        {"Trash/files/link->a Trash/info/link.trashinfo Trash/info/a.trashinfo",
         "Trash/files/link",
         {"~/Trash/files"},
         "removed 0",
         "Trash/files/ Trash/info/a.trashinfo"},
        // It stays as long as its entry does.
        {"Trash/files/link->../../Documents Trash/info/link.trashinfo Documents/",
         "Trash/files/link",
         {"~/Trash/files"},
         "blocked",
         "Documents/ Trash/files/link->../../Documents Trash/info/link.trashinfo"},
        {"Trash/files/=0500 Trash/files/a Trash/info/a.trashinfo",
         "Trash/files/a",
         {"~/Trash/files"},
         "failed",
         "Trash/files/=0500 Trash/files/a Trash/info/a.trashinfo"},
        // An entry of a folder in the Trash is no entry of the Trash.
        {"Trash/files/in/a Trash/info/a.trashinfo",
         "Trash/files/in/a",
         {"~/Trash/files"},
         "removed all",
         "Trash/files/in/ Trash/info/a.trashinfo"},
        // What is no plain file is no record.
        {"Trash/files/a Trash/info/a.trashinfo->~/x x",
         "Trash/files/a",
         {"~/Trash/files"},
         "removed all",
         "Trash/files/ Trash/info/a.trashinfo->~/x x"},
        {"Trash/files/a Trash/info/a.trashinfo/",
         "Trash/files/a",
         {"~/Trash/files"},
         "removed all",
         "Trash/files/ Trash/info/a.trashinfo/"},
        {"Trash/files/" + longest,
         "Trash/files/" + longest,
         {"~/Trash/files"},
         "removed all",
         "Trash/files/"},
        // It is looked for beside the very folder that is cleaned, and through no link.
        {"Trash/files/a Trash/info->../other other/a.trashinfo",
         "Trash/files/a",
         {"~/Trash/files"},
         "removed all",
         "Trash/files/ Trash/info->../other other/a.trashinfo"},
        {"place/a Trash/files->../place Trash/info/a.trashinfo info/a.trashinfo",
         "Trash/files/a",
         {"~/Trash/files"},
         "removed all",
         "Trash/files->../place Trash/info/a.trashinfo info/a.trashinfo place/"},
        {"MyTrash/files/a MyTrash/info/a.trashinfo",
         "MyTrash/files/a",
         {"~/MyTrash/files"},
         "removed all",
         "MyTrash/files/ MyTrash/info/a.trashinfo"},
    };
    for (const auto& [tree, item, bases, outcome, left] : rows) {
        const CleanableHome home(tree);
        EXPECT_EQ(home.outcomeOf(item, bases), outcome) << tree;
        EXPECT_EQ(home.tree(), left) << tree;
    }
}

TEST(TrashRecord, OutsideTheFolderThatARunIsConfinedToStays)
{
    const TemporaryFolder world;
    const auto pool = std::make_shared<TaskPool>(1);
    for (const bool isConfined : {true, false}) {
        world.make("Trash/files/a Trash/info/a.trashinfo");
        const std::string home = world.path("Trash/files");
        const auto files = std::make_shared<LinuxFileManager>(
            UserFolders::confinedTo(home), isConfined ? std::optional(home) : std::nullopt, pool);
        CleaningSelection selection;
        selection.rule.basePaths = {"~"};
        selection.items = {{home + "/a", CleanableHome::selectedBytes}};
        const CleaningReport report = CleanEngine(home, files).clean({&selection, 1}, false);
        EXPECT_EQ(describe(report, selection.items.front()), "removed all");
        EXPECT_EQ(world.has("Trash/info/a.trashinfo"), isConfined);
    }
}

} // namespace CleanCoreTests
