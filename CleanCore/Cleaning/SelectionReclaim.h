#pragma once

#include "CleanCore/Cleaning/CleaningSelection.h"
#include "CleanCore/Reclaim/Reclaim.h"

#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace CleanCore {

class ReclaimSum;
class ReclaimSurvey;
struct CleaningReport;

/// Whether nothing is known yet about an item that a clean would remove.
[[nodiscard]] inline bool needsExamining(const ScannedItem& item, const ReclaimFindings& findings)
{
    return item.obstacle == Obstacle::none && !findings.isExamined;
}

/// Adds one item of an area to a sum.
void addToSum(ReclaimSum& sum, RuleKind kind, bool isShownOnly, const ScannedItem& item,
              const ReclaimFindings& findings);

/// Examines the chosen items that were not examined yet. After a stop request some still are not.
void examine(std::span<CleaningSelection> selections, const ReclaimSurvey& survey,
             const std::stop_token& stop);

/// How much free space the removal of all these items brings.
[[nodiscard]] Reclaim reclaimOf(std::span<const CleaningSelection> selections);

/// The same if what this preview of a clean skips stays in its place.
[[nodiscard]] Reclaim reclaimOf(std::span<const CleaningSelection> selections,
                                const CleaningReport& preview);

/// The same for those of the items that a clean of these selections has removed.
[[nodiscard]] Reclaim reclaimOfRemoved(std::span<const CleaningSelection> selections,
                                       const CleaningReport& report);

} // namespace CleanCore
