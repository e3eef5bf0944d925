#pragma once

#include <string>

namespace CleanCore {

/// `path` itself if it is absolute, else below the current folder. Where the current folder is gone
/// a relative path names nothing, and is returned as it is.
[[nodiscard]] std::string absolutePath(const std::string& path);

/// `path`, made absolute, with every link in it followed and without "." and "..". Unlike
/// realpath(3) it never fails: components that do not exist stay as they are written, and so does a
/// link that leads in a circle.
[[nodiscard]] std::string resolveSymbolicLinks(const std::string& path);

} // namespace CleanCore
