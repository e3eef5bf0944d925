#include "CleanCore/FileSystem/Descriptors.h"

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <unistd.h>

namespace CleanCore {

namespace {

constexpr int holdFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;

} // namespace

FileDescriptor openFolder(int parent, const char* name)
{
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    return FileDescriptor(::openat(parent, name, flags));
}

FileDescriptor holdFolder(int parent, const char* name)
{
    return FileDescriptor(::openat(parent, name, holdFlags | O_NOFOLLOW));
}

FileDescriptor holdFolderThroughLinks(const std::string& path)
{
    return FileDescriptor(::open(path.c_str(), holdFlags));
}

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
