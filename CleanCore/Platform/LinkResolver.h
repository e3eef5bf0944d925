#pragma once

#include <string>

namespace CleanCore {

/// `path` (absolute, or relative to the current folder) with every link in it followed and without
/// "." and "..". Unlike realpath(3) it goes as far as it can: what does not exist is kept as it is
/// written, and a link that leads in a circle stands for itself.
[[nodiscard]] std::string resolveSymbolicLinks(const std::string& path);

} // namespace CleanCore
