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

/// Whether every byte of `content`, which holds no zero, is in a file with the content `local`, or
/// else released there and in `uploaded`, the content of its copy.
bool isSafe(std::string local, const std::string& content, const std::string& uploaded)
{
    for (std::size_t i = 0; i < local.size() && i < uploaded.size(); ++i) {
        local[i] = local[i] == '\0' ? uploaded[i] : local[i];
    }
    return local == content;
}

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
        EXPECT_TRUE(isSafe(folders.content("drive/file"), content, content));
        return isKilled;
    }

    /// A request before the one that is killed brings the file into the state that it needs.
    bool crashFirst(int calls) const { return succeeds(!GetParam()) && crash(GetParam(), calls); }

    /// Turns the last crash into one that happened an hour ago.
    void age() const
    {
        const FileDescriptor file(::open(path.c_str(), O_RDWR));
        auto marker = readMarker(file.get());
        timespec time = status().st_mtim;
        time.tv_sec -= 3600;
        marker->changingSince -= 3'600'000'000'000;
        EXPECT_EQ(writeMarker(file.get(), *marker), 0);
        EXPECT_EQ(setModificationTime(file.get(), time), 0);
    }

    [[nodiscard]] struct stat status() const { return folders.status("drive/file"); }
    [[nodiscard]] bool isBetweenSteps() const { return status().st_mtim.tv_sec == 1'600'000'000; }

    void expectItCanBeFinished(bool releasesToo) const
    {
        if (releasesToo) {
            EXPECT_TRUE(succeeds(true));
            EXPECT_EQ(status().st_blocks, 0);
            EXPECT_TRUE(isBetweenSteps());
        }
        EXPECT_TRUE(succeeds(false));
        EXPECT_TRUE(snapshot(folders.home.path()) == whole);
    }

    const std::string content = bytes(12'000);
    const CloudFolders folders;
    const std::string path = folders.home.path("drive/file");
    std::string whole;
};

TEST_P(CloudDriveCrashTest, nothingIsLostAfterWhicheverCallsOneRequestAndTheNextAreKilled)
{
    folders.makePair("file", content);
    whole = snapshot(folders.home.path());
    // Within a step, a crash looks the same after several calls.
    const int stride = static_cast<int>(scaled(8, 1));
    int killedTwice = 0;
    for (int calls = 1; crashFirst(calls) && !HasFailure(); ++calls) {
        SCOPED_TRACE(calls);
        const bool isWithinStep = !isBetweenSteps();
        expectItCanBeFinished(calls % 2 == 0);
        for (const bool releasesNext : {true, false}) {
            bool isKilled = isWithinStep;
            for (int more = 1 + calls % stride; isKilled && !HasFailure(); more += stride) {
                SCOPED_TRACE(more);
                EXPECT_TRUE(crashFirst(calls));
                if (isBetweenSteps()) {
                    // A sanitizer made calls of its own, so that this crash came at another place.
                    break;
                }
                age();
                isKilled = crash(releasesNext, more);
                expectItCanBeFinished(more % 2 == 0);
                killedTwice += isKilled ? 1 : 0;
            }
        }
    }
    EXPECT_GT(killedTwice, 5);
}

INSTANTIATE_TEST_SUITE_P(ReleasesElseFetches, CloudDriveCrashTest, testing::Bool());

/// A user at work in the container, who knows the content that each file must have, while a
/// process releases and fetches all of it over and over, until it is killed.
TEST(CloudDriveChangeTest, nothingIsLostThatIsWrittenWhileReleasesAndFetchesGoOnAndAreKilled)
{
    const CloudFolders folders;
    const std::string work = folders.home.path("drive/Work");
    std::mt19937 random;
    std::string contents[6];
    std::string uploads[6];
    const std::size_t operations = scaled(200, 30'000);
    std::size_t placeholders = 0;
    pid_t releaser = -1;
    // Goes on until the releases have kept up with the changes, however busy the machine is.
    for (std::size_t i = 0; (i < operations || placeholders < operations / 100) &&
                            i < 20 * operations && !HasFailure();
         ++i) {
        const std::string name = "Work/" + std::to_string(i % 6);
        const std::string path = folders.home.path("drive/" + name);
        std::string& content = contents[i % 6];
        std::string& uploaded = uploads[i % 6];
        const auto expectSafe = [&](const char* when) {
            EXPECT_TRUE(isSafe(folders.content("drive/" + name), content, uploaded)) << when << i;
            EXPECT_TRUE(folders.content("mirror/" + name) == uploaded);
        };
        expectSafe("before ");
        placeholders += !content.empty() && folders.status("drive/" + name).st_blocks == 0 ? 1 : 0;
        const std::string text = bytes(1 + random() % 60'000, static_cast<unsigned>(random()));
        const auto operation = i < 6 ? 3 : random() % 5;
        if (operation == 0) {
            const std::size_t at = random() % (content.size() + 1);
            content.replace(at, text.size(), text);
            std::fstream stream(path, std::ios::binary | std::ios::in | std::ios::out);
            EXPECT_TRUE((stream.seekp(static_cast<std::streamoff>(at)) << text).flush().good());
        } else if (operation == 1) {
            content.resize(content.size() / 2);
            std::filesystem::resize_file(path, content.size());
        } else if (operation == 2) {
            content = text;
            std::filesystem::rename(folders.home.makeFile("drive/.new", text), path);
        } else {
            // Written anew and uploaded, so that it can be released again.
            content = uploaded = text;
            folders.home.makeFile("drive/" + name, text);
            folders.home.makeFile("mirror/" + name, text);
        }
        expectSafe("after ");
        if (i % 50 == 5) {
            endProcess(releaser);
            releaser = ::fork();
        }
        if (releaser == 0) {
            for (int request = 1;; ++request) {
                static_cast<void>(request % 8 == 0 ? folders.drive().fetch(work)
                                                   : folders.drive().release(work));
            }
        }
    }
    endProcess(releaser);
    EXPECT_GE(placeholders, operations / 100);
}

} // namespace
} // namespace CleanCoreTests
