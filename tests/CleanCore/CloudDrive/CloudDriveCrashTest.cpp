#include "CleanCore/CloudDrive/StandIn/CloudMarker.h"
#include "CleanCore/Support/FileDescriptor.h"
#include "tests/Support/CloudFolders.h"
#include "tests/Support/FailingCall.h"
#include "tests/Support/Setting.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iostream>

namespace CleanCoreTests {
namespace {

using testing::IsEmpty;

enum class Request { release, fetch };

/// A file of three steps. Every request for it can be killed after any of its system calls.
class CloudDriveCrashTest : public testing::TestWithParam<Request>
{
protected:
    CloudDriveCrashTest() { folders.makePair("file", content); }

    std::vector<CleanCore::CloudRefusal> request(Request request) const
    {
        return request == Request::release ? folders.drive().release(path)
                                           : folders.drive().fetch(path);
    }

    /// Gives the file its state before GetParam(), kills that after `calls`, and says whether it
    /// was not done by then.
    bool crashFirst(int calls) const
    {
        EXPECT_THAT(request(GetParam() == Request::release ? Request::fetch : Request::release),
                    IsEmpty());
        return crash(GetParam(), calls);
    }

    bool crash(Request killed, int calls) const
    {
        const bool isKilled = runUntilCall(calls, [&] { static_cast<void>(request(killed)); });
        const std::string local = contentOf(path);
        bool isLost = local.size() != content.size() || snapshot(folders.mirror) != mirror;
        for (std::size_t i = 0; i < content.size() && !isLost; ++i) {
            isLost = local[i] != '\0' && local[i] != content[i];
        }
        EXPECT_FALSE(isLost);
        return isKilled;
    }

    /// Makes a crash one that happened an hour ago.
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
            EXPECT_THAT(request(Request::release), IsEmpty());
            EXPECT_EQ(statusOf(path).st_blocks, 0);
        }
        EXPECT_THAT(request(Request::fetch), IsEmpty());
        EXPECT_TRUE(snapshot(folders.home.path()) == whole);
    }

    const std::string content = bytes(20'000);
    CloudFolders folders = CloudFolders(reliabilityFolder());
    std::string path = folders.local("file");
    std::string mirror;
    std::string whole;

    void SetUp() override
    {
        mirror = snapshot(folders.mirror);
        whole = snapshot(folders.home.path());
    }
};

TEST_P(CloudDriveCrashTest, nothingIsLostAfterWhicheverCallARequestIsKilled)
{
    // A crash in the midst of a step looks the same after several calls.
    const int stride = setting("ZORVANE_CRASH_STRIDE", 4);
    int killed = 0;
    int killedTwice = 0;
    for (int calls = 1; crashFirst(calls) && !HasFailure(); ++calls) {
        SCOPED_TRACE(calls);
        ++killed;
        const bool isAmidAStep = statusOf(path).st_mtim.tv_sec != 1'600'000'000;
        expectItCanBeFinished(calls % 2 == 0);
        for (const Request second : {Request::release, Request::fetch}) {
            for (int more = 1 + calls % stride; isAmidAStep && !HasFailure(); more += stride) {
                SCOPED_TRACE(more);
                EXPECT_TRUE(crashFirst(calls));
                age();
                if (!crash(second, more)) {
                    break;
                }
                ++killedTwice;
                expectItCanBeFinished(more % 2 == 0);
            }
            expectItCanBeFinished(false);
        }
    }
    EXPECT_GT(killedTwice, killed);
    std::cout << killed << " requests killed, " << killedTwice << " of them twice\n";
}

INSTANTIATE_TEST_SUITE_P(Of, CloudDriveCrashTest,
                         testing::Values(Request::release, Request::fetch));

} // namespace
} // namespace CleanCoreTests
