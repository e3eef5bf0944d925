#include "CleanCore/CloudDrive/StandIn/CloudFetch.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <utility>

namespace CleanCore {

namespace {

using Reason = CloudRefusalReason;

/// Reads, without the copy, whether all content of the file is here. Returns 0 or errno.
int readIsLocal(const CloudEntry& entry, bool& isLocal)
{
    EntryStatus seen;
    if (const int error = readStatus(entry.folder, entry.name.c_str(), seen); error != 0) {
        return error;
    }
    isLocal = seen.lengthBytes == 0;
    if (isLocal || seen.identity.kind != EntryKind::file ||
        seen.isBeyondBoundaryOf(entry.folderStatus)) {
        return 0;
    }
    struct stat status = {};
    const FileDescriptor file = openToRead(entry, status);
    if (!file.isOpen()) {
        return errno;
    }
    const std::optional<CloudMarker> marker = readMarker(file.get());
    // Without a marker, holes are the user's own unless the file is nothing but one. A file that
    // was written to since its release has a marker that no longer fits, and may have zeros in the
    // place of its content even where it has no holes.
    isLocal = !marker && (status.st_blocks > 0 || hasData(file.get()));
    return 0;
}

/// Marks the change as finished, unless the modification time could not be restored.
void endChange(const CloudFilePair& pair, CloudMarker marker)
{
    struct stat status = {};
    if (::fstat(pair.local(), &status) == 0 && areSameTime(status.st_mtim, marker.modifiedAt)) {
        marker.changingSince = 0;
        static_cast<void>(writeMarker(pair.local(), marker));
    }
}

} // namespace

std::optional<CloudFailure> CloudFetch::fetchFile(const CloudEntry& entry)
{
    bool isLocal = false;
    if (const int error = readIsLocal(entry, isLocal); error != 0 || isLocal) {
        return failureOrNone(error);
    }
    CloudFilePair pair;
    if (auto failure = pair.open(entry)) {
        return failure;
    }
    CloudMarker marker;
    if (auto failure = prove(pair, marker)) {
        return failure;
    }
    // The marker of the next step would not explain the time of a step that was killed before.
    if (auto failure = pair.restoreTime(marker.modifiedAt)) {
        return failure;
    }
    while (!marker.missing.isEmpty()) {
        if (auto failure = fillStep(entry, pair, marker)) {
            endChange(pair, marker);
            return failure;
        }
    }
    return finish(pair, marker);
}

/// Proves that the copy has everything that the file lacks; `marker` then tells where.
std::optional<CloudFailure> CloudFetch::prove(const CloudFilePair& pair, CloudMarker& marker)
{
    const struct stat& status = pair.localStatus();
    CloudComparison comparison;
    if (const int error = m_content.compare(pair.local(), pair.copy(), status.st_size, comparison);
        error != 0) {
        return failureOf(error);
    }
    const std::optional<CloudMarker> found = readMarker(pair.local());
    if (found) {
        marker = *found;
        if (!marker.explains(status)) {
            if (!comparison.isSame()) {
                return CloudFailure{Reason::changedAfterRelease, 0};
            }
            // Written anew, and by now the same as the copy.
            marker.length = status.st_size;
            marker.modifiedAt = status.st_mtim;
            marker.checksum = comparison.checksum;
            marker.missing = {};
            return std::nullopt;
        }
        if (!comparison.isSameButForHoles || !marker.missing.contains(comparison.missing)) {
            return CloudFailure{Reason::notProven, 0};
        }
        if (marker.checksum != comparison.checksum) {
            return CloudFailure{Reason::differsFromMirror, 0};
        }
        return std::nullopt;
    }
    const bool isEmptyTwin = status.st_blocks == 0 && !hasData(pair.local()) &&
                             areSameTime(status.st_mtim, pair.copyStatus().st_mtim);
    if (!isEmptyTwin || !comparison.isSameButForHoles) {
        return CloudFailure{Reason::notProven, 0};
    }
    marker.length = status.st_size;
    marker.modifiedAt = status.st_mtim;
    marker.checksum = comparison.checksum;
    marker.missing = {0, status.st_size};
    return std::nullopt;
}

std::optional<CloudFailure> CloudFetch::fillStep(const CloudEntry& entry, const CloudFilePair& pair,
                                                 CloudMarker& marker)
{
    marker.beginChange();
    if (const int error = writeMarker(pair.local(), marker); error != 0) {
        return failureOf(error);
    }
    if (::fsync(pair.local()) != 0) {
        return failureOf(errno);
    }
    if (auto failure = pair.findChange(entry, marker.modifiedAt)) {
        return failure;
    }
    ByteRange step = {marker.missing.begin,
                      std::min(marker.missing.begin + m_stepBytes, marker.missing.end)};
    const std::int64_t end = step.end;
    int error = 0;
    while (error == 0 && !step.isEmpty()) {
        error =
            m_content.transferPiece(pair.copy(), pair.local(), step, [&] { return pair.isHeld(); });
    }
    // Even after a failure, since everything written so far is correct.
    const int timeError = setModificationTime(pair.local(), marker.modifiedAt);
    if (error == 0) {
        error = timeError;
    }
    if (error == 0 && ::fsync(pair.local()) != 0) {
        error = errno;
    }
    if (error == 0) {
        marker.missing.begin = end;
    }
    return failureOrNone(error);
}

std::optional<CloudFailure> CloudFetch::finish(const CloudFilePair& pair, const CloudMarker& marker)
{
    // Reads back from the disk rather than from memory, as far as the kernel complies.
    static_cast<void>(::posix_fadvise(pair.local(), 0, 0, POSIX_FADV_DONTNEED));
    CloudComparison comparison;
    if (const int error = m_content.compare(pair.local(), pair.copy(), marker.length, comparison);
        error != 0) {
        return failureOf(error);
    }
    if (!comparison.isSame() || comparison.checksum != marker.checksum) {
        return CloudFailure{Reason::differsFromMirror, 0};
    }
    int error = setModificationTime(pair.local(), marker.modifiedAt);
    if (error == 0) {
        error = removeMarker(pair.local());
    }
    if (error == 0 && ::fsync(pair.local()) != 0) {
        error = errno;
    }
    return failureOrNone(error);
}

} // namespace CleanCore
