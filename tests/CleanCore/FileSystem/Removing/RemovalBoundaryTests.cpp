// Where a removal has to stop: at mounts, at links, and at everything that is not inside the base.

#include "CleanCore/Support/TaskPool.h"
#include "tests/Support/RemovalFixture.h"

#include <cerrno>

namespace CleanCoreTests {
namespace {

using namespace CleanCore;

class RemovalBoundary : public RemovalFixture, public testing::WithParamInterface<PinMethod>
{
protected:
    [[nodiscard]] int removeFrom(const std::string& inBase, const std::string& path) const
    {
        return beginRemoval(GetParam())->remove(inBase, path, std::nullopt).error;
    }
};

TEST_P(RemovalBoundary, AMountIsKeptAndWhatLiesBehindItIsNotTouched)
{
    // What is mounted where, and what is removed.
    const std::tuple<const char*, const char*, const char*> mounts[] = {
        {"Documents", ".cache/entry/deep/mount", ".cache/entry"},
        {"elsewhere", ".cache/entry", ".cache/entry"},
        {"elsewhere", ".cache/entry", ".cache/entry/deep"},
        {"Documents/canary", ".cache/entry/deep/file", ".cache/entry"},
        {"Documents/canary", ".cache/file", ".cache/file"},
    };
    for (const auto& mount : mounts) {
        home.make(
            "elsewhere/deep/kept .cache/file .cache/entry/deep/file .cache/entry/deep/mount/");
        inMountNamespace([&] {
            bindMount(home.path(std::get<0>(mount)), home.path(std::get<1>(mount)));
            EXPECT_EQ(removeFrom(base, home.path(std::get<2>(mount))), EXDEV) << std::get<1>(mount);
            EXPECT_EQ(home.tree("elsewhere"), "deep/kept");
        });
        expectCanaries();
    }
}

TEST_P(RemovalBoundary, WhatIsNotInsideTheBaseIsRefused)
{
    home.make("elsewhere/file .cache2/file .cache/entry/file .cache/out->~/elsewhere "
              ".cache/private->~/Documents");
    const std::tuple<const char*, std::string, int> cases[] = {
        {".cache", ".cache", EINVAL},
        {".cache", "", EINVAL},
        {".cache", "elsewhere/file", EINVAL},
        {".cache", ".cache2/file", EINVAL},
        {".cache", ".cache/../elsewhere/file", EINVAL},
        {".cache", ".cache/entry/..", EINVAL},
        {".cache", std::string(".cache/entry\0x", 14), EINVAL},
        {".cache", ".cache/out/file", ELOOP},
        {".cache", ".cache/private/canary", ELOOP},
        {"", "Documents", protectedEntryError},
        {"", "Documents/canary", protectedEntryError},
        {"Documents", "Documents/canary", protectedEntryError},
        {"..", "", protectedEntryError},
        {".cache", ".cache/missing", ENOENT},
        {".cache/entry/file", ".cache/entry/file/x", ENOTDIR},
    };
    const std::string before = home.tree();
    for (const auto& [inBase, path, error] : cases) {
        const int answer = removeFrom(home.path(inBase), home.path(path));
        // Without openat2 a link on the way shows as what it is not: a folder.
        EXPECT_TRUE(answer == error || (error == ELOOP && answer == ENOTDIR))
            << inBase << ", " << path << ": " << answer;
    }
    EXPECT_EQ(home.tree(), before);
    expectCanaries();
}

TEST_P(RemovalBoundary, LinksLeadToABaseAndAreRemovedThemselves)
{
    home.make("alias->.cache elsewhere/file .cache/one->~/Documents .cache/two/link->~/elsewhere "
              ".cache/three/");
    EXPECT_EQ(removeFrom(home.path("alias"), home.path("alias/one")), 0);
    EXPECT_EQ(removeFrom(home.path("alias"), home.path(".cache/two")), 0);
    EXPECT_EQ(removeFrom(base + "/", home.path("alias/three/")), 0);
    EXPECT_EQ(home.tree(".cache"), "");
    EXPECT_EQ(home.tree("elsewhere"), "file");
    expectCanaries();
}

TEST_P(RemovalBoundary, AProtectedFolderIsKnownUnderAnyName)
{
    const auto removal = beginRemoval(GetParam());
    // Renamed into the item after the clean began, and something else put in its place.
    home.make(".cache/entry/");
    home.move("Documents", ".cache/entry/moved");
    home.make("Documents/");
    EXPECT_EQ(removal->remove(base, home.path(".cache/entry"), std::nullopt).error, EPERM);
    home.move(".cache/entry/moved", "Documents");
    expectCanaries();
}

TEST_P(RemovalBoundary, AProtectedFolderThatLeadsToHomeProtectsNothing)
{
    home.make(".cache/old/file Desktop->.");
    LinuxRemoval removal(home.path(), std::vector<std::string>{home.path("Desktop"), "/"},
                         std::nullopt, std::make_shared<TaskPool>(1), GetParam());
    EXPECT_EQ(removal.remove(base, home.path(".cache/old"), std::nullopt).error, 0);
    EXPECT_EQ(removal.remove(home.path(".."), home.path(), std::nullopt).error,
              protectedEntryError);
    expectCanaries();
}

INSTANTIATE_TEST_SUITE_P(Removal, RemovalBoundary,
                         testing::Values(PinMethod::kernelResolution, PinMethod::stepByStep));

} // namespace
} // namespace CleanCoreTests
