#include "CleanCore/Support/FileDescriptor.h"
#include "tests/Support/CloudFolders.h"
#include "tests/Support/FailingCall.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <sys/xattr.h>

namespace CleanCoreTests {
namespace {

using CleanCore::CloudRefusal;
using CleanCore::CloudRefusalReason;
using testing::ElementsAre;
using testing::IsEmpty;
using enum CleanCore::CloudRefusalReason;

MATCHER_P2(Refuses, path, reason, "")
{
    return arg.path == path && arg.failure.reason == reason;
}

bool hasMarker(const std::string& path)
{
    return ::getxattr(path.c_str(), "user.zorvane", nullptr, 0) >= 0;
}

/// Changes a byte in the middle of `file`, which must be one of 30,000 bytes.
std::string changeByte(const std::string& file, int at = 10'000)
{
    return "printf '\\000\\001' | dd status=none conv=notrunc bs=1 count=1 skip=" +
           std::string(at == 10'000 ? "1" : "0") + " seek=" + std::to_string(at) + " of=" + file;
}

/// All of a file that a release keeps, but for its content.
auto attributesOf(const std::string& path)
{
    const struct stat s = statusOf(path);
    return std::tuple(s.st_size, s.st_mode, s.st_uid, s.st_ino, s.st_mtim.tv_sec, s.st_mtim.tv_nsec,
                      s.st_atim.tv_sec, s.st_atim.tv_nsec,
                      ::getxattr(path.c_str(), "user.tag", nullptr, 0));
}

TEST(CloudDriveTests, aTreeWithoutItsApplicationBundlesIsReleasedAndComesBackAsItWas)
{
    const CloudFolders folders;
    const std::vector<std::pair<std::string, std::string>> released = {
        {"empty", ""},
        {"one byte", "x"},
        {"one block", bytes(4096)},
        {"several steps", bytes(70'001)},
        {"zeros", std::string(20'000, '\0') + "end"},
        {"sub/\xff\n.bin", bytes(9000)},
        {"Notes.APP/data", bytes(5000)},
        {"plain.app", bytes(5000)},
        {"d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/file", bytes(5000)},
        {"after", bytes(5000)}};
    for (const auto& [name, content] : released) {
        folders.makePair("Tree/" + name, content);
    }
    const std::string tree = folders.local("Tree");
    const std::string pad = folders.home.makeFile("drive/Tree/Pad.app/Contents/pad", bytes(5000));
    const std::string steps = tree + "/several steps";
    folders.run("chmod 640 'drive/Tree/several steps'");
    const std::string before = snapshot(folders.home.path());
    // Reading has set it; only an old one would be set again.
    folders.run("touch -a -d @1600000000 */Tree/several*");
    ASSERT_EQ(::setxattr(steps.c_str(), "user.tag", "red", 3, 0), 0);
    const auto attributes = attributesOf(steps);
    const struct stat copy = statusOf(folders.copy("Tree/several steps"));
    for (const char* again : {"", "again"}) {
        ASSERT_THAT(folders.drive().release(tree), IsEmpty()) << again;
        for (const auto& [name, content] : released) {
            EXPECT_EQ(statusOf(tree + "/" + name).st_blocks, 0) << name;
        }
        EXPECT_EQ(attributesOf(steps), attributes);
        EXPECT_GT(statusOf(pad).st_blocks, 0);
    }
    for (const std::string& kept : {pad, tree + "/Pad.app"}) {
        EXPECT_THAT(folders.drive().release(kept), ElementsAre(Refuses(kept, applicationBundle)));
    }
    ASSERT_THAT(folders.drive().fetch(tree), IsEmpty());
    EXPECT_FALSE(hasMarker(steps));
    const struct stat copyNow = statusOf(folders.copy("Tree/several steps"));
    EXPECT_EQ(copyNow.st_ctim.tv_nsec, copy.st_ctim.tv_nsec) << "the mirror was touched";
    EXPECT_EQ(copyNow.st_atim.tv_sec, copy.st_atim.tv_sec);
    EXPECT_TRUE(snapshot(folders.home.path()) == before);

    folders.makeCloudOnly("Tree/Pad.app/manual", bytes(5000));
    EXPECT_THAT(folders.drive().fetch(tree), IsEmpty());
    EXPECT_EQ(contentOf(tree + "/Pad.app/manual"), bytes(5000));
}

struct Row
{
    std::string command;
    CloudRefusalReason reason;
    /// A file that somebody has open during the request, and how.
    std::string open = "mirror";
    int flags = O_RDONLY;
};

TEST(CloudDriveTests, aRefusedReleaseLeavesEverythingUntouched)
{
    for (const Row& row : {
             Row{"rm mirror/file", missingInMirror},
             Row{changeByte("mirror/file", 0), differsFromMirror},
             Row{changeByte("mirror/file", 29'999), differsFromMirror},
             Row{"truncate -s 29999 mirror/file", differsFromMirror},
             Row{"truncate -s 0 mirror/file && truncate -s 30000 mirror/file", differsFromMirror},
             Row{"ln -f drive/file mirror/file", sameFileInMirror},
             Row{"ln -sf ../drive/file mirror/file", missingInMirror},
             Row{"true", mirrorInUse, "mirror/file", O_WRONLY},
             Row{"true", inUse, "drive/file", O_WRONLY},
             Row{"true", inUse, "drive/file", O_RDONLY},
             Row{"ln drive/file drive/other", hardLinked},
             Row{"chmod 444 drive/file", systemError},
             Row{"chmod 4755 drive/file", privilegedFile},
             Row{"mv drive/file drive/other && ln -s other drive/file", notAFile},
             Row{"rm drive/file", outsideContainer},
             Row{"mv mirror elsewhere && ln -s /usr mirror", noMirror, "drive"},
             Row{"mv mirror elsewhere", noMirror, "drive"},
             Row{"mv mirror elsewhere && ln -s drive mirror", foldersOverlap, "drive"},
             Row{"mv mirror drive/ && ln -s drive/mirror mirror", foldersOverlap, "drive"},
             Row{"mv drive elsewhere && ln -s elsewhere drive", linkedContainer, "mirror"},
         }) {
        SCOPED_TRACE(row.command + " " + row.open);
        const CloudFolders folders;
        folders.makePair("file", bytes(30'000));
        folders.run(row.command);
        const CleanCore::FileDescriptor open(
            ::open(folders.home.path(row.open).c_str(), row.flags | O_CLOEXEC));
        const std::string before = snapshot(folders.home.path());

        EXPECT_THAT(folders.drive().release(folders.local("file")),
                    ElementsAre(Refuses(folders.local("file"), row.reason)));

        EXPECT_TRUE(snapshot(folders.home.path()) == before);
        EXPECT_FALSE(hasMarker(folders.local("file")));
    }
}

TEST(CloudDriveTests, aRequestIsRefusedWithoutConfinementOrMirrorAndOutsideTheContainer)
{
    const CloudFolders folders;
    folders.makePair("file", bytes(9000));
    folders.run("mkdir 'drive too' mirror/deep && touch 'drive too/file' && mkdir "
                "mirror/deep/drive && touch mirror/deep/drive/file");
    const std::string before = snapshot(folders.home.path());
    const auto& [home, container, mirror] =
        std::tuple(folders.home.path(), folders.container, folders.mirror);
    const auto expect = [](const CleanCore::StandInDrive& drive, const std::string& path,
                           CloudRefusalReason reason) {
        EXPECT_THAT(drive.release(path), ElementsAre(Refuses(path, reason)));
        EXPECT_THAT(drive.fetch(path), ElementsAre(Refuses(path, reason)));
    };
    expect({std::nullopt, container, mirror}, container + "/file", accountHome);
    expect({home, container, std::nullopt}, container + "/file", noMirror);
    expect({home + "/other", container, mirror}, container + "/file", noContainer);
    expect({home, container, container}, container + "/file", foldersOverlap);
    expect({home, mirror + "/deep/drive", mirror}, mirror + "/deep/drive/file", foldersOverlap);
    for (const std::string& path :
         {container, home + "/drive too/file", mirror + "/file", container + "/../mirror/file",
          container + "/none", std::string()}) {
        expect(folders.drive(), path, outsideContainer);
    }
    EXPECT_TRUE(snapshot(folders.home.path()) == before);
}

TEST(CloudDriveTests, aRefusedEntryDoesNotKeepTheOthersOfItsFolder)
{
    const CloudFolders folders;
    for (const char* name : {"fine", "sub/changed", "sub/fine", "listed/unknown"}) {
        folders.makePair(std::string("Tree/") + name, bytes(9000));
    }
    folders.run("cd drive/Tree && printf more >> sub/changed && mkdir only && cp fine only/new &&"
                " ln -s fine link && chmod 444 listed");
    const std::string tree = folders.local("Tree");
    EXPECT_THAT(folders.drive().release(tree),
                testing::UnorderedElementsAre(Refuses(tree + "/sub/changed", differsFromMirror),
                                              Refuses(tree + "/only/new", missingInMirror),
                                              Refuses(tree + "/listed/unknown", systemError)));
    EXPECT_EQ(statusOf(tree + "/fine").st_blocks, 0);
    EXPECT_EQ(statusOf(tree + "/sub/fine").st_blocks, 0);
    EXPECT_EQ(contentOf(tree + "/sub/changed"), bytes(9000) + "more");
}

/// Somebody changes a placeholder or its copy, so that nothing proves any more that its holes may
/// be filled.
TEST(CloudDriveTests, neitherFetchNorReleaseTouchesAFileThatItCannotProve)
{
    for (const Row& row : {
             Row{changeByte("drive/file"), notProven},
             Row{changeByte("drive/file") + " && touch -r reference drive/file", notProven},
             Row{"printf mine >> drive/file", differsFromMirror},
             Row{"truncate -s 0 drive/file && truncate -s 30000 drive/file", notProven},
             Row{changeByte("mirror/file"), differsFromMirror},
             Row{"rm mirror/file", missingInMirror},
             // Sparse files of the user's own.
             Row{"rm drive/file && truncate -s 30000 drive/file", notProven},
             Row{"rm drive/file && truncate -s 30000 drive/file && touch -r mirror/file drive/file "
                 "&& "
                 "truncate -s 29999 drive/file",
                 differsFromMirror},
         }) {
        SCOPED_TRACE(row.command);
        const CloudFolders folders;
        folders.makePair("file", bytes(30'000));
        folders.run("touch -r drive/file reference");
        ASSERT_THAT(folders.drive().release(folders.local("file")), IsEmpty());
        folders.run(row.command);
        const std::string before = snapshot(folders.home.path());

        EXPECT_THAT(folders.drive().fetch(folders.local("file")),
                    ElementsAre(Refuses(folders.local("file"), row.reason)));
        EXPECT_TRUE(snapshot(folders.home.path()) == before);
        static_cast<void>(folders.drive().release(folders.local("file")));

        EXPECT_TRUE(snapshot(folders.home.path()) == before);
    }
}

TEST(CloudDriveTests, aFileThatIsNoPlaceholderOfOursIsAFileLikeAnyOther)
{
    const CloudFolders folders;
    // A partly sparse one of the user's own, of the length and time of its copy, otherwise equal.
    folders.makeCloudOnly("sparse", bytes(30'000));
    folders.run("dd status=none conv=notrunc bs=4096 count=1 if=mirror/sparse of=drive/sparse && "
                "touch -r mirror/sparse drive/sparse");
    const std::string before = snapshot(folders.home.path());
    EXPECT_THAT(folders.drive().fetch(folders.local("sparse")), IsEmpty());
    EXPECT_THAT(folders.drive().release(folders.local("sparse")),
                ElementsAre(Refuses(folders.local("sparse"), differsFromMirror)));
    EXPECT_TRUE(snapshot(folders.home.path()) == before);

    // A placeholder that was written anew and uploaded.
    folders.makePair("file", bytes(30'000));
    ASSERT_THAT(folders.drive().release(folders.local("file")), IsEmpty());
    // Both are written in place, so the local one keeps the old marker.
    folders.home.makeFile("drive/file", bytes(12'000, 2));
    EXPECT_THAT(folders.drive().fetch(folders.local("file")), IsEmpty());
    folders.home.makeFile("mirror/file", bytes(12'000, 2));
    // Blocks reserved beyond the end are released too.
    folders.run("fallocate -n -l 1000000 drive/file");

    EXPECT_THAT(folders.drive().release(folders.local("file")), IsEmpty());
    EXPECT_EQ(statusOf(folders.local("file")).st_blocks, 0);
    EXPECT_THAT(folders.drive().fetch(folders.local("file")), IsEmpty());
    EXPECT_EQ(contentOf(folders.local("file")), bytes(12'000, 2));
}

/// A system call fails during one request; the later ones succeed.
TEST(CloudDriveTests, aFailedRequestLosesNothingAndALaterOneSucceeds)
{
    struct Fault
    {
        bool isRelease;
        long call;
        int error;
        CloudRefusalReason reason;
    };
    for (const Fault& fault : {
             Fault{true, SYS_fallocate, EOPNOTSUPP, notSupported},
             Fault{true, SYS_fallocate, EIO, systemError},
             Fault{true, SYS_fsetxattr, EOPNOTSUPP, notSupported},
             Fault{true, SYS_fsetxattr, ENOSPC, systemError},
             Fault{true, SYS_fsync, EIO, mirrorNotDurable},
             Fault{true, SYS_pread64, EIO, systemError},
             Fault{true, SYS_utimensat, EPERM, systemError},
             Fault{false, SYS_pwrite64, ENOSPC, systemError},
             Fault{false, SYS_fsync, EIO, systemError},
             Fault{false, SYS_utimensat, EPERM, systemError},
         }) {
        SCOPED_TRACE(fault.call);
        for (const bool releasesAgain : {true, false}) {
            const CloudFolders folders;
            folders.makePair("file", bytes(30'000));
            const std::string path = folders.local("file");
            const std::string whole = snapshot(folders.home.path());
            ASSERT_TRUE(fault.isRelease || folders.drive().release(path).empty());
            const std::string before = snapshot(folders.home.path());
            const auto request = [&] {
                const auto refusals =
                    fault.isRelease ? folders.drive().release(path) : folders.drive().fetch(path);
                return refusals.empty() ? -1 : static_cast<int>(refusals.front().failure.reason);
            };
            EXPECT_EQ(runWithFailingCall(fault.call, fault.error, request),
                      static_cast<int>(fault.reason));
            EXPECT_EQ(snapshot(folders.home.path()) == before, fault.call != SYS_utimensat);
            EXPECT_FALSE(fault.reason == notSupported && hasMarker(path));
            EXPECT_TRUE(!releasesAgain || folders.drive().release(path).empty());
            EXPECT_TRUE(!releasesAgain || statusOf(path).st_blocks == 0);
            EXPECT_THAT(folders.drive().fetch(path), IsEmpty());
            EXPECT_TRUE(snapshot(folders.home.path()) == whole);
        }
    }
}

} // namespace
} // namespace CleanCoreTests
