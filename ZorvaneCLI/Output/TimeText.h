#pragma once

#include "CleanCore/Support/Timestamp.h"

#include <optional>
#include <string>
#include <string_view>

namespace ZorvaneCLI {

/// Reads a time in the format of RFC 3339 ("2026-01-31T08:00:00Z", "…T08:00:00.5+01:00"); nothing
/// for any other text.
[[nodiscard]] std::optional<CleanCore::Timestamp> parseTime(std::string_view text);

/// Writes a time in the format of RFC 3339, in UTC, with as many decimals as it needs.
[[nodiscard]] std::string formatTime(CleanCore::Timestamp time);

} // namespace ZorvaneCLI
