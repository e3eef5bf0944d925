#pragma once

#include "CleanCore/FileSystem/EntryIdentity.h"
#include "CleanCore/Support/Timestamp.h"

#include <cstdint>
#include <optional>

namespace CleanCore {

/// What one entry, with everything inside it, occupies, and when it last changed.
struct EntryMeasure
{
    /// Allocated bytes on disk.
    std::int64_t sizeBytes = 0;
    Timestamp latestModification = distantPast;
    /// The entry that was measured; absent when its attributes could not be read.
    std::optional<EntryIdentity> identity;
};

} // namespace CleanCore
