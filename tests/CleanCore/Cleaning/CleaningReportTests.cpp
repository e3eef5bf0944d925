#include "CleanCore/Cleaning/CleaningReport.h"

#include <gmock/gmock.h>

namespace CleanCoreTests {

using CleanCore::CleaningReport;
using enum CleanCore::CleaningReport::SkipReason;
using testing::ElementsAre;

TEST(CleaningReport, CountsOnlyWhatWasRemoved)
{
    // A sum in 32 bits would show here.
    const CleaningReport report{{{"/a", 3'000'000'000}, {"/link", 0}, {"/b", 3'000'000'000}},
                                {{"/x", removalFailed}}};
    EXPECT_EQ(report.totalBytesFreed(), 6'000'000'000);
}

TEST(CleaningReport, MergesBothListsInOrder)
{
    const CleaningReport files{{{"/a", 1}}, {{"/x", blockedBySafetyGuard}}};
    const CleaningReport commands{{{"/b", 2}}, {{"/y", removalFailed}}};
    const CleaningReport merged = files.merging(commands);
    EXPECT_THAT(merged.removed, ElementsAre(CleaningReport::RemovedItem{"/a", 1},
                                            CleaningReport::RemovedItem{"/b", 2}));
    EXPECT_THAT(merged.skipped, ElementsAre(CleaningReport::SkippedItem{"/x", blockedBySafetyGuard},
                                            CleaningReport::SkippedItem{"/y", removalFailed}));
}

} // namespace CleanCoreTests
