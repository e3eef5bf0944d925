#include "CleanCore/Commands/Running/ToolLocations.h"
#include "tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <stdexcept>

using CleanCore::Tool;
using CleanCore::ToolLocations;
using Paths = std::vector<std::string>;

TEST(ToolLocations, NeverNamesARealToolInAConfinedHome)
{
    for (const Tool tool :
         {Tool::tmutil, Tool::xcrun, Tool::brew, Tool::docker, Tool::flatpak, Tool::podman}) {
        EXPECT_EQ(ToolLocations::forHome(true, std::nullopt).paths(tool), Paths{});
    }
    EXPECT_EQ(ToolLocations::forHome(true, "/tools").paths(Tool::docker),
              (Paths{"/tools/usr/local/bin/docker", "/tools/usr/bin/docker"}));
    EXPECT_EQ(ToolLocations::forHome(true, "/tools//").paths(Tool::tmutil),
              Paths{"/tools/usr/bin/tmutil"});
    EXPECT_EQ(ToolLocations::forHome(false, "/tools").paths(Tool::podman),
              Paths{"/tools/usr/bin/podman"});
}

TEST(ToolLocations, RefusesAFolderThatLeadsBackToTheRealTools)
{
    const CleanCoreTests::TemporaryFolder folder;
    const std::string link = folder.makeLink("link", "/");
    for (const std::string& root : {std::string(), std::string("tools"), std::string("/"),
                                    std::string("//"), std::string("/usr/.."), link}) {
        EXPECT_THROW(static_cast<void>(ToolLocations::forHome(true, root)), std::invalid_argument)
            << root;
    }
}
