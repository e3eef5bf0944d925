// Only entries of the home's owner go. Making others' entries takes root; see tests/as-root.

#include "CleanCore/Cleaning/CleanEngine.h"
#include "CleanCore/FileSystem/LinuxFileManager.h"
#include "CleanCore/Scanning/ItemEnumerator.h"
#include "CleanCore/Support/TaskPool.h"
#include "tests/Support/RemovalFixture.h"

#include <cerrno>
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
    struct
    {
        const char* foreign;
        const char* removed;
        const char* left;
    } const cases[] = {
        {".cache/entry", ".cache/entry", "entry/a/b/file entry/a/link->nowhere entry/a/sibling"},
        {".cache/entry/a/b/file", ".cache/entry", "entry/a/b/file"},
        {".cache/entry/a/link", ".cache/entry/a/link",
         "entry/a/b/file entry/a/link->nowhere entry/a/sibling"},
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

TEST_F(RemovalOwnership, OfAFileDeepInsideIsForetoldByADryRun)
{
    makeOwned(".cache/entry/a/theirs .cache/entry/b .cache/mine");
    give(".cache/entry/a/theirs", somebody, owner);
    const auto files = std::make_shared<LinuxFileManager>(
        UserFolders::confinedTo(home.path()), home.path(), std::make_shared<TaskPool>(2));
    CleaningSelection selection;
    selection.rule.basePaths = {"~/.cache"};
    selection.items = ItemEnumerator(files).items(base, 0, {}, {});
    const CleanEngine engine(home.path(), files);
    const CleaningReport foretold = engine.clean({&selection, 1}, true);
    EXPECT_EQ(foretold.skipped,
              (std::vector<CleaningReport::SkippedItem>{
                  {home.path(".cache/entry"), CleaningReport::SkipReason::removalFailed,
                   CleaningReport::SkipCause::foreignEntries}}));
    const CleaningReport report = engine.clean({&selection, 1}, false);
    EXPECT_EQ(report.skipped, foretold.skipped);
    EXPECT_EQ(report.removed, foretold.removed);
    EXPECT_EQ(home.tree(".cache"), "entry/a/theirs");
}

TEST_F(RemovalOwnership, OfATrashRecordDecidesWhetherItGoesAlong)
{
    makeOwned("Trash/files/mine Trash/info/mine.trashinfo Trash/files/theirs "
              "Trash/info/theirs.trashinfo");
    give("Trash/info/theirs.trashinfo", somebody, owner);
    for (const char* name : {"mine", "theirs"}) {
        const std::string files = home.path("Trash/files");
        EXPECT_EQ(beginRemoval()->remove(files, files + '/' + name, std::nullopt).error, 0);
    }
    EXPECT_EQ(home.tree("Trash"), "files/ info/theirs.trashinfo");
}

TEST_F(RemovalOwnership, AFolderKeepsTheGroupBitThatItsOwnerCouldNotGiveBack)
{
    // Read-only and set-group-id, with an entry that keeps them from going.
    makeOwned(".cache/others/roots .cache/others/inner/=500 .cache/others/inner/file "
              ".cache/own/roots .cache/own/file");
    give(".cache/others", owner, somebody);
    for (const char* folder : {".cache/others", ".cache/own"}) {
        give(std::string(folder) + "/roots", 0, 0);
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
