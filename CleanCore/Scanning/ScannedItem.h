#pragma once

#include "CleanCore/FileSystem/EntryIdentity.h"
#include "CleanCore/Support/Timestamp.h"

#include <cstdint>
#include <optional>
#include <string>

namespace CleanCore {

/// One entry that can be selected and removed.
struct ScannedItem
{
    /// The base's path, "/", the entry's name; for areas measured by a tool possibly a label.
    std::string path;
    /// Allocated bytes, everything inside included.
    std::int64_t sizeBytes = 0;
    /// The newest change of the entry or of anything inside it.
    Timestamp modifiedAt = distantPast;
    /// The entry that the scan saw, so that a clean can tell when another has taken its place.
    /// No part of what the item is: it does not count for equality.
    std::optional<EntryIdentity> identity = std::nullopt;

    [[nodiscard]] bool operator==(const ScannedItem& other) const
    {
        return path == other.path && sizeBytes == other.sizeBytes && modifiedAt == other.modifiedAt;
    }
};

} // namespace CleanCore
