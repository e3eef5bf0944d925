#pragma once

#include <cstdint>

namespace CleanCore {

/// What a scan found in an entry that keeps a clean from removing all of it, the graver the later.
/// A clean leaves such an entry whole.
enum class Obstacle : std::uint8_t {
    none,
    /// Entries of another user, or another mount, which would stay.
    foreignEntries,
    /// The scan could not look everywhere, for want of permission, descriptors or memory. The size
    /// may be short and the age wrong.
    notSeenWhole,
};

} // namespace CleanCore
