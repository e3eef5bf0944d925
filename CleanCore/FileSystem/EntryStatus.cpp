#include "CleanCore/FileSystem/EntryStatus.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace CleanCore {

namespace {

constexpr std::int64_t blockBytes = 512;

EntryKind kindOf(mode_t mode)
{
    if (S_ISREG(mode)) {
        return EntryKind::file;
    }
    if (S_ISDIR(mode)) {
        return EntryKind::folder;
    }
    return S_ISLNK(mode) ? EntryKind::symbolicLink : EntryKind::other;
}

/// Clamps times that a Timestamp cannot hold, which a damaged inode may have.
Timestamp timestampOf(const statx_timestamp& time)
{
    constexpr std::int64_t limit = INT64_MAX / 1'000'000'000 - 1;
    const std::int64_t seconds = std::clamp<std::int64_t>(time.tv_sec, -limit, limit);
    return Timestamp(std::chrono::seconds(seconds) + std::chrono::nanoseconds(time.tv_nsec));
}

} // namespace

bool EntryStatus::isBeyondBoundaryOf(const EntryStatus& folder) const
{
    if (mountId != folder.mountId) {
        return true;
    }
    return (isFolder() || mountId == 0) && identity.device != folder.identity.device;
}

int readStatus(int directory, const char* name, EntryStatus& status)
{
    struct statx raw;
    constexpr unsigned mask = STATX_BASIC_STATS | STATX_BTIME | STATX_MNT_ID;
    const int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | (*name == '\0' ? AT_EMPTY_PATH : 0);
    if (::statx(directory, name, flags, mask, &raw) != 0) {
        return errno;
    }
    status.identity.device = makedev(raw.stx_dev_major, raw.stx_dev_minor);
    status.identity.inode = raw.stx_ino;
    status.identity.kind = kindOf(raw.stx_mode);
    status.identity.birthTime = (raw.stx_mask & STATX_BTIME) != 0
                                    ? timestampOf(raw.stx_btime).time_since_epoch().count()
                                    : 0;
    status.mountId = (raw.stx_mask & STATX_MNT_ID) != 0 ? raw.stx_mnt_id : 0;
    status.mode = raw.stx_mode;
    status.owner = raw.stx_uid;
    status.linkCount = raw.stx_nlink;
    status.isFixed = (raw.stx_attributes & (STATX_ATTR_IMMUTABLE | STATX_ATTR_APPEND)) != 0;
    status.allocatedBytes = static_cast<std::int64_t>(raw.stx_blocks) * blockBytes;
    status.lengthBytes = static_cast<std::int64_t>(raw.stx_size);
    status.modifiedAt = timestampOf(raw.stx_mtime);
    return 0;
}

} // namespace CleanCore
