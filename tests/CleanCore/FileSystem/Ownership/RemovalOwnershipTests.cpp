// Only entries of the home's owner go. Making others' entries takes root; see tests/as-root.

#include "tests/Support/RemovalFixture.h"

#include <cerrno>
#include <fcntl.h>
#include <grp.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace CleanCoreTests {
namespace {

class RemovalOwnership : public RemovalFixture
{
protected:
    void give(const std::string& relative, uid_t owner) const
    {
        ASSERT_EQ(::lchown(home.path(relative).c_str(), owner, owner), 0) << relative;
    }

    static constexpr uid_t someoneElse = 12345;
};

TEST_F(RemovalOwnership, OthersEntriesStayAndSoDoTheFoldersAboveThem)
{
    struct
    {
        const char* description;
        const char* foreign;
        const char* gone;
    } const cases[] = {
        {"the item itself", ".cache/entry", ""},
        {"a file inside", ".cache/entry/a/b/file", ".cache/entry/a/sibling"},
        {"a folder inside", ".cache/entry/a/b", ".cache/entry/a/sibling"},
        {"a link inside", ".cache/entry/a/link", ".cache/entry/a/b"},
    };
    for (const auto& [description, foreign, gone] : cases) {
        SCOPED_TRACE(description);
        home.makeFile(".cache/entry/a/b/file");
        home.makeFile(".cache/entry/a/sibling");
        home.makeFile(".cache/entry/other/file");
        if (!home.has(".cache/entry/a/link")) {
            home.makeLink(".cache/entry/a/link", "nowhere");
        }
        give(foreign, someoneElse);
        EXPECT_EQ(remove(".cache/entry"), EPERM);
        EXPECT_TRUE(home.has(foreign));
        if (*gone != '\0') {
            EXPECT_FALSE(home.has(gone));
            EXPECT_FALSE(home.has(".cache/entry/other"));
        } else {
            EXPECT_TRUE(home.has(".cache/entry/other/file"));
        }
        give(foreign, 0);
        EXPECT_EQ(remove(".cache/entry"), 0);
    }
}

TEST_F(RemovalOwnership, AFolderKeepsTheGroupBitThatItsOwnerCouldNotGiveBack)
{
    constexpr gid_t strangersGroup = 23456;
    const struct
    {
        const char* folder;
        gid_t group;
        bool losesItsFile;
    } cases[] = {
        {".cache/strangers", strangersGroup, false},
        {".cache/own", someoneElse, true},
    };
    give("", someoneElse);
    give(".cache", someoneElse);
    for (const auto& [folder, group, losesItsFile] : cases) {
        const std::string mine = std::string(folder) + "/file";
        home.makeFile(mine);
        home.makeFile(std::string(folder) + "/roots");
        give(mine, someoneElse);
        ASSERT_EQ(::lchown(home.path(folder).c_str(), someoneElse, group), 0);
        // Read-only and set-group-id, with an entry that keeps it from going.
        home.setMode(folder, 02500);
    }
    inChildProcess([&] {
        ASSERT_EQ(::setgroups(0, nullptr), 0);
        ASSERT_EQ(::setresgid(someoneElse, someoneElse, someoneElse), 0);
        ASSERT_EQ(::setresuid(someoneElse, someoneElse, someoneElse), 0);
        for (const auto& [folder, group, losesItsFile] : cases) {
            EXPECT_NE(remove(folder), 0) << folder;
        }
    });
    for (const auto& [folder, group, losesItsFile] : cases) {
        struct stat status = {};
        ASSERT_EQ(::stat(home.path(folder).c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777U, 02500U) << folder;
        EXPECT_EQ(home.has(std::string(folder) + "/file"), !losesItsFile) << folder;
    }
}

TEST_F(RemovalOwnership, AStickyFolderKeepsWhatOthersPutThere)
{
    home.makeFile(".cache/shared/mine");
    home.makeFile(".cache/shared/theirs");
    home.setMode(".cache/shared", 01777);
    give(".cache/shared/theirs", someoneElse);
    EXPECT_EQ(remove(".cache/shared"), EPERM);
    EXPECT_TRUE(home.has(".cache/shared/theirs"));
    EXPECT_FALSE(home.has(".cache/shared/mine"));
}

TEST_F(RemovalOwnership, AnImmutableFileIsReportedAndStays)
{
    home.makeFile(".cache/entry/a/immutable");
    home.makeFile(".cache/entry/b/file");
    const int file = ::open(home.path(".cache/entry/a/immutable").c_str(), O_RDONLY | O_CLOEXEC);
    const auto set = [&](bool isImmutable) {
        int flags = 0;
        ::ioctl(file, FS_IOC_GETFLAGS, &flags);
        flags = isImmutable ? flags | FS_IMMUTABLE_FL : flags & ~FS_IMMUTABLE_FL;
        return ::ioctl(file, FS_IOC_SETFLAGS, &flags) == 0;
    };
    // A namespace's root may not make files immutable, and not every file system can.
    const bool isImmutable = set(true);
    EXPECT_EQ(remove(".cache/entry"), isImmutable ? EPERM : 0);
    EXPECT_EQ(home.has(".cache/entry/a/immutable"), isImmutable);
    EXPECT_FALSE(home.has(".cache/entry/b"));
    set(false);
    ::close(file);
}

} // namespace
} // namespace CleanCoreTests
