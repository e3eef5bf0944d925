#pragma once

#include "CleanCore/Scanning/CategoryResult.h"
#include "ZorvaneCLI/Interruption.h"
#include "ZorvaneCLI/Workspace.h"

#include <optional>
#include <vector>

namespace ZorvaneCLI {

enum class CommandAreas { included, leftOut };

/// Scans the rules that are asked for and returns the results as they are shown, which are those of
/// a scan of the whole catalog; nothing when it was interrupted. Shows a live line on standard
/// error when that is a terminal.
[[nodiscard]] std::optional<std::vector<CleanCore::CategoryResult>>
runScan(const Workspace& workspace, CommandAreas commandAreas, const Interruption& interruption);

} // namespace ZorvaneCLI
