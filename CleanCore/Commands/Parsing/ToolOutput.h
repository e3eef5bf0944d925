#pragma once

#include "CleanCore/Scanning/ScannedItem.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Turns the output of tools into items. Accepts any text: lines that cannot be parsed are left
/// out, sizes count as 0. Every function takes the outputs of its area's listings, here one each.
namespace CleanCore::ToolOutput {

/// One item for each snapshot line of "tmutil listlocalsnapshots /", the whole line as path.
[[nodiscard]] std::vector<ScannedItem> timeMachineSnapshots(std::span<const std::string> outputs);

/// The argument of "tmutil deletelocalsnapshots" for such a path.
[[nodiscard]] std::string snapshotStamp(std::string_view path);

/// One item "NAME (UDID)" for each device of "simctl list devices unavailable -j"; none at all if a
/// device cannot be read.
[[nodiscard]] std::vector<ScannedItem> unavailableSimulators(std::span<const std::string> outputs);

/// One item for each "Would remove: " line of "brew cleanup --dry-run -s".
[[nodiscard]] std::vector<ScannedItem> brewCleanup(std::span<const std::string> outputs);

/// One item "Docker — TYPE" for each JSON line of "docker system df" that can be read.
[[nodiscard]] std::vector<ScannedItem> dockerReclaimable(std::span<const std::string> outputs);

} // namespace CleanCore::ToolOutput
