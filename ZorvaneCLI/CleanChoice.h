#pragma once

#include "CleanCore/Cleaning/CleaningSelection.h"
#include "CleanCore/Scanning/CategoryResult.h"
#include "ZorvaneCLI/Commands.h"

#include <vector>

namespace ZorvaneCLI {

/// Throws CommandError unless the options make exactly one kind of choice.
void requireChoice(const CleanOptions& options);

/// Returns the items that the options choose among the results of a scan. Throws CommandError for
/// an item that is not among them, and for a part of an area that its tool clears only as a whole.
[[nodiscard]] std::vector<CleanCore::CleaningSelection>
choose(const CleanOptions& options, std::vector<CleanCore::CategoryResult> results);

} // namespace ZorvaneCLI
