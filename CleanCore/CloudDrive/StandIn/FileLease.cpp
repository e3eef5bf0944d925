#include "CleanCore/CloudDrive/StandIn/FileLease.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>

namespace CleanCore {

namespace {

int typeOf(LeaseKind kind)
{
    return kind == LeaseKind::exclusive ? F_WRLCK : F_RDLCK;
}

} // namespace

int takeLease(int file, LeaseKind kind)
{
    // The default signal, SIGIO, would end the process; this one is ignored unless somebody asks
    // for it. The lease is looked at before each step instead.
    if (::fcntl(file, F_SETSIG, SIGURG) != 0 || ::fcntl(file, F_SETLEASE, typeOf(kind)) != 0) {
        return errno;
    }
    return ::fcntl(file, F_SETOWN, 0) == 0 ? 0 : errno;
}

bool holdsLease(int file, LeaseKind kind)
{
    return ::fcntl(file, F_GETLEASE) == typeOf(kind);
}

} // namespace CleanCore
