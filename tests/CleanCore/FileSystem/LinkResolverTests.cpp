#include "CleanCore/FileSystem/LinkResolver.h"

#include "tests/Support/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace {

using CleanCore::resolveSymbolicLinks;

TEST(LinkResolver, FollowsLinksAsFarAsItCan)
{
    const CleanCoreTests::TemporaryFolder folder;
    folder.makeFolder("real/inner");
    folder.makeFolder("other");
    folder.makeLink("link", "real");
    folder.makeLink("chain", "link/inner");
    folder.makeLink("absolute", folder.path("real/inner"));
    folder.makeLink("root", "/");
    folder.makeLink("dangling", "missing/deeper");
    folder.makeLink("circle-a", "circle-b");
    folder.makeLink("circle-b", "circle-a");
    folder.makeLink("real/up", "../other/./");
    folder.makeLink("invalid \xFF\n", "real");
    const struct
    {
        const char* path;
        const char* resolved;
    } cases[] = {
        {"link", "real"},
        {"link/", "real"},
        {"chain", "real/inner"},
        {"chain/..", "real"},
        {"absolute/../..", ""},
        {"link/up/file", "other/file"},
        {"link//./inner", "real/inner"},
        {"dangling/more", "missing/deeper/more"},
        {"missing/../real", "real"},
        {"invalid \xFF\n/x", "real/x"},
    };
    for (const auto& [path, resolved] : cases) {
        EXPECT_EQ(resolveSymbolicLinks(folder.path() + '/' + path), folder.path(resolved)) << path;
    }
    EXPECT_EQ(resolveSymbolicLinks(folder.path("root")), "/");
    EXPECT_EQ(resolveSymbolicLinks(folder.path("root/usr/..")), "/");
    EXPECT_EQ(resolveSymbolicLinks("/.."), "/");
    // Whichever of the two it ends at, a circle leads nowhere else.
    EXPECT_EQ(resolveSymbolicLinks(folder.path("circle-a")).find(folder.path("circle-")), 0U);
    EXPECT_EQ(resolveSymbolicLinks("relative"),
              resolveSymbolicLinks(std::filesystem::current_path().string() + "/relative"));
}

} // namespace
