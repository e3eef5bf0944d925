#include "CleanCore/Startup/HomeEnvironment.h"

#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/Rules/PathExpander.h"
#include "CleanCore/Startup/StartError.h"
#include "tests/Support/TemporaryFolder.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>

namespace {

using namespace CleanCore;
using CleanCoreTests::TemporaryFolder;
using Strings = std::vector<std::string>;

constexpr const char* names[] = {
    "HOME", "TMPDIR", "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"};

/// Keeps the process's variables as they were.
struct HomeEnvironmentTest : testing::Test
{
    std::map<const char*, std::optional<std::string>> before;

    void SetUp() override
    {
        for (const char* const name : names) {
            const char* const value = std::getenv(name);
            before[name] = value != nullptr ? std::optional<std::string>(value) : std::nullopt;
        }
    }
    void TearDown() override
    {
        for (const auto& [name, value] : before) {
            value ? ::setenv(name, value->c_str(), 1) : ::unsetenv(name);
        }
    }
};

TEST_F(HomeEnvironmentTest, PointsEverythingIntoAnotherHome)
{
    const TemporaryFolder world;
    const std::string home = world.makeFolder("home");
    world.makeFolder("elsewhere");
    for (const bool isNamedByVariable : {false, true}) {
        for (const char* const name : names) {
            ::setenv(name, world.path("elsewhere").c_str(), 1);
        }
        ::setenv("HOME", home.c_str(), 1);
        const HomeEnvironment environment =
            HomeEnvironment::make(isNamedByVariable ? std::nullopt : std::optional(home));
        EXPECT_TRUE(environment.isConfined);
        EXPECT_EQ(environment.home, home);
        for (const char* const name : names) {
            EXPECT_EQ(std::string(std::getenv(name)).find(home), 0U) << name;
        }
        EXPECT_EQ(
            PathExpander::expandAll(Strings{"$DARWIN_USER_CACHE_DIR", "$DARWIN_USER_TEMP_DIR"},
                                    home, *environment.fileManager),
            (Strings{home + "/.cache", home + "/.tmp"}));
        EXPECT_FALSE(environment.fileManager->exists(world.path("elsewhere")));
        EXPECT_FALSE(environment.fileManager->exists("/tmp"));
    }
}

TEST_F(HomeEnvironmentTest, FindsTheFolderThatAPathMeans)
{
    const TemporaryFolder world;
    world.makeFolder("real/home");
    world.makeFolder("home");
    world.makeLink("link", "real");
    const struct
    {
        std::string given;
        std::string home;
    } cases[] = {{world.path("home") + "//./", world.path("home")},
                 {world.path("link"), world.path("link")},
                 {world.path("link/home/../home"), world.path("real/home")},
                 {"home", world.path("home")},
                 {".", world.path()}};
    const std::string before = std::filesystem::current_path();
    std::filesystem::current_path(world.path());
    for (const auto& [given, home] : cases) {
        EXPECT_EQ(HomeEnvironment::make(given).home, home) << given;
    }
    std::filesystem::current_path(before);
}

std::optional<StartFault> faultOf(const std::string& home)
{
    try {
        static_cast<void>(HomeEnvironment::make(home));
        return std::nullopt;
    } catch (const StartError& error) {
        return error.fault;
    }
}

TEST_F(HomeEnvironmentTest, RefusesAHomeThatCannotBeWorkedIn)
{
    const TemporaryFolder world;
    world.makeFile("file");
    world.makeLink("dangling", "nowhere");
    world.makeLink("root", "/");
    world.makeFolder("sealed");
    world.setMode("sealed", 0);
    world.makeFolder("unlistable");
    world.setMode("unlistable", 0300);
    using enum StartFault;
    const std::pair<std::string, StartFault> cases[] = {
        {"", homeEmpty},
        {world.path("missing"), homeMissing},
        {world.path("file"), homeNotAFolder},
        {world.path("dangling"), homeMissing},
        {world.path("sealed"), homeUnreadable},
        {world.path("unlistable"), homeUnreadable},
        {world.path("file/x"), homeMissing},
        {world.path() + std::string("\0/", 2), homeMissing},
        {"/", homeHoldsAccount},
        {world.path("root"), homeHoldsAccount}};
    for (const auto& [home, fault] : cases) {
        EXPECT_EQ(faultOf(home), fault) << home;
    }
    const std::string before = std::filesystem::current_path();
    std::filesystem::current_path(world.makeFolder("gone"));
    std::filesystem::remove(world.path("gone"));
    EXPECT_EQ(faultOf("tmp"), homeMissing);
    std::filesystem::current_path(before);
}

} // namespace
