#pragma once

#include "CleanCore/Cleaning/CleaningReport.h"
#include "CleanCore/FileSystem/Obstacle.h"

#include <vector>

namespace Words {

/// The items of a report that were skipped for the same reason, and how people are told.
struct SkippedGroup
{
    /// "%1" stands for the number of items.
    const char* title = nullptr;
    const char* detail = nullptr;
    CleanCore::CleaningReport::SkipReason reason =
        CleanCore::CleaningReport::SkipReason::removalFailed;
    /// In the order of the report.
    std::vector<const CleanCore::CleaningReport::SkippedItem*> items;
};

/// What a clean will not remove of an entry, as a remark without a full stop; empty for none.
[[nodiscard]] const char* obstacleText(CleanCore::Obstacle obstacle);

/// The skipped items by reason and cause, without groups that have none. They point into `report`.
/// Thread-safe.
[[nodiscard]] std::vector<SkippedGroup> skippedGroups(const CleanCore::CleaningReport& report);

} // namespace Words
