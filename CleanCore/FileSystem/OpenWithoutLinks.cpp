#include "CleanCore/FileSystem/OpenWithoutLinks.h"

#include <fcntl.h>

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

} // namespace CleanCore
