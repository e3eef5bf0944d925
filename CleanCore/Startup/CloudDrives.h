#pragma once

#include "CleanCore/Commands/Running/ToolLocations.h"
#include "CleanCore/Startup/HomeEnvironment.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace CleanCore {

class CloudDrive;

namespace Startup {

using CloudDrives = std::vector<std::shared_ptr<const CloudDrive>>;

/// All drives that this program works with, whether the computer has them or not. The first one is
/// the stand-in with `container`, by default the usual one, and `mirror`. The programs of drives
/// come from `tools`.
[[nodiscard]] CloudDrives openCloudDrives(const HomeEnvironment& home, const ToolLocations& tools,
                                          const std::optional<std::string>& container,
                                          const std::optional<std::string>& mirror);

/// The drive of this name, in any case; null if there is none.
[[nodiscard]] std::shared_ptr<const CloudDrive> driveNamed(std::string_view name,
                                                           const CloudDrives& drives);

} // namespace Startup
} // namespace CleanCore
