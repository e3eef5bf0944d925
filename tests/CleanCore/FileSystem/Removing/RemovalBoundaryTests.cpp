// Where a removal has to stop: at mounts, at links, at permissions, and at everything that is not
// inside the base. The folders that stay keep their permissions.

#include "CleanCore/FileSystem/OpenWithoutLinks.h"
#include "CleanCore/FileSystem/Removing/TemporaryPermissions.h"
#include "tests/Support/FailingCall.h"
#include "tests/Support/RemovalFixture.h"

#include <fcntl.h>
#include <filesystem>
#include <regex>
#include <sys/syscall.h>

namespace CleanCoreTests {
namespace {

using namespace CleanCore;

class RemovalBoundary : public RemovalFixture, public testing::WithParamInterface<PinMethod>
{
protected:
    [[nodiscard]] int removeFrom(const std::string& inBase, const std::string& path) const
    {
        return beginRemoval(GetParam())->remove(inBase, path, std::nullopt).error;
    }
};

TEST_P(RemovalBoundary, AMountIsKeptAndWhatLiesBehindItIsNotTouched)
{
    // What is mounted where, and what is removed.
    const std::tuple<const char*, const char*, const char*> mounts[] = {
        {"Documents", ".cache/entry/deep/mount", ".cache/entry"},
        {"elsewhere", ".cache/entry", ".cache/entry"},
        {"elsewhere", ".cache/entry", ".cache/entry/deep"},
        {"Documents/canary", ".cache/entry/deep/file", ".cache/entry"},
        {"Documents/canary", ".cache/file", ".cache/file"},
    };
    for (const auto& mount : mounts) {
        home.make(
            "elsewhere/deep/kept .cache/file .cache/entry/deep/file .cache/entry/deep/mount/");
        inMountNamespace([&] {
            bindMount(home.path(std::get<0>(mount)), home.path(std::get<1>(mount)));
            EXPECT_EQ(removeFrom(base, home.path(std::get<2>(mount))), EXDEV) << std::get<1>(mount);
            EXPECT_EQ(home.tree("elsewhere"), "deep/kept");
        });
        expectCanaries();
    }
}

TEST_P(RemovalBoundary, WhatIsNotInsideTheBaseIsRefused)
{
    home.make("elsewhere/file .cache2/file .cache/entry/file .cache/out->~/elsewhere");
    const std::tuple<const char*, std::string, int> cases[] = {
        {".cache", ".cache", EINVAL},
        {".cache", "elsewhere/file", EINVAL},
        {".cache", ".cache2/file", EINVAL},
        {".cache", ".cache/../elsewhere/file", EINVAL},
        {".cache", ".cache/entry/..", EINVAL},
        {".cache", std::string(".cache/entry\0x", 14), EINVAL},
        {".cache", ".cache/out/file", ELOOP},
        {"", "Documents", protectedEntryError},
        {"", "Documents/canary", protectedEntryError},
        {"Documents", "Documents/canary", protectedEntryError},
        {"..", "", protectedEntryError},
        {".cache", ".cache/missing", ENOENT},
        {".cache/entry/file", ".cache/entry/file/x", ENOTDIR},
    };
    const std::string before = home.tree();
    for (const auto& [inBase, path, error] : cases) {
        const int answer = removeFrom(home.path(inBase), home.path(path));
        // Without openat2 a link on the way shows as what it is not: a folder.
        EXPECT_TRUE(answer == error || (error == ELOOP && answer == ENOTDIR))
            << inBase << ", " << path << ": " << answer;
    }
    EXPECT_EQ(home.tree(), before);
    expectCanaries();
}

TEST_P(RemovalBoundary, AProtectedFolderIsKnownUnderAnyName)
{
    const auto removal = beginRemoval(GetParam());
    // Renamed into the item after the clean began, and something else put in its place.
    home.make(".cache/entry/");
    home.move("Documents", ".cache/entry/moved");
    home.make("Documents/");
    EXPECT_EQ(removal->remove(base, home.path(".cache/entry"), std::nullopt).error, EPERM);
    home.move(".cache/entry/moved", "Documents");
    expectCanaries();
}

INSTANTIATE_TEST_SUITE_P(Removal, RemovalBoundary,
                         testing::Values(PinMethod::kernelResolution, PinMethod::stepByStep));

class RemovalPermission : public RemovalFixture
{
};

TEST_F(RemovalPermission, ToReadOrToSearchIsNeverGranted)
{
    for (const unsigned mode : {0000U, 0400U, 0300U}) {
        const std::string locked = home.makeFolder(".cache/entry/locked");
        home.makeFile(".cache/entry/locked/file");
        home.setMode(".cache/entry/locked", mode);
        EXPECT_EQ(remove(".cache/entry"), EACCES) << mode;
        EXPECT_EQ(remove(".cache/entry/locked"), EACCES) << mode;
        EXPECT_EQ(std::filesystem::status(locked).permissions(), std::filesystem::perms(mode));
        home.setMode(".cache/entry/locked", 0700);
        EXPECT_EQ(home.tree(".cache"), "entry/locked/file") << mode;
    }
}

TEST_F(RemovalPermission, AMountDeepInsideKeepsThePermissionsOfEveryFolderAboveIt)
{
    // Deeper than folders are held open.
    std::string tree;
    std::string folder = ".cache/entry";
    for (int i = 0; i < 40; ++i) {
        tree.append(folder).append("/=0550 ").append(folder).append("/file ");
        folder += "/d";
    }
    home.make(tree + folder + "/mount/");
    inMountNamespace([&] {
        bindMount(documents, home.path(folder + "/mount"));
        dropCapabilities();
        const std::string before = home.tree(".cache");
        EXPECT_EQ(remove(".cache/entry"), EXDEV);
        EXPECT_EQ(home.tree(".cache"), std::regex_replace(before, std::regex(" \\S+/file"), ""));
    });
    expectCanaries();
}

TEST_F(RemovalPermission, AreRestoredOnBothSidesOfAFolderThatWasMoved)
{
    home.make(".cache/a/=0500 .cache/a/file .cache/a/b/=0500 .cache/a/b/file .cache/a/b/c/=0500 "
              ".cache/a/b/c/file .cache/a/b/c/d/=0500 .cache/a/b/c/d/file elsewhere/");
    TemporaryPermissions permissions;
    FolderStack stack(2);
    EntryStatus status;
    for (const char* name : {"", "a", "b", "c", "d"}) {
        FileDescriptor folder = stack.isEmpty() ? openFolder(AT_FDCWD, base.c_str())
                                                : openFolder(stack.top().folder.get(), name);
        ASSERT_EQ(readStatus(folder.get(), "", status), 0);
        stack.push(std::move(folder), status, name);
        ASSERT_EQ(permissions.unlink(stack.top(), "file", 0), *name == '\0' ? ENOENT : 0);
    }
    home.move(".cache/a/b/c", "elsewhere/c");
    permissions.restoreAll(stack);
    EXPECT_TRUE(stack.isEmpty());
    EXPECT_EQ(home.tree(".cache"), "a/=0500 a/b/=0500");
    EXPECT_EQ(home.tree("elsewhere"), "c/=0500 c/d/=0500");
}

TEST_F(RemovalPermission, OfAnEmptiedFolderThatTheSystemKeepsAreRestored)
{
    home.make(".cache/entry/=0500 .cache/entry/file");
    EXPECT_EQ(runWithFailingCall(
                  SYS_unlinkat, EBUSY, [&] { return remove(".cache/entry"); }, AT_REMOVEDIR),
              EBUSY);
    EXPECT_EQ(home.tree(".cache"), "entry/=0500");
}

} // namespace
} // namespace CleanCoreTests
