#pragma once

namespace CleanCore {

/// Leases of fcntl(2): while one is held, nobody else opens the file in a way that conflicts with
/// it without the kernel making them wait. A lease ends with its descriptor.
enum class LeaseKind {
    /// Nobody else has the file open to write.
    readers,
    /// Nobody else has the file open at all.
    exclusive,
};

/// Takes a lease on the file open as `file`. Returns 0 or errno: EAGAIN when others have it open,
/// EACCES when another user owns it. No signal reaches the process when somebody waits for it.
[[nodiscard]] int takeLease(int file, LeaseKind kind);

/// Whether the lease is held and nobody waits for it. From a yes on, the kernel keeps others
/// waiting for the time in /proc/sys/fs/lease-break-time (45 s).
[[nodiscard]] bool holdsLease(int file, LeaseKind kind);

} // namespace CleanCore
