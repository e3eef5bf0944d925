#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace CleanCore {

/// A byte count for people: decimal units, "Zero KB", "1 byte", "999 bytes", then KB without
/// decimals, MB with up to one, GB and above with up to two, no trailing zeros.
[[nodiscard]] std::string formatByteCount(std::int64_t bytes,
                                          std::string_view decimalSeparator = ".");

} // namespace CleanCore
