#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace CleanCore {

/// Why a removal gives back less than the sizes of its items, or may.
enum class ReclaimCause : std::uint8_t {
    /// The file has several names. It counts once, and only if all of its names are removed.
    otherNames,
    /// Copies or snapshots share the data, which the file system keeps for them.
    sharedExtents,
    /// The file system stores the data compressed.
    compressed,
    /// A program has the file open, which keeps the data until it closes it.
    openFiles,
    /// The data lies inside the file system's own records, which occupy their space anyway.
    inlineData,
    /// The area is only shown; nothing is removed.
    shownOnly,
    /// A clean leaves the item whole; see Obstacle.
    leftInPlace,
    /// The file system, or the tool that clears the area, does not tell.
    unknown,
};

inline constexpr std::size_t reclaimCauseCount = 8;

/// Bytes by cause.
using BytesByCause = std::array<std::int64_t, reclaimCauseCount>;

/// The name of the case in JSON.
[[nodiscard]] std::string_view name(ReclaimCause cause);

/// The bytes that one cause keeps from coming back, or from being certain to.
struct ReclaimShare
{
    ReclaimCause cause = ReclaimCause::unknown;
    std::int64_t bytes = 0;
    /// The names of the programs that have files open, as far as they are known, in order.
    std::vector<std::string> programs = {};

    [[nodiscard]] bool operator==(const ReclaimShare&) const = default;
};

/// How much free space a removal will bring: at least `certainBytes`, at most `possibleBytes`.
struct Reclaim
{
    std::int64_t certainBytes = 0;
    std::int64_t possibleBytes = 0;
    /// In the order of the causes, without those that keep nothing.
    std::vector<ReclaimShare> causes = {};

    /// Whether it may be less than this size, by more than one per cent.
    [[nodiscard]] bool isLessThan(std::int64_t sizeBytes) const
    {
        return certainBytes < sizeBytes - sizeBytes / 100;
    }
    [[nodiscard]] bool operator==(const Reclaim&) const = default;
};

} // namespace CleanCore
