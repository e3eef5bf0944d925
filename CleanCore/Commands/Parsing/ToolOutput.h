#pragma once

#include "CleanCore/Scanning/ScannedItem.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Makes items of what tools print. Takes any text; what cannot be read is left out or counts as 0.
/// Every function takes the outputs of its area's listings, here one each.
namespace CleanCore::ToolOutput {

/// One item for each snapshot line of "tmutil listlocalsnapshots /", the whole line as path.
[[nodiscard]] std::vector<ScannedItem> timeMachineSnapshots(std::span<const std::string> outputs);

/// What "tmutil deletelocalsnapshots" wants of such a path.
[[nodiscard]] std::string snapshotStamp(std::string_view path);

/// One item "NAME (UDID)" for each device of "simctl list devices unavailable -j"; none at all if a
/// device cannot be read.
[[nodiscard]] std::vector<ScannedItem> unavailableSimulators(std::span<const std::string> outputs);

/// One item for each "Would remove: " line of "brew cleanup --dry-run -s".
[[nodiscard]] std::vector<ScannedItem> brewCleanup(std::span<const std::string> outputs);

/// One item "Docker — TYPE" for each JSON line of "docker system df" that can be read.
[[nodiscard]] std::vector<ScannedItem> dockerReclaimable(std::span<const std::string> outputs);

} // namespace CleanCore::ToolOutput
