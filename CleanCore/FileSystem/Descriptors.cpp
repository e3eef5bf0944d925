#include "CleanCore/FileSystem/Descriptors.h"

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <unistd.h>

namespace CleanCore {

FileDescriptor duplicate(int descriptor)
{
    return FileDescriptor(::fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
}

std::string pathOfDescriptor(int descriptor)
{
    std::string path(PATH_MAX, '\0');
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t length = ::readlink(link.c_str(), path.data(), path.size());
    path.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return path;
}

bool isShortage(int error)
{
    return error == EMFILE || error == ENFILE || error == ENOMEM;
}

} // namespace CleanCore
