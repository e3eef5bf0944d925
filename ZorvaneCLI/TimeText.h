#pragma once

#include "CleanCore/Support/Timestamp.h"

#include <optional>
#include <string>
#include <string_view>

namespace ZorvaneCLI {

/// Reads a point in time as RFC 3339 has it ("2026-01-31T08:00:00Z", "…T08:00:00.5+01:00");
/// nothing for any other text.
[[nodiscard]] std::optional<CleanCore::Timestamp> parseTime(std::string_view text);

/// Writes a point in time as RFC 3339 has it, in UTC, with decimals only if it has any.
[[nodiscard]] std::string formatTime(CleanCore::Timestamp time);

} // namespace ZorvaneCLI
