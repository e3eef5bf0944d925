#include "tests/Support/CleanableHome.h"
#include "tests/Support/Table.h"

#include <gtest/gtest.h>
#include <regex>

namespace CleanCoreTests {

using namespace CleanCore;

TEST(TrashRecord, GoesWithItsOwnEntryAlone)
{
    // A tree, the item to clean, its bases, how that ends, and the tree that is left. F is the
    // folder of the entries in the Trash, I that of their records.
    for (std::vector<std::string>& row : table(R"(
F/a I/a.trashinfo F/b I/b.trashinfo F/a.trashinfo I/a.trashinfo.trashinfo | F/a | ~/*/files
    | removed all | F/a.trashinfo F/b I/a.trashinfo.trashinfo I/b.trashinfo
# The nearest base counts, in whatever order the area names them.
F/a/b I/a.trashinfo | F/a | ~/Trash ~/F/ | removed all | F/ I/
F/link->a I/link.trashinfo I/a.trashinfo | F/link | ~/F | removed 0 | F/ I/a.trashinfo
# It stays as long as its entry does.
F/link->../../x I/link.trashinfo x | F/link | ~/F | blocked | F/link->../../x I/link.trashinfo x
F/=0500 F/a I/a.trashinfo | F/a | ~/F | failed | F/=0500 F/a I/a.trashinfo
# An entry of a folder in the Trash is no entry of the Trash.
F/in/a I/a.trashinfo | F/in/a | ~/F | removed all | F/in/ I/a.trashinfo
# What is no plain file is no record.
F/a I/a.trashinfo->~/x x | F/a | ~/F | removed all | F/ I/a.trashinfo->~/x x
# It is looked for beside the very folder that is cleaned, and through no link.
F/a Trash/info->../other other/a.trashinfo | F/a | ~/F | removed all
    | F/ Trash/info->../other other/a.trashinfo
other/place/a F->../other/place I/a.trashinfo other/files/ other/info/a.trashinfo | F/a | ~/F
    | removed all | F->../other/place I/a.trashinfo other/files/ other/info/a.trashinfo other/place/
MyTrash/files/a MyTrash/info/a.trashinfo | MyTrash/files/a | ~/MyTrash/files | removed all | MyTrash/files/ MyTrash/info/a.trashinfo
)")) {
        for (std::string& cell : row) {
            cell = std::regex_replace(cell, std::regex("\\bF\\b"), "Trash/files");
            cell = std::regex_replace(cell, std::regex("\\bI\\b"), "Trash/info");
        }
        const CleanableHome home(row[0]);
        EXPECT_EQ(home.outcomeOf(home.select(row[1], words(row[2]))), row[3]) << row[0];
        EXPECT_EQ(home.tree(), row[4]) << row[0];
    }
}

TEST(TrashRecord, OutsideTheFolderThatARunIsConfinedToStays)
{
    const TemporaryFolder world;
    world.make("Trash/files/a Trash/info/a.trashinfo");
    const std::string home = world.path("Trash/files");
    const auto files =
        std::make_shared<LinuxFileManager>(UserFolders::confinedTo(home), home, nullptr);
    CleaningSelection selection;
    selection.rule.basePaths = {"~"};
    selection.items = {{home + "/a", 1}};
    EXPECT_EQ(CleanEngine(home, files).clean({&selection, 1}, false).removed.size(), 1U);
    EXPECT_EQ(world.tree(), "Trash/files/ Trash/info/a.trashinfo");
}

} // namespace CleanCoreTests
