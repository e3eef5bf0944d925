#pragma once

#include "CleanCore/Rules/CleaningRule.h"
#include "CleanCore/Scanning/ScannedItem.h"

#include <cstddef>
#include <vector>

namespace CleanCore {

/// One rule's share of a clean: the items that were chosen, in scan order.
struct CleaningSelection
{
    CleaningRule rule;
    std::vector<ScannedItem> items;
    /// How many further items the scan found in the area, which have to stay.
    std::size_t itemsLeftOut = 0;
};

} // namespace CleanCore
