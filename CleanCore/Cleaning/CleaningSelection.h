#pragma once

#include "CleanCore/Rules/CleaningRule.h"
#include "CleanCore/Scanning/ScannedItem.h"

#include <vector>

namespace CleanCore {

/// One rule's share of a clean: the items that were chosen, in scan order.
struct CleaningSelection
{
    CleaningRule rule;
    std::vector<ScannedItem> items;
};

} // namespace CleanCore
