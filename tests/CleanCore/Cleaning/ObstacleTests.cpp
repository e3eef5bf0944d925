// What a scan could not see a clean leaves.

#include "tests/Support/CleanableHome.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

namespace CleanCoreTests {

using namespace CleanCore;

namespace {

void expectLeftWhole(const CleanableHome& home, const CleaningSelection& selection,
                     const std::string& tree)
{
    for (const bool dryRun : {true, false}) {
        const CleaningReport report = home.clean(selection, dryRun);
        ASSERT_EQ(report.skipped.size(), 1U) << tree;
        EXPECT_EQ(report.skipped[0].cause, CleaningReport::SkipCause::notSeenWhole) << tree;
    }
    EXPECT_EQ(std::system(("chmod -R u+rwX " + home.path(".cache")).c_str()), 0);
    EXPECT_EQ(home.tree(), tree);
}

} // namespace

TEST(Obstacle, WhatCannotBeLookedIntoStaysWhole)
{
    for (const std::string locked : {".cache/app/locked/=0000", ".cache/app/locked/=0300",
                                     ".cache/app/locked/=0400", ".cache/app/=0000"}) {
        const CleanableHome home(locked + " .cache/app/locked/x .cache/app/old");
        expectLeftWhole(home, home.scan(), ".cache/app/locked/x .cache/app/old");
    }
}

TEST(Obstacle, AShortageOfDescriptorsIsNotAnEmptyFolder)
{
    std::string deep = ".cache/app";
    for (int depth = 0; depth < 30; ++depth) {
        deep += "/d";
    }
    const CleanableHome home(deep + "/x");
    rlimit limit = {};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    const rlim_t before = std::exchange(limit.rlim_cur, 14);
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
    const CleaningSelection selection = home.scan();
    limit.rlim_cur = before;
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
    expectLeftWhole(home, selection, deep + "/x");
}

} // namespace CleanCoreTests
