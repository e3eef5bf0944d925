// Trees of every shape: deep and wide.

#include "tests/Support/RemovalFixture.h"

#include <fcntl.h>
#include <filesystem>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace CleanCoreTests {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr long kibibytesAllowed = 256L * 1024; // Sanitizers hold freed memory back.
#else
constexpr long kibibytesAllowed = 14L * 1024;
#endif

class RemovalShape : public RemovalFixture
{
protected:
    // In memory: a journal makes a tree of this depth take a minute to go, whoever removes it.
    RemovalShape() : RemovalFixture("/dev/shm") {}
};

TEST_F(RemovalShape, ADeepTreeNeedsFewDescriptors)
{
    // Made step by step: no path names the end of it.
    int folder = ::open(home.makeFolder(".cache/entry").c_str(), O_PATH | O_CLOEXEC);
    for (int depth = 0; depth < 10'000; ++depth) {
        ASSERT_EQ(::mkdirat(folder, "d", 0755), 0);
        ASSERT_EQ(::mkdirat(folder, "beside", 0755), 0);
        const int next = ::openat(folder, "d", O_PATH | O_CLOEXEC);
        ::close(folder);
        folder = next;
    }
    ::close(folder);
    inChildProcess([&] {
        const rlimit few = {32, 32};
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
        EXPECT_EQ(remove(".cache/entry"), 0);
    });
    EXPECT_FALSE(home.has(".cache/entry"));
}

TEST_F(RemovalShape, AFlatFolderTakesLittleMemory)
{
    makeFiles(home, ".cache/entry/files", scaled(50'000, 1'000'000));
    // Their names alone take 10 MB, so that the folder is read in parts.
    for (std::size_t i = 0; i < 40'000; ++i) {
        std::filesystem::create_directory(
            home.path(".cache/entry/" + std::string(245, 'x') + std::to_string(i)));
    }
    inChildProcess([&] {
        rusage before = {}, after = {};
        ::getrusage(RUSAGE_SELF, &before);
        EXPECT_EQ(remove(".cache/entry"), 0);
        ::getrusage(RUSAGE_SELF, &after);
        EXPECT_LT(after.ru_maxrss - before.ru_maxrss, kibibytesAllowed);
    });
    EXPECT_FALSE(home.has(".cache/entry"));
}

} // namespace
} // namespace CleanCoreTests
