#include "CleanCore/Commands/Running/ChildPipe.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <sys/eventfd.h>
#include <system_error>
#include <unistd.h>

namespace CleanCore {

void failWith(int error, const char* what)
{
    throw std::system_error(error, std::generic_category(), what);
}

ChildPipe ChildPipe::make()
{
    std::array<int, 2> ends = {};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        failWith(errno, "pipe2");
    }
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

Wakeup::Wakeup() : m_descriptor(::eventfd(0, EFD_CLOEXEC))
{
    if (!m_descriptor.isOpen()) {
        failWith(errno, "eventfd");
    }
}

void Wakeup::raise() const
{
    const std::uint64_t one = 1;
    // It can fail only when it was raised before.
    static_cast<void>(!::write(m_descriptor.get(), &one, sizeof one));
}

} // namespace CleanCore
