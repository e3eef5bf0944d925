#include "CleanCore/Reclaim/LinuxVolumeFacts.h"

#include "CleanCore/FileSystem/EntryStatus.h"
#include "CleanCore/FileSystem/Lease.h"
#include "CleanCore/Reclaim/Extents.h"
#include "CleanCore/Reclaim/OpenPrograms.h"
#include "CleanCore/Support/FileDescriptor.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/btrfs.h>
#include <linux/magic.h>
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

void LinuxVolumeFacts::readSpace(int folder, const char* name, const VolumeTraits& traits,
                                 const std::stop_token& stop, FileSpace& space) const
{
    space.extents.clear();
    space = {.extents = std::move(space.extents)};
    const FileDescriptor file(
        ::openat(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file.isOpen()) {
        // Somebody who holds a lease has the file open; see open(2).
        space.isOpenElsewhere = errno == EWOULDBLOCK;
        space.isTold = space.isOpenElsewhere && traits.allocation == Allocation::exact;
        return;
    }
    if (traits.allocation != Allocation::exact) {
        space.isTold =
            traits.allocation == Allocation::byExtents && readExtents(file.get(), stop, space);
        if (space.isTold && space.plainBytes == 0 && space.extents.empty()) {
            // It does not matter who has a file open that gives nothing back.
            return;
        }
    }
    const int error = takeLease(file.get(), F_WRLCK);
    ::fcntl(file.get(), F_SETLEASE, F_UNLCK);
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
