#include "CleanCore/CloudDrive/StandIn/CloudMarker.h"
#include "CleanCore/Support/FileDescriptor.h"
#include "tests/Support/CloudFolders.h"
#include "tests/Support/FailingCall.h"
#include "tests/Support/Setting.h"

#include <fcntl.h>
#include <gtest/gtest.h>

namespace CleanCoreTests {
namespace {

enum class Request { release, fetch };

/// A file of two steps. A request for it is killed after each of its system calls in turn.
class CloudDriveCrashTest : public testing::TestWithParam<Request>
{
protected:
    CloudDriveCrashTest()
    {
        folders.makePair("file", content);
        mirror = snapshot(folders.mirror);
        whole = snapshot(folders.home.path());
    }

    [[nodiscard]] bool succeeds(Request request) const
    {
        const auto refusals = request == Request::release ? folders.drive().release(path)
                                                          : folders.drive().fetch(path);
        return refusals.empty();
    }

    /// Kills GetParam(), begun on a file as it should be. Returns whether `calls` were too few.
    bool crashFirst(int calls) const
    {
        EXPECT_TRUE(succeeds(GetParam() == Request::release ? Request::fetch : Request::release));
        return crash(GetParam(), calls);
    }

    bool crash(Request request, int calls) const
    {
        const bool isKilled = runUntilCall(calls, [&] { static_cast<void>(succeeds(request)); });
        EXPECT_TRUE(releasedBytes(path, content, content)) << "lost";
        EXPECT_TRUE(snapshot(folders.mirror) == mirror);
        return isKilled;
    }

    /// Turns the last crash into one that happened an hour ago.
    void age() const
    {
        const CleanCore::FileDescriptor file(::open(path.c_str(), O_RDWR | O_CLOEXEC));
        auto marker = CleanCore::readMarker(file.get());
        timespec time = statusOf(path).st_mtim;
        time.tv_sec -= 3600;
        marker->changingSince -= 3'600'000'000'000;
        EXPECT_EQ(CleanCore::writeMarker(file.get(), *marker), 0);
        EXPECT_EQ(CleanCore::setModificationTime(file.get(), time), 0);
    }

    void expectItCanBeFinished(bool releasesToo) const
    {
        if (releasesToo) {
            EXPECT_TRUE(succeeds(Request::release));
            EXPECT_EQ(statusOf(path).st_blocks, 0);
            EXPECT_EQ(statusOf(path).st_mtim.tv_sec, 1'600'000'000);
        }
        EXPECT_TRUE(succeeds(Request::fetch));
        EXPECT_TRUE(snapshot(folders.home.path()) == whole);
    }

    const std::string content = bytes(12'000);
    const CloudFolders folders = CloudFolders(reliabilityFolder());
    const std::string path = folders.local("file");
    std::string mirror;
    std::string whole;
};

/// ZORVANE_CRASH_STRIDE 1 makes the longest run.
TEST_P(CloudDriveCrashTest, nothingIsLostAfterWhicheverCallsOneRequestAndTheNextAreKilled)
{
    // Within a step, a crash looks the same after several calls.
    const int stride = setting("ZORVANE_CRASH_STRIDE", 8);
    int killedTwice = 0;
    for (int calls = 1; crashFirst(calls) && !HasFailure(); ++calls) {
        SCOPED_TRACE(calls);
        const bool isWithinStep = statusOf(path).st_mtim.tv_sec != 1'600'000'000;
        expectItCanBeFinished(calls % 2 == 0);
        for (const Request next : {Request::release, Request::fetch}) {
            bool isKilled = isWithinStep;
            for (int more = 1 + calls % stride; isKilled && !HasFailure(); more += stride) {
                SCOPED_TRACE(more);
                EXPECT_TRUE(crashFirst(calls));
                age();
                isKilled = crash(next, more);
                expectItCanBeFinished(more % 2 == 0);
                killedTwice += isKilled ? 1 : 0;
            }
        }
    }
    EXPECT_GT(killedTwice, 10);
}

INSTANTIATE_TEST_SUITE_P(Of, CloudDriveCrashTest,
                         testing::Values(Request::release, Request::fetch));

} // namespace
} // namespace CleanCoreTests
