#include "CleanCore/CloudDrive/StandIn/CloudMarker.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <sys/xattr.h>

namespace CleanCore {

namespace {

constexpr const char* attributeName = "user.zorvane";
constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
// A file system may store whole seconds only, and a step may take long on a slow disk.
constexpr std::int64_t earliestChange = -nanosecondsPerSecond;
constexpr std::int64_t latestChange = 60 * nanosecondsPerSecond;

/// The value of the attribute, in the byte order of the machine; the version tells a foreign one.
struct Record
{
    static constexpr std::uint32_t currentVersion = 0x5a4d'4b31;

    std::uint32_t version = 0;
    std::uint32_t modifiedNanoseconds = 0;
    std::int64_t modifiedSeconds = 0;
    std::int64_t length = 0;
    std::uint64_t checksum = 0;
    // From here on omitted for a placeholder, of which everything may be missing and nothing is
    // changing: its record has to fit into an inode of 256 bytes beside other attributes.
    std::int64_t changingSince = 0;
    std::int64_t missingBegin = 0;
    std::int64_t missingEnd = 0;
};
constexpr std::size_t wholeBytes = sizeof(Record);
constexpr std::size_t placeholderBytes = offsetof(Record, changingSince);
static_assert(wholeBytes == 56 && placeholderBytes == 32);

} // namespace

ByteRange ByteRange::joined(const ByteRange& other) const
{
    if (isEmpty() || other.isEmpty()) {
        return isEmpty() ? other : *this;
    }
    return {std::min(begin, other.begin), std::max(end, other.end)};
}

bool areSameTime(const timespec& a, const timespec& b)
{
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

bool CloudMarker::explains(const struct stat& status) const
{
    if (status.st_size != length) {
        return false;
    }
    if (areSameTime(status.st_mtim, modifiedAt)) {
        return true;
    }
    // Compares seconds first: a time far away overflows as nanoseconds.
    const std::int64_t seconds = status.st_mtim.tv_sec - changingSince / nanosecondsPerSecond;
    if (changingSince == 0 || seconds < -2 || seconds > latestChange / nanosecondsPerSecond + 1) {
        return false;
    }
    const std::int64_t sinceChange =
        status.st_mtim.tv_sec * nanosecondsPerSecond + status.st_mtim.tv_nsec - changingSince;
    return sinceChange >= earliestChange && sinceChange <= latestChange;
}

void CloudMarker::beginChange()
{
    timespec now = {};
    ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
    changingSince = now.tv_sec * nanosecondsPerSecond + now.tv_nsec;
}

std::optional<CloudMarker> readMarker(int file)
{
    Record record;
    const ssize_t bytes = ::fgetxattr(file, attributeName, &record, wholeBytes);
    if (bytes == static_cast<ssize_t>(placeholderBytes)) {
        record.missingEnd = record.length;
    } else if (bytes != static_cast<ssize_t>(wholeBytes)) {
        return std::nullopt;
    }
    if (record.version != Record::currentVersion ||
        record.modifiedNanoseconds >= nanosecondsPerSecond || record.missingBegin < 0 ||
        record.missingEnd > record.length) {
        return std::nullopt;
    }
    CloudMarker marker;
    marker.length = record.length;
    marker.modifiedAt = {record.modifiedSeconds, static_cast<long>(record.modifiedNanoseconds)};
    marker.checksum = record.checksum;
    marker.changingSince = record.changingSince;
    marker.missing = {record.missingBegin, record.missingEnd};
    return marker;
}

int writeMarker(int file, const CloudMarker& marker)
{
    const Record record = {
        Record::currentVersion,   static_cast<std::uint32_t>(marker.modifiedAt.tv_nsec),
        marker.modifiedAt.tv_sec, marker.length,
        marker.checksum,          marker.changingSince,
        marker.missing.begin,     marker.missing.end};
    const bool isPlaceholder =
        marker.changingSince == 0 && marker.missing == ByteRange{0, marker.length};
    const std::size_t bytes = isPlaceholder ? placeholderBytes : wholeBytes;
    return ::fsetxattr(file, attributeName, &record, bytes, 0) == 0 ? 0 : errno;
}

int removeMarker(int file)
{
    return ::fremovexattr(file, attributeName) == 0 || errno == ENODATA ? 0 : errno;
}

int setModificationTime(int file, const timespec& time)
{
    const timespec times[] = {{0, UTIME_OMIT}, time};
    return ::futimens(file, times) == 0 ? 0 : errno;
}

} // namespace CleanCore
