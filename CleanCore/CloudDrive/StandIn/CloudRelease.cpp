#include "CleanCore/CloudDrive/StandIn/CloudRelease.h"

#include "CleanCore/CloudDrive/StandIn/CloudMarker.h"
#include "CleanCore/FileSystem/OpenWithoutLinks.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/xattr.h>
#include <vector>

namespace CleanCore {

namespace {

using Reason = CloudRefusalReason;

// Punching beyond the end frees the last, partly used block too.
constexpr std::int64_t beyondEnd = 1 << 16;

/// Whether the file has nothing left to release, as far as its status and its marker tell.
bool holdsNothing(const CloudEntry& entry, const EntryStatus& seen)
{
    if (seen.lengthBytes == 0) {
        return true;
    }
    struct stat status = {};
    const FileDescriptor file = openToRead(entry, status);
    if (!file.isOpen()) {
        return seen.allocatedBytes == 0;
    }
    const std::optional<CloudMarker> marker = readMarker(file.get());
    if (marker && marker->changingSince != 0) {
        return false;
    }
    // A marker without room in the inode takes a block of its own.
    return status.st_blocks == 0 || (marker && marker->explains(status) && !hasData(file.get()));
}

/// Whether the kernel would clear privileges of the file when its content changes.
bool isPrivileged(int file, const struct stat& status)
{
    return (status.st_mode & (S_ISUID | S_ISGID)) != 0 ||
           ::fgetxattr(file, "security.capability", nullptr, 0) >= 0;
}

} // namespace

/// Releases one file whose content is known to be in the mirror.
class CloudRelease::Steps
{
public:
    Steps(const CloudEntry& entry, const CloudFilePair& pair, const CloudMarker& marker,
          const std::optional<CloudMarker>& before)
        : m_entry(entry), m_pair(pair), m_marker(marker), m_settled(before)
    {
    }

    std::optional<CloudFailure> run(std::int64_t stepBytes)
    {
        for (std::int64_t at = 0; at < m_marker.length; at += stepBytes) {
            if (auto failure = punch({at, std::min(at + stepBytes, m_marker.length)})) {
                writeSettledMarker();
                return failure;
            }
        }
        return finish();
    }

private:
    std::optional<CloudFailure> punch(const ByteRange& step)
    {
        const int file = m_pair.local();
        m_marker.missing = m_marker.missing.joined(step);
        m_marker.beginChange();
        if (const int error = writeMarker(file, m_marker); error != 0) {
            return failureOf(error);
        }
        if (::fsync(file) != 0) {
            return failureOf(errno);
        }
        if (auto failure = m_pair.findChange(m_entry, m_marker.modifiedAt)) {
            return failure;
        }
        const std::int64_t end = step.end == m_marker.length ? step.end + beyondEnd : step.end;
        const int error = ::fallocate(file, FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, step.begin,
                                      end - step.begin) == 0
                              ? 0
                              : errno;
        if (error == EOPNOTSUPP) {
            return failureOf(error);
        }
        // After any other error, a part of the step may be gone already.
        const int timeError = setModificationTime(file, m_marker.modifiedAt);
        m_settled = m_marker;
        if (timeError == 0) {
            m_settled->changingSince = 0;
        }
        return failureOrNone(error != 0 ? error : timeError);
    }

    std::optional<CloudFailure> finish()
    {
        struct stat status = {};
        if (::fstat(m_pair.local(), &status) != 0) {
            return failureOf(errno);
        }
        // Punching leaves blocks that were reserved beyond the end; truncating frees them.
        if (status.st_blocks > 0 && m_pair.isHeld() &&
            ::ftruncate(m_pair.local(), m_marker.length) != 0) {
            return failureOf(errno);
        }
        const int error = setModificationTime(m_pair.local(), m_marker.modifiedAt);
        return failureOrNone(error != 0 ? error : writeSettledMarker());
    }

    /// Replaces the marker of the change in progress by the one that fits the file now.
    int writeSettledMarker() const
    {
        return m_settled ? writeMarker(m_pair.local(), *m_settled) : removeMarker(m_pair.local());
    }

    const CloudEntry& m_entry;
    const CloudFilePair& m_pair;
    CloudMarker m_marker;
    // The marker that fits the file between two steps; none before the first one.
    std::optional<CloudMarker> m_settled;
};

std::optional<CloudFailure> CloudRelease::releaseFile(const CloudEntry& entry)
{
    EntryStatus seen;
    if (const int error = readStatus(entry.folder, entry.name.c_str(), seen); error != 0) {
        return failureOf(error);
    }
    if (seen.identity.kind == EntryKind::file && !seen.isBeyondBoundaryOf(entry.folderStatus) &&
        holdsNothing(entry, seen)) {
        return std::nullopt;
    }
    CloudFilePair pair;
    if (auto failure = pair.open(entry)) {
        return failure;
    }
    const struct stat& status = pair.localStatus();
    if (status.st_nlink != 1) {
        return CloudFailure{status.st_nlink == 0 ? Reason::changedMeanwhile : Reason::hardLinked,
                            0};
    }
    if (isPrivileged(pair.local(), status)) {
        return CloudFailure{Reason::privilegedFile, 0};
    }
    CloudComparison comparison;
    if (const int error = m_content.compare(pair.local(), pair.copy(), status.st_size, comparison);
        error != 0) {
        return failureOf(error);
    }
    if (!comparison.isSameButForHoles) {
        return CloudFailure{Reason::differsFromMirror, 0};
    }
    const std::optional<CloudMarker> before = readMarker(pair.local());
    const bool isOurs =
        before && before->explains(status) && before->checksum == comparison.checksum;
    if (!comparison.isSame() && !(isOurs && before->missing.contains(comparison.missing))) {
        return CloudFailure{before ? Reason::notProven : Reason::differsFromMirror, 0};
    }
    if (::fsync(pair.copy()) != 0 || !isMirrorFolderDurable(entry.mirrorFolder)) {
        return CloudFailure{Reason::mirrorNotDurable, 0};
    }
    CloudMarker marker;
    marker.length = status.st_size;
    marker.modifiedAt = isOurs ? before->modifiedAt : status.st_mtim;
    marker.checksum = comparison.checksum;
    marker.missing = isOurs ? before->missing : ByteRange();
    // The marker of the next step would not explain the time of a step that was killed before.
    if (auto failure = pair.restoreTime(marker.modifiedAt)) {
        return failure;
    }
    return Steps(entry, pair, marker, before).run(m_stepBytes);
}

/// A copy survives a power failure only if its name is on disk, and so are the names of the folders
/// above it, up to the home. Writes each folder out through "..", so that it is known to hold the
/// one below.
bool CloudRelease::isMirrorFolderDurable(int folder)
{
    EntryStatus status;
    if (::fsync(folder) != 0 || readStatus(folder, "", status) != 0) {
        return false;
    }
    std::vector<EntryIdentity> way;
    FileDescriptor above;
    while (status.identity != m_home && !isKnownDurable(status.identity)) {
        way.push_back(status.identity);
        FileDescriptor next = openFolder(above.isOpen() ? above.get() : folder, "..");
        if (!next.isOpen() || ::fsync(next.get()) != 0 || readStatus(next.get(), "", status) != 0 ||
            status.identity == way.back()) {
            return false;
        }
        above = std::move(next);
    }
    for (const EntryIdentity& identity : way) {
        m_durableFolders.emplace(identity.device, identity.inode);
    }
    return true;
}

bool CloudRelease::isKnownDurable(const EntryIdentity& folder) const
{
    return m_durableFolders.count({folder.device, folder.inode}) > 0;
}

} // namespace CleanCore
