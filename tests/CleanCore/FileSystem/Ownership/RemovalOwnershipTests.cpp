// Only entries of the home's owner go. Making others' entries takes root; see tests/as-root.

#include "tests/Support/CleanableHome.h"
#include "tests/Support/RemovalFixture.h"

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

namespace CleanCoreTests {
namespace {

using namespace CleanCore;

constexpr uid_t owner = 12345;
constexpr uid_t somebody = 23456;

/// A home that belongs to another user than the one who cleans it, who is root.
class RemovalOwnership : public RemovalFixture
{
protected:
    void give(const std::string& relative, uid_t user, gid_t group) const
    {
        ASSERT_EQ(::lchown(home.path(relative).c_str(), user, group), 0) << relative;
    }

    void makeOwned(const std::string& tree) const
    {
        home.make(tree);
        ASSERT_EQ(std::system(("chown -hR 12345:12345 " + home.path()).c_str()), 0);
    }
};

TEST_F(RemovalOwnership, OthersEntriesStayAndSoDoTheFoldersAboveThem)
{
    const std::string all = "entry/a/b/file entry/a/link->nowhere entry/a/sibling";
    // Whose entry is another's, what is removed, and what is left.
    const std::tuple<const char*, const char*, std::string> cases[] = {
        {".cache/entry", ".cache/entry", all},
        {".cache/entry/a/b/file", ".cache/entry", "entry/a/b/file"},
        {".cache/entry/a/link", ".cache/entry/a/link", all},
    };
    for (const auto& [foreign, removed, left] : cases) {
        for (const uid_t user : {somebody, uid_t{0}}) {
            makeOwned(".cache/entry/a/b/file .cache/entry/a/sibling .cache/entry/a/link->nowhere");
            give(foreign, user, owner);
            EXPECT_EQ(remove(removed), foreignEntryError) << foreign;
            EXPECT_EQ(home.tree(".cache"), left) << foreign;
        }
    }
}

TEST_F(RemovalOwnership, OfAFileDeepInsideKeepsTheItemWhole)
{
    const CleanableHome own(".cache/entry/a/theirs .cache/entry/b");
    ASSERT_EQ(std::system(("chown -R 12345 " + own.path()).c_str()), 0);
    ASSERT_EQ(::chown(own.path(".cache/entry/a/theirs").c_str(), somebody, owner), 0);
    const CleaningSelection selection = own.scan();
    EXPECT_EQ(own.outcomeOf(selection), "failed");
    EXPECT_EQ(own.clean(selection).skipped.at(0).cause, CleaningReport::SkipCause::foreignEntries);
    EXPECT_EQ(own.tree(".cache"), "entry/a/theirs entry/b");
}

TEST_F(RemovalOwnership, OfATrashRecordDecidesWhetherItGoesAlong)
{
    makeOwned("Trash/files/mine Trash/info/mine.trashinfo Trash/files/theirs "
              "Trash/info/theirs.trashinfo");
    give("Trash/info/theirs.trashinfo", somebody, owner);
    const std::string files = home.path("Trash/files");
    for (const char* name : {"/mine", "/theirs"}) {
        EXPECT_EQ(beginRemoval()->remove(files, files + name, std::nullopt).error, 0);
    }
    EXPECT_EQ(home.tree("Trash"), "files/ info/theirs.trashinfo");
}

TEST_F(RemovalOwnership, AFolderKeepsTheGroupBitThatItsOwnerCouldNotGiveBack)
{
    // Read-only and set-group-id, with an entry that keeps them from going.
    makeOwned(".cache/others/roots .cache/others/inner/=500 .cache/others/inner/file "
              ".cache/own/roots .cache/own/file");
    give(".cache/others", owner, somebody);
    for (const std::string folder : {".cache/others", ".cache/own"}) {
        give(folder + "/roots", 0, 0);
        home.setMode(folder, 02500);
    }
    inChildProcess([&] {
        ASSERT_EQ(::setgroups(0, nullptr), 0);
        ASSERT_EQ(::setresgid(owner, owner, owner), 0);
        ASSERT_EQ(::setresuid(owner, owner, owner), 0);
        EXPECT_NE(remove(".cache/others"), 0);
        EXPECT_EQ(remove(".cache/own"), foreignEntryError);
    });
    EXPECT_EQ(home.tree(".cache"),
              "others/=02500 others/inner/=0500 others/roots own/=02500 own/roots");
}

} // namespace
} // namespace CleanCoreTests
