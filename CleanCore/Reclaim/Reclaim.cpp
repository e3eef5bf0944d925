#include "CleanCore/Reclaim/Reclaim.h"

namespace CleanCore {

std::string_view name(ReclaimCause cause)
{
    constexpr std::string_view names[reclaimCauseCount] = {
        "otherNames", "sharedExtents", "compressed",  "openFiles",
        "inline",     "shownOnly",     "leftInPlace", "unknown"};
    return names[static_cast<std::size_t>(cause)];
}

} // namespace CleanCore
