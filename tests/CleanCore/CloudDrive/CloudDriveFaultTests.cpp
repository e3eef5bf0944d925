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

using CleanCore::CloudRefusalReason;
using testing::IsEmpty;

constexpr int done = 100;

/// The reason of the only refusal, or `done`.
int outcome(const std::vector<CleanCore::CloudRefusal>& refusals)
{
    return refusals.empty() ? done : static_cast<int>(refusals.front().failure.reason);
}

struct Fault
{
    const char* description;
    long call;
    int error;
    CloudRefusalReason reason;
};

TEST(CloudDriveFaultTests, aFailedReleaseKeepsTheContentAndALaterOneSucceeds)
{
    using enum CloudRefusalReason;
    for (const Fault& fault :
         {Fault{"no hole punching", SYS_fallocate, EOPNOTSUPP, notSupported},
          Fault{"punching fails", SYS_fallocate, EIO, systemError},
          Fault{"no user attributes", SYS_fsetxattr, EOPNOTSUPP, notSupported},
          Fault{"no room for the marker", SYS_fsetxattr, ENOSPC, systemError},
          Fault{"the mirror is not written out", SYS_fsync, EIO, mirrorNotDurable},
          Fault{"unreadable", SYS_pread64, EIO, systemError}}) {
        SCOPED_TRACE(fault.description);
        const CloudFolders folders;
        folders.makePair("file", bytes(30'000));
        const std::string before = snapshot(folders.home.path());
        EXPECT_EQ(runWithFailingCall(
                      fault.call, fault.error,
                      [&] { return outcome(folders.drive().release(folders.local("file"))); }),
                  static_cast<int>(fault.reason));
        EXPECT_EQ(snapshot(folders.home.path()), before);
        if (fault.reason == notSupported) {
            EXPECT_LT(::getxattr(folders.local("file").c_str(), "user.zorvane", nullptr, 0), 0);
        }
        ASSERT_THAT(folders.drive().release(folders.local("file")), IsEmpty());
        ASSERT_THAT(folders.drive().fetch(folders.local("file")), IsEmpty());
        EXPECT_EQ(snapshot(folders.home.path()), before);
    }
}

TEST(CloudDriveFaultTests, aFailedFetchLeavesTheMirrorAloneAndALaterOneSucceeds)
{
    for (const auto& [call, error] :
         {std::pair(SYS_pwrite64, ENOSPC), {SYS_fsync, EIO}, {SYS_utimensat, EPERM}}) {
        SCOPED_TRACE(call);
        const CloudFolders folders;
        folders.makePair("file", bytes(30'000));
        const std::string whole = snapshot(folders.home.path());
        ASSERT_THAT(folders.drive().release(folders.local("file")), IsEmpty());
        const std::string mirror = snapshot(folders.mirror);
        EXPECT_EQ(
            runWithFailingCall(
                call, error, [&] { return outcome(folders.drive().fetch(folders.local("file"))); }),
            static_cast<int>(CloudRefusalReason::systemError));
        EXPECT_EQ(snapshot(folders.mirror), mirror);
        ASSERT_THAT(folders.drive().fetch(folders.local("file")), IsEmpty());
        EXPECT_EQ(snapshot(folders.home.path()), whole);
    }
}

/// The time that a step leaves on the file is then the only sign of it.
TEST(CloudDriveFaultTests, aReleaseThatCouldNotGiveTheTimeBackIsTakenUp)
{
    const CloudFolders folders;
    folders.makePair("file", bytes(30'000));
    const std::string whole = snapshot(folders.home.path());
    for (const bool releasesAgain : {true, false}) {
        EXPECT_EQ(runWithFailingCall(
                      SYS_utimensat, EPERM,
                      [&] { return outcome(folders.drive().release(folders.local("file"))); }),
                  static_cast<int>(CloudRefusalReason::systemError));
        EXPECT_NE(statusOf(folders.local("file")).st_mtim.tv_sec, 1'600'000'000);
        if (releasesAgain) {
            ASSERT_THAT(folders.drive().release(folders.local("file")), IsEmpty());
            EXPECT_EQ(statusOf(folders.local("file")).st_mtim.tv_sec, 1'600'000'000);
        }
        ASSERT_THAT(folders.drive().fetch(folders.local("file")), IsEmpty());
        EXPECT_EQ(snapshot(folders.home.path()), whole);
    }
}

} // namespace
} // namespace CleanCoreTests
