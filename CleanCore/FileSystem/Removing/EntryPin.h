#pragma once

#include "CleanCore/FileSystem/EntryStatus.h"
#include "CleanCore/Support/FileDescriptor.h"

#include <span>
#include <string>

namespace CleanCore {

/// One entry, held open so that no later rename or exchange can redirect the work on it.
struct EntryPin
{
    /// The folder that holds the entry (O_PATH).
    FileDescriptor parent;
    EntryStatus parentStatus;
    /// The entry's name in `parent`.
    std::string name;
    /// The entry itself (O_PATH); a link is held as a link.
    FileDescriptor entry;
    EntryStatus status;
};

/// How links and mounts on the way down from the base are refused.
enum class PinMethod {
    /// By openat2(2) with RESOLVE_BENEATH, _NO_SYMLINKS, _NO_MAGICLINKS and _NO_XDEV; falls back to
    /// stepByStep where the kernel has no openat2 (before 5.6, or filtered).
    kernelResolution,
    /// By one openat(2) for each component, whose mount is compared with that of the folder above.
    stepByStep,
};

/// Opens `names`, one below the other, below the folder open as `base`. No link is followed, no
/// mount is entered. Returns 0 or errno: EINVAL for no names or an invalid one (empty, ".", "..",
/// with "/" or NUL), ELOOP or ENOTDIR for a link on the way, EXDEV at a mount.
[[nodiscard]] int pinEntry(int base, std::span<const std::string> names, EntryPin& pin,
                           PinMethod method = PinMethod::kernelResolution);

} // namespace CleanCore
