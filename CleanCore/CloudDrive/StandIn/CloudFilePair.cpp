#include "CleanCore/CloudDrive/StandIn/CloudFilePair.h"

#include "CleanCore/CloudDrive/StandIn/CloudMarker.h"
#include "CleanCore/FileSystem/Lease.h"

#include <cerrno>
#include <fcntl.h>

namespace CleanCore {

namespace {

using Reason = CloudRefusalReason;

constexpr int openFlags = O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
// Leases: nobody else has the file open at all, or nobody has it open to write.
constexpr int exclusive = F_WRLCK;
constexpr int sharedByReaders = F_RDLCK;

bool holdsLease(int file, int type)
{
    return ::fcntl(file, F_GETLEASE) == type;
}

bool isSameFile(const struct stat& a, const struct stat& b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

CloudFailure leaseFailure(int error, Reason whenOpen)
{
    if (error == EAGAIN) {
        return {whenOpen, 0};
    }
    return {error == EACCES || error == EPERM ? Reason::foreignOwner : Reason::notSupported, error};
}

} // namespace

CloudFailure failureOf(int error)
{
    switch (error) {
    case EAGAIN: // Somebody else holds a lease; see open(2).
    case ETXTBSY:
        return {Reason::inUse, 0};
    case ENOENT:
    case ELOOP:
    case ENODATA:
    case ECANCELED:
        return {Reason::changedMeanwhile, 0};
    case EOPNOTSUPP:
        return {Reason::notSupported, error};
    default:
        return {Reason::systemError, error};
    }
}

std::optional<CloudFailure> failureOrNone(int error)
{
    return error == 0 ? std::nullopt : std::optional(failureOf(error));
}

FileDescriptor openToRead(const CloudEntry& entry, struct stat& status)
{
    FileDescriptor file(::openat(entry.folder, entry.name.c_str(), O_RDONLY | openFlags));
    if (file.isOpen() && ::fstat(file.get(), &status) != 0) {
        const int error = errno;
        file.reset();
        errno = error;
    }
    return file;
}

std::optional<CloudFailure> CloudFilePair::open(const CloudEntry& entry)
{
    if (auto failure = openLocal(entry)) {
        return failure;
    }
    if (auto failure = openCopy(entry)) {
        return failure;
    }
    if (m_localStatus.st_size != m_copyStatus.st_size) {
        return CloudFailure{Reason::differsFromMirror, 0};
    }
    return std::nullopt;
}

std::optional<CloudFailure> CloudFilePair::openLocal(const CloudEntry& entry)
{
    EntryStatus seen;
    if (const int error = readStatus(entry.folder, entry.name.c_str(), seen); error != 0) {
        return failureOf(error);
    }
    if (seen.isBeyondBoundaryOf(entry.folderStatus)) {
        return CloudFailure{Reason::otherMount, 0};
    }
    // Opening anything but a file may have effects of its own; see fifo(7).
    if (seen.identity.kind != EntryKind::file) {
        return CloudFailure{Reason::notAFile, 0};
    }
    m_local =
        FileDescriptor(::openat(entry.folder, entry.name.c_str(), O_RDWR | O_NOATIME | openFlags));
    if (!m_local.isOpen()) {
        return errno == EPERM ? CloudFailure{Reason::foreignOwner, EPERM} : failureOf(errno);
    }
    if (const int error = takeLease(m_local.get(), exclusive); error != 0) {
        return leaseFailure(error, Reason::inUse);
    }
    if (::fstat(m_local.get(), &m_localStatus) != 0) {
        return failureOf(errno);
    }
    if (!S_ISREG(m_localStatus.st_mode) || m_localStatus.st_ino != seen.identity.inode) {
        return CloudFailure{Reason::changedMeanwhile, 0};
    }
    return std::nullopt;
}

std::optional<CloudFailure> CloudFilePair::openCopy(const CloudEntry& entry)
{
    EntryStatus seen;
    if (entry.mirrorFolder < 0 || readStatus(entry.mirrorFolder, entry.name.c_str(), seen) != 0 ||
        seen.identity.kind != EntryKind::file) {
        return CloudFailure{Reason::missingInMirror, 0};
    }
    if (seen.isBeyondBoundaryOf(entry.mirrorFolderStatus)) {
        return CloudFailure{Reason::otherMount, 0};
    }
    // Opening it would conflict with the lease just taken.
    if (seen.identity.inode == m_localStatus.st_ino &&
        seen.identity.device == m_localStatus.st_dev) {
        return CloudFailure{Reason::sameFileInMirror, 0};
    }
    m_copy = FileDescriptor(
        ::openat(entry.mirrorFolder, entry.name.c_str(), O_RDONLY | O_NOATIME | openFlags));
    if (!m_copy.isOpen()) {
        const CloudFailure failure = failureOf(errno);
        return failure.reason == Reason::inUse ? CloudFailure{Reason::mirrorInUse, 0} : failure;
    }
    if (::fstat(m_copy.get(), &m_copyStatus) != 0) {
        return failureOf(errno);
    }
    if (!S_ISREG(m_copyStatus.st_mode) || m_copyStatus.st_ino != seen.identity.inode) {
        return CloudFailure{Reason::changedMeanwhile, 0};
    }
    if (const int error = takeLease(m_copy.get(), sharedByReaders); error != 0) {
        return leaseFailure(error, Reason::mirrorInUse);
    }
    return std::nullopt;
}

bool CloudFilePair::isHeld() const
{
    return holdsLease(m_local.get(), exclusive) && holdsLease(m_copy.get(), sharedByReaders);
}

std::optional<CloudFailure> CloudFilePair::restoreTime(const timespec& modifiedAt)
{
    if (areSameTime(m_localStatus.st_mtim, modifiedAt)) {
        return std::nullopt;
    }
    if (!isHeld()) {
        return CloudFailure{Reason::inUse, 0};
    }
    m_localStatus.st_mtim = modifiedAt;
    return failureOrNone(setModificationTime(m_local.get(), modifiedAt));
}

std::optional<CloudFailure> CloudFilePair::findChange(const CloudEntry& entry,
                                                      const timespec& modifiedAt) const
{
    struct stat now = {};
    struct stat named = {};
    if (::fstat(m_local.get(), &now) != 0 ||
        ::fstatat(entry.folder, entry.name.c_str(), &named, AT_SYMLINK_NOFOLLOW) != 0) {
        return failureOf(errno);
    }
    if (!isSameFile(now, named) || now.st_nlink != m_localStatus.st_nlink ||
        now.st_size != m_localStatus.st_size || !areSameTime(now.st_mtim, modifiedAt)) {
        return CloudFailure{CloudRefusalReason::changedMeanwhile, 0};
    }
    // Checked last, as close to the step as possible.
    if (!isHeld()) {
        return CloudFailure{CloudRefusalReason::inUse, 0};
    }
    return std::nullopt;
}

} // namespace CleanCore
