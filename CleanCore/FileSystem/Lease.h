#pragma once

namespace CleanCore {

/// Takes a lease (F_WRLCK or F_RDLCK; see fcntl(2)) on an open file. Returns 0 or errno: EAGAIN
/// when others have it open, EACCES when another user owns it. Whoever opens the file meanwhile
/// waits; nobody is sent a signal.
[[nodiscard]] int takeLease(int file, int type);

} // namespace CleanCore
