#pragma once

#include <cstdint>

namespace CleanCore {

/// What a scan found in an entry that keeps a clean from removing all of it, the graver the later.
enum class Obstacle : std::uint8_t {
    none,
    /// Entries of another user, or another mount: they stay, with the folders above them.
    foreignEntries,
    /// The scan could not look everywhere, for want of permission, descriptors or memory. The size
    /// may be short and the age wrong, so a clean leaves the entry whole.
    notSeenWhole,
};

} // namespace CleanCore
