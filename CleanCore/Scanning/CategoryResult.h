#pragma once

#include "CleanCore/Rules/CleaningRule.h"
#include "CleanCore/Scanning/ScannedItem.h"
#include "CleanCore/Support/SaturatingSum.h"

#include <cstdint>
#include <numeric>
#include <vector>

namespace CleanCore {

/// What a scan found for one rule.
struct CategoryResult
{
    CleaningRule rule;
    /// Base by base, within a base largest first.
    std::vector<ScannedItem> items;
    /// Whether a base of the rule exists and could not be listed, or its wildcards lead to more
    /// than could be looked at.
    bool hadAccessErrors = false;
    /// Whether the area's tool clears all of its items or none; they are chosen together.
    bool isClearedAsWhole = false;

    [[nodiscard]] std::int64_t totalBytes() const
    {
        return std::accumulate(items.begin(), items.end(), std::int64_t{0},
                               [](std::int64_t sum, const ScannedItem& item) {
                                   return saturatingSum(sum, item.sizeBytes);
                               });
    }
};

} // namespace CleanCore
