#include "CleanCore/CloudDrive/StandIn/CloudMarker.h"
#include "CleanCore/Support/FileDescriptor.h"
#include "tests/Support/CloudFolders.h"
#include "tests/Support/FailingCall.h"
#include "tests/Support/Setting.h"

#include <fcntl.h>
#include <gtest/gtest.h>

namespace CleanCoreTests {
namespace {

using namespace CleanCore;

/// A file of two steps. A request for it (a release, else a fetch) is killed after each of its
/// system calls in turn.
struct CloudDriveCrashTest : testing::TestWithParam<bool>
{
    [[nodiscard]] bool succeeds(bool releases) const
    {
        return (releases ? folders.drive().release(path) : folders.drive().fetch(path)).empty();
    }

    /// Returns whether `calls` came before the end of the request.
    bool crash(bool releases, int calls) const
    {
        const bool isKilled = runUntilCall(calls, [&] { static_cast<void>(succeeds(releases)); });
        EXPECT_TRUE(isSafe(path, content, content));
        return isKilled;
    }

    /// Turns the last crash into one that happened an hour ago.
    void age() const
    {
        const FileDescriptor file(::open(path.c_str(), O_RDWR));
        auto marker = readMarker(file.get());
        timespec time = statusOf(path).st_mtim;
        time.tv_sec -= 3600;
        marker->changingSince -= 3'600'000'000'000;
        EXPECT_EQ(writeMarker(file.get(), *marker), 0);
        EXPECT_EQ(setModificationTime(file.get(), time), 0);
    }

    void expectItCanBeFinished(bool releasesToo) const
    {
        if (releasesToo) {
            EXPECT_TRUE(succeeds(true));
            EXPECT_EQ(statusOf(path).st_blocks, 0);
            EXPECT_EQ(statusOf(path).st_mtim.tv_sec, 1'600'000'000);
        }
        EXPECT_TRUE(succeeds(false));
        EXPECT_TRUE(snapshot(folders.home.path()) == whole);
    }

    const std::string content = bytes(12'000);
    const CloudFolders folders = CloudFolders(reliabilityFolder());
    const std::string path = folders.home.path("drive/file");
    std::string whole;
};

/// ZORVANE_CRASH_STRIDE 1 makes the longest run.
TEST_P(CloudDriveCrashTest, nothingIsLostAfterWhicheverCallsOneRequestAndTheNextAreKilled)
{
    folders.makePair("file", content);
    whole = snapshot(folders.home.path());
    const auto crashFirst = [&](int calls) {
        return succeeds(!GetParam()) && crash(GetParam(), calls);
    };
    // Within a step, a crash looks the same after several calls.
    const int stride = setting("ZORVANE_CRASH_STRIDE", 8);
    int killedTwice = 0;
    for (int calls = 1; crashFirst(calls) && !HasFailure(); ++calls) {
        SCOPED_TRACE(calls);
        const bool isWithinStep = statusOf(path).st_mtim.tv_sec != 1'600'000'000;
        expectItCanBeFinished(calls % 2 == 0);
        for (const bool releasesNext : {true, false}) {
            bool isKilled = isWithinStep;
            for (int more = 1 + calls % stride; isKilled && !HasFailure(); more += stride) {
                SCOPED_TRACE(more);
                EXPECT_TRUE(crashFirst(calls));
                age();
                isKilled = crash(releasesNext, more);
                expectItCanBeFinished(more % 2 == 0);
                killedTwice += isKilled ? 1 : 0;
            }
        }
    }
    EXPECT_GT(killedTwice, 10);
}

INSTANTIATE_TEST_SUITE_P(ReleasesElseFetches, CloudDriveCrashTest, testing::Bool());

} // namespace
} // namespace CleanCoreTests
