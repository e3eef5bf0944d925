#include "CleanCore/Startup/HomeEnvironment.h"

#include "CleanCore/FileSystem/FileManager.h"
#include "CleanCore/Rules/PathExpander.h"
#include "CleanCore/Startup/StartError.h"
#include "tests/Support/TemporaryFolder.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>

namespace CleanCoreTests {

using namespace CleanCore;
using Strings = std::vector<std::string>;

namespace {

constexpr const char* names[] = {
    "HOME", "TMPDIR", "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"};

/// Keeps the process's variables and its current folder as they were.
struct HomeEnvironmentTest : testing::Test
{
    HomeEnvironmentTest()
    {
        for (const char* const name : names) {
            const char* const value = std::getenv(name);
            m_before[name] = value != nullptr ? std::optional<std::string>(value) : std::nullopt;
        }
    }
    ~HomeEnvironmentTest() override
    {
        std::filesystem::current_path(m_folder);
        for (const auto& [name, value] : m_before) {
            value ? ::setenv(name, value->c_str(), 1) : ::unsetenv(name);
        }
    }

    const TemporaryFolder world;

private:
    std::map<const char*, std::optional<std::string>> m_before;
    std::string m_folder = std::filesystem::current_path();
};

} // namespace

TEST_F(HomeEnvironmentTest, PointsEverythingIntoAnotherHome)
{
    world.make("home/ elsewhere/");
    const std::string home = world.path("home");
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

std::optional<StartFault> faultOf(const std::string& home)
{
    try {
        static_cast<void>(HomeEnvironment::make(home));
        return std::nullopt;
    } catch (const StartError& error) {
        return error.fault;
    }
}

TEST_F(HomeEnvironmentTest, FindsTheFolderThatAPathMeansAndRefusesWhatCannotBeWorkedIn)
{
    world.make("real/home/ home/ link->real file dangling->nowhere root->/ sealed/=0 "
               "unlistable/=0300 gone/");
    std::filesystem::current_path(world.path());
    const std::pair<std::string, std::string> rows[] = {
        {world.path("home") + "//./", world.path("home")},
        {world.path("link"), world.path("link")},
        {world.path("link/home/../home"), world.path("real/home")},
        {"home", world.path("home")},
        {".", world.path()}};
    for (const auto& [given, home] : rows) {
        EXPECT_EQ(HomeEnvironment::make(given).home, home) << given;
    }
    using enum StartFault;
    const std::pair<std::string, StartFault> refused[] = {{"", homeEmpty},
                                                          {"/", homeHoldsAccount},
                                                          {"missing", homeMissing},
                                                          {"file", homeNotAFolder},
                                                          {"dangling", homeMissing},
                                                          {"sealed", homeUnreadable},
                                                          {"unlistable", homeUnreadable},
                                                          {"file/x", homeMissing},
                                                          {"root", homeHoldsAccount},
                                                          {{"home\0/", 6}, homeMissing}};
    for (const auto& [home, fault] : refused) {
        EXPECT_EQ(faultOf(home), fault) << home;
    }
    std::filesystem::current_path(world.path("gone"));
    world.remove("gone");
    EXPECT_EQ(faultOf("tmp"), homeMissing);
}

} // namespace CleanCoreTests
