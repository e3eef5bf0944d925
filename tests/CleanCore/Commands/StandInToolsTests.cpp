#include "CleanCore/Commands/CommandCleanEngine.h"
#include "CleanCore/Commands/CommandScanEngine.h"
#include "CleanCore/Commands/Running/SystemCommandRunner.h"
#include "tests/Support/ScriptedCommandRunner.h"
#include "tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

using namespace CleanCore;
using namespace CleanCoreTests;

TEST(StandInTools, AreListedAndCleanedThroughRealChildren)
{
    const TemporaryFolder root;
    root.makeFile("usr/bin/tmutil", "#!/bin/sh\n"
                                    "cd \"$(dirname \"$0\")\" || exit 1\n"
                                    "case \"$1\" in\n"
                                    "listlocalsnapshots) cat snapshots ;;\n"
                                    "deletelocalsnapshots) grep -q -- \"$2\" snapshots || exit 1\n"
                                    "    sed -i \"/$2/d\" snapshots ;;\n"
                                    "esac\n");
    root.makeFile("usr/bin/snapshots", "Snapshots for disk /:\ncom.apple.TimeMachine.1.local\n"
                                       "com.apple.TimeMachine.2.local\n");
    root.setMode("usr/bin/tmutil", 0755);
    const auto locations = ToolLocations::forHome(true, root.path());
    const auto runner = std::make_shared<SystemCommandRunner>();
    const CommandScanEngine scanner(runner, locations);
    const std::vector rules = {commandRule("tm-local-snapshots"), commandRule("brew-cleanup")};

    const auto before = scanner.scan(rules);
    ASSERT_EQ(before.size(), 2U);
    ASSERT_EQ(before[0].items.size(), 2U);
    EXPECT_TRUE(before[1].items.empty());

    const CommandCleanEngine cleaner(runner, locations);
    const std::vector<CleaningSelection> chosen = {{before[0].rule, {before[0].items[1]}}};
    const CleaningReport first = cleaner.clean(chosen);
    EXPECT_EQ(first.removed,
              (std::vector<CleaningReport::RemovedItem>{{"com.apple.TimeMachine.2.local", 0}}));
    EXPECT_EQ(cleaner.clean(chosen).skipped.size(), 1U);

    const auto after = scanner.scan(rules);
    ASSERT_EQ(after[0].items.size(), 1U);
    EXPECT_EQ(after[0].items[0].path, "com.apple.TimeMachine.1.local");
}
