#include "CleanCore/Cleaning/CleaningReport.h"

#include <gmock/gmock.h>

namespace CleanCoreTests {

using CleanCore::CleaningReport;
using enum CleanCore::CleaningReport::SkipReason;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(CleaningReport, CountsOnlyWhatWasRemoved)
{
    EXPECT_EQ(CleaningReport().totalBytesFreed(), 0);
    const CleaningReport skippedOnly{{}, {{"/x", removalFailed}}};
    EXPECT_EQ(skippedOnly.totalBytesFreed(), 0);
    // A sum in 32 bits would show here.
    const CleaningReport report{{{"/a", 3'000'000'000}, {"/link", 0}, {"/b", 3'000'000'000}},
                                {{"/x", removalFailed}}};
    EXPECT_EQ(report.totalBytesFreed(), 6'000'000'000);
}

TEST(CleaningReport, MergesBothListsInOrderAndLeavesItsInputsAlone)
{
    const CleaningReport files{{{"/a", 1}}, {{"/x", blockedBySafetyGuard}}};
    const CleaningReport commands{{{"/b", 2}}, {{"/y", removalFailed}}};
    const CleaningReport merged = files.merging(commands);
    EXPECT_THAT(merged.removed, ElementsAre(CleaningReport::RemovedItem{"/a", 1},
                                            CleaningReport::RemovedItem{"/b", 2}));
    EXPECT_THAT(merged.skipped, ElementsAre(CleaningReport::SkippedItem{"/x", blockedBySafetyGuard},
                                            CleaningReport::SkippedItem{"/y", removalFailed}));
    EXPECT_EQ(merged.totalBytesFreed(), 3);
    EXPECT_EQ(files.removed.size(), 1U);
    EXPECT_EQ(commands.skipped.size(), 1U);

    const CleaningReport twice = files.merging({}).merging(files);
    EXPECT_THAT(twice.removed, ElementsAre(files.removed.front(), files.removed.front()));
    EXPECT_THAT(CleaningReport().merging({}).removed, IsEmpty());
}

} // namespace CleanCoreTests
