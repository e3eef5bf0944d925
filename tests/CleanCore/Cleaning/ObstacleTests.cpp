#include "CleanCore/Cleaning/SelectionReclaim.h"
#include "tests/Support/CleanableHome.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

namespace CleanCoreTests {

using namespace CleanCore;

TEST(Obstacle, WhatAScanCouldNotLookIntoStaysWhole)
{
    rlimit before = {};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    // Deeper than there are descriptors in the last case.
    std::string deep = ".cache/app/locked";
    for (int depth = 0; depth < 30; ++depth) {
        deep += "/d";
    }
    const std::string tree = deep + "/x .cache/app/old";
    for (const std::string locked : {" .cache/app/locked/=0000", " .cache/app/locked/=0300",
                                     " .cache/app/locked/=0400", " .cache/app/=0000", ""}) {
        const CleanableHome home(tree + locked);
        const rlimit few = {locked.empty() ? 14 : before.rlim_cur, before.rlim_max};
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
        const CleaningSelection selection = home.scan();
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
        const Reclaim reclaim = reclaimOf(std::span(&selection, 1));
        const std::int64_t size = selection.items.at(0).sizeBytes;
        EXPECT_EQ(reclaim,
                  size == 0 ? Reclaim() : Reclaim({0, 0, {{ReclaimCause::leftInPlace, size}}}));
        for (const bool dryRun : {true, false}) {
            const CleaningReport report = home.clean(selection, dryRun);
            ASSERT_EQ(report.skipped.size(), 1U) << locked;
            EXPECT_EQ(report.skipped[0].cause, CleaningReport::SkipCause::notSeenWhole) << locked;
        }
        EXPECT_EQ(std::system(("chmod -R u+rwX " + home.path(".cache")).c_str()), 0);
        EXPECT_EQ(home.tree(), tree);
    }
}

} // namespace CleanCoreTests
