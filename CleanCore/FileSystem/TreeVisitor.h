#pragma once

#include "CleanCore/FileSystem/EntryIdentity.h"

#include <cstdint>
#include <functional>
#include <string_view>

namespace CleanCore {

/// What the engines look at of one entry, never through a link.
struct EntryAttributes
{
    EntryKind kind = EntryKind::other;
    std::int64_t allocatedBytes = 0;

    [[nodiscard]] bool operator==(const EntryAttributes&) const = default;
};

/// One entry that a walk of a tree comes to.
struct TreeEntry
{
    /// Absolute; lives until the visitor returns.
    std::string_view path;
    EntryAttributes attributes;
};

/// Looks at one entry; false ends the walk.
using TreeVisitor = std::function<bool(const TreeEntry&)>;

} // namespace CleanCore
