#pragma once

#include "CleanCore/Reclaim/Reclaim.h"
#include "CleanCore/Reclaim/Shortfall.h"

namespace Words {

/// A cause as people are told of it.
struct ReclaimCauseText
{
    const char* title = nullptr;
    /// The title where the programs are known; "%1" stands for their names. Null without one.
    const char* titleWithPrograms = nullptr;
    const char* detail = nullptr;
};

[[nodiscard]] ReclaimCauseText reclaimCauseText(CleanCore::ReclaimCause cause);

/// What of a shortfall no cause explains.
[[nodiscard]] ReclaimCauseText unexplainedText();

} // namespace Words
