#include "tests/Support/CloudFolders.h"

#include "CleanCore/CloudDrive/StandIn/CloudMarker.h"
#include "CleanCore/Support/FileDescriptor.h"

#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace CleanCoreTests {
namespace {

using CleanCore::CloudRefusalReason;
using CleanCore::FileDescriptor;
using CleanCore::StandInDrive;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

MATCHER_P2(Refuses, path, reason, "")
{
    return arg.path == path && arg.failure.reason == reason;
}

FileDescriptor opened(const std::string& path, int flags)
{
    return FileDescriptor(::open(path.c_str(), flags | O_CLOEXEC));
}

TEST(CloudDriveTests, aReleasedFileIsAPlaceholderOfTheSameAttributes)
{
    const CloudFolders folders;
    folders.makePair("Letters/one.txt", bytes(50'000));
    const std::string local = folders.local("Letters/one.txt");
    ASSERT_EQ(::chmod(local.c_str(), 0640), 0);
    ASSERT_EQ(::setxattr(local.c_str(), "user.tag", "red", 3, 0), 0);
    folders.home.setTime("drive/Letters/one.txt", 1'600'000'000, 123'456'789);
    const struct stat before = statusOf(local);
    const std::string mirrorBefore = snapshot(folders.mirror);
    const struct stat copyBefore = statusOf(folders.copy("Letters/one.txt"));

    ASSERT_THAT(folders.drive().release(folders.local("Letters")), IsEmpty());

    const struct stat after = statusOf(local);
    EXPECT_EQ(after.st_blocks, 0);
    EXPECT_EQ(after.st_size, before.st_size);
    EXPECT_EQ(after.st_mode, before.st_mode);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_TRUE(CleanCore::areSameTime(after.st_mtim, before.st_mtim));
    EXPECT_TRUE(CleanCore::areSameTime(after.st_atim, before.st_atim));
    char tag[3] = {};
    EXPECT_EQ(::getxattr(local.c_str(), "user.tag", tag, sizeof tag), 3);

    const struct stat copyAfter = statusOf(folders.copy("Letters/one.txt"));
    EXPECT_EQ(snapshot(folders.mirror), mirrorBefore);
    EXPECT_TRUE(CleanCore::areSameTime(copyAfter.st_ctim, copyBefore.st_ctim));
    EXPECT_TRUE(CleanCore::areSameTime(copyAfter.st_atim, copyBefore.st_atim));
}

TEST(CloudDriveTests, fetchBringsAWholeTreeBackAsItWas)
{
    const CloudFolders folders;
    folders.makePair("Tree/empty", "");
    folders.makePair("Tree/one byte", "x");
    folders.makePair("Tree/one block", bytes(4096));
    folders.makePair("Tree/several steps", bytes(70'001));
    folders.makePair("Tree/zeros", std::string(20'000, '\0') + "end");
    folders.makePair("Tree/sub/\xff\n.bin", bytes(9000));
    for (std::string deep = "Tree/d"; deep.size() < 120; deep += "/d") {
        folders.makePair(deep + "/file", bytes(5000));
    }
    const std::string before = snapshot(folders.container);

    ASSERT_THAT(folders.drive().release(folders.local("Tree")), IsEmpty());
    for (const auto& entry : fs::recursive_directory_iterator(folders.container)) {
        EXPECT_TRUE(entry.is_directory() || statusOf(entry.path()).st_blocks == 0) << entry;
    }
    EXPECT_THAT(folders.drive().release(folders.local("Tree")), IsEmpty()) << "again";
    ASSERT_THAT(folders.drive().fetch(folders.local("Tree")), IsEmpty());

    EXPECT_EQ(snapshot(folders.container), before);
    EXPECT_LT(::getxattr(folders.local("Tree/one block").c_str(), "user.zorvane", nullptr, 0), 0);
    EXPECT_THAT(folders.drive().fetch(folders.local("Tree")), IsEmpty()) << "again";
}

TEST(CloudDriveTests, applicationBundlesStayButAreFetched)
{
    const CloudFolders folders;
    folders.makePair("Tools/readme", bytes(5000));
    folders.makePair("Tools/Pad.app/Contents/pad", bytes(5000));
    folders.makePair("Tools/Notes.APP/data", bytes(5000));
    folders.makePair("Tools/plain.app", bytes(5000));
    folders.makeCloudOnly("Tools/Pad.app/manual", bytes(5000));

    EXPECT_THAT(folders.drive().release(folders.local("Tools")), IsEmpty());
    EXPECT_GT(statusOf(folders.local("Tools/Pad.app/Contents/pad")).st_blocks, 0);
    for (const char* released : {"Tools/readme", "Tools/Notes.APP/data", "Tools/plain.app"}) {
        EXPECT_EQ(statusOf(folders.local(released)).st_blocks, 0) << released;
    }
    for (const char* kept : {"Tools/Pad.app", "Tools/Pad.app/Contents/pad"}) {
        EXPECT_THAT(
            folders.drive().release(folders.local(kept)),
            ElementsAre(Refuses(folders.local(kept), CloudRefusalReason::applicationBundle)));
    }
    EXPECT_THAT(folders.drive().fetch(folders.local("Tools")), IsEmpty());
    EXPECT_EQ(contentOf(folders.local("Tools/Pad.app/manual")), bytes(5000));
}

void replaceByte(const std::string& path, off_t at)
{
    const char other = static_cast<char>(contentOf(path)[static_cast<std::size_t>(at)] ^ 1);
    ASSERT_EQ(::pwrite(opened(path, O_WRONLY).get(), &other, 1, at), 1);
}

TEST(CloudDriveTests, aRefusedReleaseLeavesEverythingUntouched)
{
    using enum CloudRefusalReason;
    // What an arrangement puts into `open` is kept until the request has ended.
    using Arrangement = std::function<void(CloudFolders&, FileDescriptor & open)>;
    const auto expect = [](const char* what, CloudRefusalReason reason,
                           const Arrangement& arrange) {
        SCOPED_TRACE(what);
        CloudFolders folders;
        folders.makePair("file", bytes(30'000));
        FileDescriptor open;
        arrange(folders, open);
        const std::string before = snapshot(folders.home.path());

        EXPECT_THAT(folders.drive().release(folders.local("file")),
                    ElementsAre(Refuses(folders.local("file"), reason)));

        EXPECT_EQ(snapshot(folders.home.path()), before);
        EXPECT_LT(::getxattr(folders.local("file").c_str(), "user.zorvane", nullptr, 0), 0);
    };
    expect("mirrorLacksTheFile", missingInMirror,
           [](auto& folders, auto&) { fs::remove(folders.copy("file")); });
    expect("mirrorDiffersInTheFirstByte", differsFromMirror,
           [](auto& folders, auto&) { replaceByte(folders.copy("file"), 0); });
    expect("mirrorDiffersInTheLastByte", differsFromMirror,
           [](auto& folders, auto&) { replaceByte(folders.copy("file"), 29'999); });
    expect("mirrorIsShorter", differsFromMirror,
           [](auto& folders, auto&) { fs::resize_file(folders.copy("file"), 29'999); });
    expect("mirrorIsAPlaceholderToo", differsFromMirror, [](auto& folders, auto&) {
        fs::resize_file(folders.copy("file"), 0);
        fs::resize_file(folders.copy("file"), 30'000);
    });
    expect("mirrorIsAHardLinkOfTheFile", sameFileInMirror, [](auto& folders, auto&) {
        fs::remove(folders.copy("file"));
        fs::create_hard_link(folders.local("file"), folders.copy("file"));
    });
    expect("mirrorIsALinkToTheFile", missingInMirror, [](auto& folders, auto&) {
        fs::remove(folders.copy("file"));
        fs::create_symlink(folders.local("file"), folders.copy("file"));
    });
    expect("mirrorIsBeingWritten", mirrorInUse,
           [](auto& folders, auto& open) { open = opened(folders.copy("file"), O_WRONLY); });
    expect("fileHasAnotherName", hardLinked, [](auto& folders, auto&) {
        fs::create_hard_link(folders.local("file"), folders.local("other"));
    });
    expect("fileIsOpenToWrite", inUse,
           [](auto& folders, auto& open) { open = opened(folders.local("file"), O_WRONLY); });
    expect("fileIsOpenToRead", inUse,
           [](auto& folders, auto& open) { open = opened(folders.local("file"), O_RDONLY); });
    expect("fileIsReadOnly", systemError,
           [](auto& folders, auto&) { folders.home.setMode("drive/file", 0444); });
    expect("fileIsSetUserId", privilegedFile,
           [](auto& folders, auto&) { folders.home.setMode("drive/file", 04755); });
    expect("fileIsALink", notAFile, [](auto& folders, auto&) {
        fs::rename(folders.local("file"), folders.local("other"));
        fs::create_symlink("other", folders.local("file"));
    });
    expect("fileIsMissing", outsideContainer,
           [](auto& folders, auto&) { fs::remove(folders.local("file")); });
    expect("thereIsNoMirror", noMirror,
           [](auto& folders, auto&) { fs::remove_all(folders.mirror); });
    expect("mirrorLiesOutsideTheHome", noMirror, [](auto& folders, auto&) {
        fs::remove_all(folders.mirror);
        fs::create_directory_symlink("/usr", folders.mirror);
    });
    expect("mirrorIsTheContainer", foldersOverlap,
           [](auto& folders, auto&) { folders.mirror = folders.container; });
    expect("mirrorIsALinkToTheContainer", foldersOverlap, [](auto& folders, auto&) {
        fs::remove_all(folders.mirror);
        fs::create_directory_symlink(folders.container, folders.mirror);
    });
    expect("mirrorLiesInTheContainer", foldersOverlap, [](auto& folders, auto&) {
        fs::rename(folders.mirror, folders.local("mirror"));
        folders.mirror = folders.local("mirror");
    });
    expect("containerLiesInTheMirror", foldersOverlap, [](auto& folders, auto&) {
        fs::rename(folders.container, folders.copy("drive"));
        folders.container = folders.copy("drive");
    });
    expect("containerIsALink", linkedContainer, [](auto& folders, auto&) {
        fs::rename(folders.container, folders.home.path("elsewhere"));
        fs::create_directory_symlink("elsewhere", folders.container);
    });
}

TEST(CloudDriveTests, everyRequestIsRefusedWithoutConfinementOrMirrorAndOutsideTheContainer)
{
    const CloudFolders folders;
    folders.makePair("file", bytes(9000));
    folders.home.makeFile("drive too/file");
    const std::string before = snapshot(folders.home.path());
    const std::string file = folders.local("file");
    const auto expectRefusal = [](const StandInDrive& drive, const std::string& path,
                                  CloudRefusalReason reason) {
        EXPECT_THAT(drive.release(path), ElementsAre(Refuses(path, reason)));
        EXPECT_THAT(drive.fetch(path), ElementsAre(Refuses(path, reason)));
    };
    expectRefusal({std::nullopt, folders.container, folders.mirror}, file,
                  CloudRefusalReason::accountHome);
    expectRefusal({folders.home.path(), folders.container, std::nullopt}, file,
                  CloudRefusalReason::noMirror);
    expectRefusal({folders.home.path("other home"), folders.container, folders.mirror}, file,
                  CloudRefusalReason::noContainer);
    for (const std::string& path :
         {folders.container, folders.home.path("drive too/file"), folders.mirror + "/file",
          folders.container + "/../mirror/file", folders.container + "/none", std::string()}) {
        expectRefusal(folders.drive(), path, CloudRefusalReason::outsideContainer);
    }
    EXPECT_EQ(snapshot(folders.home.path()), before);
}

TEST(CloudDriveTests, oneRefusedFileDoesNotKeepTheOthersOfItsFolder)
{
    const CloudFolders folders;
    folders.makePair("Tree/fine", bytes(9000));
    folders.makePair("Tree/sub/changed", bytes(9000));
    folders.makePair("Tree/sub/fine", bytes(9000));
    folders.home.makeFile("drive/Tree/local only/new", bytes(9000));
    folders.home.makeLink("drive/Tree/link", "fine");
    appendTo(folders.local("Tree/sub/changed"), "more");

    EXPECT_THAT(
        folders.drive().release(folders.local("Tree")),
        testing::UnorderedElementsAre(
            Refuses(folders.local("Tree/sub/changed"), CloudRefusalReason::differsFromMirror),
            Refuses(folders.local("Tree/local only/new"), CloudRefusalReason::missingInMirror)));
    EXPECT_EQ(statusOf(folders.local("Tree/fine")).st_blocks, 0);
    EXPECT_EQ(statusOf(folders.local("Tree/sub/fine")).st_blocks, 0);
    EXPECT_EQ(contentOf(folders.local("Tree/sub/changed")), bytes(9000) + "more");
}

/// Whatever somebody does to a placeholder or its copy, so that nothing proves any more that
/// its holes may be filled.
TEST(CloudDriveTests, neitherFetchNorReleaseTouchesWhatItCannotProve)
{
    using enum CloudRefusalReason;
    const auto expect = [](const char* what, CloudRefusalReason reason,
                           const std::function<void(const CloudFolders&)>& act) {
        SCOPED_TRACE(what);
        const CloudFolders folders;
        folders.makePair("file", bytes(30'000));
        ASSERT_THAT(folders.drive().release(folders.local("file")), IsEmpty());
        act(folders);
        const std::string before = snapshot(folders.home.path());

        EXPECT_THAT(folders.drive().fetch(folders.local("file")),
                    ElementsAre(Refuses(folders.local("file"), reason)));
        static_cast<void>(folders.drive().release(folders.local("file")));

        EXPECT_EQ(snapshot(folders.home.path()), before);
    };
    expect("written in the middle", notProven,
           [](auto& folders) { replaceByte(folders.local("file"), 10'000); });
    expect("appended", differsFromMirror,
           [](auto& folders) { appendTo(folders.local("file"), "mine"); });
    expect("emptied and made as long again", notProven, [](auto& folders) {
        fs::resize_file(folders.local("file"), 0);
        fs::resize_file(folders.local("file"), 30'000);
    });
    expect("written and backdated", notProven, [](auto& folders) {
        replaceByte(folders.local("file"), 10'000);
        folders.home.setTime("drive/file", 1'600'000'000, 123'456'789);
    });
    expect("replaced in the mirror", differsFromMirror,
           [](auto& folders) { folders.home.makeFile("mirror/file", bytes(30'000, 2)); });
    expect("removed from the mirror", missingInMirror,
           [](auto& folders) { fs::remove(folders.copy("file")); });
}

TEST(CloudDriveTests, aSparseFileOfTheUsersOwnIsNeverFilled)
{
    const CloudFolders folders;
    folders.makeCloudOnly("all hole", bytes(30'000));
    folders.home.setTime("drive/all hole", 1'700'000'000);
    folders.makeCloudOnly("part hole", bytes(30'000));
    replaceByte(folders.local("part hole"), 20'000);
    folders.home.setTime("drive/part hole", 1'600'000'100);
    const std::string before = snapshot(folders.home.path());

    EXPECT_THAT(folders.drive().fetch(folders.local("all hole")),
                ElementsAre(Refuses(folders.local("all hole"), CloudRefusalReason::notProven)));
    EXPECT_THAT(folders.drive().fetch(folders.local("part hole")), IsEmpty());
    EXPECT_THAT(
        folders.drive().release(folders.local("part hole")),
        ElementsAre(Refuses(folders.local("part hole"), CloudRefusalReason::differsFromMirror)));
    EXPECT_EQ(snapshot(folders.home.path()), before);
}

TEST(CloudDriveTests, aPlaceholderThatWasWrittenAnewAndUploadedIsAFileLikeAnyOther)
{
    const CloudFolders folders;
    folders.makePair("file", bytes(30'000));
    ASSERT_THAT(folders.drive().release(folders.local("file")), IsEmpty());
    // Both are written in place, so the local one keeps the old marker.
    folders.home.makeFile("drive/file", bytes(12'000, 2));
    EXPECT_THAT(folders.drive().fetch(folders.local("file")), IsEmpty());
    folders.home.makeFile("mirror/file", bytes(12'000, 2));

    EXPECT_THAT(folders.drive().release(folders.local("file")), IsEmpty());
    EXPECT_EQ(statusOf(folders.local("file")).st_blocks, 0);
    EXPECT_THAT(folders.drive().fetch(folders.local("file")), IsEmpty());
    EXPECT_EQ(contentOf(folders.local("file")), bytes(12'000, 2));
}

TEST(CloudDriveTests, blocksReservedBehindTheEndAreReleasedToo)
{
    const CloudFolders folders;
    folders.makePair("file", bytes(10'000));
    ASSERT_EQ(::fallocate(opened(folders.local("file"), O_WRONLY).get(), FALLOC_FL_KEEP_SIZE, 0,
                          1'000'000),
              0);
    EXPECT_THAT(folders.drive().release(folders.local("file")), IsEmpty());
    EXPECT_EQ(statusOf(folders.local("file")).st_blocks, 0);
}

} // namespace
} // namespace CleanCoreTests
