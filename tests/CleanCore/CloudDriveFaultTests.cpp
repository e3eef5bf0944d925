#include "tests/CleanCore/Support/CloudFolders.h"
#include "tests/CleanCore/Support/FailingCall.h"

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
    const char* name;
    long call;
    int error;
    CloudRefusalReason reason;
};

std::string nameOf(const testing::TestParamInfo<Fault>& info)
{
    return info.param.name;
}

class CloudDriveReleaseFaultTests : public testing::TestWithParam<Fault>
{
};

TEST_P(CloudDriveReleaseFaultTests, theContentStaysAndALaterReleaseSucceeds)
{
    const CloudFolders folders;
    folders.makePair("file", bytes(30'000));
    const std::string before = snapshot(folders.home.path());
    EXPECT_EQ(
        runWithFailingCall(GetParam().call, GetParam().error,
                           [&] { return outcome(folders.drive().release(folders.local("file"))); }),
        static_cast<int>(GetParam().reason));
    EXPECT_EQ(snapshot(folders.home.path()), before);
    if (GetParam().reason == CloudRefusalReason::notSupported) {
        EXPECT_LT(::getxattr(folders.local("file").c_str(), "user.zorvane", nullptr, 0), 0);
    }
    ASSERT_THAT(folders.drive().release(folders.local("file")), IsEmpty());
    ASSERT_THAT(folders.drive().fetch(folders.local("file")), IsEmpty());
    EXPECT_EQ(snapshot(folders.home.path()), before);
}

INSTANTIATE_TEST_SUITE_P(
    CloudDrive, CloudDriveReleaseFaultTests,
    testing::Values(
        Fault{"noHolePunching", SYS_fallocate, EOPNOTSUPP, CloudRefusalReason::notSupported},
        Fault{"punchingFails", SYS_fallocate, EIO, CloudRefusalReason::systemError},
        Fault{"noUserAttributes", SYS_fsetxattr, EOPNOTSUPP, CloudRefusalReason::notSupported},
        Fault{"noRoomForTheMarker", SYS_fsetxattr, ENOSPC, CloudRefusalReason::systemError},
        Fault{"mirrorIsNotWrittenOut", SYS_fsync, EIO, CloudRefusalReason::mirrorNotDurable},
        Fault{"unreadable", SYS_pread64, EIO, CloudRefusalReason::systemError}),
    nameOf);

class CloudDriveFetchFaultTests : public testing::TestWithParam<Fault>
{
};

TEST_P(CloudDriveFetchFaultTests, thePlaceholderStaysAndALaterFetchSucceeds)
{
    const CloudFolders folders;
    folders.makePair("file", bytes(30'000));
    const std::string whole = snapshot(folders.home.path());
    ASSERT_THAT(folders.drive().release(folders.local("file")), IsEmpty());
    const std::string mirror = snapshot(folders.mirror);
    EXPECT_EQ(
        runWithFailingCall(GetParam().call, GetParam().error,
                           [&] { return outcome(folders.drive().fetch(folders.local("file"))); }),
        static_cast<int>(GetParam().reason));
    EXPECT_EQ(snapshot(folders.mirror), mirror);
    ASSERT_THAT(folders.drive().fetch(folders.local("file")), IsEmpty());
    EXPECT_EQ(snapshot(folders.home.path()), whole);
}

INSTANTIATE_TEST_SUITE_P(
    CloudDrive, CloudDriveFetchFaultTests,
    testing::Values(Fault{"diskFull", SYS_pwrite64, ENOSPC, CloudRefusalReason::systemError},
                    Fault{"notWrittenOut", SYS_fsync, EIO, CloudRefusalReason::systemError},
                    Fault{"timeNotGivenBack", SYS_utimensat, EPERM,
                          CloudRefusalReason::systemError}),
    nameOf);

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
