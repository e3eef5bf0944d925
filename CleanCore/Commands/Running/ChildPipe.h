#pragma once

#include "CleanCore/Support/FileDescriptor.h"

namespace CleanCore {

/// Throws std::system_error for an errno.
[[noreturn]] void failWith(int error, const char* what);

/// A pipe whose ends do not reach programs that are started.
struct ChildPipe
{
    FileDescriptor readEnd;
    FileDescriptor writeEnd;

    /// Throws std::system_error.
    [[nodiscard]] static ChildPipe make();
};

/// Wakes a thread that waits in poll(2) for a child's output. raise() may be called from any
/// thread.
class Wakeup
{
public:
    /// Throws std::system_error.
    Wakeup();
    void raise() const;
    /// Readable once raised.
    [[nodiscard]] int descriptor() const { return m_descriptor.get(); }

private:
    FileDescriptor m_descriptor;
};

} // namespace CleanCore
