#pragma once

#include <chrono>

namespace CleanCore {

/// A point in time with the file system's own precision.
using Timestamp = std::chrono::sys_time<std::chrono::nanoseconds>;

/// The earliest representable time: stands for "unknown" and passes every age limit.
inline constexpr Timestamp distantPast = Timestamp::min();

} // namespace CleanCore
