#include "CleanCore/Startup/HomeEnvironment.h"

#include "CleanCore/FileSystem/FileManager.h"
#include "tests/Support/RemovalFixture.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

namespace CleanCoreTests {
namespace {

using namespace CleanCore;

TEST(HomeEnvironment, PointsEverythingIntoAnotherHome)
{
    const TemporaryFolder world;
    world.make("home/ elsewhere/");
    const std::string home = world.path("home");
    constexpr const char* names[] = {
        "HOME", "TMPDIR", "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"};
    inChildProcess([&] {
        for (const bool isNamedByVariable : {false, true}) {
            for (const char* const name : names) {
                ::setenv(name, world.path("elsewhere").c_str(), 1);
            }
            ::setenv("HOME", home.c_str(), 1);
            const HomeEnvironment environment =
                HomeEnvironment::make(isNamedByVariable ? std::nullopt : std::optional(home));
            EXPECT_TRUE(environment.isConfined);
            for (const char* const name : names) {
                EXPECT_EQ(std::string(std::getenv(name)).find(home), 0U) << name;
            }
            EXPECT_EQ(environment.fileManager->perUserFolder(PerUserFolder::cache),
                      home + "/.cache");
            EXPECT_EQ(environment.fileManager->perUserFolder(PerUserFolder::temporary),
                      home + "/.tmp");
            EXPECT_FALSE(environment.fileManager->exists(world.path("elsewhere")));
        }
    });
}

TEST(HomeEnvironment, FindsTheFolderThatAPathMeans)
{
    const TemporaryFolder world;
    world.make("real/home/ home/ link->real");
    inChildProcess([&] {
        std::filesystem::current_path(world.path());
        const std::pair<std::string, std::string> rows[] = {
            {world.path("home") + "//./", world.path("home")},
            {world.path("link"), world.path("link")},
            {world.path("link/home/../home"), world.path("real/home")},
            {"home", world.path("home")},
        };
        for (const auto& [given, found] : rows) {
            EXPECT_EQ(HomeEnvironment::make(given).home, found) << given;
        }
    });
}

} // namespace
} // namespace CleanCoreTests
