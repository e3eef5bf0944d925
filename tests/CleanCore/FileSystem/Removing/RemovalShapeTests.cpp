// Trees of every shape: deep and wide.

#include "tests/Support/RemovalFixture.h"

#include <fcntl.h>
#include <filesystem>
#include <sys/resource.h>
#include <sys/stat.h>
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
    void makeDeep(std::size_t depth) const
    {
        int folder = ::open(home.makeFolder(".cache/entry").c_str(), O_PATH | O_CLOEXEC);
        for (std::size_t i = 0; i < depth; ++i) {
            ASSERT_EQ(::mkdirat(folder, "d", 0755), 0);
            ASSERT_EQ(::mkdirat(folder, "beside", 0755), 0);
            ::close(::openat(folder, "file", O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
            const int next = ::openat(folder, "d", O_PATH | O_CLOEXEC);
            ::close(folder);
            folder = next;
        }
        ::close(folder);
    }
};

TEST_F(RemovalShape, ADeepTreeNeedsFewDescriptors)
{
    makeDeep(10'000);
    inChildProcess([&] {
        const rlimit few = {32, 32};
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
        EXPECT_EQ(remove(".cache/entry"), 0);
    });
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

} // namespace
} // namespace CleanCoreTests
