#pragma once

#include "CleanCore/CloudDrive/StandIn/CloudMarker.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace CleanCore {

/// How a local file compares with its copy.
struct CloudComparison
{
    /// Whether they are equal except where the local file has holes. The other members are
    /// meaningful only then.
    bool isSameButForHoles = false;
    /// What of the copy's content, other than zeros, the local file has holes for.
    ByteRange missing;
    /// Of the copy's whole content (64-bit FNV-1a).
    std::uint64_t checksum = 0;

    /// Whether reading either gives the same bytes.
    [[nodiscard]] bool isSame() const { return isSameButForHoles && missing.isEmpty(); }
};

/// Compares and copies contents through its own buffers. Not for use by two threads at once.
class CloudContent
{
public:
    CloudContent();

    /// Compares the first `length` bytes of two open files, which is all they should have. Ends at
    /// the first difference. Returns 0 or errno.
    [[nodiscard]] int compare(int local, int copy, std::int64_t length,
                              CloudComparison& comparison);

    /// Writes the piece of `copy` at the beginning of `range` into `local` at the same place and
    /// takes it off the range. `mayWrite()` is asked right before; when it says no, nothing is
    /// written and ECANCELED returned. Returns 0 or errno.
    [[nodiscard]] int transferPiece(int copy, int local, ByteRange& range,
                                    const std::function<bool()>& mayWrite);

private:
    /// Compares one range that is either all data or all hole.
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
