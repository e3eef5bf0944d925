// Trees of every shape: deep, wide, oddly named, and full of things that are not files.

#include "CleanCore/Support/PathText.h"
#include "tests/Reliability/RemovalFixture.h"

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace CleanCoreTests {
namespace {

class RemovalShape : public RemovalFixture
{
protected:
    // In memory: a journal makes a tree of this depth take a minute to go, whoever removes it.
    RemovalShape() : RemovalFixture("/dev/shm") {}

    /// A chain of folders below ".cache/entry", each with a file and a second folder, made step by
    /// step: no path names the end of it.
    void makeDeep(std::size_t depth, const std::string& name) const
    {
        int folder = ::open(home.makeFolder(".cache/entry").c_str(), O_PATH | O_CLOEXEC);
        for (std::size_t i = 0; i < depth; ++i) {
            ASSERT_EQ(::mkdirat(folder, name.c_str(), 0755), 0);
            ASSERT_EQ(::mkdirat(folder, "beside", 0755), 0);
            ::close(::openat(folder, "file", O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
            const int next = ::openat(folder, name.c_str(), O_PATH | O_CLOEXEC);
            ::close(folder);
            folder = next;
        }
        ::close(folder);
    }
};

TEST_F(RemovalShape, ADeepTreeNeedsFewDescriptors)
{
    makeDeep(10'000, "d");
    inChildProcess([&] {
        const rlimit few = {32, 32};
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
        EXPECT_EQ(remove(".cache/entry"), 0);
    });
    EXPECT_FALSE(home.has(".cache/entry"));
}

TEST_F(RemovalShape, PathsLongerThanThePathLimit)
{
    makeDeep(100, std::string(255, 'n'));
    EXPECT_EQ(remove(".cache/entry"), 0);
    EXPECT_FALSE(home.has(".cache/entry"));
}

TEST_F(RemovalShape, AFlatFolderTakesLittleMemory)
{
    const std::size_t count = scaled(50'000, 1'000'000);
    makeFiles(home, ".cache/entry/files", count);
    for (std::size_t i = 0; i < count / 10; ++i) {
        std::filesystem::create_directory(home.path(".cache/entry/" + std::to_string(i)));
    }
    inChildProcess([&] {
        rusage before = {};
        ::getrusage(RUSAGE_SELF, &before);
        EXPECT_EQ(remove(".cache/entry"), 0);
        rusage after = {};
        ::getrusage(RUSAGE_SELF, &after);
        constexpr long kibibytesAllowed = 64L * 1024;
        EXPECT_LT(after.ru_maxrss - before.ru_maxrss, kibibytesAllowed);
    });
    EXPECT_FALSE(home.has(".cache/entry"));
}

TEST_F(RemovalShape, SpecialFilesGoAndAreNeverOpened)
{
    const std::string entry = home.makeFolder(".cache/entry");
    // Opening a FIFO without a writer would wait for ever.
    ASSERT_EQ(::mkfifo((entry + "/fifo").c_str(), 0644), 0);
    ASSERT_EQ(::mkfifo(home.path(".cache/fifo").c_str(), 0), 0);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    (entry + "/socket").copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ::close(socket);
    home.makeFile(".cache/entry/sparse");
    ASSERT_EQ(::truncate((entry + "/sparse").c_str(), off_t{1} << 40), 0);
    EXPECT_EQ(remove(".cache/fifo"), 0);
    EXPECT_EQ(remove(".cache/entry"), 0);
    EXPECT_EQ(countEntries(base), 0U);
}

TEST_F(RemovalShape, AFileLinkedOutsideKeepsItsOtherName)
{
    home.makeFile("outside", "kept");
    home.makeFile(".cache/entry/first");
    std::filesystem::create_hard_link(home.path("outside"), home.path(".cache/entry/outside"));
    std::filesystem::create_hard_link(home.path(".cache/entry/first"),
                                      home.path(".cache/entry/second"));
    EXPECT_EQ(remove(".cache/entry"), 0);
    std::ifstream file(home.path("outside"));
    std::string content;
    file >> content;
    EXPECT_EQ(content, "kept");
}

} // namespace
} // namespace CleanCoreTests
