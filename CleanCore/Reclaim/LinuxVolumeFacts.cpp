#include "CleanCore/Reclaim/LinuxVolumeFacts.h"

#include "CleanCore/FileSystem/EntryStatus.h"
#include "CleanCore/Reclaim/Extents.h"
#include "CleanCore/Reclaim/OpenPrograms.h"
#include "CleanCore/Support/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <linux/btrfs.h>
#include <linux/magic.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace CleanCore {

namespace {

using Allocation = VolumeTraits::Allocation;

// Of file systems that <linux/magic.h> does not name.
constexpr std::uint32_t bcachefsMagic = 0xca451a4e;
constexpr std::uint32_t exfatMagic = 0x2011bab0;
constexpr std::uint32_t jfsMagic = 0x3153464a;
constexpr std::uint32_t ntfs3Magic = 0x7366746e;

// XFS keeps inodes in chunks of 64 and gives a chunk back when all of them are gone.
constexpr std::int64_t xfsInodeBytes = 512;

Allocation allocationOf(std::uint32_t magic)
{
    switch (magic) {
    case EXT4_SUPER_MAGIC:
    case TMPFS_MAGIC:
    case MSDOS_SUPER_MAGIC:
    case exfatMagic:
    case jfsMagic:
        return Allocation::exact;
    case BTRFS_SUPER_MAGIC:
    case XFS_SUPER_MAGIC:
    case F2FS_SUPER_MAGIC:
    case OCFS2_SUPER_MAGIC:
    case bcachefsMagic:
    case ntfs3Magic:
        return Allocation::byExtents;
    default:
        return Allocation::untold;
    }
}

struct statfs informationOf(int folder)
{
    struct statfs information = {};
    // Without an answer it is a file system of no kind.
    static_cast<void>(::fstatfs(folder, &information));
    return information;
}

std::uint32_t magicOf(const struct statfs& information)
{
    return static_cast<std::uint32_t>(information.f_type);
}

/// The subvolumes of btrfs have device numbers of their own and share all space.
std::uint64_t idOfBtrfs(int folder, std::uint64_t otherwise)
{
    btrfs_ioctl_fs_info_args information = {};
    if (::ioctl(folder, BTRFS_IOC_FS_INFO, &information) != 0) {
        return otherwise;
    }
    std::uint64_t id = 0;
    std::memcpy(&id, information.fsid, sizeof(id));
    return id;
}

/// Adds the blocks that hold no data of the file: its attributes, the map of its extents, room
/// reserved for writing to shared ones.
void addOtherBlocks(int file, std::int64_t allocatedBytes, FileSpace& space)
{
    std::int64_t ofExtents = space.plainBytes;
    for (const FileExtent& extent : space.extents) {
        ofExtents += extent.length;
    }
    EntryStatus status;
    // Reading the extents may have written data, which changes what the file occupies.
    if (allocatedBytes != ofExtents && !space.hasInlineData && readStatus(file, "", status) == 0) {
        space.plainBytes += std::max<std::int64_t>(0, status.allocatedBytes - ofExtents);
    }
}

/// The inodes of files with leases, on any file system, from proc(5): "1: LEASE ACTIVE WRITE PID
/// MAJOR:MINOR:INODE 0 EOF".
std::set<std::uint64_t> leasedInodes()
{
    std::set<std::uint64_t> inodes;
    std::ifstream locks("/proc/locks");
    for (std::string line; std::getline(locks, line);) {
        if (line.find(" LEASE ") != std::string::npos) {
            const std::size_t colon = line.rfind(':');
            inodes.insert(std::strtoull(line.c_str() + colon + 1, nullptr, 10));
        }
    }
    return inodes;
}

} // namespace

VolumeTraits LinuxVolumeFacts::traits(int folder) const
{
    EntryStatus status;
    if (readStatus(folder, "", status) != 0) {
        return {};
    }
    const struct statfs information = informationOf(folder);
    const std::uint32_t magic = magicOf(information);
    VolumeTraits traits;
    traits.allocation = allocationOf(magic);
    traits.id = status.identity.device;
    traits.blockBytes = traits.allocation == Allocation::exact && information.f_bsize > 0
                            ? static_cast<std::int64_t>(information.f_bsize)
                            : 1;
    traits.leasedInodes = leasedInodes();
    // An overlay has the free space of the file system below it, and says so by its id.
    std::memcpy(&traits.spaceId, &information.f_fsid, sizeof(traits.spaceId));
    if (traits.spaceId == 0) {
        traits.spaceId = traits.id;
    }
    if (magic == BTRFS_SUPER_MAGIC) {
        traits.id = idOfBtrfs(folder, traits.id);
        traits.spaceId = traits.id;
        traits.keepsExtentsWhole = true;
        traits.freesLate = true;
    }
    if (magic == XFS_SUPER_MAGIC) {
        traits.bytesOfRecord = xfsInodeBytes;
        traits.freesLate = true;
    }
    return traits;
}

void LinuxVolumeFacts::readSpace(int folder, const char* name, std::int64_t allocatedBytes,
                                 const VolumeTraits& traits, const std::stop_token& stop,
                                 FileSpace& space) const
{
    space.extents.clear();
    space = {.extents = std::move(space.extents)};
    if (traits.allocation == Allocation::untold) {
        // Opening a file may fetch it from far away.
        space.isTold = false;
        return;
    }
    const FileDescriptor file(
        ::openat(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file.isOpen()) {
        // Somebody who holds a lease has the file open; see open(2).
        space.isOpenElsewhere = errno == EWOULDBLOCK;
        space.isTold = space.isOpenElsewhere && traits.allocation == Allocation::exact;
        return;
    }
    if (traits.allocation == Allocation::byExtents) {
        space.isTold = readExtents(file.get(), stop, space);
        if (space.isTold && !traits.keepsExtentsWhole) {
            addOtherBlocks(file.get(), allocatedBytes, space);
        }
        if (space.isTold && space.plainBytes == 0 && space.extents.empty()) {
            // It does not matter who has a file open that gives nothing back.
            return;
        }
    }
    // Others that open the file meanwhile wait, and this process is told by a signal, whose default
    // would end it; SIGURG is ignored by default. Closing the file gives the lease back.
    ::fcntl(file.get(), F_SETSIG, SIGURG);
    const int error = ::fcntl(file.get(), F_SETLEASE, F_WRLCK) == 0 ? 0 : errno;
    space.isOpenElsewhere = error == EAGAIN;
    space.isTold = space.isTold && (error == 0 || error == EAGAIN);
}

std::map<FileKey, std::set<std::string>>
LinuxVolumeFacts::programsUsing(const std::set<FileKey>& files) const
{
    return openPrograms(files);
}

void LinuxVolumeFacts::settle(int folder, bool after) const
{
    if (magicOf(informationOf(folder)) == BTRFS_SUPER_MAGIC) {
        // Commits the transaction without flushing the data of others, as syncfs(2) would.
        std::uint64_t transaction = 0;
        if (::ioctl(folder, BTRFS_IOC_START_SYNC, &transaction) == 0) {
            ::ioctl(folder, BTRFS_IOC_WAIT_SYNC, &transaction);
        }
    } else if (after) {
        // It also reports errors of other programs' writes, which say nothing here.
        ::syncfs(folder);
    }
}

} // namespace CleanCore
