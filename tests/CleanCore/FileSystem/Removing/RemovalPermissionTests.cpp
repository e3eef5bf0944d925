// What may not be removed stays, is reported, and keeps its permissions.

#include "tests/Support/RemovalFixture.h"

#include <cerrno>
#include <sys/stat.h>

namespace CleanCoreTests {
namespace {

class RemovalPermission : public RemovalFixture
{
protected:
    [[nodiscard]] unsigned modeOf(const std::string& relative) const
    {
        struct stat status = {};
        EXPECT_EQ(::stat(home.path(relative).c_str(), &status), 0) << relative;
        return status.st_mode & 07777U;
    }
};

TEST_F(RemovalPermission, TheOwnersReadOnlyFoldersGoLikeAnyOther)
{
    for (const unsigned mode : {0500U, 0000U, 0400U, 0300U, 0100U, 0555U}) {
        SCOPED_TRACE(mode);
        home.makeFile(".cache/entry/file");
        home.makeFile(".cache/entry/a/b/file");
        home.makeFile(".cache/entry/a/c/file");
        for (const char* folder :
             {".cache/entry/a/b", ".cache/entry/a/c", ".cache/entry/a", ".cache/entry"}) {
            home.setMode(folder, mode);
        }
        EXPECT_EQ(remove(".cache/entry"), 0);
        EXPECT_FALSE(home.has(".cache/entry"));
    }
}

TEST_F(RemovalPermission, SurvivorsKeepTheirPermissions)
{
    home.makeFile(".cache/entry/a/kept/canary");
    home.makeFile(".cache/entry/a/gone/file");
    home.makeFile(".cache/entry/b/file");
    for (const char* folder :
         {".cache/entry/a/gone", ".cache/entry/a/kept", ".cache/entry/a", ".cache/entry/b"}) {
        home.setMode(folder, 0500);
    }
    home.setMode(".cache/entry", 0550);
    CleanCore::LinuxRemoval removal(home.path(),
                                    std::vector<std::string>{home.path(".cache/entry/a/kept")},
                                    std::nullopt, pool());
    // What is protected is named after the item was chosen: the item as a whole must stay.
    const std::string moved = home.path(".cache/other");
    ASSERT_EQ(::rename(home.path(".cache/entry").c_str(), moved.c_str()), 0);
    EXPECT_EQ(removal.remove(base, moved, std::nullopt).error, CleanCore::protectedEntryError);
    EXPECT_EQ(modeOf(".cache/other"), 0550U);
    EXPECT_EQ(modeOf(".cache/other/a"), 0500U);
    EXPECT_EQ(modeOf(".cache/other/a/kept"), 0500U);
    EXPECT_TRUE(home.has(".cache/other/a/kept/canary"));
}

TEST_F(RemovalPermission, AMountDeepInsideKeepsThePermissionsOfEveryFolderAboveIt)
{
    // Deeper than folders are held open, and with some that may not even be searched.
    constexpr int depth = 40;
    for (const unsigned mode : {0500U, 0000U, 0400U}) {
        SCOPED_TRACE(mode);
        const std::string entry = ".cache/" + std::to_string(mode);
        std::vector<std::string> folders = {entry};
        for (int i = 1; i < depth; ++i) {
            folders.push_back(folders.back() + "/d");
        }
        home.makeFolder(folders.back() + "/mount");
        home.makeFile(folders[depth / 2] + "/gone/file");
        inMountNamespace([&] {
            mountTemporaryFileSystem(home.path(folders.back() + "/mount"));
            for (auto folder = folders.rbegin(); folder != folders.rend(); ++folder) {
                home.setMode(*folder, mode);
            }
            dropCapabilities();
            EXPECT_EQ(remove(entry), EXDEV);
            for (const std::string& folder : folders) {
                EXPECT_EQ(modeOf(folder), mode) << folder;
                home.setMode(folder, 0700);
            }
            EXPECT_FALSE(home.has(folders[depth / 2] + "/gone"));
        });
    }
}

TEST_F(RemovalPermission, AReadOnlyFileSystemIsReportedAndLosesNothing)
{
    home.makeFile(".cache/entry/a/file");
    home.makeFile(".cache/file");
    home.setMode(".cache/entry/a", 0500);
    inMountNamespace([&] {
        remountReadOnly(base);
        const std::string before = snapshot(base);
        EXPECT_EQ(remove(".cache/entry"), EROFS);
        EXPECT_EQ(remove(".cache/file"), EROFS);
        EXPECT_EQ(snapshot(base), before);
    });
}

TEST_F(RemovalPermission, ABaseThatMayNotBeWrittenKeepsItsEntries)
{
    home.makeFile(".cache/entry/file");
    home.makeFile(".cache/file");
    home.setMode(".cache", 0500);
    EXPECT_EQ(remove(".cache/file"), EACCES);
    EXPECT_NE(remove(".cache/entry"), 0);
    EXPECT_TRUE(home.has(".cache/entry/file") && home.has(".cache/file"));
    EXPECT_EQ(modeOf(".cache"), 0500U);
}

} // namespace
} // namespace CleanCoreTests
