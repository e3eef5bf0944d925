// What a scan could not see a clean leaves.

#include "tests/Support/CleanableHome.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

namespace CleanCoreTests {

using namespace CleanCore;

namespace {

/// "obstacle, cause, cause of the dry run: tree" of the item ".cache/app" after a clean.
std::string outcome(const CleanableHome& home, const CleaningSelection& selection)
{
    const auto causeOf = [&](bool dryRun) {
        const CleaningReport report = home.clean(selection, dryRun);
        return report.skipped.empty()
                   ? "none"
                   : std::string(CleaningReport::name(report.skipped.front().cause));
    };
    const std::string dry = causeOf(true);
    const std::string wet = causeOf(false);
    EXPECT_EQ(std::system(("chmod -R u+rwX " + home.path(".cache")).c_str()), 0);
    return std::to_string(static_cast<int>(selection.items.at(0).obstacle)) + ", " + wet +
           (dry == wet ? "" : ", foretold " + dry) + ": " + home.tree(".cache");
}

} // namespace

TEST(Obstacle, WhatCannotBeLookedIntoStaysWhole)
{
    struct
    {
        const char* entries;
        const char* outcome;
    } const rows[] = {
        {".cache/app/locked/=0000 .cache/app/locked/x .cache/app/old",
         "2, notSeenWhole: app/locked/x app/old"},
        {".cache/app/locked/=0300 .cache/app/locked/x .cache/app/old",
         "2, notSeenWhole: app/locked/x app/old"},
        {".cache/app/a/b/locked/=0400 .cache/app/a/b/locked/x",
         "2, notSeenWhole: app/a/b/locked/x"},
        {".cache/app/=0000 .cache/app/x", "2, notSeenWhole: app/x"},
        {".cache/app/store/=0555 .cache/app/store/deep/=0500 .cache/app/store/deep/x "
         ".cache/app/unreadable=0000",
         "0, none: "},
    };
    for (const auto& row : rows) {
        const CleanableHome home(row.entries);
        EXPECT_EQ(outcome(home, home.scan()), row.outcome) << row.entries;
    }
}

TEST(Obstacle, AShortageOfDescriptorsIsNotAnEmptyFolder)
{
    std::string deep = ".cache/app";
    for (int depth = 0; depth < 30; ++depth) {
        deep += "/d";
    }
    const CleanableHome home(deep + "/x:9k");
    struct rlimit before = {};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    const struct rlimit few = {14, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
    const CleaningSelection selection = home.scan();
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
    ASSERT_EQ(selection.items.size(), 1U);
    EXPECT_EQ(outcome(home, selection), "2, notSeenWhole: " + deep.substr(7) + "/x:9k");
}

} // namespace CleanCoreTests
