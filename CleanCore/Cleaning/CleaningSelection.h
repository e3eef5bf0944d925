#pragma once

#include "CleanCore/Reclaim/ReclaimFindings.h"
#include "CleanCore/Rules/CleaningRule.h"
#include "CleanCore/Scanning/ScannedItem.h"

#include <cstddef>
#include <vector>

namespace CleanCore {

/// The part of a clean that belongs to one rule: the chosen items, in scan order.
struct CleaningSelection
{
    CleaningRule rule;
    std::vector<ScannedItem> items;
    /// The number of other items that the scan found in the area and that must stay.
    std::size_t itemsLeftOut = 0;
    /// See CategoryResult.
    bool isShownOnly = false;
    /// What is known about the space of the items, in their order; may be shorter.
    std::vector<ReclaimFindings> findings = {};
};

} // namespace CleanCore
