#include "CleanCore/Reclaim/Shortfall.h"

#include <algorithm>

namespace CleanCore {

Shortfall shortfallOf(std::int64_t saidBytes, std::int64_t gainedBytes, const Reclaim& removed)
{
    const std::int64_t negligible = saidBytes / 100;
    std::int64_t missing = saidBytes - gainedBytes;
    if (missing <= negligible) {
        return {};
    }
    Shortfall shortfall;
    for (ReclaimShare share : removed.causes) {
        share.bytes = std::min(share.bytes, missing);
        missing -= share.bytes;
        if (share.bytes > 0) {
            shortfall.causes.push_back(std::move(share));
        }
    }
    shortfall.unexplainedBytes = missing > negligible ? missing : 0;
    return shortfall;
}

} // namespace CleanCore
