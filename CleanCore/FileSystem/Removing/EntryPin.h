#pragma once

#include "CleanCore/FileSystem/EntryStatus.h"
#include "CleanCore/Support/FileDescriptor.h"

#include <span>
#include <string>

namespace CleanCore {

/// One entry, held so that no later rename or exchange can redirect the work on it.
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

/// How the way down is kept inside the base.
enum class PinMethod {
    /// openat2(2) with RESOLVE_BENEATH, _NO_SYMLINKS, _NO_MAGICLINKS and _NO_XDEV; falls back to
    /// the other where the kernel has no openat2 (before 5.6, or filtered).
    kernelResolution,
    /// One openat(2) a component, each compared with the mount of the base.
    stepByStep,
};

/// Opens `names`, one below the other, below the folder open as `base`. No link is followed, no
/// mount is entered. Returns 0 or errno: EINVAL for no names or a name that is none (empty, ".",
/// "..", with "/" or NUL), ELOOP or ENOTDIR for a link on the way, EXDEV at a mount.
[[nodiscard]] int pinEntry(int base, std::span<const std::string> names, EntryPin& pin,
                           PinMethod method = PinMethod::kernelResolution);

} // namespace CleanCore
