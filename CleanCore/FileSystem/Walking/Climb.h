#pragma once

#include "CleanCore/FileSystem/EntryStatus.h"
#include "CleanCore/FileSystem/OpenWithoutLinks.h"

#include <utility>

namespace CleanCore {

/// Calls `visit(identity)` for the folder open as `start` and then for each folder above it, up to
/// the root of the file system, until it returns false. The way leads through the folders' own
/// "..", so it tells where they are now. Returns false when a folder on the way could not be read.
template <typename Visit>
[[nodiscard]] bool climb(int start, Visit visit)
{
    FileDescriptor held;
    int folder = start;
    EntryStatus status;
    if (readStatus(folder, "", status) != 0) {
        return false;
    }
    while (visit(status.identity)) {
        FileDescriptor parent = holdFolder(folder, "..");
        EntryStatus above;
        if (!parent.isOpen() || readStatus(parent.get(), "", above) != 0) {
            return false;
        }
        // The root is its own parent. The root of a mount is not, since ".." leaves the mount.
        if (above.identity == status.identity && above.mountId == status.mountId) {
            return true;
        }
        status = above;
        held = std::move(parent);
        folder = held.get();
    }
    return true;
}

} // namespace CleanCore
