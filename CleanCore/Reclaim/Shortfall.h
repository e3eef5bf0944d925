#pragma once

#include "CleanCore/Reclaim/Reclaim.h"

#include <cstdint>
#include <vector>

namespace CleanCore {

/// Why a clean gained less free space than the sizes of the removed items add up to.
struct Shortfall
{
    /// Together at most the difference; see Reclaim::causes.
    std::vector<ReclaimShare> causes;
    /// The rest, which other programs may have written meanwhile.
    std::int64_t unexplainedBytes = 0;

    [[nodiscard]] bool isEmpty() const { return causes.empty() && unexplainedBytes == 0; }
};

/// Explains the difference between what was said to be freed and what was gained; empty if it is
/// not more than one per cent. `removed`: what was to be expected of the removed items.
[[nodiscard]] Shortfall shortfallOf(std::int64_t saidBytes, std::int64_t gainedBytes,
                                    const Reclaim& removed);

} // namespace CleanCore
