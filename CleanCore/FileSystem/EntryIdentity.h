#pragma once

#include <cstdint>

namespace CleanCore {

enum class EntryKind : std::uint8_t { file, folder, symbolicLink, other };

/// Identifies a file-system entry under any name; see inode(7).
struct EntryIdentity
{
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    EntryKind kind = EntryKind::other;

    [[nodiscard]] bool operator==(const EntryIdentity&) const = default;
};

} // namespace CleanCore
