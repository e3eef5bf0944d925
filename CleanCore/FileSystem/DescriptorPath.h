#pragma once

#include <climits>
#include <string>
#include <unistd.h>

namespace CleanCore {

/// The present path of an open file, from the kernel (proc(5)); empty when it has none.
[[nodiscard]] inline std::string pathOfDescriptor(int descriptor)
{
    std::string path(PATH_MAX, '\0');
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t length = ::readlink(link.c_str(), path.data(), path.size());
    path.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return path;
}

} // namespace CleanCore
