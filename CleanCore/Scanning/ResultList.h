#pragma once

#include "CleanCore/Scanning/CategoryResult.h"

#include <vector>

namespace CleanCore {

/// Returns the results as they are shown: without areas that have nothing to offer and nothing to
/// tell (access errors, entries left to other areas), sorted by total size, largest first; equal
/// totals keep their order. `results` are the file-system areas, then those of tools, without
/// overlaps.
[[nodiscard]] std::vector<CategoryResult> resultList(std::vector<CategoryResult> results);

} // namespace CleanCore
