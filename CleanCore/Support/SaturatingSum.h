#pragma once

#include <cstdint>
#include <limits>

namespace CleanCore {

/// The sum of two byte counts, neither of them negative; the largest count if it does not fit.
/// Tools may report any figure, and their total must not overflow.
[[nodiscard]] constexpr std::int64_t saturatingSum(std::int64_t a, std::int64_t b)
{
    std::int64_t sum = 0;
    return __builtin_add_overflow(a, b, &sum) ? std::numeric_limits<std::int64_t>::max() : sum;
}

} // namespace CleanCore
