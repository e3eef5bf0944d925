#pragma once

#include "CleanCore/CloudDrive/StandIn/CloudMarker.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace CleanCore {

/// The outcome of comparing a local file with its copy.
struct CloudComparison
{
    /// Whether they are equal except where the local file has holes. Without that, the other
    /// members mean nothing.
    bool isSameButForHoles = false;
    /// The smallest range with all of the local file's holes where the copy has more than zeros.
    ByteRange missing;
    /// The checksum of the copy's whole content (64-bit FNV-1a).
    std::uint64_t checksum = 0;

    /// Whether reading either gives the same bytes.
    [[nodiscard]] bool isSame() const { return isSameButForHoles && missing.isEmpty(); }
};

/// Compares and copies contents through its own buffers. Not for use by two threads at once.
class CloudContent
{
public:
    CloudContent();

    /// Compares the first `length` bytes of two open files, which should be all they have. Ends at
    /// the first difference. Returns 0 or errno.
    [[nodiscard]] int compare(int local, int copy, std::int64_t length,
                              CloudComparison& comparison);

    /// Writes the first piece of `range` from `copy` into `local` at the same offset, and advances
    /// the beginning of the range past it. Calls `mayWrite()` right before each write; when that
    /// returns false, it stops with ECANCELED. Returns 0 or errno.
    [[nodiscard]] int transferPiece(int copy, int local, ByteRange& range,
                                    const std::function<bool()>& mayWrite);

private:
    /// Compares one range that is data throughout or a hole throughout.
    [[nodiscard]] int compareRange(int local, int copy, ByteRange range, bool isHole,
                                   CloudComparison& comparison);
    std::vector<std::byte> m_copied;
    std::vector<std::byte> m_local;
};

/// Whether the file holds any data extent; see SEEK_DATA of lseek(2).
[[nodiscard]] bool hasData(int file);

/// Whether the file, which is `length` bytes long, has any hole.
[[nodiscard]] bool hasHole(int file, std::int64_t length);

} // namespace CleanCore
