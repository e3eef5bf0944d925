#pragma once

#include "CleanCore/Scanning/CategoryResult.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace Zorvane {

/// One group of areas in the summary's ring, identified by `id`.
struct RingSegment
{
    std::string_view id;
    /// English, and the key of its translation.
    const char* label = "";
    /// The name of a colour of the theme.
    std::string_view color;
    std::int64_t bytes = 0;
};

/// The groups of all categories, selected or not, in a fixed order and without those of 0 bytes.
/// Every category is in exactly one group, by its rule id.
[[nodiscard]] std::vector<RingSegment>
ringSegments(std::span<const CleanCore::CategoryResult> categories);

} // namespace Zorvane
