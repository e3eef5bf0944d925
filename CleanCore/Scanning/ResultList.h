#pragma once

#include "CleanCore/Scanning/CategoryResult.h"

#include <vector>

namespace CleanCore {

/// The results as they are shown: areas with neither items nor access errors left out, the rest
/// sorted by total, largest first; equal totals keep their order. `results` holds the file-system
/// areas in the order in which they were completed, then those of commands, no entry twice (see
/// withoutOverlaps()).
[[nodiscard]] std::vector<CategoryResult> resultList(std::vector<CategoryResult> results);

} // namespace CleanCore
