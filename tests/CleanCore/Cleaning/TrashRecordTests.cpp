#include "tests/Support/CleanableHome.h"
#include "tests/Support/Table.h"

#include <gtest/gtest.h>
#include <regex>

namespace CleanCoreTests {

using namespace CleanCore;

namespace {

/// A tree, the item to clean, its bases, how that ends, and the tree that is left. F is the folder
/// of the entries in the Trash, I that of their records.
const char* const rows = R"(
F/a I/a.trashinfo F/b I/b.trashinfo F/a.trashinfo I/a.trashinfo.trashinfo | F/a | ~/F | removed all
    | F/a.trashinfo F/b I/a.trashinfo.trashinfo I/b.trashinfo
F/'LINES' I/'LINES.trashinfo' | F/LINES | ~/F/ | removed all | F/ I/
F/ÿ I/ÿ.trashinfo | F/ÿ | ~/*/files | removed all | F/ I/
# The nearest base counts, in whatever order the area names them.
F/a/b I/a.trashinfo | F/a | ~/Trash ~/F | removed all | F/ I/
F/link->a I/link.trashinfo I/a.trashinfo | F/link | ~/F | removed 0 | F/ I/a.trashinfo
# It stays as long as its entry does.
F/link->../../x I/link.trashinfo x | F/link | ~/F | blocked | F/link->../../x I/link.trashinfo x
F/=0500 F/a I/a.trashinfo | F/a | ~/F | failed | F/=0500 F/a I/a.trashinfo
# An entry of a folder in the Trash is no entry of the Trash.
F/in/a I/a.trashinfo | F/in/a | ~/F | removed all | F/in/ I/a.trashinfo
# What is no plain file is no record.
F/a I/a.trashinfo->~/x x | F/a | ~/F | removed all | F/ I/a.trashinfo->~/x x
F/a I/a.trashinfo/ | F/a | ~/F | removed all | F/ I/a.trashinfo/
F/LONGEST | F/LONGEST | ~/F | removed all | F/
# It is looked for beside the very folder that is cleaned, and through no link.
F/a Trash/info->../other other/a.trashinfo | F/a | ~/F | removed all
    | F/ Trash/info->../other other/a.trashinfo
other/place/a F->../other/place I/a.trashinfo other/files/ other/info/a.trashinfo | F/a | ~/F
    | removed all | F->../other/place I/a.trashinfo other/files/ other/info/a.trashinfo other/place/
MyF/a MyI/a.trashinfo | MyF/a | ~/MyF | removed all | MyF/ MyI/a.trashinfo
)";

} // namespace

TEST(TrashRecord, GoesWithItsOwnEntryAlone)
{
    const std::string longest(255, 'n');
    for (std::vector<std::string>& row : table(rows)) {
        for (const auto& [name, meaning] : {std::pair("\\bF\\b", "Trash/files"),
                                            {"\\bI\\b", "Trash/info"},
                                            {"MyF", "MyTrash/files"},
                                            {"MyI", "MyTrash/info"},
                                            {"LINES", "two\nlines"},
                                            {"BYTES", "\xff"},
                                            {"LONGEST", longest.c_str()}}) {
            for (std::string& cell : row) {
                cell = std::regex_replace(cell, std::regex(name), meaning);
            }
        }
        const CleanableHome home(row[0]);
        EXPECT_EQ(home.outcomeOf(row[1], words(row[2])), row[3]) << row[0];
        EXPECT_EQ(home.tree(), row[4]) << row[0];
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
