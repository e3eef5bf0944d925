#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <sys/stat.h>

namespace CleanCore {

/// A half-open range of a file, in bytes.
struct ByteRange
{
    std::int64_t begin = 0;
    std::int64_t end = 0;

    [[nodiscard]] bool isEmpty() const { return begin >= end; }
    [[nodiscard]] bool contains(const ByteRange& other) const
    {
        return other.isEmpty() || (begin <= other.begin && other.end <= end);
    }
    /// The smallest range that holds both.
    [[nodiscard]] ByteRange joined(const ByteRange& other) const;

    [[nodiscard]] bool operator==(const ByteRange&) const = default;
};

/// An extended attribute that a file gets before any of its content is released. It proves that the
/// holes of the file are ours, and tells which content belongs into them. It is small enough to be
/// stored in the inode, without a block of its own.
struct CloudMarker
{
    std::int64_t length = 0;
    /// The modification time that the file keeps.
    timespec modifiedAt = {};
    /// The checksum of the whole content; see CloudComparison.
    std::uint64_t checksum = 0;
    /// When the change in progress began, by the clock that the kernel stamps files with, in
    /// nanoseconds since 1970; 0 without one. From its first write until the modification time is
    /// restored, the file carries the time of that change.
    std::int64_t changingSince = 0;
    /// Where content may be missing; outside of it the file is complete.
    ByteRange missing;

    /// Whether a file with this status can be one that only this program has changed: it has this
    /// length, and either `modifiedAt` or a time within a minute of the change in progress.
    [[nodiscard]] bool explains(const struct stat& status) const;

    /// Sets changingSince to now.
    void beginChange();
};

/// Nothing when the file has no marker, or one of another version.
[[nodiscard]] std::optional<CloudMarker> readMarker(int file);

/// Return 0 or errno.
[[nodiscard]] int writeMarker(int file, const CloudMarker& marker);
[[nodiscard]] int removeMarker(int file);

[[nodiscard]] bool areSameTime(const timespec& a, const timespec& b);

/// Returns 0 or errno.
[[nodiscard]] int setModificationTime(int file, const timespec& time);

} // namespace CleanCore
