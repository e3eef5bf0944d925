#pragma once

#include "CleanCore/Rules/CleaningRule.h"
#include "CleanCore/Scanning/ScannedItem.h"
#include "CleanCore/Support/SaturatingSum.h"

#include <cstdint>
#include <numeric>
#include <string>
#include <vector>

namespace CleanCore {

/// An entry that an area does not offer because another area lists something inside it.
struct ReachedEntry
{
    std::string path;
    /// The id of the other area.
    std::string ruleId;

    [[nodiscard]] bool operator==(const ReachedEntry&) const = default;
};

/// The findings of a scan for one rule.
struct CategoryResult
{
    CleaningRule rule;
    /// Grouped by base; within a base, largest first.
    std::vector<ScannedItem> items;
    /// Whether an existing base of the rule could not be listed, or its wildcards matched too many
    /// paths to look at all of them.
    bool hadAccessErrors = false;
    /// Whether the area's tool clears all of its items or none; they are chosen together.
    bool isClearedAsWhole = false;
    /// Whether nothing clears the area, so that choosing its items has no effect.
    bool isShownOnly = false;
    /// Entries that the area leaves to others; see withoutOverlaps().
    std::vector<ReachedEntry> reachedEntries = {};

    [[nodiscard]] std::int64_t totalBytes() const
    {
        return std::accumulate(items.begin(), items.end(), std::int64_t{0},
                               [](std::int64_t sum, const ScannedItem& item) {
                                   return saturatingSum(sum, item.sizeBytes);
                               });
    }
};

} // namespace CleanCore
