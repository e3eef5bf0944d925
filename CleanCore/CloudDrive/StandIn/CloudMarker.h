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

/// What is written on a file, as an extended attribute, before any of its content is given up: the
/// proof that its holes are ours and what belongs into them. It is kept small enough to lie in the
/// inode itself, so that it takes no block of its own.
struct CloudMarker
{
    std::int64_t length = 0;
    /// The modification time that the file keeps.
    timespec modifiedAt = {};
    /// Of the whole content; see CloudContent.
    std::uint64_t checksum = 0;
    /// When the change that is under way began, by the clock that the kernel stamps files with, in
    /// nanoseconds since 1970; 0 while none is. Until it has ended and the time has been given
    /// back, the file's own time is that of the change.
    std::int64_t changingSince = 0;
    /// Where content may be missing; outside of it the file is whole.
    ByteRange missing;

    /// Whether a file with this status can be one that nobody but us has changed: its length, and
    /// its time, which is the one it keeps or one within a minute of the change under way.
    [[nodiscard]] bool explains(const struct stat& status) const;

    /// Sets changingSince to now.
    void beginChange();
};

/// Nothing when the file has no marker, or none that is understood.
[[nodiscard]] std::optional<CloudMarker> readMarker(int file);

/// Return 0 or errno.
[[nodiscard]] int writeMarker(int file, const CloudMarker& marker);
[[nodiscard]] int removeMarker(int file);

[[nodiscard]] bool areSameTime(const timespec& a, const timespec& b);

/// Gives the file its modification time back. Returns 0 or errno.
[[nodiscard]] int setModificationTime(int file, const timespec& time);

} // namespace CleanCore
