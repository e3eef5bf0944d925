// Entries that may not be removed stay, are reported, and keep their permissions.

#include "CleanCore/FileSystem/OpenWithoutLinks.h"
#include "CleanCore/FileSystem/Removing/TemporaryPermissions.h"
#include "tests/Support/RemovalFixture.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace CleanCoreTests {
namespace {

using namespace CleanCore;

class RemovalPermission : public RemovalFixture
{
protected:
    /// Expects this mode of each folder, the outer ones first; makes way to the next ones.
    void expectModes(const std::vector<std::string>& folders, unsigned mode) const
    {
        for (const std::string& folder : folders) {
            EXPECT_EQ(std::filesystem::status(home.path(folder)).permissions(),
                      std::filesystem::perms(mode))
                << folder;
            home.setMode(folder, 0700);
        }
    }

    /// Makes the folders, each with a file, and takes permissions away from them.
    void makeSealed(const std::vector<std::string>& folders, unsigned mode) const
    {
        for (const std::string& folder : folders) {
            home.makeFile(folder + "/file");
        }
        for (auto folder = folders.rbegin(); folder != folders.rend(); ++folder) {
            home.setMode(*folder, mode);
        }
    }
};

TEST_F(RemovalPermission, TheOwnersReadOnlyFoldersGoLikeAnyOther)
{
    for (const unsigned mode : {0500U, 0555U}) {
        // A folder without files, which would be what first asks for its permissions.
        home.makeFolder(".cache/entry/bare/inner");
        home.setMode(".cache/entry/bare", mode);
        makeSealed({".cache/entry", ".cache/entry/a", ".cache/entry/a/b", ".cache/entry/a/c"},
                   mode);
        EXPECT_EQ(remove(".cache/entry"), 0) << mode;
        EXPECT_EQ(home.tree(".cache"), "");
    }
}

TEST_F(RemovalPermission, ToReadOrToSearchIsNeverGranted)
{
    for (const unsigned mode : {0000U, 0400U, 0300U}) {
        makeSealed({".cache/entry", ".cache/entry/locked"}, 0700);
        home.setMode(".cache/entry/locked", mode);
        EXPECT_EQ(remove(".cache/entry"), EACCES) << mode;
        EXPECT_EQ(remove(".cache/entry/locked"), EACCES) << mode;
        expectModes({".cache/entry/locked"}, mode);
        EXPECT_EQ(home.tree(".cache"), "entry/locked/file") << mode;
    }
}

TEST_F(RemovalPermission, AMountDeepInsideKeepsThePermissionsOfEveryFolderAboveIt)
{
    // Deeper than folders are held open.
    std::vector<std::string> folders = {".cache/entry"};
    for (int i = 1; i < 40; ++i) {
        folders.push_back(folders.back() + "/d");
    }
    const std::string mount = home.makeFolder(folders.back() + "/mount");
    inMountNamespace([&] {
        bindMount(documents, mount);
        makeSealed(folders, 0550);
        dropCapabilities();
        EXPECT_EQ(remove(folders.front()), EXDEV);
        expectModes(folders, 0550);
    });
    expectCanaries();
}

TEST_F(RemovalPermission, AreRestoredOnBothSidesOfAFolderThatWasMoved)
{
    makeSealed({".cache/a", ".cache/a/b", ".cache/a/b/c", ".cache/a/b/c/d"}, 0500);
    home.makeFolder("elsewhere");
    TemporaryPermissions permissions;
    FolderStack stack(2);
    EntryStatus status;
    FileDescriptor folder = openFolder(AT_FDCWD, base.c_str());
    for (const char* name : {"", "a", "b", "c", "d"}) {
        if (*name != '\0') {
            folder = openFolder(stack.top().folder.get(), name);
        }
        ASSERT_EQ(readStatus(folder.get(), "", status), 0);
        stack.push(std::move(folder), status, name);
        ASSERT_EQ(permissions.unlink(stack.top(), "file", 0), *name == '\0' ? ENOENT : 0);
    }
    home.move(".cache/a/b/c", "elsewhere/c");
    permissions.restoreAll(stack);
    EXPECT_TRUE(stack.isEmpty());
    expectModes({".cache/a", ".cache/a/b", "elsewhere/c", "elsewhere/c/d"}, 0500);
}

TEST_F(RemovalPermission, ABaseThatMayNotBeWrittenKeepsItsEntries)
{
    home.make(".cache/=0500 .cache/entry/file .cache/file");
    EXPECT_EQ(remove(".cache/file"), EACCES);
    EXPECT_EQ(remove(".cache/entry"), EACCES);
    EXPECT_EQ(home.tree(".cache"), "entry/file file");
    expectModes({".cache"}, 0500);
}

} // namespace
} // namespace CleanCoreTests
