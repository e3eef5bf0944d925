#pragma once

#include "CleanCore/Support/SaturatingSum.h"

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

namespace CleanCore {

/// The outcome of a clean for each of its items, in processing order.
struct CleaningReport
{
    struct RemovedItem
    {
        std::string path;
        /// The bytes credited to the removal: the scanned size, or 0 for a link, which frees
        /// nothing.
        std::int64_t bytes = 0;
        [[nodiscard]] bool operator==(const RemovedItem&) const = default;
    };

    enum class SkipReason {
        /// The safety guard allowed the item under none of the rule's bases, or the removal found
        /// something protected at or inside it and left it whole.
        blockedBySafetyGuard,
        /// The removal or the tool failed, or there is no way to clean the item alone or at all.
        removalFailed,
    };

    /// Why a removal failed, as far as it is known.
    enum class SkipCause {
        unknown,
        /// The scan could not look everywhere in the item, so it was left whole.
        notSeenWhole,
        /// It belongs to another user, or holds entries of one or another mount.
        foreignEntries,
        /// It is not the entry that the scan saw, or was moved meanwhile.
        changedSinceScan,
    };

    struct SkippedItem
    {
        std::string path;
        SkipReason reason = SkipReason::removalFailed;
        SkipCause cause = SkipCause::unknown;
        [[nodiscard]] bool operator==(const SkippedItem&) const = default;
    };

    /// The name of the case.
    [[nodiscard]] static std::string_view name(SkipReason reason)
    {
        return reason == SkipReason::blockedBySafetyGuard ? "blockedBySafetyGuard"
                                                          : "removalFailed";
    }

    /// The name of the case; empty for `unknown`.
    [[nodiscard]] static std::string_view name(SkipCause cause)
    {
        constexpr std::string_view names[] = {"", "notSeenWhole", "foreignEntries",
                                              "changedSinceScan"};
        return names[static_cast<std::size_t>(cause)];
    }

    std::vector<RemovedItem> removed;
    std::vector<SkippedItem> skipped;

    [[nodiscard]] std::int64_t totalBytesFreed() const
    {
        return std::accumulate(removed.begin(), removed.end(), std::int64_t{0},
                               [](std::int64_t sum, const RemovedItem& item) {
                                   return saturatingSum(sum, item.bytes);
                               });
    }

    /// Returns both lists with the other report's entries appended.
    [[nodiscard]] CleaningReport merging(const CleaningReport& other) const
    {
        CleaningReport merged = *this;
        merged.removed.insert(merged.removed.end(), other.removed.begin(), other.removed.end());
        merged.skipped.insert(merged.skipped.end(), other.skipped.begin(), other.skipped.end());
        return merged;
    }
};

} // namespace CleanCore
