#include "CleanCore/FileSystem/LinuxFileManager.h"

#include "CleanCore/Support/TaskPool.h"
#include "tests/Support/FailingCall.h"
#include "tests/Support/TemporaryFolder.h"

#include <algorithm>
#include <cerrno>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <system_error>

namespace {

using namespace CleanCore;
using CleanCoreTests::runWithFailingCall;
using CleanCoreTests::TemporaryFolder;
using Strings = std::vector<std::string>;

LinuxFileManager fileManager(std::optional<std::string> confinement = std::nullopt)
{
    return LinuxFileManager({}, std::move(confinement), std::make_shared<TaskPool>(1));
}

TEST(LinuxFileManager, ListsEveryNameInTheOrderOfItsBytes)
{
    const TemporaryFolder folder;
    Strings names = {"..hidden",  ".a",         "two\nlines",         "B", "a", "\xFF\xFE",
                     "caf\u00E9", "cafe\u0301", std::string(255, 'x')};
    for (int i = 0; i < 5000; ++i) {
        names.push_back("many-" + std::to_string(i));
    }
    for (const std::string& name : names) {
        folder.makeFile(name, "");
    }
    std::sort(names.begin(), names.end());
    EXPECT_EQ(fileManager().namesInFolder(folder.path()), names);
}

/// Whether an operation sees anything at `path`; all of them must agree.
bool isVisible(const LinuxFileManager& files, const std::string& path)
{
    const bool exists = files.exists(path);
    bool isListed = true;
    try {
        static_cast<void>(files.namesInFolder(path));
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code().value(), ENOENT) << path;
        isListed = false;
    }
    const auto measures = files.measure(path, Strings{"file"}, {});
    EXPECT_EQ(isListed, exists) << path;
    EXPECT_EQ(measures.at(0).identity.has_value(), exists) << path;
    EXPECT_EQ(measures.at(0).sizeBytes > 0, exists) << path;
    EXPECT_EQ(files.availableCapacity(path).has_value(), exists) << path;
    return exists;
}

TEST(LinuxFileManager, SeesNothingOutsideTheFolderThatItIsConfinedTo)
{
    const TemporaryFolder world;
    for (const char* const folder : {"home", "home/inner", "home-2", "outside", "outside/deep"}) {
        world.makeFile(std::string(folder) + "/file");
    }
    world.makeLink("home/to-inner", "inner");
    world.makeLink("home/out", "../outside");
    world.makeLink("home/out-and-back", "../outside/back");
    world.makeLink("outside/back", "../home/inner");
    world.makeLink("home/absolute", world.path("outside"));
    world.makeLink("home/kernel", "/proc/self/root" + world.path("outside"));
    world.makeLink("entrance", "home");

    for (const std::string confinement : {"home", "entrance", "home/"}) {
        const LinuxFileManager files = fileManager(world.path() + '/' + confinement);
        SCOPED_TRACE(confinement);
        for (const char* const path :
             {"home", "home/", "home/inner", "home/to-inner", "home/out-and-back", "entrance/inner",
              "outside/back", "outside/../home"}) {
            EXPECT_TRUE(isVisible(files, world.path() + '/' + path)) << path;
        }
        for (const char* const path :
             {"", "outside", "home-2", "home/..", "home/../outside", "home/out", "home/out/deep",
              "home/inner/../../outside", "home/absolute", "home/kernel", "home/missing"}) {
            EXPECT_FALSE(isVisible(files, world.path() + '/' + path)) << path;
        }
        EXPECT_FALSE(files.exists("/"));
        EXPECT_FALSE(files.exists("relative"));
        EXPECT_FALSE(files.exists(world.path("home") + std::string("\0/x", 3)));
    }
    EXPECT_TRUE(isVisible(fileManager(), world.path("home/kernel")));
}

TEST(LinuxFileManager, TakesNothingForMissingOnlyBecauseTheSystemLacksSomething)
{
    const TemporaryFolder folder;
    folder.makeFile("base/entry");
    const std::string base = folder.path("base");
    const auto isRefused = [](const auto& operation) {
        try {
            static_cast<void>(operation());
            return false;
        } catch (const std::system_error&) {
            return true;
        }
    };
    enum { exists = 1, cannotBeListed = 2, cannotBeMeasured = 4 };
    const auto answers = [&] {
        const LinuxFileManager files = fileManager();
        return (files.exists(base) ? exists : 0) |
               (isRefused([&] { return files.namesInFolder(base); }) ? cannotBeListed : 0) |
               // As nothing, it would be old enough for every age limit.
               (isRefused([&] { return files.measure(base, Strings{"entry"}, {}); })
                    ? cannotBeMeasured
                    : 0);
    };
    for (const int error : {EMFILE, ENFILE, ENOMEM}) {
        EXPECT_EQ(runWithFailingCall(SYS_openat, error, answers),
                  exists | cannotBeListed | cannotBeMeasured)
            << error;
    }
    EXPECT_EQ(runWithFailingCall(SYS_openat, EACCES, answers), cannotBeListed);
    EXPECT_EQ(answers(), exists);
}

} // namespace
