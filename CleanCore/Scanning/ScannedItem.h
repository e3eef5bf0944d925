#pragma once

#include "CleanCore/FileSystem/EntryIdentity.h"
#include "CleanCore/FileSystem/Obstacle.h"
#include "CleanCore/Support/Timestamp.h"

#include <cstdint>
#include <optional>
#include <string>

namespace CleanCore {

/// One entry that can be selected and removed.
struct ScannedItem
{
    /// The path of the base, "/" and the name of the entry; a tool's items may have a label
    /// instead.
    std::string path;
    /// Allocated bytes, including everything inside.
    std::int64_t sizeBytes = 0;
    /// The newest change of the entry or of anything inside it.
    Timestamp modifiedAt = distantPast;
    /// Identifies the entry that the scan saw, so that a clean notices a replacement. It does not
    /// count for equality.
    std::optional<EntryIdentity> identity = std::nullopt;
    /// Why a clean will not remove all of it. It does not count for equality either.
    Obstacle obstacle = Obstacle::none;

    [[nodiscard]] bool operator==(const ScannedItem& other) const
    {
        return path == other.path && sizeBytes == other.sizeBytes && modifiedAt == other.modifiedAt;
    }
};

} // namespace CleanCore
