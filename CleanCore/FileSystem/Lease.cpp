#include "CleanCore/FileSystem/Lease.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>

namespace CleanCore {

int takeLease(int file, int type)
{
    // The default signal, SIGIO, would end the process; SIGURG is ignored by default.
    if (::fcntl(file, F_SETSIG, SIGURG) != 0 || ::fcntl(file, F_SETLEASE, type) != 0) {
        return errno;
    }
    return ::fcntl(file, F_SETOWN, 0) == 0 ? 0 : errno;
}

} // namespace CleanCore
