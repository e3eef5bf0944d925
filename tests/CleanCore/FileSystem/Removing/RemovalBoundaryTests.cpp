// Where a removal has to stop: at mounts, at links, and at everything that is not inside the base.

#include "CleanCore/Cleaning/CleanEngine.h"
#include "CleanCore/FileSystem/LinuxFileManager.h"
#include "tests/Support/RemovalFixture.h"

#include <cerrno>
#include <filesystem>
#include <sys/mount.h>
#include <thread>

namespace CleanCoreTests {
namespace {

using namespace CleanCore;

class RemovalBoundary : public RemovalFixture, public testing::WithParamInterface<PinMethod>
{
protected:
    [[nodiscard]] int removeBy(PinMethod method, const std::string& inBase,
                               const std::string& path) const
    {
        LinuxRemoval removal(home.path(), std::vector<std::string>{documents}, std::nullopt, pool(),
                             method);
        return removal.remove(inBase, path, std::nullopt).error;
    }
};

/// A mount somewhere in the item.
struct MountCase
{
    const char* description;
    /// What is bound there, below home; nothing for a new file system.
    const char* source;
    const char* at;
    const char* removed;
};

constexpr MountCase mounts[] = {
    {"a protected folder inside", "Documents", ".cache/entry/deep/mount", ".cache/entry"},
    {"a protected folder over the item", "Documents", ".cache/entry", ".cache/entry"},
    {"another folder inside", "elsewhere", ".cache/entry/deep/mount", ".cache/entry"},
    {"a bind cycle: the base inside", ".cache", ".cache/entry/deep/mount", ".cache/entry"},
    {"another file system inside", nullptr, ".cache/entry/deep/mount", ".cache/entry"},
    {"a file over a file", "Documents/canary", ".cache/entry/deep/file", ".cache/entry"},
    {"a file over the item", "Documents/canary", ".cache/file", ".cache/file"},
    {"a mount on the way to the item", "elsewhere", ".cache/entry", ".cache/entry/deep"},
};

TEST_P(RemovalBoundary, AMountIsKeptAndWhatLiesBehindItIsNotTouched)
{
    for (const MountCase& mount : mounts) {
        SCOPED_TRACE(mount.description);
        std::filesystem::remove_all(home.path("elsewhere"));
        home.makeFile("elsewhere/deep/kept");
        home.makeFile(".cache/entry/deep/file");
        home.makeFile(".cache/entry/other/file");
        home.makeFolder(".cache/entry/deep/mount");
        home.makeFile(".cache/file");
        inMountNamespace([&] {
            if (mount.source != nullptr) {
                bindMount(home.path(mount.source), home.path(mount.at));
            } else {
                mountTemporaryFileSystem(home.path(mount.at));
            }
            const std::string behind = snapshot(home.path("elsewhere"));
            EXPECT_NE(removeBy(GetParam(), base, home.path(mount.removed)), 0);
            EXPECT_TRUE(home.has(mount.removed));
            EXPECT_EQ(snapshot(home.path("elsewhere")), behind);
            expectCanaries();
        });
        expectCanaries();
    }
}

TEST_P(RemovalBoundary, ABaseThatShowsAProtectedFolderLosesNothing)
{
    inMountNamespace([&] {
        const auto removal = beginRemoval();
        bindMount(documents, base);
        EXPECT_EQ(removal->remove(base, home.path(".cache/entry"), std::nullopt).error,
                  protectedEntryError);
        expectCanaries();
    });
}

TEST_P(RemovalBoundary, WhatIsNotInsideTheBaseIsRefused)
{
    home.makeFile(".cache/entry/file");
    home.makeFile("elsewhere/file");
    home.makeLink("alias", ".cache");
    home.makeLink(".cache/out", home.path("elsewhere"));
    home.makeLink(".cache/to-documents", documents);
    struct
    {
        const char* description;
        std::string base;
        std::string path;
        int error;
    } const cases[] = {
        {"the base itself", base, base, EINVAL},
        {"the base with a slash", base, base + "/", EINVAL},
        {"above the base", base, home.path(), EINVAL},
        {"beside the base", base, home.path("elsewhere/file"), EINVAL},
        {"a name that begins like the base", base, base + "2/file", EINVAL},
        {"dot", base, base + "/.", EINVAL},
        {"out by dots", base, base + "/../elsewhere/file", EINVAL},
        {"dots at the end", base, base + "/entry/..", EINVAL},
        {"an end in the text", base, base + "/entry" + std::string("\0", 1) + "x", EINVAL},
        {"through a link", base, base + "/out/file", ELOOP},
        {"through a link to a protected folder", base, base + "/to-documents/canary", ELOOP},
        {"a protected folder", home.path(), documents, protectedEntryError},
        {"inside a protected folder", home.path(), documents + "/canary", protectedEntryError},
        {"a protected folder's own entry", documents, documents + "/canary", protectedEntryError},
        {"home itself", home.path() + "/..", home.path(), protectedEntryError},
        {"nothing there", base, base + "/missing", ENOENT},
        {"a base that is a file", base + "/entry/file", base + "/entry/file/x", ENOTDIR},
        {"a base that is missing", base + "/none", base + "/none/x", ENOENT},
    };
    for (const auto& [description, inBase, path, error] : cases) {
        SCOPED_TRACE(description);
        const int answer = removeBy(GetParam(), inBase, path);
        // Without openat2 a link on the way shows as what it is not: a folder.
        EXPECT_TRUE(answer == error || (error == ELOOP && answer == ENOTDIR)) << answer;
    }
    EXPECT_TRUE(home.has(".cache/entry/file") && home.has("elsewhere/file"));
    expectCanaries();
}

TEST_P(RemovalBoundary, ABaseOrAPathThroughAnAliasIsTheSame)
{
    home.makeLink("alias", ".cache");
    home.makeFile(".cache/one");
    home.makeFile(".cache/two");
    home.makeFile(".cache/three/file");
    EXPECT_EQ(removeBy(GetParam(), home.path("alias"), home.path("alias/one")), 0);
    EXPECT_EQ(removeBy(GetParam(), home.path("alias"), home.path(".cache/two")), 0);
    EXPECT_EQ(removeBy(GetParam(), base + "/", home.path("alias/three/")), 0);
    EXPECT_EQ(countEntries(base), 0U);
}

TEST_P(RemovalBoundary, LinksAreRemovedThemselves)
{
    home.makeFile("elsewhere/file");
    const std::string before = snapshot(home.path("elsewhere"));
    for (const std::string& target :
         {std::string("/"), home.path("elsewhere"), home.path("elsewhere/file"), documents,
          std::string("nowhere"), std::string("link"), std::string("..")}) {
        SCOPED_TRACE(target);
        home.makeLink(".cache/link", target);
        EXPECT_EQ(removeBy(GetParam(), base, home.path(".cache/link")), 0);
        home.makeLink(".cache/entry/link", target);
        EXPECT_EQ(removeBy(GetParam(), base, home.path(".cache/entry")), 0);
        EXPECT_EQ(countEntries(base), 0U);
    }
    EXPECT_EQ(snapshot(home.path("elsewhere")), before);
    expectCanaries();
}

INSTANTIATE_TEST_SUITE_P(Removal, RemovalBoundary,
                         testing::Values(PinMethod::kernelResolution, PinMethod::stepByStep),
                         [](const auto& method) {
                             return method.param == PinMethod::stepByStep ? "StepByStep"
                                                                          : "KernelResolution";
                         });

class RemovalIdentity : public RemovalFixture
{
};

TEST_F(RemovalIdentity, AProtectedFolderIsKnownUnderAnyName)
{
    const auto removal = beginRemoval();
    // Renamed into the item after the clean began, and something else put in its place.
    home.makeFolder(".cache/entry");
    std::filesystem::rename(documents, home.path(".cache/entry/moved"));
    home.makeFolder("Documents");
    EXPECT_EQ(removal->remove(base, home.path(".cache/entry"), std::nullopt).error, EPERM);
    std::filesystem::remove(documents);
    std::filesystem::rename(home.path(".cache/entry/moved"), documents);
    expectCanaries();
}

TEST_F(RemovalIdentity, AFolderThatLeadsToAProtectedOneIsNotEmptied)
{
    const std::string inner = home.makeFolder(".cache/entry/inner");
    home.makeFile(".cache/entry/inner/precious");
    LinuxRemoval removal(home.path(), std::vector<std::string>{inner}, std::nullopt, pool());
    EXPECT_EQ(removal.remove(base, home.path(".cache/entry"), std::nullopt).error,
              protectedEntryError);
    EXPECT_TRUE(home.has(".cache/entry/inner/precious"));
}

TEST_F(RemovalIdentity, AMountThatAppearsMidwayKeepsWhatItShows)
{
    for (int folder = 0; folder < 200; ++folder) {
        makeFiles(home, ".cache/entry/" + std::to_string(folder), 20);
    }
    home.makeFolder(".cache/entry/mount");
    inMountNamespace([&] {
        // Mounted from another thread while the work goes on, at a moment of its own choosing.
        std::thread mounter([&] { bindMount(documents, home.path(".cache/entry/mount")); });
        const int error = remove(".cache/entry");
        mounter.join();
        EXPECT_TRUE(error != 0 || !home.has(".cache/entry"));
        expectCanaries();
    });
    expectCanaries();
}

} // namespace
} // namespace CleanCoreTests
