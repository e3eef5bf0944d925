// Entries that may not be removed stay, are reported, and keep their permissions.

#include "CleanCore/FileSystem/Descriptors.h"
#include "CleanCore/FileSystem/OpenWithoutLinks.h"
#include "CleanCore/FileSystem/Removing/TemporaryPermissions.h"
#include "CleanCore/FileSystem/Removing/TreeEmptier.h"
#include "tests/Support/FailingCall.h"
#include "tests/Support/RemovalFixture.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/syscall.h>
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
    for (const unsigned mode : {0500U, 0000U, 0400U, 0300U}) {
        // A folder without files, which would be what first asks for its permissions.
        home.makeFolder(".cache/entry/bare/inner");
        home.setMode(".cache/entry/bare", mode);
        makeSealed({".cache/entry", ".cache/entry/a", ".cache/entry/a/b", ".cache/entry/a/c"},
                   mode);
        EXPECT_EQ(remove(".cache/entry"), 0) << mode;
        EXPECT_EQ(home.tree(".cache"), "");
    }
}

TEST_F(RemovalPermission, AMountDeepInsideKeepsThePermissionsOfEveryFolderAboveIt)
{
    for (const unsigned mode : {0550U, 0000U, 0400U}) {
        // Deeper than folders are held open, and with some that may not even be searched.
        std::vector<std::string> folders = {".cache/" + std::to_string(mode)};
        for (int i = 1; i < 40; ++i) {
            folders.push_back(folders.back() + "/d");
        }
        const std::string mount = home.makeFolder(folders.back() + "/mount");
        inMountNamespace([&] {
            bindMount(documents, mount);
            makeSealed(folders, mode);
            dropCapabilities();
            EXPECT_EQ(remove(folders.front()), EXDEV);
            expectModes(folders, mode);
        });
        expectCanaries();
    }
}

TEST_F(RemovalPermission, AreRestoredOnBothSidesOfAFolderThatWasMoved)
{
    for (const unsigned mode : {0500U, 0000U, 0300U}) {
        makeSealed({".cache/a", ".cache/a/b", ".cache/a/b/c", ".cache/a/b/c/d"}, mode);
        home.makeFolder("elsewhere");
        const ProtectedIdentities none(home.path(), {});
        const EmptyingLimits limits{::getuid(), &none, {}};
        TemporaryPermissions permissions;
        FolderStack stack(2);
        EntryStatus status;
        FileDescriptor folder = openFolder(AT_FDCWD, base.c_str());
        ASSERT_EQ(readStatus(folder.get(), "", status), 0);
        stack.push(std::move(folder), status);
        for (const char* name : {"a", "b", "c", "d"}) {
            ASSERT_EQ(permissions.openSubfolder(stack.top(), name, limits, folder, status), 0);
            stack.push(std::move(folder), status, name);
            ASSERT_EQ(permissions.unlink(stack.top(), "file", 0), 0);
        }
        home.move(".cache/a/b/c", "elsewhere/c");
        permissions.restoreAll(stack);
        EXPECT_TRUE(stack.isEmpty());
        expectModes({".cache/a", ".cache/a/b", "elsewhere/c", "elsewhere/c/d"}, mode);
        home.remove("elsewhere");
    }
}

TEST_F(RemovalPermission, AFolderThatCannotBeOpenedAfterAllGetsItsOwnBack)
{
    makeSealed({".cache/entry"}, 0000);
    const FileDescriptor held = holdFolder(AT_FDCWD, home.path(".cache/entry").c_str());
    EntryStatus status;
    ASSERT_EQ(readStatus(held.get(), "", status), 0);
    EXPECT_EQ(runWithFailingCall(SYS_openat, EACCES,
                                 [&] {
                                     FileDescriptor folder;
                                     return TemporaryPermissions().openHeldFolder(held.get(),
                                                                                  status, folder);
                                 }),
              EACCES);
    expectModes({".cache/entry"}, 0000);
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
