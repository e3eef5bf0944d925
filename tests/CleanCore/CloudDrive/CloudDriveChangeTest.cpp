#include "tests/Support/CloudFolders.h"
#include "tests/Support/Setting.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iostream>
#include <random>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace CleanCoreTests {
namespace {

namespace fs = std::filesystem;

/// A process that releases and fetches the folder "Work" over and over, until it is killed.
class Releaser
{
public:
    explicit Releaser(const CloudFolders& folders) : m_child(::fork())
    {
        for (int i = 1; m_child == 0; ++i) {
            const std::string path = folders.local("Work");
            static_cast<void>(i % 8 == 0 ? folders.drive().fetch(path)
                                         : folders.drive().release(path));
        }
    }
    Releaser(const Releaser&) = delete;
    Releaser& operator=(const Releaser&) = delete;
    ~Releaser()
    {
        ::kill(m_child, SIGKILL);
        ::waitpid(m_child, nullptr, 0);
    }

private:
    pid_t m_child;
};

/// A user at work in the container, who knows the content that each file must have. No byte is
/// zero, so that a zero is a released byte.
class CloudDriveChangeTest : public testing::Test
{
protected:
    struct File
    {
        std::string name;
        std::string content;
        // The content in the mirror, and its name there.
        std::string uploaded;
        std::string mirrorName;
    };

    CloudDriveChangeTest()
    {
        for (File& file : files) {
            file.name = file.mirrorName = "Work/" + std::to_string(++names);
            file.content = file.uploaded = someBytes(60'000);
            folders.makePair(file.name, file.content);
        }
    }

    void check(const File& file)
    {
        ASSERT_TRUE(contentOf(folders.copy(file.mirrorName)) == file.uploaded);
        const auto missing = releasedBytes(folders.local(file.name), file.content, file.uploaded);
        ASSERT_TRUE(missing) << "lost";
        placeholdersMet += *missing > 0 && *missing == file.content.size() ? 1 : 0;
        partsMet += *missing > 0 && *missing < file.content.size() ? 1 : 0;
    }

    void change(File& file, unsigned operation)
    {
        const std::string path = folders.local(file.name);
        if (operation == 0) {
            write(path, file, file.content.size());
        } else if (operation == 1) {
            write(path, file, random() % (file.content.size() + 1));
        } else if (operation == 2) {
            file.content.resize(file.content.size() / 2);
            fs::resize_file(path, file.content.size());
        } else if (operation == 3) {
            file.content = someBytes(60'000);
            fs::rename(folders.home.makeFile("drive/.new", file.content), path);
        } else if (operation == 4) {
            file.name = "Work/renamed " + std::to_string(++names);
            fs::rename(path, folders.local(file.name));
        } else if (operation == 5) {
            fs::create_hard_link(path, folders.home.path("link " + std::to_string(++names)));
        } else {
            save(path, file);
        }
    }

    /// Writes the file anew, in place, and uploads it, so that it can be released again.
    void save(const std::string& path, File& file)
    {
        fs::remove(folders.copy(file.mirrorName));
        file.mirrorName = file.name;
        file.content = file.uploaded = someBytes(60'000);
        if (statusOf(path).st_nlink > 1) {
            fs::remove(path);
        }
        folders.home.makeFile("drive/" + file.name, file.content);
        fs::rename(folders.home.makeFile("mirror/.upload", file.content), folders.copy(file.name));
    }

    void write(const std::string& path, File& file, std::size_t offset)
    {
        const std::string text = someBytes(9000);
        file.content.resize(std::max(file.content.size(), offset + text.size()));
        file.content.replace(offset, text.size(), text);
        std::fstream stream(path, std::ios::binary | std::ios::in | std::ios::out);
        stream.seekp(static_cast<std::streamoff>(offset)) << text << std::flush;
        ASSERT_TRUE(stream.good());
    }

    std::string someBytes(std::size_t limit)
    {
        return bytes(1 + random() % limit, static_cast<unsigned>(random()));
    }

    CloudFolders folders = CloudFolders(reliabilityFolder());
    std::mt19937 random{static_cast<unsigned>(setting("ZORVANE_CHANGE_SEED", 1))};
    std::vector<File> files = std::vector<File>(12);
    int names = 0;
    int placeholdersMet = 0;
    int partsMet = 0;
};

TEST_F(CloudDriveChangeTest, nothingIsLostThatIsWrittenWhileReleasesAndFetchesGoOnAndAreKilled)
{
    const int operations = setting("ZORVANE_CHANGE_OPERATIONS", 200);
    std::optional<Releaser> releaser;
    // Goes on until the releases have kept up with the changes, however busy the machine is.
    for (int i = 0; i < operations || (placeholdersMet < operations / 100 && i < 20 * operations);
         ++i) {
        if (i % 50 == 0) {
            releaser.emplace(folders);
        }
        File& file = files[random() % files.size()];
        const unsigned operation = static_cast<unsigned>(random() % 8);
        ASSERT_NO_FATAL_FAILURE(check(file)) << "before " << operation;
        change(file, operation);
        ASSERT_NO_FATAL_FAILURE(check(file)) << "after " << operation;
    }
    EXPECT_GE(placeholdersMet, operations / 100);
    std::cout << placeholdersMet << " placeholders, " << partsMet << " parts of files met\n";
}

} // namespace
} // namespace CleanCoreTests
