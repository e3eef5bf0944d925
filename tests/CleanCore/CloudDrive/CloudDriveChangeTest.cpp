#include "tests/Support/CloudFolders.h"
#include "tests/Support/Setting.h"

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace CleanCoreTests {
namespace {

struct File
{
    std::string name;
    std::string content;
    std::string uploaded;
};

/// A user at work in the container, who knows the content that each file must have, while a
/// process releases and fetches all of it over and over, until it is killed.
class CloudDriveChangeTest : public testing::Test
{
protected:
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
            // Written anew, in place, and uploaded, so that it can be released again.
            folders.home.remove("mirror/" + file.name);
            file.content = file.uploaded = text;
            folders.home.makeFile("drive/" + file.name, text);
            folders.home.makeFile("mirror/.upload", text);
            folders.home.move("mirror/.upload", "mirror/" + file.name);
        }
    }

    std::string someBytes()
    {
        return bytes(1 + random() % 60'000, static_cast<unsigned>(random()));
    }

    CloudFolders folders = CloudFolders(reliabilityFolder());
    std::mt19937 random{static_cast<unsigned>(setting("ZORVANE_CHANGE_SEED", 1))};
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
    const int operations = setting("ZORVANE_CHANGE_OPERATIONS", 200);
    int placeholders = 0;
    // Goes on until the releases have kept up with the changes, however busy the machine is.
    for (int i = 0; i < operations || (placeholders < operations / 100 && i < 20 * operations);
         ++i) {
        if (i % 50 == 0) {
            restart();
        }
        File& file = files[random() % files.size()];
        const std::string path = folders.home.path("drive/" + file.name);
        placeholders += statusOf(path).st_blocks == 0 ? 1 : 0;
        const unsigned operation = static_cast<unsigned>(random() % 5);
        ASSERT_TRUE(isSafe(path, file.content, file.uploaded)) << "before " << operation;
        change(file, operation);
        ASSERT_TRUE(isSafe(path, file.content, file.uploaded)) << "after " << operation;
        ASSERT_TRUE(contentOf(folders.home.path("mirror/" + file.name)) == file.uploaded);
    }
    EXPECT_GE(placeholders, operations / 100);
}

} // namespace
} // namespace CleanCoreTests
