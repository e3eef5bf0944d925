#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

/// Parses the output of tools, in one pass over texts of any length.
namespace CleanCore::ToolText {

/// The lines of `text` that are not empty, untrimmed.
[[nodiscard]] std::vector<std::string_view> lines(std::string_view text);

/// The first byte count in `text`, rounded down to whole bytes: the leftmost match of
///
///     ([0-9]+(?:[.,][0-9]+)?)\s*([KMGT]?I?B)
///
/// in either letter case, white space being Unicode's. An "I" in the unit makes it a power of 1024,
/// otherwise it is one of 1000. 0 where there is none; the largest count where it does not fit.
[[nodiscard]] std::int64_t parseSize(std::string_view text);

} // namespace CleanCore::ToolText
