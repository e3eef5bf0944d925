#include "CleanCore/CloudDrive/StandIn/CloudContent.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace CleanCore {

namespace {

constexpr std::size_t bufferBytes = std::size_t{256} * 1024;
constexpr std::uint64_t checksumStart = 0xcbf2'9ce4'8422'2325;
constexpr std::uint64_t checksumPrime = 0x0000'0100'0000'01b3;

void addTo(std::uint64_t& checksum, const std::byte* bytes, std::size_t count)
{
    std::uint64_t sum = checksum;
    for (std::size_t i = 0; i < count; ++i) {
        sum = (sum ^ static_cast<std::uint64_t>(bytes[i])) * checksumPrime;
    }
    checksum = sum;
}

/// Reads exactly `count` bytes. Returns 0 or errno; ENODATA at an early end of the file.
int readAt(int file, std::byte* buffer, std::size_t count, std::int64_t offset)
{
    while (count > 0) {
        const ssize_t got = ::pread(file, buffer, count, offset);
        if (got > 0) {
            buffer += got;
            count -= static_cast<std::size_t>(got);
            offset += got;
        } else if (got == 0) {
            return ENODATA;
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

std::size_t pieceOf(const ByteRange& range)
{
    return std::min(bufferBytes, static_cast<std::size_t>(range.end - range.begin));
}

} // namespace

CloudContent::CloudContent() : m_copied(bufferBytes), m_local(bufferBytes) {}

int CloudContent::compare(int local, int copy, std::int64_t length, CloudComparison& comparison)
{
    comparison = {};
    comparison.isSameButForHoles = true;
    comparison.checksum = checksumStart;
    std::int64_t at = 0;
    while (at < length && comparison.isSameButForHoles) {
        std::int64_t data = ::lseek(local, at, SEEK_DATA);
        if (data < 0 && errno != ENXIO) {
            return errno;
        }
        data = data < 0 ? length : std::min<std::int64_t>(data, length);
        if (const int error = compareRange(local, copy, {at, data}, true, comparison); error != 0) {
            return error;
        }
        at = data;
        if (at < length) {
            const std::int64_t hole = ::lseek(local, at, SEEK_HOLE);
            if (hole < 0) {
                return errno;
            }
            const ByteRange extent = {at, std::min(hole, length)};
            if (const int error = compareRange(local, copy, extent, false, comparison);
                error != 0) {
                return error;
            }
            at = extent.end;
        }
    }
    return 0;
}

int CloudContent::compareRange(int local, int copy, ByteRange range, bool isHole,
                               CloudComparison& comparison)
{
    if (isHole) {
        std::fill(m_local.begin(), m_local.end(), std::byte(0));
    }
    for (; !range.isEmpty() && comparison.isSameButForHoles;) {
        const std::size_t count = pieceOf(range);
        int error = readAt(copy, m_copied.data(), count, range.begin);
        if (error == 0 && !isHole) {
            error = readAt(local, m_local.data(), count, range.begin);
        }
        if (error != 0) {
            return error;
        }
        addTo(comparison.checksum, m_copied.data(), count);
        const ByteRange piece = {range.begin, range.begin + static_cast<std::int64_t>(count)};
        if (std::memcmp(m_copied.data(), m_local.data(), count) != 0) {
            comparison.isSameButForHoles = isHole;
            comparison.missing = comparison.missing.joined(piece);
        }
        range.begin = piece.end;
    }
    return 0;
}

int CloudContent::transferPiece(int copy, int local, ByteRange& range,
                                const std::function<bool()>& mayWrite)
{
    std::size_t count = pieceOf(range);
    if (const int error = readAt(copy, m_copied.data(), count, range.begin); error != 0) {
        return error;
    }
    const std::byte* from = m_copied.data();
    while (count > 0) {
        if (!mayWrite()) {
            return ECANCELED;
        }
        const ssize_t written = ::pwrite(local, from, count, range.begin);
        if (written < 0 && errno != EINTR) {
            return errno;
        }
        const auto done = static_cast<std::size_t>(std::max<ssize_t>(0, written));
        from += done;
        count -= done;
        range.begin += static_cast<std::int64_t>(done);
    }
    return 0;
}

bool hasData(int file)
{
    return ::lseek(file, 0, SEEK_DATA) >= 0 || errno != ENXIO;
}

bool hasHole(int file, std::int64_t length)
{
    return ::lseek(file, 0, SEEK_HOLE) < length;
}

} // namespace CleanCore
