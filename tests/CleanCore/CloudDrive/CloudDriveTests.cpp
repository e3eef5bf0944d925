#include "CleanCore/Support/FileDescriptor.h"
#include "tests/Support/CloudFolders.h"
#include "tests/Support/FailingCall.h"

#include <cerrno>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <sys/xattr.h>

namespace CleanCoreTests {
namespace {

using namespace CleanCore;
using testing::ElementsAre;
using testing::IsEmpty;
using enum CloudRefusalReason;

MATCHER_P2(Refuses, path, reason, "")
{
    return arg.path == path && arg.failure.reason == reason;
}

bool hasMarker(const std::string& path)
{
    return ::getxattr(path.c_str(), "user.zorvane", nullptr, 0) >= 0;
}

/// A command that changes a byte of `file`.
std::string changeByte(const std::string& file, int at)
{
    return "printf '\\001' | dd status=none conv=notrunc bs=1 seek=" + std::to_string(at) +
           " of=" + file;
}

TEST(CloudDriveTests, aTreeWithoutItsApplicationBundlesIsReleasedAndComesBackAsItWas)
{
    const CloudFolders folders;
    // More folders than are kept open.
    std::string deep = "Tree";
    for (int depth = 0; depth < 40; ++depth) {
        deep += "/d";
    }
    const std::vector<std::string> names = {"Tree/steps", "Tree/sub/\xff\n.bin", "Tree/N.APP/data",
                                            "Tree/p.app", deep + "/file"};
    for (const std::string& name : names) {
        folders.makePair(name, bytes(70'001));
    }
    folders.makePair("Tree/empty", "");
    const std::string tree = folders.home.path("drive/Tree");
    const std::string pad = folders.home.makeFile("drive/Tree/Pad.app/pad", bytes(5000));
    folders.home.setMode("drive/Tree/steps", 0640);
    const std::string before = snapshot(folders.home.path());
    const auto attributes = [&] {
        const struct stat s = folders.status("drive/Tree/steps");
        return std::tuple(s.st_size, s.st_mode, s.st_ino, s.st_mtim.tv_sec, s.st_mtim.tv_nsec);
    };
    const auto steps = attributes();
    ASSERT_THAT(folders.drive().release(tree), IsEmpty());
    ASSERT_THAT(folders.drive().release(tree), IsEmpty());
    for (const std::string& name : names) {
        EXPECT_EQ(folders.status("drive/" + name).st_blocks, 0) << name;
    }
    EXPECT_EQ(attributes(), steps);
    for (const std::string& kept : {pad, tree + "/Pad.app"}) {
        EXPECT_THAT(folders.drive().release(kept), ElementsAre(Refuses(kept, applicationBundle)));
    }
    ASSERT_THAT(folders.drive().fetch(tree), IsEmpty());
    EXPECT_FALSE(hasMarker(tree + "/steps"));
    EXPECT_TRUE(snapshot(folders.home.path()) == before);

    // A file that another machine uploaded is only a hole; in a bundle it is fetched too.
    folders.makePair("Tree/Pad.app/manual", bytes(5000));
    folders.run("cd drive/Tree/Pad.app && truncate -s 0 manual && truncate -s 5000 manual && "
                "touch -r ../../../mirror/Tree/Pad.app/manual manual");
    EXPECT_THAT(folders.drive().fetch(tree), IsEmpty());
    EXPECT_EQ(folders.content("drive/Tree/Pad.app/manual"), bytes(5000));

    // A placeholder that is written anew, in place, keeps the old marker. Blocks that are reserved
    // beyond its end are released too.
    ASSERT_THAT(folders.drive().release(tree), IsEmpty());
    folders.makePair("Tree/steps", bytes(12'000, 2));
    EXPECT_THAT(folders.drive().fetch(tree + "/steps"), IsEmpty());
    folders.run("fallocate -n -l 1000000 drive/Tree/steps");
    EXPECT_THAT(folders.drive().release(tree), IsEmpty());
    EXPECT_EQ(folders.status("drive/Tree/steps").st_blocks, 0);
}

TEST(CloudDriveTests, aRefusedRequestLeavesEverythingUntouched)
{
    struct Row
    {
        std::string command;
        CloudRefusalReason reason;
        /// A file that somebody has open during the request, and how.
        std::string open = "mirror";
        int flags = O_RDONLY;
    };
    const std::vector<Row> releases = {
        {changeByte("mirror/file", 29'999), differsFromMirror},
        {"truncate -s 29999 mirror/file", differsFromMirror},
        // A sparse file of the user's own, otherwise equal.
        {"fallocate -p -l 4096 drive/file && touch -r mirror/file drive/file", differsFromMirror},
        {"ln -f drive/file mirror/file", sameFileInMirror},
        {"ln -sf ../drive/file mirror/file", missingInMirror},
        {"true", mirrorInUse, "mirror/file", O_WRONLY},
        {"true", inUse, "drive/file", O_RDONLY},
        {"ln drive/file drive/other", hardLinked},
        {"chmod 4755 drive/file", privilegedFile},
        {"mv drive/file drive/other && ln -s other drive/file", notAFile},
        {"rm drive/file", outsideContainer},
        {"mv mirror elsewhere && ln -s /usr mirror", noMirror, "drive"},
        {"mv mirror drive/ && ln -s drive/mirror mirror", foldersOverlap, "drive"},
        {"mv drive elsewhere && ln -s elsewhere drive", linkedContainer, "mirror"}};
    // Somebody changes a placeholder or its copy, so that nothing proves any more that its holes
    // may be filled.
    const std::vector<Row> fetches = {
        {changeByte("drive/file", 10'000), changedAfterRelease},
        // Without any hole, and nothing but zeros in the place of its content.
        {"dd status=none conv=notrunc if=/dev/zero bs=30000 count=1 of=drive/file",
         changedAfterRelease},
        {changeByte("drive/file", 10'000) + " && touch -r reference drive/file", notProven},
        {"printf mine >> drive/file", differsFromMirror},
        {changeByte("mirror/file", 10'000), differsFromMirror},
        {"rm drive/file && truncate -s 30000 drive/file", notProven}};
    for (const bool isFetch : {false, true}) {
        for (const Row& row : isFetch ? fetches : releases) {
            SCOPED_TRACE(row.command + " " + row.open);
            const CloudFolders folders;
            const std::string path = folders.home.path("drive/file");
            folders.makePair("file", bytes(30'000));
            folders.run("touch -r drive/file reference");
            ASSERT_TRUE(!isFetch || folders.drive().release(path).empty());
            folders.run(row.command);
            const FileDescriptor open(::open(folders.home.path(row.open).c_str(), row.flags));
            const std::string before = snapshot(folders.home.path());
            const bool wasMarked = hasMarker(path);
            EXPECT_THAT(isFetch ? folders.drive().fetch(path) : folders.drive().release(path),
                        ElementsAre(Refuses(path, row.reason)));
            EXPECT_TRUE(snapshot(folders.home.path()) == before);
            static_cast<void>(folders.drive().release(path));
            EXPECT_TRUE(snapshot(folders.home.path()) == before);
            EXPECT_EQ(hasMarker(path), wasMarked);
        }
    }
    const TemporaryFolder folder;
    folder.make("drive/file drive2/file mirror/file mirror/deep/file");
    const std::string& home = folder.path();
    const std::string drive = home + "/drive";
    const std::string mirror = home + "/mirror";
    const auto expect = [&](const StandInDrive& cloud, const std::string& path, auto reason) {
        EXPECT_THAT(cloud.release(home + path), ElementsAre(Refuses(home + path, reason)));
    };
    expect({std::nullopt, drive, mirror}, "/drive/file", accountHome);
    expect({home, drive, std::nullopt}, "/drive/file", noMirror);
    expect({home + "/other", drive, mirror}, "/drive/file", noContainer);
    expect({home, mirror + "/deep", mirror}, "/mirror/deep/file", foldersOverlap);
    for (const char* path : {"/drive", "/drive2/file", "/mirror/file", "/drive/../mirror/file"}) {
        expect({home, drive, mirror}, path, outsideContainer);
    }
}

TEST(CloudDriveTests, aRefusedEntryDoesNotKeepTheOthersOfItsFolder)
{
    const CloudFolders folders;
    for (const char* name :
         {"Tree/fine", "Tree/sub/changed", "Tree/sub/fine", "Tree/listed/unknown"}) {
        folders.makePair(name, bytes(9000));
    }
    folders.run("cd drive/Tree && printf more >> sub/changed && mkdir only && cp fine only/new &&"
                " ln -s fine link && chmod 444 listed");
    const std::string tree = folders.home.path("drive/Tree");
    EXPECT_THAT(folders.drive().release(tree),
                testing::UnorderedElementsAre(Refuses(tree + "/sub/changed", differsFromMirror),
                                              Refuses(tree + "/only/new", missingInMirror),
                                              Refuses(tree + "/listed/unknown", systemError)));
    EXPECT_EQ(folders.status("drive/Tree/fine").st_blocks, 0);
    EXPECT_EQ(folders.status("drive/Tree/sub/fine").st_blocks, 0);
}

/// A system call fails during one request; the later ones succeed.
TEST(CloudDriveTests, aFailedRequestLosesNothingAndALaterOneSucceeds)
{
    for (const auto& [isRelease, call, error, reason] :
         {std::tuple(true, SYS_fallocate, EOPNOTSUPP, notSupported),
          {true, SYS_fsetxattr, ENOSPC, systemError},
          {true, SYS_fsync, EIO, mirrorNotDurable},
          {true, SYS_utimensat, EPERM, systemError},
          {false, SYS_pwrite64, ENOSPC, systemError},
          {false, SYS_utimensat, EPERM, systemError}}) {
        SCOPED_TRACE(call);
        const CloudFolders folders;
        const std::string path = folders.home.path("drive/file");
        folders.makePair("file", bytes(30'000));
        const std::string whole = snapshot(folders.home.path());
        ASSERT_TRUE(isRelease || folders.drive().release(path).empty());
        const std::string before = snapshot(folders.home.path());
        const auto request = [&, releases = isRelease] {
            const auto refusals =
                releases ? folders.drive().release(path) : folders.drive().fetch(path);
            return refusals.empty() ? -1 : static_cast<int>(refusals.front().failure.reason);
        };
        EXPECT_EQ(runWithFailingCall(call, error, request), static_cast<int>(reason));
        EXPECT_EQ(snapshot(folders.home.path()) == before, call != SYS_utimensat);
        EXPECT_FALSE(reason == notSupported && hasMarker(path));
        if (isRelease) {
            EXPECT_THAT(folders.drive().release(path), IsEmpty());
            EXPECT_EQ(folders.status("drive/file").st_blocks, 0);
        }
        EXPECT_THAT(folders.drive().fetch(path), IsEmpty());
        EXPECT_TRUE(snapshot(folders.home.path()) == whole);
    }
}

} // namespace
} // namespace CleanCoreTests
