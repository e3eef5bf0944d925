#pragma once

#include "CleanCore/Scanning/CategoryResult.h"
#include "ZorvaneCLI/Interruption.h"
#include "ZorvaneCLI/Workspace.h"

#include <optional>
#include <vector>

namespace ZorvaneCLI {

/// Whether a scan takes in the areas that only a tool can measure.
enum class ToolAreas { included, leftOut };

/// Scans the rules asked for and returns the results as they are shown; nothing when it was
/// interrupted. Shows the progress on one line of standard error when that is a terminal.
[[nodiscard]] std::optional<std::vector<CleanCore::CategoryResult>>
runScan(const Workspace& workspace, ToolAreas toolAreas, const Interruption& interruption);

} // namespace ZorvaneCLI
