#pragma once

#include <QString>
#include <string_view>

namespace Zorvane {

/// Text from the disk as CleanCore::escaped() shows it in a window. Never for finding the entry
/// again.
[[nodiscard]] QString displayText(std::string_view bytes);

/// The last component of a path as displayText().
[[nodiscard]] QString displayName(std::string_view path);

} // namespace Zorvane
