#pragma once

#include <string>

namespace CleanCore {

/// `path` itself if it is absolute, else below the current folder. Where the current folder is gone
/// a relative path names nothing, and is returned as it is.
[[nodiscard]] std::string absolutePath(const std::string& path);

/// `path`, made absolute, with every link in it followed and without "." and "..". Unlike
/// realpath(3) it goes as far as it can: what does not exist is kept as it is written, and a link
/// that leads in a circle stands for itself.
[[nodiscard]] std::string resolveSymbolicLinks(const std::string& path);

} // namespace CleanCore
