#pragma once

#include <cstdint>

namespace CleanCore {

enum class EntryKind : std::uint8_t { file, folder, symbolicLink, other };

/// Identifies a file-system entry under any name; see inode(7). Many file systems give the inode
/// number of a removed entry to the next one that is made; its birth time differs.
struct EntryIdentity
{
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    EntryKind kind = EntryKind::other;
    /// Nanoseconds since 1970; 0 where the file system keeps no birth times.
    std::int64_t birthTime = 0;

    [[nodiscard]] bool operator==(const EntryIdentity&) const = default;
};

} // namespace CleanCore
