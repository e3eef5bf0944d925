#include "CleanCore/CloudDrive/StandIn/CloudMarker.h"
#include "CleanCore/Support/FileDescriptor.h"
#include "tests/Support/CloudFolders.h"
#include "tests/Support/FailingCall.h"
#include "tests/Support/Setting.h"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/wait.h>

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

    void expectItCanBeFinished(bool releasesToo) const
    {
        if (releasesToo) {
            EXPECT_TRUE(succeeds(true));
            EXPECT_EQ(status().st_blocks, 0);
            EXPECT_EQ(status().st_mtim.tv_sec, 1'600'000'000);
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
    const auto crashFirst = [&](int calls) {
        return succeeds(!GetParam()) && crash(GetParam(), calls);
    };
    // Within a step, a crash looks the same after several calls.
    const int stride = static_cast<int>(scaled(8, 1));
    int killedTwice = 0;
    for (int calls = 1; crashFirst(calls) && !HasFailure(); ++calls) {
        SCOPED_TRACE(calls);
        const bool isWithinStep = status().st_mtim.tv_sec != 1'600'000'000;
        expectItCanBeFinished(calls % 2 == 0);
        for (const bool releasesNext : {true, false}) {
            bool isKilled = isWithinStep;
            for (int more = 1 + calls % stride; isKilled && !HasFailure(); more += stride) {
                SCOPED_TRACE(more);
                EXPECT_TRUE(crashFirst(calls));
                if (status().st_mtim.tv_sec == 1'600'000'000) {
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

struct File
{
    std::string name;
    std::string content;
    std::string uploaded;
};

/// A user at work in the container, who knows the content that each file must have, while a
/// process releases and fetches all of it over and over, until it is killed.
struct CloudDriveChangeTest : testing::Test
{
    ~CloudDriveChangeTest() override { restart(false); }

    void restart(bool goesOn = true)
    {
        if (releaser > 0) {
            ::kill(releaser, SIGKILL);
            ::waitpid(releaser, nullptr, 0);
        }
        releaser = goesOn ? ::fork() : -1;
        for (int i = 1; releaser == 0; ++i) {
            const std::string path = folders.home.path("drive/Work");
            static_cast<void>(i % 8 == 0 ? folders.drive().fetch(path)
                                         : folders.drive().release(path));
        }
    }

    void change(File& file, unsigned operation)
    {
        const std::string path = folders.home.path("drive/" + file.name);
        const std::string text = someBytes();
        if (operation == 0) {
            const std::size_t at = random() % (file.content.size() + 1);
            file.content.replace(at, text.size(), text);
            std::fstream stream(path, std::ios::binary | std::ios::in | std::ios::out);
            stream.seekp(static_cast<std::streamoff>(at)) << text << std::flush;
            ASSERT_TRUE(stream.good());
        } else if (operation == 1) {
            file.content.resize(file.content.size() / 2);
            std::filesystem::resize_file(path, file.content.size());
        } else if (operation == 2) {
            file.content = text;
            std::filesystem::rename(folders.home.makeFile("drive/.new", text), path);
        } else {
            // Written anew and uploaded, so that it can be released again.
            file.content = file.uploaded = text;
            folders.home.makeFile("drive/" + file.name, text);
            folders.home.makeFile("mirror/" + file.name, text);
        }
    }

    std::string someBytes()
    {
        return bytes(1 + random() % 60'000, static_cast<unsigned>(random()));
    }

    CloudFolders folders;
    std::mt19937 random;
    pid_t releaser = -1;
};

TEST_F(CloudDriveChangeTest, nothingIsLostThatIsWrittenWhileReleasesAndFetchesGoOnAndAreKilled)
{
    std::vector<File> files;
    for (const char* name : {"Work/a", "Work/b", "Work/c", "Work/d", "Work/e", "Work/f"}) {
        const std::string content = someBytes();
        folders.makePair(name, content);
        files.push_back({name, content, content});
    }
    const std::size_t operations = scaled(200, 30'000);
    std::size_t placeholders = 0;
    // Goes on until the releases have kept up with the changes, however busy the machine is.
    for (std::size_t i = 0;
         i < operations || (placeholders < operations / 100 && i < 20 * operations); ++i) {
        if (i % 50 == 0) {
            restart();
        }
        File& file = files[random() % files.size()];
        const auto isFileSafe = [&] {
            return isSafe(folders.content("drive/" + file.name), file.content, file.uploaded);
        };
        const bool isReleased = folders.status("drive/" + file.name).st_blocks == 0;
        placeholders += !file.content.empty() && isReleased ? 1 : 0;
        const unsigned operation = static_cast<unsigned>(random() % 5);
        ASSERT_TRUE(isFileSafe()) << "before " << operation;
        change(file, operation);
        ASSERT_TRUE(isFileSafe()) << "after " << operation;
        ASSERT_TRUE(folders.content("mirror/" + file.name) == file.uploaded);
    }
    EXPECT_GE(placeholders, operations / 100);
}

} // namespace
} // namespace CleanCoreTests
