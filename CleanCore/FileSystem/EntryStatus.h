#pragma once

#include "CleanCore/FileSystem/EntryIdentity.h"
#include "CleanCore/Support/Timestamp.h"

#include <cstdint>
#include <sys/types.h>

namespace CleanCore {

/// The attributes of one entry, read in one call and never through a link.
struct EntryStatus
{
    EntryIdentity identity;
    /// The mount that the entry was reached through; 0 on kernels before 5.8, which do not say.
    std::uint64_t mountId = 0;
    mode_t mode = 0;
    uid_t owner = 0;
    /// The number of the entry's names.
    std::uint32_t linkCount = 0;
    /// Nobody may remove it, or write to it other than at its end, by an attribute of the file
    /// system; see chattr(1).
    bool isFixed = false;
    std::int64_t allocatedBytes = 0;
    std::int64_t lengthBytes = 0;
    Timestamp modifiedAt = distantPast;

    [[nodiscard]] bool isFolder() const { return identity.kind == EntryKind::folder; }
    [[nodiscard]] bool isSymbolicLink() const { return identity.kind == EntryKind::symbolicLink; }

    /// Whether a boundary separates this entry from `folder` above it: another mount or, for a
    /// folder, another device. Files of an overlay may carry another device number than their
    /// folder, so for files the mount decides.
    [[nodiscard]] bool isBeyondBoundaryOf(const EntryStatus& folder) const;
};

/// Reads the status of `name` in the folder open as `directory`; an empty name means `directory`
/// itself (which may be an O_PATH descriptor), AT_FDCWD with a path is allowed. Returns 0 or errno.
[[nodiscard]] int readStatus(int directory, const char* name, EntryStatus& status);

} // namespace CleanCore
