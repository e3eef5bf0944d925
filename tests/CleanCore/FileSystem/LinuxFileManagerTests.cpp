#include "CleanCore/FileSystem/LinuxFileManager.h"

#include "CleanCore/FileSystem/EntryStatus.h"
#include "CleanCore/Support/TaskPool.h"
#include "tests/Support/FailingCall.h"
#include "tests/Support/TemporaryFolder.h"

#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <system_error>

namespace CleanCoreTests {
namespace {

using namespace CleanCore;

int errorOf(const std::function<void()>& operation)
{
    try {
        operation();
        return 0;
    } catch (const std::system_error& error) {
        return error.code().value();
    }
}

/// Whether an operation sees anything at `path`; all of them must agree.
bool isVisible(const LinuxFileManager& files, const std::string& path)
{
    const bool exists = files.exists(path);
    EXPECT_EQ(errorOf([&] { static_cast<void>(files.namesInFolder(path)); }), exists ? 0 : ENOENT);
    EXPECT_EQ(files.measure(path, {{"file"}}, {}).at(0).identity.has_value(), exists) << path;
    EXPECT_EQ(files.attributes(path + "/file").has_value(), exists) << path;
    EXPECT_EQ(files.availableCapacity(path).has_value(), exists) << path;
    return exists;
}

TEST(EntryIdentity, TellsAnEntryFromTheOneThatHadItsInodeBefore)
{
    const TemporaryFolder root;
    EntryStatus seen, next;
    // Several entries are born in one tick of the file system's clock.
    for (int tries = 0; next.identity == seen.identity && tries < 100'000; ++tries) {
        ASSERT_EQ(readStatus(AT_FDCWD, root.makeFile("file").c_str(), next), 0);
        seen = tries == 0 ? next : seen;
        root.remove("file");
    }
    EXPECT_NE(next.identity, seen.identity);
}

TEST(LinuxFileManager, SeesNothingOutsideTheFolderThatItIsConfinedTo)
{
    const TemporaryFolder world;
    world.make(
        "home/file home/inner/file home-2/file outside/file outside/deep/file entrance->home "
        "home/out->../outside home/out-and-back->../outside/back outside/back->../home/inner");
    world.make("home/kernel->/proc/self/root" + world.path("outside"));
    for (const std::string confinement : {"/entrance", "/home/"}) {
        const LinuxFileManager files({}, world.path() + confinement, std::make_shared<TaskPool>(1));
        for (const char* const path :
             {"/home", "/home/out-and-back", "/entrance/inner", "/outside/back"}) {
            EXPECT_TRUE(isVisible(files, world.path() + path)) << path;
        }
        for (const char* const path : {"", "/outside", "/home-2", "/home/../outside", "/home/out",
                                       "/home/out/deep", "/home/kernel", "/home/missing"}) {
            EXPECT_FALSE(isVisible(files, world.path() + path)) << path;
            EXPECT_FALSE(files.visitTree(world.path() + path, [](auto&&) { return true; }));
        }
        EXPECT_FALSE(files.exists(world.path("home") + std::string("\0/x", 3)));
    }
}

TEST(LinuxFileManager, TakesNothingForMissingOnlyBecauseTheSystemLacksSomething)
{
    const TemporaryFolder folder;
    folder.make("base/entry");
    const std::string base = folder.path("base");
    enum { exists = 1, cannotBeListed = 2, cannotBeMeasured = 4, unknown = 7 };
    const auto answers = [&] {
        const LinuxFileManager files({}, std::nullopt, std::make_shared<TaskPool>(1));
        const int list = errorOf([&] { static_cast<void>(files.namesInFolder(base)); });
        // As nothing, it would be old enough for every age limit.
        const int size = errorOf([&] { static_cast<void>(files.measure(base, {{"entry"}}, {})); });
        return (files.exists(base) ? exists : 0) | (list != 0 ? cannotBeListed : 0) |
               (size != 0 ? cannotBeMeasured : 0);
    };
    for (const int error : {EMFILE, ENFILE, ENOMEM}) {
        EXPECT_EQ(runWithFailingCall(SYS_openat, error, answers), unknown) << error;
    }
    EXPECT_EQ(runWithFailingCall(SYS_openat, EACCES, answers), cannotBeListed | cannotBeMeasured);
}

} // namespace
} // namespace CleanCoreTests
